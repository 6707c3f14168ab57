#pragma once

#include <QFont>
#include <QList>
#include <QStringList>

class QPainter;
class QRect;

/// The font, made as small as needed for every text to fit into a width, but not below 6 points.
QFont fittingFont(const QFont& font, const QStringList& texts, int width);

// How numbers are written in a narrow place: smaller where they are too wide, then with a shorter exponent
// (1e6 for 1e+06), then rounded to fewer digits, but never so far that two numbers that read differently read
// the same.
struct NumberStyle
{
    QFont font;
    int digits; ///< significant, at most
    bool shortExponent = false;

    /// The style in which all the values fit into a width, or the narrowest one that keeps them apart.
    static NumberStyle fitting(const QFont& font, const QList<double>& values, int digits, int width);

    QString text(double value) const;
    /// In one line and never cut off, as a part of a number would read as another one: a number that is still
    /// too wide runs out of its area to the right when it is right-aligned, and is left out otherwise.
    void draw(QPainter& painter, const QRect& area, Qt::Alignment alignment, double value) const;
};
