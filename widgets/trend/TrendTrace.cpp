#include "widgets/trend/TrendTrace.h"

#include "definitions/numbers/FileNumbers.h"
#include "widgets/trend/TrendSeries.h"

#include <QColor>
#include <QPainter>
#include <QPen>

#include <algorithm>
#include <cmath>
#include <optional>
#include <utility>

namespace {

constexpr int kNowhere = -1'000'000'000;
constexpr int kShortestArea = 24; ///< pixels
constexpr int kFarOff = 100'000;  ///< pixels; no line needs to lead further off the plot

/// The samples of one pixel column; the values in it as pixels, meaningless when empty.
struct Column
{
    int x;
    bool isDense; ///< several samples
    bool isEmpty; ///< NaN only
    int top;
    int bottom;
    std::optional<int> first; ///< nothing where the trace is interrupted
    std::optional<int> last;

    bool spans(int y) const { return top <= y && y <= bottom; }
    /// Several samples that make a vertical line.
    bool isLine() const { return isDense && !isEmpty && top != bottom; }
};

std::optional<int> pixelOf(const TrendAxes& axes, double value)
{
    return std::isnan(value) ? std::nullopt : std::optional(axes.y(value));
}

/// The first index in [from, end) whose sample lies right of column x, or end. The search begins at a guess
/// between the two and reaches out from there in steps that double. Where times go backwards it finds some
/// such index.
qsizetype endOfColumn(const TrendSeries& series, const TrendAxes& axes, int x, qsizetype from, qsizetype end,
                      qsizetype guess)
{
    const auto isRight = [&](qsizetype index) { return axes.x(series.at(index).tMs) > x; };
    qsizetype low = guess;  // all before it belong to the column
    qsizetype high = guess; // end, or an index right of the column
    for (qsizetype step = 1; low > from && isRight(low - 1); step *= 2) {
        high = low - 1;
        low = std::max(from, high - step);
    }
    for (qsizetype step = 1; high < end && !isRight(high); step *= 2) {
        low = high + 1;
        high = std::min(end, low + step);
    }
    while (low < high) {
        const qsizetype middle = low + (high - low) / 2;
        if (isRight(middle))
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
    qsizetype usual = 1; // samples per column
    while (begin < end) {
        const int x = axes.x(series.at(begin).tMs);
        const qsizetype next = endOfColumn(series, axes, x, begin + 1, end, std::min(begin + usual, end));
        usual = next - begin;
        // With hours of samples the ends of the next columns are not in the cache.
        series.prefetch(next + 2 * usual);
        const auto first = pixelOf(axes, series.at(begin).value);
        if (next == begin + 1) {
            visit(Column{x, false, !first, first.value_or(0), first.value_or(0), first, first});
        } else {
            const ValueExtent extent = series.extent(begin, next);
            visit(Column{x, true, extent.isEmpty(), axes.y(extent.highest()), axes.y(extent.lowest()), first,
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
    if (std::isinf(before.value) || std::isinf(after.value))
        return fraction < 0.5 ? before.value : after.value; // between them is no number
    // Not before + (after - before) × fraction: the difference of two huge values overflows.
    return before.value * (1.0 - fraction) + after.value * fraction;
}

/// Collects a trace from left to right.
class Tracer
{
public:
    Tracer() { m_trace.lines.reserve(32); }

    /// The line that leads to a column; never a vertical one.
    void addLine(const QLine& line) { m_trace.lines.append(line); }

    /// A vertical line of the column. Whether many stand side by side is known from the second one on.
    void addVertical(const Column& column, int top, int bottom)
    {
        // A short one costs little, and looks better with soft edges.
        const bool beside = column.isDense && m_lastDense == column.x - 1 && bottom - top >= kShortestArea;
        m_lastDense = column.isDense ? column.x : kNowhere;
        if (!beside) {
            addLine(QLine(column.x, top, column.x, bottom));
            return;
        }
        // The pen covers half its width on every side of a line, its ends included.
        constexpr double kHalf = TrendTrace::kPenWidth / 2;
        const QRectF area(QPointF(column.x - kHalf, top - kHalf), QPointF(column.x + kHalf, bottom + kHalf));
        QRectF* const last = m_trace.areas.isEmpty() ? nullptr : &m_trace.areas.last();
        if (last && last->right() == area.right() - 1 && last->top() == area.top() &&
            last->bottom() == area.bottom())
            last->setRight(area.right());
        else
            m_trace.areas.append(area);
    }

    TrendTrace take() { return std::move(m_trace); }

private:
    TrendTrace m_trace;
    int m_lastDense = kNowhere; ///< the column of the last line, if it is dense
};

} // namespace

TrendTrace TrendTrace::segments(const TrendSeries& series, const TrendAxes& axes)
{
    const qsizetype begin = series.indexAtOrAfter(axes.t0);
    const qsizetype end = series.indexAtOrAfter(axes.t1() + 1);
    if (begin >= end)
        return {};
    Tracer tracer;
    int x = axes.plot.left();
    std::optional<int> y = pixelOf(axes, valueAtLeftEdge(series, begin, axes.t0));
    std::optional<Column> before;
    forEachColumn(series, axes, begin, end, [&](const Column& column) {
        // Where values are many and wild, the line from column to column lies inside both of their own lines.
        const bool covered = before && before->isLine() && column.isLine() && column.x == x + 1 && y &&
                             column.first && column.spans(*y) && before->spans(*column.first);
        if (y && column.first && !covered)
            tracer.addLine(QLine(x, *y, column.x, *column.first));
        if (!column.isEmpty && column.top != column.bottom)
            tracer.addVertical(column, column.top, column.bottom);
        x = column.x;
        y = column.last;
        before = column;
    });
    return tracer.take();
}

TrendTrace TrendTrace::steps(const TrendSeries& series, const TrendAxes& axes)
{
    if (series.isEmpty())
        return {};
    Tracer tracer;
    const qsizetype begin = std::max<qsizetype>(series.indexAtOrAfter(axes.t0), 1);
    const qsizetype end = std::max(series.indexAtOrAfter(axes.t1() + 1), begin);
    const TrendSample& held = series.at(begin - 1);
    int x = axes.x(std::max(held.tMs, axes.t0));
    std::optional<int> y = pixelOf(axes, held.value);
    bool risen = false; // a vertical line stands at x
    forEachColumn(series, axes, begin, end, [&](const Column& column) {
        const int top = std::min(column.top, y.value_or(column.top));
        const int bottom = std::max(column.bottom, y.value_or(column.bottom));
        const bool rises = !column.isEmpty && top != bottom;
        // Between vertical lines in neighbouring columns the pen leaves no gap to be filled.
        const bool joined = risen && rises && column.x == x + 1;
        if (y && column.x > x && !joined)
            tracer.addLine(QLine(x, *y, column.x, *y));
        if (rises)
            tracer.addVertical(column, top, bottom);
        x = column.x;
        y = column.last;
        risen = rises;
    });
    if (y && x < axes.plot.right())
        tracer.addLine(QLine(x, *y, axes.plot.right(), *y));
    return tracer.take();
}

TrendTrace TrendTrace::columns(const TrendSeries& series, const TrendAxes& axes)
{
    TrendTrace trace;
    if (series.size() < 2)
        return trace;
    const auto pixel = [&axes](double value) {
        const double level = (value - axes.values.low) / (axes.values.high - axes.values.low);
        return axes.plot.bottom() - boundedInt(level * axes.plot.height(), -kFarOff, kFarOff, 0);
    };
    qsizetype from = series.indexAtOrAfter(axes.t0);
    while (from < series.size()) {
        // Samples later than the right edge count towards the last column.
        const int x = std::min(axes.x(series.at(from).tMs), axes.plot.right());
        const qsizetype next = x == axes.plot.right()
                                   ? series.size()
                                   : endOfColumn(series, axes, x, from + 1, series.size(), from + 1);
        const ValueExtent extent = series.extent(from, next);
        if (!extent.isEmpty())
            trace.lines.append(QLine(x, pixel(extent.lowest()), x, pixel(extent.highest())));
        from = next;
    }
    return trace;
}

void TrendTrace::paint(QPainter& painter, const QColor& color, double penWidth) const
{
    painter.setPen(QPen(color, penWidth));
    painter.drawLines(lines);
    painter.setRenderHint(QPainter::Antialiasing, false); // whole pixels
    painter.setPen(Qt::NoPen);
    painter.setBrush(color);
    painter.drawRects(areas);
    painter.setRenderHint(QPainter::Antialiasing, true);
}
