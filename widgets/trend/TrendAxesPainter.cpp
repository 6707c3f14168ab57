#include "widgets/trend/TrendAxesPainter.h"

#include "widgets/drawing/ValueAxis.h"
#include "widgets/trend/TrendGeometry.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int kMaxDivisions = 100;
constexpr int kLabelGap = 6; ///< pixels between the labels and the axis
constexpr int kTickLength = 4;
constexpr int kEndLabelHeight = 16;
constexpr int kMinimumTimeLabelGap = 4;

} // namespace

TrendAxesPainter::TrendAxesPainter(QPainter& painter, const QRect& plot, int divisions)
    : m_painter(painter)
    , m_plot(plot)
    , m_divisions(std::clamp(divisions, 1, kMaxDivisions))
    , m_valueLabels(plot, kLabelGap)
{}

void TrendAxesPainter::drawGrid()
{
    QList<QLineF> lines;
    for (int i = 0; i <= m_divisions; ++i) {
        const double fraction = double(i) / m_divisions;
        const int x = TrendGeometry::xForFrac(m_plot, fraction);
        const double y = m_plot.top() + m_plot.height() * fraction;
        lines.append(QLineF(x, m_plot.top(), x, m_plot.bottom()));
        lines.append(QLineF(m_plot.left(), y, m_plot.right(), y));
    }
    m_painter.setPen(QPen(QColor(210, 210, 210), 1));
    m_painter.drawLines(lines);
}

void TrendAxesPainter::drawAxesAndZero(double min, double max, int timeWindowMs, const QList<QRect>& covered)
{
    const int bottom = m_plot.bottom();
    m_painter.setPen(QPen(QColor(160, 160, 160), 1));
    m_painter.drawLine(m_plot.topLeft(), m_plot.bottomLeft());
    m_painter.setPen(QPen(QColor(200, 200, 200), 1));
    m_painter.drawLine(m_plot.bottomLeft(), m_plot.bottomRight());

    m_valueLabels.addIfFree(max, m_plot.top() - 2, kEndLabelHeight);
    m_valueLabels.addIfFree(min, bottom - 10, kEndLabelHeight);
    const ValueScale scale(min, max);
    if (scale.low < 0 && scale.high > 0) {
        const int zero = ValueAxis::up(m_plot, scale).pixel(0.0);
        QPen pen(QColor(60, 60, 60), 2);
        pen.setDashPattern({4, 4});
        m_painter.setPen(pen);
        m_painter.drawLine(m_plot.left(), zero, m_plot.right(), zero);
        m_valueLabels.addIfFree(0.0, zero - 8, kEndLabelHeight);
    }
    drawTimeTicks(timeWindowMs, covered);
    const int fontHeight = m_painter.fontMetrics().height();
    const QList<TrendGeometry::ValueTick> ticks =
        TrendGeometry::valueTicks(scale.low, scale.high, m_divisions);
    for (const TrendGeometry::ValueTick& tick : ticks) {
        const int centre = m_plot.top() + static_cast<int>(tick.fraction * m_plot.height());
        m_valueLabels.addIfFree(tick.value, centre - fontHeight / 2, fontHeight);
    }
    m_valueLabels.draw(m_painter);
}

void TrendAxesPainter::drawTimeTicks(int timeWindowMs, const QList<QRect>& covered)
{
    QList<QRect> taken = covered;
    // Both ends first: now, and how far back the plot reaches. The others as far as there is room.
    drawTimeTick(m_divisions, timeWindowMs, taken);
    for (int i = 0; i < m_divisions; ++i)
        drawTimeTick(i, timeWindowMs, taken);
}

void TrendAxesPainter::drawTimeTick(int division, int timeWindowMs, QList<QRect>& taken)
{
    const double fraction = double(division) / m_divisions;
    const int x = TrendGeometry::xForFrac(m_plot, fraction);
    m_painter.setPen(QPen(QColor(150, 150, 150), 1));
    m_painter.drawLine(x, m_plot.bottom(), x, m_plot.bottom() + kTickLength);
    const QString text = TrendGeometry::tickLabel(fraction, timeWindowMs);
    const QFontMetrics metrics = m_painter.fontMetrics();
    QRect box(0, m_plot.bottom() + 6, metrics.horizontalAdvance(text) + 1, metrics.height());
    box.moveLeft(std::max(x - box.width() / 2, m_plot.left()));
    box.moveLeft(std::min(box.left(), m_plot.right() - box.width() + 1));
    const QRect needed = box.adjusted(-kMinimumTimeLabelGap, 0, kMinimumTimeLabelGap, 0);
    if (std::any_of(taken.cbegin(), taken.cend(),
                    [&needed](const QRect& other) { return other.intersects(needed); }))
        return;
    taken.append(box);
    m_painter.setPen(Qt::black);
    m_painter.drawText(box, Qt::AlignCenter, text);
}
