#pragma once

#include <QList>
#include <QRect>
#include <QSize>
#include <QString>

#include <utility>

// Where things lie on a trend plot: pure functions from settings, times and fractions to pixels and back.
// Rectangles are in integer pixels, with right and bottom as their last column and row. Times are in
// milliseconds.
namespace TrendGeometry {

constexpr int kTopPad = 24; ///< above the plot, for the markers' labels

/// The pixels that surround the plot.
struct Frame
{
    int margin = 6;
    int leftAxis = 40;
    int bottomPad = 20;
};

/// The frame with each of its numbers kept within 0 … 1,000,000.
Frame bounded(const Frame& frame);

/// The plot inside a widget, for a bounded frame; width or height is 0 where there is no room.
QRect plotRect(const QSize& widget, const Frame& frame);

/// t0 is the time at the left edge, where earlier times lie as well; t1 is that at the right edge, beyond
/// which later times lie, by one more width at most.
int xForTime(const QRect& plot, qint64 t0, qint64 t1, qint64 t);
/// 0 is the left and 1 the right edge; less than 0 and NaN are 0, more than 2 is 2.
int xForFrac(const QRect& plot, double fraction);
/// The time at a column; t0 for all that is left of the plot.
qint64 timeForX(const QRect& plot, qint64 t0, qint64 t1, int x);

/// The limits of an axis for values within these: a tenth of the distance of room on either side, or at least
/// 1 where there is no distance. Both must be finite; they are cut at ±ValueScale::kLimit.
std::pair<double, double> paddedRange(double low, double high);

/// "-7.500s": a time relative to now.
QString secondsLabel(qint64 ms);
/// The time at a fraction of the window, relative to its end.
QString tickLabel(double fraction, qint64 windowMs);

/// The values between maximum and minimum that get a label of their own, with their fraction of the height
/// from the top. The ends and 0 have theirs already.
struct ValueTick
{
    double fraction;
    double value;
};
QList<ValueTick> valueTicks(double minimum, double maximum, int divisions);

} // namespace TrendGeometry
