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
        while (clock.elapsed() < 500) {
            canvas.item->widget()->setValue(canvas.values++ % 100);
            QCoreApplication::processEvents();
        }
        const int frames = int(clock.elapsed() / 16) + 1;
        QVERIFY2(canvas.values > 10 * frames, "too slow a machine to tell");
        QVERIFY2(canvas.paints > 1 && canvas.paints <= frames, qPrintable(QString::number(canvas.paints)));
        QTRY_COMPARE(canvas.painted, canvas.values);
    }

    void gridIsCrispAndOfDesignModeOnly()
    {
        Canvas canvas;
        const auto pixel = [&canvas](int x, int y) {
            return canvas.view.viewport()->grab().toImage().pixelColor(x, y);
        };
        QCOMPARE(pixel(20, 5), QApplication::palette().color(QPalette::Window));
        canvas.setDesignMode(true);
        QCOMPARE(pixel(20, 5), QColor(220, 220, 220));
        QCOMPARE(pixel(5, 30), QColor(220, 220, 220));
        QVERIFY(pixel(19, 5) == Qt::white && pixel(21, 5) == Qt::white && pixel(5, 31) == Qt::white);
    }

    void lostItemsCanBeBroughtBack()
    {
        Canvas canvas;
        QTRY_COMPARE(canvas.scene.sceneRect().size(), QSizeF(canvas.view.viewport()->size()));
        const DashboardItem* far = canvas.add("DigitalDisplay", QRectF(1e6, -1e6, 200, 100));
        const DashboardItem* huge = canvas.add("AnalogGauge", QRectF(-50'000, 0, 16'000, 16'000));
        const DashboardItem* partly = canvas.add("DigitalDisplay", QRectF(-150, 50, 200, 100));
        canvas.scene.bringOutlyingItemsIntoView();
        QCOMPARE(far->pos(), QPointF(600, 0));
        QCOMPARE(huge->pos(), QPointF(0, 0));
        QCOMPARE(partly->pos(), QPointF(-150, 50));
    }
};

QTEST_MAIN(TestDashboardView)
#include "tst_dashboardview.moc"
