#include "support/Canvas.h"

#include <QApplication>

using namespace Qt::StringLiterals;

class TestDesignScene : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gridIsCrispAndOfDesignModeOnly_data()
    {
        QTest::addColumn<bool>("designMode");
        QTest::addColumn<QPoint>("pixel");
        QTest::addColumn<QColor>("color");
        const QColor gridColor(220, 220, 220);
        QTest::newRow("no grid") << false << QPoint(20, 5) << QApplication::palette().color(QPalette::Window);
        QTest::newRow("upright line") << true << QPoint(20, 5) << gridColor;
        QTest::newRow("left of it") << true << QPoint(19, 5) << QColor(Qt::white);
        QTest::newRow("right of it") << true << QPoint(21, 5) << QColor(Qt::white);
        QTest::newRow("level line") << true << QPoint(5, 30) << gridColor;
        QTest::newRow("below it") << true << QPoint(5, 31) << QColor(Qt::white);
    }
    void gridIsCrispAndOfDesignModeOnly()
    {
        QFETCH(bool, designMode);
        QFETCH(QPoint, pixel);
        Canvas canvas;
        canvas.setDesignMode(designMode);
        QTEST(canvas.view.viewport()->grab().toImage().pixelColor(pixel), "color");
    }

    void newWidgetLiesInFrontOfTheOthers()
    {
        Canvas canvas;
        canvas.add("Line", QRectF(0, 0, 100, 100))->setZValue(7.5);
        const DashboardItem* item = canvas.scene.addNewWidget(u"AnalogGauge"_s);
        QVERIFY(item);
        QCOMPARE(item->sceneBoundingRect(), QRectF(100, 100, 250, 250));
        QCOMPARE(item->zValue(), 8.5);
    }

    void lostItemsCanBeBroughtBack_data()
    {
        QTest::addColumn<QRectF>("frame");
        QTest::addColumn<QPointF>("expected");
        QTest::newRow("far off") << QRectF(1e6, -1e6, 200, 100) << QPointF(600, 0);
        QTest::newRow("larger than the canvas") << QRectF(-50'000, 0, 16'000, 16'000) << QPointF(0, 0);
        QTest::newRow("partly in sight") << QRectF(-150, 50, 200, 100) << QPointF(-150, 50);
    }
    void lostItemsCanBeBroughtBack()
    {
        QFETCH(QRectF, frame);
        Canvas canvas;
        QTRY_COMPARE(canvas.scene.sceneRect().size(), QSizeF(canvas.view.viewport()->size()));
        const DashboardItem* item = canvas.add("DigitalDisplay", frame);
        canvas.scene.bringOutlyingItemsIntoView();
        QTEST(item->pos(), "expected");
    }
};

QTEST_MAIN(TestDesignScene)
#include "tst_designscene.moc"
