#pragma once

#include <QFont>
#include <QStringList>

class QPainter;
class QRect;

// Short texts in narrow places: written smaller where the usual size is too wide.

/// The font, made as small as needed for every text to fit into a width, but not below 6 points.
QFont fittingFont(const QFont& font, const QStringList& texts, int width);
/// Writes a number with up to so many significant digits into an area. One that is too wide even in the
/// smallest font is rounded to fewer digits, and left out where one digit is too wide: with an end cut off it
/// would read as another number.
void drawFittedNumber(QPainter& painter, const QRect& area, Qt::Alignment alignment, double value,
                      int digits);
