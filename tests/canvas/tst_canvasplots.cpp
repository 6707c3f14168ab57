#include "canvas/CanvasPlots.h"
#include "support/Canvas.h"
#include "widgets/xyplot/XYPlotWidget.h"

// A plot, and another one inside an item; both have data.
struct Plots : Canvas
{
    Plots()
    {
        nestedItem->setParentItem(add("Line", QRectF(300, 0, 200, 200)));
        plot->pushPoint({1, 2});
        nested->pushPoint({1, 2});
    }

    XYPlotWidget* plot = qobject_cast<XYPlotWidget*>(add("XYPlot", {0, 300, 250, 250})->widget());
    DashboardItem* nestedItem = add("XYPlot", {10, 10, 150, 150});
    XYPlotWidget* nested = qobject_cast<XYPlotWidget*>(nestedItem->widget());
};

class TestCanvasPlots : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void clearEmptiesNestedOnesToo()
    {
        const Plots canvas;
        CanvasPlots::clear(canvas.scene);
        QCOMPARE(canvas.nested->points().size(), 0);
    }

    void resetEmptiesTheTopLevelOnly()
    {
        const Plots canvas;
        CanvasPlots::reset(canvas.scene);
        QCOMPARE(canvas.plot->points().size(), 0);
        QCOMPARE(canvas.nested->points().size(), 1);
    }
};

QTEST_MAIN(TestCanvasPlots)
#include "tst_canvasplots.moc"
