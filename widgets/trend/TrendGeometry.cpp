#include "widgets/trend/TrendGeometry.h"

#include "definitions/numbers/FileNumbers.h"
#include "widgets/drawing/ValueScale.h"

namespace TrendGeometry {

namespace {

constexpr int kMaxFramePixels = 1'000'000;
constexpr double kFlatSpan = 1e-12;
constexpr double kMaxFraction = 2.0; // off the plot, and no overflow on the way

double spanOf(qint64 t0, qint64 t1) { return double(std::max<qint64>(t1 - t0, 1)); }

int lastColumn(const QRect& plot) { return std::max(plot.right() - plot.left(), 1); }

} // namespace

Frame bounded(const Frame& frame)
{
    const auto pixels = [](int number) { return std::clamp(number, 0, kMaxFramePixels); };
    return {pixels(frame.margin), pixels(frame.leftAxis), pixels(frame.bottomPad)};
}

QRect plotRect(const QSize& widget, const Frame& frame)
{
    return {frame.margin + frame.leftAxis, frame.margin + kTopPad,
            std::max(0, widget.width() - 2 * frame.margin - frame.leftAxis),
            std::max(0, widget.height() - frame.bottomPad - 2 * frame.margin - kTopPad)};
}

int xForTime(const QRect& plot, qint64 t0, qint64 t1, qint64 t)
{
    return xForFrac(plot, double(t - t0) / spanOf(t0, t1));
}

int xForFrac(const QRect& plot, double fraction)
{
    // Not std::clamp, which would let NaN through.
    const double bounded = std::min(fraction > 0.0 ? fraction : 0.0, kMaxFraction);
    return plot.left() + static_cast<int>(bounded * lastColumn(plot));
}

qint64 timeForX(const QRect& plot, qint64 t0, qint64 t1, int x)
{
    const double fraction = std::max(double(x - plot.left()) / lastColumn(plot), 0.0);
    return t0 + wholeMs(fraction * spanOf(t0, t1));
}

std::pair<double, double> paddedRange(double low, double high)
{
    const ValueScale data(low, high);
    const double span = data.high - data.low;
    if (span >= kFlatSpan)
        return {data.low - 0.1 * span, data.high + 0.1 * span};
    const double middle = (data.low + data.high) / 2;
    const double room = std::max(1.0, std::abs(middle) * 1e-9); // beyond 1e15 a 1 may be lost in rounding
    return {middle - room, middle + room};
}

QString secondsLabel(qint64 ms) { return QString::number(double(ms) / 1000.0, 'f', 3) + QLatin1Char('s'); }

QString tickLabel(double fraction, qint64 windowMs)
{
    return secondsLabel(wholeMs(fraction * double(windowMs)) - windowMs);
}

QList<ValueTick> valueTicks(double minimum, double maximum, int divisions)
{
    QList<ValueTick> ticks;
    for (int i = 0; i <= divisions; ++i) {
        const double fraction = double(i) / divisions;
        const double value = maximum - (maximum - minimum) * fraction;
        if (value != 0.0 && !qFuzzyCompare(value, minimum) && !qFuzzyCompare(value, maximum))
            ticks.append({fraction, value});
    }
    return ticks;
}

} // namespace TrendGeometry
