#include "widgets/values/BarGraphWidget.h"

#include "widgets/DisplayName.h"
#include "widgets/drawing/NumberStyle.h"
#include "widgets/drawing/SizedFont.h"
#include "widgets/drawing/ValueScale.h"

#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <cstdlib>

namespace {

constexpr int kPointSize = 9;
constexpr int kMaxGap = 1'000'000; ///< a margin or spacing beyond any screen
constexpr int kNarrowestBar = 5;
constexpr int kBarWhenTooNarrow = 4;
constexpr double kCornerRadius = 3.0;
constexpr int kAxisStripHeight = 16;
constexpr int kAxisDigits = 6;
constexpr int kAxisTextGap = 3;
constexpr int kValueDigits = 5;
constexpr int kCaptionGap = 2;
constexpr int kNarrowestCaption = 6; ///< pixels; not even one digit fits into less
constexpr int kLongestName = 200;    ///< characters; no bar is wide enough for more
constexpr int kMaxMeasuredNames = 50;
constexpr QColor kGridColor(215, 215, 215);
constexpr QColor kZeroLineColor(120, 120, 120);
constexpr QColor kAxisColor(160, 160, 160);
constexpr QColor kBarColor(40, 140, 160);

QString caption(const QString& name) { return displayNameOf(name).left(kLongestName); }

} // namespace

/// Where everything lies in one painting.
struct BarGraphWidget::Plot
{
    QRect area; ///< bottom and right lie just outside of it
    ValueScale scale;
    bool hasZero;
    NumberStyle axisNumbers;

    int left() const { return area.x(); }
    int right() const { return area.x() + area.width(); }
    int top() const { return area.y(); }
    int bottom() const { return area.y() + area.height(); }
    int yOfLevel(double level) const { return top() + static_cast<int>((1.0 - level) * area.height()); }
    int yOf(double value) const { return yOfLevel(scale.level(value)); }
    int baseY() const { return hasZero ? yOf(0.0) : bottom(); }

    /// The strip left of the axis, from the widget's edge so that wide numbers find room in the margin.
    void drawAxisNumber(QPainter& painter, int y, double value) const
    {
        const QRect strip(0, y - kAxisStripHeight / 2, left() - kAxisTextGap, kAxisStripHeight);
        axisNumbers.draw(painter, strip, Qt::AlignRight | Qt::AlignVCenter, value);
    }
};

BarGraphWidget::BarGraphWidget(QWidget* parent)
    : WidgetWithSettings(parent)
{
    setMinimumSize(120, 80);
    connect(this, &DashboardWidget::assignmentChanged, this, &BarGraphWidget::rememberAssignment);
}

void BarGraphWidget::rememberAssignment()
{
    const QList<QString> names = assignedSignalList();
    m_assignedNames = QSet<QString>(names.cbegin(), names.cend());
}

void BarGraphWidget::setRange(double minimum, double maximum)
{
    m_minimum.set(minimum);
    m_maximum.set(maximum);
    update();
}

QString BarGraphWidget::typeName() const { return QStringLiteral("BarGraph"); }

void BarGraphWidget::setValueForSignal(const QString& name, double value)
{
    if (!m_assignedNames.contains(name))
        return;
    m_latest.insert(name, value);
    updateForValue();
}

bool BarGraphWidget::supportsMultipleSignals() const { return true; }

void BarGraphWidget::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    if (assignedSignalList().isEmpty()) {
        painter.setPen(Qt::gray);
        painter.drawText(rect(), Qt::AlignCenter, tr("No signals"));
        return;
    }
    painter.setFont(sizedFont(font(), kPointSize));
    const Plot plot = this->plot();
    if (!plot.area.isEmpty())
        paintGrid(painter, plot);
    if (plot.hasZero)
        paintZeroLine(painter, plot);
    const Bars bars = visibleBars(plot, event->rect());
    for (const Bar& bar : bars.list)
        paintBar(painter, plot, bar.x, bars.width, bar.value);
    paintCaptions(painter, plot, bars);
    painter.setPen(QPen(kAxisColor, 1.0));
    painter.drawLine(plot.left(), plot.top(), plot.left(), plot.bottom());
}

BarGraphWidget::Plot BarGraphWidget::plot() const
{
    const int margin = this->margin();
    const int left = margin + m_leftAxis;
    const int plotWidth = std::max(0, width() - margin - left);
    const int plotHeight = std::max(0, height() - 2 * margin - m_bottomPad);
    const ValueScale scale = ValueScale::raised(m_minimum, m_maximum);
    QList<double> numbers;
    for (int k = 0; k <= m_gridLines; ++k)
        numbers.append(gridValue(scale, k));
    return {QRect(left, margin, plotWidth, plotHeight), scale, scale.low <= 0.0 && scale.high >= 0.0,
            NumberStyle::fitting(sizedFont(font(), kPointSize), numbers, kAxisDigits, left - kAxisTextGap)};
}

int BarGraphWidget::margin() const { return std::clamp(m_margin.value(), 0, kMaxGap); }

int BarGraphWidget::barSpacing() const { return std::clamp(m_barSpacing.value(), 0, kMaxGap); }

double BarGraphWidget::gridValue(const ValueScale& scale, int line)
{
    return scale.low + line * (scale.high - scale.low) / m_gridLines;
}

