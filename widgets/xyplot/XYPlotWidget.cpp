#include "widgets/xyplot/XYPlotWidget.h"

#include "definitions/numbers/FileNumbers.h"
#include "definitions/numbers/SignalName.h"
#include "widgets/DisplayName.h"
#include "widgets/drawing/NumberStyle.h"
#include "widgets/drawing/SizedFont.h"
#include "widgets/drawing/ValueAxis.h"
#include "widgets/drawing/ValueExtent.h"
#include "widgets/drawing/ValueLabels.h"
#include "widgets/xyplot/DotCloud.h"

#include <QDateTime>
#include <QPaintEvent>
#include <QPainter>

#include <algorithm>
#include <cmath>
#include <utility>

namespace {

constexpr int kMargin = 8;
constexpr int kLeftAxis = 40;
constexpr int kBottomPad = 20;
constexpr int kMinimumPaintedSide = 40;
constexpr int kGridDivisions = 5;
constexpr qint64 kBucketMs = 20;
constexpr int kNewestRadius = 3;
constexpr int kOlderRadius = 1;
constexpr int kLabelPointSize = 9;
constexpr int kLabelDigits = 6;
constexpr int kLabelGap = 4;
constexpr int kTitlePadding = 4;
constexpr qsizetype kMaxTitleCharacters = 1000; ///< measuring a text takes time per character
constexpr double kEditorLimit = 1e9;
constexpr int kEditorDecimals = 3;
constexpr QColor kDotColor(40, 140, 160);
constexpr QColor kFrameColor(160, 160, 160);
constexpr QColor kGridColor(210, 210, 210);

/// Whether a delivered name means the signal. Most names do not, and that is cheap to find out.
bool means(const QString& name, const QString& signal)
{
    return name == signal || (name.contains(signal) && canonical(name) == signal);
}

/// A single line around a centre, elided to a width, on a background that lets little of the plot through.
void drawCaption(QPainter& painter, QPoint centre, int width, QString text, const QColor& background)
{
    std::replace_if(
        text.begin(), text.end(), [](QChar c) { return c.isSpace(); }, QLatin1Char(' '));
    const QFontMetrics metrics = painter.fontMetrics();
    const QString shown = metrics.elidedText(text, Qt::ElideRight, width - 2 * kTitlePadding);
    QRect box(0, 0, metrics.horizontalAdvance(shown) + 2 * kTitlePadding, metrics.height());
    box.moveCenter(centre);
    painter.fillRect(box, background);
    painter.drawText(box, Qt::AlignCenter | Qt::TextDontClip, shown);
}

} // namespace

XYPlotWidget::Axis::Axis(WidgetSettings& all, const QString& name, const char* autoScaleKey,
                         const char* minimumKey, const char* maximumKey)
    : autoScale(all, autoScaleKey, true,
                {tr("Auto-scale %1").arg(name), tr("Fit the axis to the points instead of the limits below")})
    , minimum(
          all, minimumKey, -1.0,
          {tr("%1 Min:").arg(name), tr("The lower limit, without auto-scale"), kEditorLimit, kEditorDecimals})
    , maximum(
          all, maximumKey, 1.0,
          {tr("%1 Max:").arg(name), tr("The upper limit, without auto-scale"), kEditorLimit, kEditorDecimals})
{}

XYPlotWidget::XYPlotWidget(QWidget* parent)
    : WidgetWithSettings(parent)
{
    setMinimumSize(140, 120);
}

void XYPlotWidget::pushPoint(const QPointF& point)
{
    m_points.push(point);
    updateForValue();
}

void XYPlotWidget::clearData()
{
    m_points.clear();
    update();
}

QRect XYPlotWidget::plotRect() const
{
    return {QPoint(kMargin + kLeftAxis, kMargin), QPoint(width() - kMargin, height() - kMargin - kBottomPad)};
}

void XYPlotWidget::setValueForSignal(const QString& name, double value)
{
    setValueForSignalAt(name, value, double(QDateTime::currentMSecsSinceEpoch()) / 1000.0);
}

void XYPlotWidget::setValueForSignalAt(const QString& name, double value, double tSec)
{
    if (means(name, m_x.signal))
        m_x.value = value;
    else if (means(name, m_y.signal))
        m_y.value = value;
    else
        return;
    appendPointIfReady(wholeMs(tSec * 1000.0));
}

void XYPlotWidget::appendPointIfReady(qint64 tMs)
{
    if (std::isnan(m_x.value) || std::isnan(m_y.value))
        return;
    const qint64 bucketMs = tMs / kBucketMs * kBucketMs;
    if (bucketMs == m_lastBucketMs)
        return;
    pushPoint(QPointF(m_x.value, m_y.value));
    m_lastBucketMs = bucketMs;
}

QString XYPlotWidget::typeName() const { return QStringLiteral("XYPlot"); }

bool XYPlotWidget::usesSignalSelection() const { return false; }

QList<QString> XYPlotWidget::assignedSignalList() const
{
    QList<QString> names{m_x.signal, m_y.signal};
    names.removeAll(QString());
    return names;
}

