#pragma once

#include <QList>
#include <QPoint>

class QColor;
class QPainter;
class QRect;

// Paints very many small dots of one colour, each with an opacity of its own, as antialiased circles drawn
// one by one would look, at a small part of their cost. The XY plot draws its trail with it. It knows
// nothing of values and axes.

struct CloudDot
{
    QPoint centre; ///< in logical units of the painter
    int alpha;     ///< 0 … 255
};

/// Draws the dots as filled circles of that radius, in logical units; of a dot at the edge of the area (not
/// empty) only what lies within is drawn. On average a pixel differs by less than 4 levels of 255 from
/// circles drawn one by one, at the rim of a dot by up to about 40: those, too, differ from place to place at
/// broken ratios. The time depends on the number of dots and, where they are many, on the pixels that they
/// spread over.
void drawDotCloud(QPainter& painter, const QRect& area, const QColor& colour, int radius,
                  const QList<CloudDot>& dots);
