#include "widgets/xyplot/XYPlotWidget.h"

#include "definitions/DashboardSignalParser.h"
#include "definitions/numbers/FileNumbers.h"
#include "definitions/numbers/SignalName.h"
#include "widgets/ConfigEditors.h"
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
constexpr int kChoiceCharacters = 24;
constexpr double kEditorLimit = 1'000'000'000.0;
constexpr int kEditorDecimals = 3;
constexpr QColor kDotColor(40, 140, 160);
constexpr QColor kFrameColor(160, 160, 160);
constexpr QColor kGridColor(210, 210, 210);

constexpr QLatin1String kXSignalKey("xSignal");
constexpr QLatin1String kYSignalKey("ySignal");
constexpr QLatin1String kAutoScaleXKey("autoScaleX");
constexpr QLatin1String kAutoScaleYKey("autoScaleY");
constexpr QLatin1String kXMinKey("xMin");
constexpr QLatin1String kXMaxKey("xMax");
constexpr QLatin1String kYMinKey("yMin");
constexpr QLatin1String kYMaxKey("yMax");
constexpr QLatin1String kMaxPointsKey("maxPoints");
constexpr QLatin1String kDrawLinesKey("drawLines");
constexpr QLatin1String kShowGridKey("showGrid");

/// Whether a delivered name means the signal. Most names do not, and that is cheap to find out.
bool means(const QString& name, const QString& signal)
{
    return name == signal || (name.contains(signal) && canonical(name) == signal);
}

/// A row for one of the project's signals. A name that the catalogue lacks is offered too, so that OK does
/// not put another signal in its place.
QComboBox* addSignalChoice(QFormLayout* form, const QString& label, const QString& current,
                           const QString& toolTip, QWidget* parent)
{
    QStringList signalNames{current};
    const QList<DashboardSignal> all = gSignalParser ? gSignalParser->signalList() : QList<DashboardSignal>();
    for (const DashboardSignal& each : all)
        signalNames.append(each.enumName);
    signalNames.removeDuplicates();
    signalNames.sort(Qt::CaseSensitive);
    QComboBox* choice = addEditor(form, label, newChoice(signalNames, current, parent), toolTip);
    // A name of any length must not widen the dialog beyond the screen.
    choice->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    choice->setMinimumContentsLength(kChoiceCharacters);
    return choice;
}

// What an editor says, or what was before when the dialog and its editors are gone.

void takeOver(const QComboBox* editor, QString& text)
{
    if (editor)
        text = editor->currentText();
}

void takeOver(const QCheckBox* editor, bool& on)
{
    if (editor)
        on = editor->isChecked();
}

void takeOver(const QDoubleSpinBox* editor, double& value)
{
    if (editor)
        value = editedValue(editor, value);
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

XYPlotWidget::XYPlotWidget(QWidget* parent)
    : DashboardWidget(parent)
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
        m_x.lastValue = value;
    else if (means(name, m_y.signal))
        m_y.lastValue = value;
    else
        return;
    appendPointIfReady(wholeMs(tSec * 1000.0));
}

