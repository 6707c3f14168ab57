#include "widgets/trend/TrendPlotWidget.h"

#include "definitions/numbers/FileNumbers.h"
#include "widgets/DisplayName.h"
#include "widgets/drawing/SizedFont.h"
#include "widgets/trend/TrendAxesPainter.h"
#include "widgets/trend/TrendMarkerLayout.h"
#include "widgets/trend/TrendTrace.h"

#include <QGuiApplication>
#include <QJsonObject>
#include <QMouseEvent>
#include <QPainter>

#include <cmath>

namespace {

constexpr QSize kMinimumSize(220, 140);
constexpr int kLabelPointSize = 9;

constexpr int kTickIntervalMs = 100;

constexpr QLatin1String kMarkersKey("markers");

} // namespace

TrendPlotWidget::TrendPlotWidget(QWidget* parent)
    : WidgetWithSettings(parent)
    , m_intake(m_clock)
{
    setMinimumSize(kMinimumSize);
    setMouseTracking(true);
    setToolTip(tr("Alt+Left in plot: add marker\nAlt+Shift+Left in plot: add labeled marker\n"
                  "Alt+Left on legend: hide/show channel"));
    connect(this, &DashboardWidget::assignmentChanged, this, &TrendPlotWidget::followAssignment);
    connect(&m_markerPopups, &TrendMarkerPopups::markersChanged, this, qOverload<>(&QWidget::update));
    TrendPlotWidget::settingsChanged();
    m_idleTimer.setInterval(kTickIntervalMs);
    m_idleTimer.setTimerType(Qt::PreciseTimer);
    connect(&m_idleTimer, &QTimer::timeout, this, &TrendPlotWidget::idleTick);
    m_idleTimer.start();
}

// --- Time and samples --------------------------------------------------------------------------------------

qint64 TrendPlotWidget::nowMs() { return TrendClock::wallMs(); }

qint64 TrendPlotWidget::currentNowMs() const { return m_clock.nowMs(); }

void TrendPlotWidget::followAssignment()
{
    m_intake.setAssignment(assignedSignalList());
    m_channels.setAssignment(assignedSignalList());
}

void TrendPlotWidget::setValueForSignal(const QString& name, double value)
{
    if (m_intake.add(name, value))
        updateForValue();
}

void TrendPlotWidget::setValueForSignalAt(const QString& name, double value, double tSec)
{
    if (m_intake.addTimed(name, value, tSec) && !m_bulkLoading)
        updateForValue();
}

void TrendPlotWidget::addSample(const QString& name, double value, qint64 tMs, bool update)
{
    qDebug("TrendPlotWidget::addSample time: %lld", static_cast<long long>(tMs));
    if (m_intake.addStamped(name, value, tMs) && update && !m_bulkLoading)
        this->update();
}

void TrendPlotWidget::pruneOld() { m_intake.prune(); }

void TrendPlotWidget::pruneOld(qint64 nowMs) { m_intake.pruneAll(nowMs); }

void TrendPlotWidget::trimToWindowEndingAt(qint64 endMs)
{
    m_intake.trim(endMs);
    updateForValue();
}

void TrendPlotWidget::beginBulkLoad() { m_bulkLoading = true; }

void TrendPlotWidget::endBulkLoad()
{
    m_bulkLoading = false;
    update();
}

void TrendPlotWidget::clearData()
{
    m_intake.clear();
    update();
}

void TrendPlotWidget::setExternalTimeEnabled(bool on)
{
    if (!m_clock.setExternal(on))
        return; // a replay says so with every frame
    on ? m_idleTimer.stop() : m_idleTimer.start();
    update();
}

void TrendPlotWidget::setExternalNowMs(qint64 t) { m_clock.setExternalNowMs(t); }

double TrendPlotWidget::valueAtTime(const QString& key, qint64 tMs) const
{
    return m_intake.store().valueNear(key, boundedTimeMs(tMs));
}

void TrendPlotWidget::idleTick()
{
    if (!m_clock.isSilentSince(m_intake.lastAppendMs()))
        return;
    pruneOld();
    update();
}

void TrendPlotWidget::showEvent(QShowEvent* event)
{
    WidgetWithSettings::showEvent(event);
    if (!m_clock.isExternal() && !m_idleTimer.isActive())
        m_idleTimer.start();
}

void TrendPlotWidget::hideEvent(QHideEvent* event)
{
    m_idleTimer.stop();
    WidgetWithSettings::hideEvent(event);
}

