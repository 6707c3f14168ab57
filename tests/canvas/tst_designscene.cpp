#include "support/Canvas.h"
#include "widgets/DashboardWidget.h"
#include "widgets/ErrorConsoleWidget.h"

#include <QApplication>
#include <QPainter>

using namespace Qt::StringLiterals;

class TestDesignScene : public QObject
{
    Q_OBJECT

    static QImage background(DesignScene& scene, const QRectF& rect)
    {
        QImage image(rect.size().toSize(), QImage::Format_RGB32);
        image.fill(Qt::red);
        QPainter painter(&image);
        scene.render(&painter, image.rect(), rect);
        return image;
    }

private Q_SLOTS:
    void showsTheGridInDesignModeOnly()
    {
        DesignScene scene;
        const QRectF rect(-25, -25, 100, 100);
        QCOMPARE(background(scene, rect).pixelColor(50, 50), QApplication::palette().color(QPalette::Window));
        scene.setDesignMode(true);
        const QImage grid = background(scene, rect);
        QCOMPARE(grid.pixelColor(30, 30), QColor(Qt::white));     // at (5, 5)
        QCOMPARE(grid.pixelColor(35, 32), QColor(220, 220, 220)); // on x = 10
        QCOMPARE(grid.pixelColor(32, 15), QColor(220, 220, 220)); // on y = -10
    }

    void bringsLostItemsBack()
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

QTEST_MAIN(TestDesignScene)
#include "tst_designscene.moc"
