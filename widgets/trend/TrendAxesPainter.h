#pragma once

#include "widgets/drawing/ValueLabels.h"

#include <QList>
#include <QRect>

class QPainter;

// Draws what frames the traces of a trend plot: grid, axes, the line at zero, and the labels of time and
// value. It uses the painter's font, leaves out a label that would overlap another one, and knows no samples.
class TrendAxesPainter
{
public:
    /// The painter must outlive this. divisions may be any number; at least 1 and at most 100 are drawn.
    TrendAxesPainter(QPainter& painter, const QRect& plot, int divisions);

    void drawGrid();
    /// The limits of the values at the lower and the upper edge, and the width of the time span. Time
    /// labels that would be covered are left out.
    void drawAxesAndZero(double min, double max, int timeWindowMs, const QList<QRect>& covered);

private:
    void drawTimeTicks(int timeWindowMs, const QList<QRect>& covered);
    void drawTimeTick(int division, int timeWindowMs, QList<QRect>& taken);

    QPainter& m_painter;
    QRect m_plot;
    int m_divisions;
    ValueLabels m_valueLabels;
};
