#pragma once

#include "widgets/drawing/ValueAxis.h"
#include "widgets/trend/TrendGeometry.h"

#include <QLine>
#include <QList>
#include <QRectF>

class QColor;
class QPainter;
class TrendSeries;

// From the samples of one signal to the lines that show it: pure functions of samples and axes. Samples that
// fall into one pixel column become one vertical line over all that they cover, joined to its neighbours at
// the first and the last of them: the same pixels as a line from sample to sample, at a cost that is bounded
// by the columns. A sample alone in its column is drawn as it is. NaN interrupts the trace, though not within
// a column; infinite values lie at the edge.

/// The window of the plot: which time and which value lie where.
struct TrendAxes
{
    QRect plot;    ///< width and height at least 1
    qint64 t0;     ///< the left edge
    qint64 window; ///< how much later the right edge is; when it is negative no sample lies between
    ValueScale values;

    qint64 t1() const { return t0 + window; }
    int x(qint64 t) const { return TrendGeometry::xForTime(plot, t0, t1(), t); }
    int y(double value) const { return ValueAxis::up(plot, values).pixel(value); }
};

/// What the samples of one signal look like, to be drawn in one colour.
struct TrendTrace
{
    QList<QLine> lines; ///< for the pen
    /// Where many vertical lines stand side by side: what a pen of kPenWidth covers, to be filled without
    /// antialiasing at a fraction of the cost. On a device of one pixel per unit these are the very pixels,
    /// else at most one pixel more or less at the edges.
    QList<QRectF> areas;

    static constexpr double kPenWidth = 1.5;

    /// Straight lines from sample to sample, from the left edge on. Nothing when no sample lies in the
    /// window.
    static TrendTrace segments(const TrendSeries& series, const TrendAxes& axes);
    /// Every value is held until the next one, the last one until now.
    static TrendTrace steps(const TrendSeries& series, const TrendAxes& axes);
    /// One vertical line per column, from the smallest to the largest value in it. Values off the scale lead
    /// off the plot.
    static TrendTrace columns(const TrendSeries& series, const TrendAxes& axes);

    /// On a painter that antialiases, and does so again afterwards.
    void paint(QPainter& painter, const QColor& color, double penWidth) const;
};
