#pragma once

#include "widgets/drawing/ValueAxis.h"
#include "widgets/trend/TrendGeometry.h"

#include <QLine>
#include <QList>
#include <QRectF>

class TrendSeries;

// From the samples of one signal to what shows it: pure functions, without painter or widget. Samples that
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

/// What a trace is made of, to be drawn in one colour.
struct Trace
{
    QList<QLine> lines; ///< for the pen, whose width is kPenWidth
    /// Where many vertical lines stand side by side: what the pen covers, to be filled without antialiasing
    /// at a fraction of the cost. On a device of one pixel per unit these are the very pixels, else at most
    /// one pixel more or less at the edges.
    QList<QRectF> areas;

    static constexpr double kPenWidth = 1.5;
};

/// Straight lines from sample to sample, from the left edge on. Nothing when no sample lies in the window.
Trace segmentTrace(const TrendSeries& series, const TrendAxes& axes);
/// Every value is held until the next one, the last one until now.
Trace stepTrace(const TrendSeries& series, const TrendAxes& axes);
/// One vertical line per column, from the smallest to the largest value in it. Values off the scale lead off
/// the plot.
Trace columnTrace(const TrendSeries& series, const TrendAxes& axes);
