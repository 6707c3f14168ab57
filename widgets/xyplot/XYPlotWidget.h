#pragma once

#include "widgets/ITimeStampedConsumer.h"
#include "widgets/WidgetWithSettings.h"
#include "widgets/settings/BoolSetting.h"
#include "widgets/settings/DoubleSetting.h"
#include "widgets/settings/IntSetting.h"
#include "widgets/xyplot/XYPointRing.h"
#include "widgets/xyplot/XYSignalSetting.h"

#include <QCoreApplication>

#include <limits>

class QPainter;
class ValueAxis;
struct ValueExtent;
struct ValueScale;

// One signal against another: each point pairs their newest values, at most one point per 20 ms, and the
// trail of the newest points fades with age. The router feeds it. It has no timer and keeps no history
// beyond its ring; points are never saved.
class XYPlotWidget : public WidgetWithSettings, public ITimeStampedConsumer
{
    Q_OBJECT
    Q_INTERFACES(ITimeStampedConsumer)

public:
    explicit XYPlotWidget(QWidget* parent = nullptr);

    const XYPointRing& points() const { return m_points; }

    /// As the newest point, without pairing; an infinite coordinate is drawn at the edge.
    void pushPoint(const QPointF& point);
    /// Forgets the points; the newest values still form the next pair.
    void clearData() override;
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
    /// Clears the data, too.
    void applyConfigUI() override;

protected:
    void settingsChanged() override;
    void paintEvent(QPaintEvent* event) override;

private:
    static constexpr double kNone = std::numeric_limits<double>::quiet_NaN();

    /// The settings of one axis.
    struct Axis
    {
        Q_DECLARE_TR_FUNCTIONS(XYPlotWidget)

    public:
        Axis(WidgetSettings& all, const QString& name, const char* autoScaleKey, const char* minimumKey,
             const char* maximumKey);

        BoolSetting autoScale;
        DoubleSetting minimum;
        DoubleSetting maximum;
    };
    /// A signal that is plotted, and what it said last.
    struct Latest
    {
        QString signal;
        double value = kNone; ///< NaN until the signal has delivered
    };

    void appendPointIfReady(qint64 tMs);
    static ValueScale scaleOf(const Axis& axis, const ValueExtent& extent);
    QString title() const;
    void drawGrid(QPainter& painter, const QRect& plot) const;
    void drawLimits(QPainter& painter, const QRect& plot, const ValueScale& x, const ValueScale& y) const;
    void drawPoints(QPainter& painter, const QRect& area, const ValueAxis& x, const ValueAxis& y) const;
    void drawTitle(QPainter& painter, const QRect& plot) const;

    XYSignalSetting m_xSignal{
        settings(), "xSignal", {tr("X Signal:"), tr("The signal that goes to the right")}};
    XYSignalSetting m_ySignal{settings(), "ySignal", {tr("Y Signal:"), tr("The signal that goes upwards")}};
    Axis m_xAxis{settings(), QStringLiteral("X"), "autoScaleX", "xMin", "xMax"};
    Axis m_yAxis{settings(), QStringLiteral("Y"), "autoScaleY", "yMin", "yMax"};
    IntSetting m_maxPoints{
        settings(),
        "maxPoints",
        XYPointRing::kInitialCapacity,
        {tr("Max points:"), tr("How many of the newest points are shown"), 1, XYPointRing::kMaxCapacity},
        {.least = 0, .most = XYPointRing::kMaxCapacity}};
    BoolSetting m_drawLines{settings(),
                            "drawLines",
                            false,
                            {tr("Connect points"), tr("Kept with the layout; points are drawn as dots")}};
    BoolSetting m_showGrid{
        settings(), "showGrid", true, {tr("Show grid"), tr("Draw the frame and the grid lines")}};
    Latest m_x;
    Latest m_y;
    XYPointRing m_points;
    qint64 m_lastBucketMs = -1;
};
