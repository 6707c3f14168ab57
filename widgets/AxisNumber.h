#pragma once

#include <QFont>
#include <QStringList>

class QPainter;
class QRect;

// The numbers beside an axis. A number with an end clipped off reads as another number, so that they are
// written smaller where the room is narrow.

/// With up to six significant digits.
QString axisNumber(double value);
/// The font, made as small as needed for all the texts to fit into a width, but not below 6 points.
QFont fittingFont(const QFont& font, const QStringList& texts, int width);
/// Writes a number right-aligned and vertically centred in a box. One that is too wide all the same starts at
/// the left edge of the painter's device and leaves the box on the right.
void drawAxisNumber(QPainter& painter, const QRect& box, const QString& text);
