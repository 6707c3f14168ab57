#include "support/Canvas.h"
#include "widgets/DashboardWidget.h"

#include <QElapsedTimer>

// Counts the paint events of a viewport.
class PaintCounter : public QObject
{
    Q_OBJECT

public:
    explicit PaintCounter(QWidget* viewport) { viewport->installEventFilter(this); }
    int paints = 0;

protected:
    bool eventFilter(QObject*, QEvent* event) override
    {
        if (event->type() == QEvent::Paint)
            ++paints;
        return false;
    }
};

class TestDashboardView : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void repaintsAtMostOncePerFrame()
    {
        Canvas canvas;
        QVERIFY(QTest::qWaitForWindowExposed(&canvas.view));
        DashboardItem* item = canvas.add("AnalogGauge", QRectF(0, 0, 250, 250));
        QCoreApplication::processEvents();
        PaintCounter counter(canvas.view.viewport());
        QElapsedTimer clock;
        clock.start();
        int values = 0;
        while (clock.elapsed() < 500) {
            item->widget()->setValue(values++ % 100);
            QCoreApplication::processEvents();
        }
        const int frames = int(clock.elapsed() / 16) + 1;
        QVERIFY2(values > 10 * frames, "too slow a machine to tell");
        QVERIFY2(counter.paints > 1, "nothing was painted");
        QVERIFY2(counter.paints <= frames, qPrintable(QString::number(counter.paints)));
    }

    void showsTheLastValueOnceAllIsQuiet()
    {
        Canvas canvas;
        QVERIFY(QTest::qWaitForWindowExposed(&canvas.view));
        DashboardItem* item = canvas.add("AnalogGauge", QRectF(0, 0, 200, 200));
        const auto needleIsAt = [&canvas](const QPoint& pixel) {
            return canvas.view.viewport()->grab().toImage().pixelColor(pixel).red() > 200 &&
                   canvas.view.viewport()->grab().toImage().pixelColor(pixel).green() < 90;
        };
        item->widget()->setValue(50);
        QTRY_VERIFY(needleIsAt({100, 50}));
        PaintCounter counter(canvas.view.viewport());
        item->widget()->setValue(0);
        QTRY_VERIFY(counter.paints > 0);
        QVERIFY(!needleIsAt({100, 50}));
    }

    void gridIsCrispAndOfDesignModeOnly()
    {
        Canvas canvas;
        QVERIFY(QTest::qWaitForWindowExposed(&canvas.view));
        const auto pixel = [&canvas](int x, int y) {
            return canvas.view.viewport()->grab().toImage().pixelColor(x, y);
        };
        QCOMPARE(pixel(20, 5), QApplication::palette().color(QPalette::Window));
        canvas.setDesignMode(true);
        QCOMPARE(pixel(20, 5), QColor(220, 220, 220));
        QCOMPARE(pixel(5, 30), QColor(220, 220, 220));
        for (const QPoint& beside : {QPoint(19, 5), QPoint(21, 5), QPoint(5, 31)})
            QCOMPARE(pixel(beside.x(), beside.y()), QColor(Qt::white));
    }

    void lostItemsCanBeBroughtBack()
    {
        Canvas canvas;
        QTRY_COMPARE(canvas.scene.sceneRect().size(), QSizeF(canvas.view.viewport()->size()));
        DashboardItem* far = canvas.add("DigitalDisplay", QRectF(1e6, -1e6, 200, 100));
        DashboardItem* huge = canvas.add("AnalogGauge", QRectF(-50'000, 0, 16'000, 16'000));
        DashboardItem* partly = canvas.add("DigitalDisplay", QRectF(-150, 50, 200, 100));
        canvas.scene.bringOutlyingItemsIntoView();
        QCOMPARE(far->pos(), QPointF(600, 0));
        QCOMPARE(huge->pos(), QPointF(0, 0));
        QCOMPARE(partly->pos(), QPointF(-150, 50));
    }
};

QTEST_MAIN(TestDashboardView)
#include "tst_dashboardview.moc"
