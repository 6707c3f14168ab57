#include "widgets/TrendTrace.h"

#include "widgets/TrendSeries.h"

#include <algorithm>
#include <cmath>
#include <optional>

namespace {

constexpr int kFarOff = 100'000; ///< pixels; further off the plot no line needs to lead

/// The samples of one pixel column; the values in it as pixels, meaningless when empty.
struct Column
{
    int x;
    bool isEmpty; ///< NaN only
    int top;
    int bottom;
    std::optional<int> first; ///< nothing where the trace is interrupted
    std::optional<int> last;
};

std::optional<int> pixelOf(const TrendAxes& axes, double value)
{
    return std::isnan(value) ? std::nullopt : std::optional(axes.y(value));
}

/// The first index in [from, end) whose sample lies right of column x, found in steps that double: mostly it
/// is near. Where times go backwards it is some such index.
qsizetype endOfColumn(const TrendSeries& series, const TrendAxes& axes, int x, qsizetype from, qsizetype end)
{
    qsizetype low = from; // all before it belong to the column
    qsizetype high = end; // end, or an index right of the column
    for (qsizetype step = 1; low < end; step *= 2) {
        const qsizetype probe = std::min(low + step, end) - 1;
        if (axes.x(series.at(probe).tMs) > x) {
            high = probe;
            break;
        }
        low = probe + 1;
    }
    while (low < high) {
        const qsizetype middle = low + (high - low) / 2;
        if (axes.x(series.at(middle).tMs) > x)
            high = middle;
        else
            low = middle + 1;
    }
    return high;
}

/// Calls visit(Column) for every column that has samples in [begin, end), from left to right.
template <class Visit>
void forEachColumn(const TrendSeries& series, const TrendAxes& axes, qsizetype begin, qsizetype end,
                   Visit visit)
{
    while (begin < end) {
        const int x = axes.x(series.at(begin).tMs);
        const qsizetype next = endOfColumn(series, axes, x, begin + 1, end);
        const auto first = pixelOf(axes, series.at(begin).value);
        if (next == begin + 1) {
            visit(Column{x, !first, first.value_or(0), first.value_or(0), first, first});
        } else {
            const TrendExtent extent = series.extent(begin, next);
            visit(Column{x, extent.isEmpty(), axes.y(extent.highest()), axes.y(extent.lowest()), first,
                         pixelOf(axes, series.at(next - 1).value)});
        }
        begin = next;
    }
}

double valueAtLeftEdge(const TrendSeries& series, qsizetype first, qint64 t0)
{
    if (first == 0)
        return series.first().value;
    const TrendSample& before = series.at(first - 1);
    const TrendSample& after = series.at(first);
    const double fraction = double(t0 - before.tMs) / double(std::max<qint64>(after.tMs - before.tMs, 1));
    // Not before + (after - before) × fraction: the difference of two huge values overflows.
    return before.value * (1.0 - fraction) + after.value * fraction;
}

} // namespace

QList<QLine> segmentLines(const TrendSeries& series, const TrendAxes& axes)
{
    QList<QLine> lines;
    const qsizetype begin = series.indexAtOrAfter(axes.t0);
    const qsizetype end = series.indexAtOrAfter(axes.t1() + 1);
    if (begin >= end)
        return lines;
    lines.reserve(32);
    int x = axes.plot.left();
    std::optional<int> y = pixelOf(axes, valueAtLeftEdge(series, begin, axes.t0));
    forEachColumn(series, axes, begin, end, [&](const Column& column) {
        if (y && column.first)
            lines.append(QLine(x, *y, column.x, *column.first));
        if (!column.isEmpty && column.top != column.bottom)
            lines.append(QLine(column.x, column.top, column.x, column.bottom));
        x = column.x;
        y = column.last;
    });
    return lines;
}

QList<QLine> stepLines(const TrendSeries& series, const TrendAxes& axes)
{
    QList<QLine> lines;
    if (series.isEmpty())
        return lines;
    lines.reserve(32);
    const qsizetype begin = std::max<qsizetype>(series.indexAtOrAfter(axes.t0), 1);
    const qsizetype end = std::max(series.indexAtOrAfter(axes.t1() + 1), begin);
    const TrendSample& held = series.at(begin - 1);
    int x = axes.x(std::max(held.tMs, axes.t0));
    std::optional<int> y = pixelOf(axes, held.value);
    bool risen = false; // a vertical line at x ends what leads there
    forEachColumn(series, axes, begin, end, [&](const Column& column) {
        const int top = std::min(column.top, y.value_or(column.top));
        const int bottom = std::max(column.bottom, y.value_or(column.bottom));
        const bool rises = !column.isEmpty && top != bottom;
        // Between vertical lines in neighbouring columns the pen leaves no gap to be filled.
        const bool joined = risen && rises && column.x == x + 1;
        if (y && column.x > x && !joined)
            lines.append(QLine(x, *y, column.x, *y));
        if (rises)
            lines.append(QLine(column.x, top, column.x, bottom));
        x = column.x;
        y = column.last;
        risen = rises;
    });
    if (y && x < axes.plot.right())
        lines.append(QLine(x, *y, axes.plot.right(), *y));
    return lines;
}

QList<QLine> columnLines(const TrendSeries& series, const TrendAxes& axes)
{
    QList<QLine> lines;
    const qsizetype begin = series.indexAtOrAfter(axes.t0);
    const auto pixel = [&axes](double value) {
        const double level = (value - axes.values.low) / (axes.values.high - axes.values.low);
        return axes.plot.bottom() - boundedInt(level * axes.plot.height(), -kFarOff, kFarOff, 0);
    };
    qsizetype from = begin;
    while (from < series.size()) {
        // What is later than the right edge counts to the last column.
        const int x = std::min(axes.x(series.at(from).tMs), axes.plot.right());
        const qsizetype next =
            x == axes.plot.right() ? series.size() : endOfColumn(series, axes, x, from + 1, series.size());
        const TrendExtent extent = series.extent(from, next);
        if (!extent.isEmpty())
            lines.append(QLine(x, pixel(extent.lowest()), x, pixel(extent.highest())));
        from = next;
    }
    return lines;
}
