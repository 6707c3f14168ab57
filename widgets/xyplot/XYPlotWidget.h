#pragma once

#include "widgets/DashboardWidget.h"
#include "widgets/ITimeStampedConsumer.h"
#include "widgets/xyplot/XYPointRing.h"

#include <QPointer>

#include <limits>

class QCheckBox;
class QComboBox;
class QDoubleSpinBox;
class QPainter;
class QSpinBox;
class ValueAxis;
struct ValueExtent;
struct ValueScale;

// One signal against another: each point pairs their newest values, at most one point per 20 ms, and the
// trail of the newest points fades with age. The router feeds it. It has no timer and keeps no history
// beyond its ring; points are never saved.
class XYPlotWidget : public DashboardWidget, public ITimeStampedConsumer
{
    Q_OBJECT
    Q_INTERFACES(ITimeStampedConsumer)

public:
    explicit XYPlotWidget(QWidget* parent = nullptr);

    const XYPointRing& points() const { return m_points; }

    /// As the newest point, without pairing; an infinite coordinate is drawn at the edge.
    void pushPoint(const QPointF& point);
    /// Forgets the points; the newest values still form the next pair.
    void clearData();
    /// Where the points are drawn; not valid when the widget is too small for it.
    QRect plotRect() const;

    void setValue(double) override {}
    /// As below, at the present time.
    void setValueForSignal(const QString& name, double value) override;
    /// The newest value of the X or the Y signal; other names are ignored. NaN breaks off the pairing until
    /// the signal's next number.
    void setValueForSignalAt(const QString& name, double value, double tSec) override;
    QString typeName() const override;
    bool usesSignalSelection() const override;
    /// The X and the Y signal, as far as they are set.
    QList<QString> assignedSignalList() const override;
    void loadConfig(const QJsonObject& config) override;
    QJsonObject saveConfig() const override;
    void buildConfigUI(QFormLayout* form, QWidget* parent) override;
    /// Clears the data, too.
    void applyConfigUI() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

    /// The settings of one axis, what came for it, and its editors.
    struct Axis
    {
        QString signal;
        bool autoScale = true;
        double minimum = -1.0;
        double maximum = 1.0;
        double lastValue = kNone; ///< NaN until the signal has delivered
        QPointer<QComboBox> signalEditor;
        QPointer<QCheckBox> autoScaleEditor;
        QPointer<QDoubleSpinBox> minimumEditor;
        QPointer<QDoubleSpinBox> maximumEditor;
    };

    void appendPointIfReady(qint64 tMs);
    void setSignals(const QString& x, const QString& y);
    void addRangeEditors(Axis& axis, const QString& name, QFormLayout* form, QWidget* parent);
    static ValueScale scaleOf(const Axis& axis, const ValueExtent& extent);
    QString title() const;
    void drawGrid(QPainter& painter, const QRect& plot) const;
    void drawLimits(QPainter& painter, const QRect& plot, const ValueScale& x, const ValueScale& y) const;
    void drawPoints(QPainter& painter, const QRect& area, const ValueAxis& x, const ValueAxis& y) const;
    void drawTitle(QPainter& painter, const QRect& plot) const;

    Axis m_x;
    Axis m_y;
    bool m_drawLines = false; ///< travels with the layout only
    bool m_showGrid = true;
    XYPointRing m_points;
    qint64 m_lastBucketMs = -1;
    QPointer<QSpinBox> m_capacityEditor;
    QPointer<QCheckBox> m_drawLinesEditor;
    QPointer<QCheckBox> m_showGridEditor;
};
