#pragma once

#include <QStringList>

class QPainter;
class QRect;

/// Draws a line down the plot at x and a box with the readings beside it, in the painter's font: right of the
/// line, or left of it where the box would leave the plot.
void paintCrosshair(QPainter& painter, const QRect& plot, int x, const QStringList& readings);