void XYPlotWidget::settingsChanged()
{
    m_points.setCapacity(m_maxPoints);
    update();
    // What the old signal last said is no value of the new one.
    const bool otherX = m_x.signal != m_xSignal.value();
    const bool otherY = m_y.signal != m_ySignal.value();
    if (otherX)
        m_x = {m_xSignal};
    if (otherY)
        m_y = {m_ySignal};
    if (otherX || otherY)
        Q_EMIT assignmentChanged();
}

void XYPlotWidget::applyConfigUI()
{
    clearData();
    WidgetWithSettings::applyConfigUI();
}

void XYPlotWidget::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    const QRect plot = plotRect();
    if (std::min(width(), height()) < kMinimumPaintedSide || !plot.isValid())
        return;
    painter.setFont(sizedFont(font(), kLabelPointSize));
    if (m_showGrid)
        drawGrid(painter, plot);
    ValueExtent xs;
    ValueExtent ys;
    for (const QPointF& point : m_points.points()) {
        xs.include(point.x());
        ys.include(point.y());
    }
    const ValueScale x = scaleOf(m_xAxis, xs);
    const ValueScale y = scaleOf(m_yAxis, ys);
    drawLimits(painter, plot, x, y);
    drawTitle(painter, plot);
    drawPoints(painter, event->rect(), ValueAxis::across(plot, x), ValueAxis::up(plot, y));
}

ValueScale XYPlotWidget::scaleOf(const Axis& axis, const ValueExtent& extent)
{
    return axis.autoScale && extent.hasFinite() ? ValueScale::raised(extent.low, extent.high)
                                                : ValueScale::raised(axis.minimum, axis.maximum);
}

void XYPlotWidget::drawGrid(QPainter& painter, const QRect& plot) const
{
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(kGridColor, 1));
    for (int i = 1; i < kGridDivisions; ++i) {
        const int x = plot.left() + plot.width() * i / kGridDivisions;
        const int y = plot.top() + plot.height() * i / kGridDivisions;
        painter.drawLine(x, plot.top(), x, plot.bottom());
        painter.drawLine(plot.left(), y, plot.right(), y);
    }
    painter.setPen(QPen(kFrameColor, 1));
    painter.setBrush(Qt::NoBrush);
    painter.drawRect(plot.adjusted(0, 0, -1, -1)); // one pixel more is drawn at the right and below
    painter.setRenderHint(QPainter::Antialiasing);
}

void XYPlotWidget::drawLimits(QPainter& painter, const QRect& plot, const ValueScale& x,
                              const ValueScale& y) const
{
    painter.setPen(Qt::black);
    const int lineHeight = painter.fontMetrics().height();
    const QRect below(plot.left(), plot.bottom() + kLabelGap, (plot.width() - kLabelGap) / 2, lineHeight);
    const NumberStyle xStyle =
        NumberStyle::fitting(painter.font(), {x.low, x.high}, kLabelDigits, below.width());
    xStyle.draw(painter, below, Qt::AlignLeft, x.low);
    xStyle.draw(painter, below.translated(plot.right() - below.right(), 0), Qt::AlignRight, x.high);

    ValueLabels beside(plot, kLabelGap);
    const int above = (lineHeight - 1) / 2; // rows of a line that is centred on the limit's own row
    beside.add(y.high, plot.top() - above, lineHeight);
    beside.add(y.low, plot.bottom() - above, lineHeight);
    beside.draw(painter);
}

void XYPlotWidget::drawPoints(QPainter& painter, const QRect& area, const ValueAxis& x,
                              const ValueAxis& y) const
{
    const int last = m_points.size() - 1;
    if (last < 0)
        return;
    const QRect plot = plotRect();
    const auto place = [&](const QPointF& point) { return QPoint(x.pixel(point.x()), y.pixel(point.y())); };
    QList<CloudDot> older(last);
    for (int i = 0; i < last; ++i)
        older[i] = {place(m_points.at(i)), 255 * i / last};
    const int reach = kOlderRadius + 1;
    const QRect visible = plot.adjusted(-reach, -reach, reach, reach) & area;
    if (!visible.isEmpty())
        drawDotCloud(painter, visible, kDotColor, kOlderRadius, older);

    painter.setPen(Qt::NoPen);
    painter.setBrush(kDotColor);
    painter.drawEllipse(place(m_points.at(last)), kNewestRadius, kNewestRadius);
}

QString XYPlotWidget::title() const
{
    QStringList names{displayNameOf(m_y.signal)};
    if (!m_x.signal.isEmpty())
        names.append(displayNameOf(m_x.signal));
    return names.join(QLatin1String(" vs ")).left(kMaxTitleCharacters);
}

void XYPlotWidget::drawTitle(QPainter& painter, const QRect& plot) const
{
    QColor background = palette().color(QPalette::Window);
    background.setAlpha(170);
    if (!m_y.signal.isEmpty()) {
        // On the upper edge, where with autoscale a point always lies: the margin alone is too low for a line
        // of text.
        const int lineHeight = painter.fontMetrics().height();
        const QPoint centre(plot.center().x(), std::max(plot.top(), lineHeight / 2));
        painter.setPen(Qt::black);
        drawCaption(painter, centre, plot.width(), title(), background);
    } else if (m_points.size() == 0) {
        painter.setPen(Qt::gray);
        drawCaption(painter, plot.center(), plot.width(), tr("No signals"), background);
    }
}
