#include "support/Canvas.h"
#include "widgets/DashboardWidget.h"

#include <QElapsedTimer>

// A gauge on a canvas on screen; counts the viewport's paint events and notes which value each one found.
struct Watched : QObject, Canvas
{
    DashboardItem* item = add("AnalogGauge", QRectF(0, 0, 200, 200));
    int paints = 0;
    int values = 0;
    int painted = -1;

    Watched() { view.viewport()->installEventFilter(this); }
    void tellNext()
    {
        item->widget()->setValue(values++ % 100);
        QCoreApplication::processEvents();
    }
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint) {
            ++paints;
            painted = values;
        }
        return false;
    }
};

class TestDashboardView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void repaintsAtMostOncePerFrameAndAfterTheLastValue()
    {
        Watched canvas;
        QVERIFY(QTest::qWaitForWindowExposed(&canvas.view));
        QCoreApplication::processEvents();
        canvas.paints = 0;
        QElapsedTimer clock;
        clock.start();
        while (clock.elapsed() < 500)
            canvas.tellNext();
        const int frames = int(clock.elapsed() / 16) + 1;
        QVERIFY2(canvas.values > 10 * frames, "too slow a machine to tell");
        QVERIFY2(canvas.paints <= frames, qPrintable(QString::number(canvas.paints)));
        QTRY_COMPARE(canvas.painted, canvas.values); // the last one is not forgotten
    }
};

QTEST_MAIN(TestDashboardView)
#include "tst_dashboardview.moc"
