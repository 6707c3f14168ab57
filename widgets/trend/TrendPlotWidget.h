#pragma once

#include "widgets/ITimeStampedConsumer.h"
#include "widgets/WidgetWithSettings.h"
#include "widgets/trend/TrendChannels.h"
#include "widgets/trend/TrendClock.h"
#include "widgets/trend/TrendCrosshair.h"
#include "widgets/trend/TrendIntake.h"
#include "widgets/trend/TrendLegend.h"
#include "widgets/trend/TrendMarkerPopups.h"
#include "widgets/trend/TrendMarkers.h"
#include "widgets/trend/TrendSettings.h"

#include <QColor>
#include <QTimer>

#include <utility>

struct TrendAxes;
struct TrendTrace;

// Signals against time, scrolling from now on the right to now minus the time window on the left. Live, now
// is the wall clock; in a replay it is set from outside. It keeps its own samples (TrendIntake) and draws
// what TrendTrace makes of them; the user can read values under the mouse, hide channels on the legend and
// set markers. It knows neither modes nor recordings.
class TrendPlotWidget : public WidgetWithSettings, public ITimeStampedConsumer
{
    Q_OBJECT
    Q_INTERFACES(ITimeStampedConsumer)

public:
    explicit TrendPlotWidget(QWidget* parent = nullptr);

    /// The wall clock, in milliseconds since the epoch.
    static qint64 nowMs();
    /// The right edge: the time set from outside while that is on, else the wall clock.
    qint64 currentNowMs() const;
    /// The width of the visible time span, in milliseconds; a layout may set any number.
    int timeWindowMs() const { return m_settings.timeWindowMs; }
    /// The colour of channel i: six colours, again and again. i must not be negative.
    static QColor defaultColor(int i);

    void setValue(double) override {}
    /// Stamped with currentNowMs(). A value that differs from the last by no more than 1e-9 is dropped, as is
    /// any value of a signal that is not assigned.
    void setValueForSignal(const QString& name, double value) override;
    /// tSec counts while the time is set from outside (not finite, the value is dropped); live, the stamp is
    /// the wall clock. Without sample and hold a repeated value is kept once 50 ms have passed since the last
    /// one.
    void setValueForSignalAt(const QString& name, double value, double tSec) override;
    /// A value with any stamp, for data from elsewhere than router and replay; update asks for a repaint.
    void addSample(const QString& name, double value, qint64 tMs, bool update);
    /// Drops what is older than the window, except for the newest such sample of each series.
    void pruneOld();
    /// Drops all that is older than the window that ends at nowMs; at most once per 30 ms.
    void pruneOld(qint64 nowMs);
    /// Drops what is newer than endMs and what is older than the window before it (but for one sample).
    void trimToWindowEndingAt(qint64 endMs);
    /// Until endBulkLoad(), values with a time of their own do not repaint.
    void beginBulkLoad();
    void endBulkLoad();
    /// Drops all samples; markers and settings stay.
    void clearData() override;
    void setExternalTimeEnabled(bool on);
    /// Kept within ±kMaxTimeMs. Does not repaint.
    void setExternalNowMs(qint64 t);
    /// The stored samples of a series; null when there are none. Valid until the next value or clearData().
    const TrendSeries* series(const QString& key) const { return m_intake.store().find(key); }
    /// The value stored nearest to a time; NaN when there is none. The key is that of the series.
    double valueAtTime(const QString& key, qint64 tMs) const;

    /// What the crosshair says at a time: its age at nowMs in seconds, then the value of every channel that
    /// has one.
    QStringList readingsAt(qint64 tMs, qint64 nowMs) const;

    QList<Marker> markers() const { return m_markers.list(); }
    void clearAllMarkers();
    void clearScreenMarkers() { clearMarkers(Marker::Kind::Screen); }
    void clearDataMarkers() { clearMarkers(Marker::Kind::Data); }
    void clearMarkers(Marker::Kind kind);
    /// Opens the editor for a marker's label near a place on the screen; nothing for an index that no marker
    /// has.
    void promptLabelForMarker(int index, const QPoint& globalPos);

    QRect plotRect() const;
    /// The values at the lower and the upper edge, where t0 is the left one.
    std::pair<double, double> currentYRange(qint64 t0) const;

    /// Draws the traces of the shown channels into a plot with these limits, where t0 is the left edge: as
    /// straight lines from sample to sample, as steps, or (chosen by nothing at present) as one vertical line
    /// per column from its smallest to its largest value. Nothing when max is not above min.
    void drawSeries(QPainter& painter, const QRect& plot, double min, double max, qint64 t0) const;
    void drawSeriesSteps(QPainter& painter, const QRect& plot, double min, double max, qint64 t0) const;
    void drawSeriesDownsampled(QPainter& painter, const QRect& plot, double min, double max, qint64 t0) const;

    QString typeName() const override;
    bool supportsMultipleSignals() const override;
    void loadConfig(const QJsonObject& config) override;
    QJsonObject saveConfig() const override;
    void buildConfigUI(QFormLayout* form, QWidget* parent) override;

public Q_SLOTS:
    /// Keeps a silent plot scrolling.
    void idleTick();

protected:
    void settingsChanged() override;
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;

private:
    void followAssignment();

    using MakeTrace = TrendTrace (*)(const TrendSeries&, const TrendAxes&);
    void drawTraces(QPainter& painter, const TrendAxes& axes, double penWidth, MakeTrace makeTrace) const;
    void drawCrosshair(QPainter& painter, const QRect& plot, qint64 t0, qint64 t1) const;
    void drawLegend(QPainter& painter, const QRect& plot);

    TrendGeometry::Frame frame() const;
    bool toggleChannelAt(const QPoint& pos);
    int addMarkerAt(int x);

    TrendClock m_clock;
    TrendIntake m_intake;
    TrendChannels m_channels;
    TrendMarkers m_markers;
    TrendMarkerPopups m_markerPopups{m_markers, *this};
    TrendLegend m_legend;
    TrendCrosshair m_crosshair;
    QTimer m_idleTimer;

    TrendSettings m_settings{settings()};

    bool m_bulkLoading = false;
};
