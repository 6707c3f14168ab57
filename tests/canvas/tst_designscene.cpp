#include "support/Canvas.h"

using namespace Qt::StringLiterals;

class TestDesignScene : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gridIsCrisp_data()
    {
        QTest::addColumn<QPoint>("pixel");
        QTest::addColumn<QColor>("color");
        const QColor gridColor(220, 220, 220);
        QTest::newRow("upright line") << QPoint(20, 5) << gridColor;
        QTest::newRow("left of it") << QPoint(19, 5) << QColor(Qt::white);
        QTest::newRow("level line") << QPoint(5, 30) << gridColor;
    }
    void gridIsCrisp()
    {
        QFETCH(QPoint, pixel);
        Canvas canvas;
        canvas.setDesignMode(true);
        QTEST(canvas.view.viewport()->grab().toImage().pixelColor(pixel), "color");
    }

    void newWidgetLiesInFrontOfTheOthers()
    {
        Canvas canvas;
        canvas.add("Line", QRectF(0, 0, 100, 100))->setZValue(7.5);
        const DashboardItem* item = canvas.scene.addNewWidget(u"AnalogGauge"_s);
        QVERIFY(item);
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