// --- Markers and mouse -------------------------------------------------------------------------------------

void TrendPlotWidget::clearAllMarkers()
{
    m_markers.clear();
    update();
}

void TrendPlotWidget::clearMarkers(Marker::Kind kind)
{
    m_markers.clear(kind);
    update();
}

void TrendPlotWidget::mousePressEvent(QMouseEvent* event)
{
    const Qt::KeyboardModifiers modifiers = QGuiApplication::keyboardModifiers();
    const QPoint pos = event->position().toPoint();
    const QPoint globalPos = event->globalPosition().toPoint();
    event->ignore();
    if (!modifiers.testFlag(Qt::AltModifier))
        return;
    if (event->button() == Qt::RightButton) {
        m_markerPopups.openMenuAfterPress(globalPos);
        event->accept();
    } else if (event->button() == Qt::LeftButton && toggleChannelAt(pos)) {
        event->accept();
    } else if (event->button() == Qt::LeftButton && plotRect().contains(pos)) {
        const int index = addMarkerAt(pos.x());
        if (modifiers.testFlag(Qt::ShiftModifier))
            m_markerPopups.editLabelAfterPress(index, globalPos);
        event->accept();
    }
}

bool TrendPlotWidget::toggleChannelAt(const QPoint& pos)
{
    const std::optional<QString> key = m_legend.channelAt(pos);
    if (!key)
        return false;
    m_channels.toggle(*key);
    update();
    return true;
}

int TrendPlotWidget::addMarkerAt(int x)
{
    const qint64 now = currentNowMs();
    const Marker::Kind kind = m_clock.isExternal() ? Marker::Kind::Data : Marker::Kind::Screen;
    update();
    return m_markers.add(kind, x, plotRect(), now - m_settings.timeWindowMs, now);
}

void TrendPlotWidget::promptLabelForMarker(int index, const QPoint& globalPos)
{
    m_markerPopups.editLabel(index, globalPos);
}

void TrendPlotWidget::mouseMoveEvent(QMouseEvent* event)
{
    m_crosshair.moveTo(event->position().toPoint());
    update();
}

void TrendPlotWidget::enterEvent(QEnterEvent*)
{
    m_crosshair.setInside(true);
    update();
}

void TrendPlotWidget::leaveEvent(QEvent*)
{
    m_crosshair.setInside(false);
    update();
}

// --- Painting ----------------------------------------------------------------------------------------------

QColor TrendPlotWidget::defaultColor(int i) { return TrendChannels::defaultColor(i); }

QRect TrendPlotWidget::plotRect() const { return TrendGeometry::plotRect(size(), frame()); }

TrendGeometry::Frame TrendPlotWidget::frame() const
{
    return TrendGeometry::bounded(m_settings.frameAsSet());
}

std::pair<double, double> TrendPlotWidget::currentYRange(qint64 t0) const
{
    if (!m_settings.autoscale)
        return {m_settings.yMin, m_settings.yMax};
    ValueExtent extent;
    const QList<TrendChannels::Filled> shown = m_channels.shown(m_intake.store());
    for (const auto& [channel, series] : shown)
        extent.include(series->extent(series->indexAtOrAfter(t0), series->size()));
    return extent.hasFinite() ? TrendGeometry::paddedRange(extent.low, extent.high) : std::pair(-1.0, 1.0);
}

void TrendPlotWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    m_legend.clear();
    if (m_channels.list().isEmpty()) {
        painter.setPen(Qt::gray);
        painter.drawText(rect(), Qt::AlignCenter, tr("No signals"));
        return;
    }
    const QRect plot = plotRect();
    if (plot.isEmpty())
        return;
    const qint64 now = currentNowMs();
    const qint64 t0 = now - m_settings.timeWindowMs;
    const auto [min, max] = currentYRange(t0);
    painter.setFont(sizedFont(font(), kLabelPointSize));

    // Straight lines are smeared over two rows of pixels by antialiasing.
    painter.setPen(QColor(200, 200, 200));
    painter.drawLine(plot.topLeft(), plot.topRight());
    const TrendMarkerLayout markers(m_markers.list(), plot, t0, now, painter.fontMetrics());
    TrendAxesPainter axes(painter, plot, m_settings.gridLines);
    if (m_settings.showGrid)
        axes.drawGrid();
    axes.drawAxesAndZero(min, max, m_settings.timeWindowMs, markers.timeBoxes());
    painter.setRenderHint(QPainter::Antialiasing);
    if (m_settings.sampleAndHold)
        drawSeriesSteps(painter, plot, min, max, t0);
    else
        drawSeries(painter, plot, min, max, t0);
    markers.paint(painter, frame().margin + 2);
    drawLegend(painter, plot);
    drawCrosshair(painter, plot, t0, now); // last, as its readings may stand on the legend
}

