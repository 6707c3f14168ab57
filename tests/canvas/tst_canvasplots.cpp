#include "canvas/CanvasPlots.h"
#include "support/Canvas.h"
#include "widgets/trend/TrendPlotWidget.h"
#include "widgets/xyplot/XYPlotWidget.h"

#include <cmath>

using namespace Qt::StringLiterals;

// A plot of each kind, and a third one inside an item; all have data.
struct Plots : Canvas
{
    Plots()
    {
        nestedItem->setParentItem(add("Line", QRectF(300, 0, 200, 200)));
        trend->assignSignals({u"A"_s});
        trend->setValueForSignal(u"A"_s, 1.0);
        xy->pushPoint({1, 2});
        nested->pushPoint({1, 2});
    }
    bool isTrendEmpty() const { return std::isnan(trend->valueAtTime(u"A"_s, 0)); }

    TrendPlotWidget* trend = qobject_cast<TrendPlotWidget*>(add("TrendPlot", {0, 0, 250, 250})->widget());
    XYPlotWidget* xy = qobject_cast<XYPlotWidget*>(add("XYPlot", {0, 300, 250, 250})->widget());
    DashboardItem* nestedItem = add("XYPlot", {10, 10, 150, 150});
    XYPlotWidget* nested = qobject_cast<XYPlotWidget*>(nestedItem->widget());
};

using Emptying = void (*)(const DesignScene&);

class TestCanvasPlots : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emptiesPlots_data()
    {
        QTest::addColumn<Emptying>("empty");
        QTest::addColumn<int>("leftInNested");
        QTest::newRow("clear: nested ones too") << Emptying(CanvasPlots::clear) << 0;
        QTest::newRow("reset: the top level only") << Emptying(CanvasPlots::reset) << 1;
    }
    void emptiesPlots()
    {
        QFETCH(Emptying, empty);
        const Plots canvas;
        empty(canvas.scene);
        QVERIFY(canvas.isTrendEmpty());
        QCOMPARE(canvas.xy->points().size(), 0);
        QTEST(canvas.nested->points().size(), "leftInNested");
    }

    void resetWarnsOfWhatIsNotOurs()
    {
        Canvas canvas;
        canvas.scene.addRect(0, 0, 10, 10);
        QTest::ignoreMessage(QtWarningMsg, "No DashboardItem");
        CanvasPlots::reset(canvas.scene);
    }
};

QTEST_MAIN(TestCanvasPlots)
#include "tst_canvasplots.moc"