void BarGraphWidget::paintGrid(QPainter& painter, const Plot& plot) const
{
    if (!m_showGrid)
        return;
    const int textHeight = painter.fontMetrics().ascent();
    const bool allNumbersFit = plot.area.height() >= m_gridLines * textHeight;
    for (int k = 0; k <= m_gridLines; ++k) {
        const int y = plot.yOfLevel(double(k) / m_gridLines);
        if (plot.hasZero && y == plot.baseY())
            continue;
        painter.setPen(QPen(kGridColor, 1.0));
        painter.drawLine(plot.left(), y, plot.right(), y);
        // Numbers on top of each other can both not be read: the ends and the zero go first.
        if ((!allNumbersFit && k % m_gridLines != 0) ||
            (plot.hasZero && std::abs(y - plot.baseY()) < textHeight))
            continue;
        painter.setPen(Qt::black);
        plot.drawAxisNumber(painter, y, gridValue(plot.scale, k));
    }
}

void BarGraphWidget::paintZeroLine(QPainter& painter, const Plot& plot) const
{
    QPen pen(kZeroLineColor, 2.0);
    pen.setDashPattern({4.0, 2.0});
    pen.setCapStyle(Qt::FlatCap);
    painter.setPen(pen);
    if (plot.area.width() > 0)
        painter.drawLine(plot.left(), plot.baseY(), plot.right(), plot.baseY());
    painter.setPen(Qt::black);
    plot.drawAxisNumber(painter, plot.baseY(), 0.0);
}

// Only those that show, as any number of signals may be assigned.
BarGraphWidget::Bars BarGraphWidget::visibleBars(const Plot& plot, const QRect& exposed) const
{
    const QList<QString> names = assignedSignalList();
    const int spacing = barSpacing();
    const qint64 room = plot.area.width() - qint64(spacing) * (names.size() - 1);
    const int evenWidth = static_cast<int>(room / names.size());
    Bars bars;
    bars.width = evenWidth < kNarrowestBar ? kBarWhenTooNarrow : evenWidth;
    // Captions may take what is free beside a bar, but not so much that they touch each other or the edge.
    bars.reach = std::clamp(spacing / 2 - 1, 0, margin());
    const qint64 pitch = qint64(bars.width) + spacing;
    const qint64 first = std::max<qint64>(0, (exposed.left() - plot.left()) / pitch - 1);
    const qint64 end =
        std::min<qint64>(names.size(), (exposed.right() + bars.reach - plot.left()) / pitch + 1);
    for (qint64 i = first; i < end; ++i)
        bars.list.append({names[i], m_latest.value(names[i], plot.scale.low), int(plot.left() + i * pitch)});
    return bars;
}

void BarGraphWidget::paintCaptions(QPainter& painter, const Plot& plot, const Bars& bars) const
{
    const int width = bars.width + 2 * bars.reach;
    if (width < kNarrowestCaption)
        return;
    const int textHeight = painter.fontMetrics().height();
    const QFont nameFont = captionFont(painter.font(), width);
    // One size for most numbers, or they would jump with every digit that comes or goes.
    const QFont numberFont = fittingFont(painter.font(), {QStringLiteral("-123.45")}, width);
    painter.setPen(Qt::black);
    const NumberStyle usual{numberFont, kValueDigits};
    const QFontMetrics numberMetrics(numberFont);
    painter.setFont(nameFont);
    const QFontMetrics nameMetrics = painter.fontMetrics();
    QRect area(0, plot.bottom() + kCaptionGap, width, textHeight);
    for (const Bar& bar : bars.list) {
        area.moveLeft(bar.x - bars.reach);
        painter.drawText(area, Qt::AlignCenter | Qt::TextSingleLine | Qt::TextDontClip,
                         nameMetrics.elidedText(caption(bar.name), Qt::ElideRight, width));
    }
    area = area.translated(0, textHeight).adjusted(0, 0, 0, -2);
    for (const Bar& bar : bars.list) {
        area.moveLeft(bar.x - bars.reach);
        const bool fits = numberMetrics.horizontalAdvance(usual.text(bar.value)) < width;
        (fits ? usual : NumberStyle::fitting(numberFont, {bar.value}, kValueDigits, width))
            .draw(painter, area, Qt::AlignCenter, bar.value);
    }
}

// One size for all names. The first ones decide: of very many none can be read anyway.
QFont BarGraphWidget::captionFont(const QFont& usual, int width) const
{
    QStringList captions;
    const QList<QString> names = assignedSignalList().mid(0, kMaxMeasuredNames);
    for (const QString& name : names)
        captions.append(caption(name));
    return fittingFont(usual, captions, width);
}

void BarGraphWidget::paintBar(QPainter& painter, const Plot& plot, int x, int width, double value) const
{
    if (std::isnan(value))
        return;
    const int valueY = plot.yOf(value);
    const int height = std::max(1, std::abs(valueY - plot.baseY()));
    const QRectF bar(x, std::min(plot.baseY(), valueY), width, height);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(QPen(Qt::black, 1.0));
    painter.setBrush(kBarColor);
    // The outline runs through the middle of the outer pixels, so that it is not blurred over two.
    painter.drawRoundedRect(bar.adjusted(0.5, 0.5, -0.5, -0.5), kCornerRadius, kCornerRadius);
    painter.setRenderHint(QPainter::Antialiasing, false);
}