void TrendPlotWidget::drawTraces(QPainter& painter, const TrendAxes& axes, double penWidth,
                                 MakeTrace makeTrace) const
{
    if (!axes.values.isUsable())
        return;
    const QList<TrendChannels::Filled> shown = m_channels.shown(m_intake.store());
    for (const auto& [channel, series] : shown)
        makeTrace(*series, axes).paint(painter, channel.color, penWidth);
}

void TrendPlotWidget::drawSeries(QPainter& painter, const QRect& plot, double min, double max,
                                 qint64 t0) const
{
    drawTraces(painter, {plot, t0, m_settings.timeWindowMs, {min, max}}, TrendTrace::kPenWidth,
               TrendTrace::segments);
}

void TrendPlotWidget::drawSeriesSteps(QPainter& painter, const QRect& plot, double min, double max,
                                      qint64 t0) const
{
    drawTraces(painter, {plot, t0, m_settings.timeWindowMs, {min, max}}, TrendTrace::kPenWidth,
               TrendTrace::steps);
}

void TrendPlotWidget::drawSeriesDownsampled(QPainter& painter, const QRect& plot, double min, double max,
                                            qint64 t0) const
{
    qDebug("Downsampled");
    drawTraces(painter, {plot, t0, m_settings.timeWindowMs, {min, max}}, 1.0, TrendTrace::columns);
}

QStringList TrendPlotWidget::readingsAt(qint64 tMs, qint64 nowMs) const
{
    QStringList readings{QStringLiteral("t = %1 s").arg((double(nowMs) - double(tMs)) / 1000.0, 0, 'f', 3)};
    for (const TrendChannels::Channel& channel : m_channels.list()) {
        const double value = valueAtTime(channel.key, tMs);
        if (!std::isnan(value))
            readings.append(channel.key + QLatin1String(": ") + QString::number(value, 'g', 6));
    }
    return readings;
}

void TrendPlotWidget::drawCrosshair(QPainter& painter, const QRect& plot, qint64 t0, qint64 t1) const
{
    const std::optional<int> x = m_crosshair.column(plot);
    if (x)
        TrendCrosshair::paint(painter, plot, *x, readingsAt(TrendGeometry::timeForX(plot, t0, t1, *x), t1));
}

void TrendPlotWidget::drawLegend(QPainter& painter, const QRect& plot)
{
    QList<TrendLegend::Row> rows;
    const QList<TrendChannels::Filled> filled = m_channels.filled(m_intake.store());
    for (const auto& [channel, series] : filled)
        rows.append({channel.key, displayNameOf(channel.key), channel.color, channel.isHidden});
    m_legend.paint(painter, plot, height(), rows, palette().color(QPalette::Window));
}

// --- Configuration -----------------------------------------------------------------------------------------

QString TrendPlotWidget::typeName() const { return QStringLiteral("TrendPlot"); }

bool TrendPlotWidget::supportsMultipleSignals() const { return true; }

void TrendPlotWidget::loadConfig(const QJsonObject& config)
{
    if (config.contains(kMarkersKey))
        m_markers = TrendMarkers::fromJson(config.value(kMarkersKey).toArray());
    WidgetWithSettings::loadConfig(config);
}

QJsonObject TrendPlotWidget::saveConfig() const
{
    QJsonObject config = WidgetWithSettings::saveConfig();
    config.insert(kMarkersKey, m_markers.toJson());
    return config;
}

void TrendPlotWidget::buildConfigUI(QFormLayout* form, QWidget* parent)
{
    WidgetWithSettings::buildConfigUI(form, parent);
    for (QWidget* limit : {m_settings.yMin.editor(), m_settings.yMax.editor()}) {
        limit->setDisabled(m_settings.autoscale);
        connect(m_settings.autoscale.editor(), &QCheckBox::toggled, limit, &QWidget::setDisabled);
    }
}

void TrendPlotWidget::settingsChanged()
{
    update();
    m_intake.setRules({m_settings.timeWindowMs, m_settings.sampleAndHold});
}