void XYPlotWidget::appendPointIfReady(qint64 tMs)
{
    if (std::isnan(m_x.lastValue) || std::isnan(m_y.lastValue))
        return;
    const qint64 bucketMs = tMs / kBucketMs * kBucketMs;
    if (bucketMs == m_lastBucketMs)
        return;
    pushPoint(QPointF(m_x.lastValue, m_y.lastValue));
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

void XYPlotWidget::setSignals(const QString& x, const QString& y)
{
    if (x == m_x.signal && y == m_y.signal)
        return;
    // What the old signal last said is no value of the new one.
    if (x != m_x.signal)
        m_x.lastValue = kNone;
    if (y != m_y.signal)
        m_y.lastValue = kNone;
    m_x.signal = x;
    m_y.signal = y;
    Q_EMIT assignmentChanged();
}

void XYPlotWidget::loadConfig(const QJsonObject& config)
{
    m_x.autoScale = config.value(kAutoScaleXKey).toBool(m_x.autoScale);
    m_y.autoScale = config.value(kAutoScaleYKey).toBool(m_y.autoScale);
    m_x.minimum = config.value(kXMinKey).toDouble(m_x.minimum);
    m_x.maximum = config.value(kXMaxKey).toDouble(m_x.maximum);
    m_y.minimum = config.value(kYMinKey).toDouble(m_y.minimum);
    m_y.maximum = config.value(kYMaxKey).toDouble(m_y.maximum);
    m_points.setCapacity(
        jsonInt(config.value(kMaxPointsKey), 0, XYPointRing::kMaxCapacity, m_points.capacity()));
    m_drawLines = config.value(kDrawLinesKey).toBool(m_drawLines);
    m_showGrid = config.value(kShowGridKey).toBool(m_showGrid);
    update();
    setSignals(config.value(kXSignalKey).toString(m_x.signal),
               config.value(kYSignalKey).toString(m_y.signal));
}

QJsonObject XYPlotWidget::saveConfig() const
{
    return {{kXSignalKey, m_x.signal},       {kYSignalKey, m_y.signal}, {kAutoScaleXKey, m_x.autoScale},
            {kAutoScaleYKey, m_y.autoScale}, {kXMinKey, m_x.minimum},   {kXMaxKey, m_x.maximum},
            {kYMinKey, m_y.minimum},         {kYMaxKey, m_y.maximum},   {kMaxPointsKey, m_points.capacity()},
            {kDrawLinesKey, m_drawLines},    {kShowGridKey, m_showGrid}};
}

void XYPlotWidget::buildConfigUI(QFormLayout* form, QWidget* parent)
{
    m_x.signalEditor =
        addSignalChoice(form, tr("X Signal:"), m_x.signal, tr("The signal that goes to the right"), parent);
    m_y.signalEditor =
        addSignalChoice(form, tr("Y Signal:"), m_y.signal, tr("The signal that goes upwards"), parent);
    addRangeEditors(m_x, QStringLiteral("X"), form, parent);
    addRangeEditors(m_y, QStringLiteral("Y"), form, parent);
    m_capacityEditor = addEditor(form, tr("Max points:"),
                                 newIntEditor(m_points.capacity(), 1, XYPointRing::kMaxCapacity, parent),
                                 tr("How many of the newest points are shown"));
    m_drawLinesEditor = addCheckBox(form, tr("Connect points"), m_drawLines,
                                    tr("Kept with the layout; points are drawn as dots"), parent);
    m_showGridEditor =
        addCheckBox(form, tr("Show grid"), m_showGrid, tr("Draw the frame and the grid lines"), parent);
}

void XYPlotWidget::addRangeEditors(Axis& axis, const QString& name, QFormLayout* form, QWidget* parent)
{
    axis.autoScaleEditor = addCheckBox(form, tr("Auto-scale %1").arg(name), axis.autoScale,
                                       tr("Fit the axis to the points instead of the limits below"), parent);
    axis.minimumEditor = addEditor(form, tr("%1 Min:").arg(name),
                                   newDoubleEditor(axis.minimum, kEditorLimit, kEditorDecimals, parent),
                                   tr("The lower limit, without auto-scale"));
    axis.maximumEditor = addEditor(form, tr("%1 Max:").arg(name),
                                   newDoubleEditor(axis.maximum, kEditorLimit, kEditorDecimals, parent),
                                   tr("The upper limit, without auto-scale"));
}

void XYPlotWidget::applyConfigUI()
{
    for (Axis* axis : {&m_x, &m_y}) {
        takeOver(axis->autoScaleEditor, axis->autoScale);
        takeOver(axis->minimumEditor, axis->minimum);
        takeOver(axis->maximumEditor, axis->maximum);
    }
    if (m_capacityEditor)
        m_points.setCapacity(editedValue(m_capacityEditor, m_points.capacity()));
    takeOver(m_drawLinesEditor, m_drawLines);
    takeOver(m_showGridEditor, m_showGrid);
    clearData();
    QString x = m_x.signal;
    QString y = m_y.signal;
    takeOver(m_x.signalEditor, x);
    takeOver(m_y.signalEditor, y);
    setSignals(x, y);
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
    const ValueScale x = scaleOf(m_x, xs);
    const ValueScale y = scaleOf(m_y, ys);
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
