#include "support/WidgetPicture.h"
#include "widgets/xyplot/DotCloud.h"
#include "widgets/xyplot/XYPlotWidget.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

/// A plot of X and Y without a grid.
struct Plot : XYPlotWidget
{
    Plot() { loadConfig({{"xSignal", "X"}, {"ySignal", "Y"}, {"showGrid", false}}); }
    int redAt(const QPoint& pos) { return picture(*this).pixelColor(pos).red(); }
};

static constexpr QColor kColor{40, 140, 160};

static void drawSingly(QPainter& painter, const QList<CloudDot>& dots)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (const CloudDot& dot : dots) {
        painter.setBrush(QColor(kColor.red(), kColor.green(), kColor.blue(), dot.alpha));
        painter.drawEllipse(dot.centre, 1, 1);
    }
}

// The XYPlotWidget, and the cloud that it draws its dots as.
class TestXYPlotAndDotCloud : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pairsNewestValuesOncePerBucket()
    {
        Plot plot;
        plot.setValueForSignalAt("X", 1, 0.000);
        plot.setValueForSignalAt("Y", 2, 0.005);
        plot.setValueForSignalAt("X", 3, 0.012);
        plot.setValueForSignalAt(" Y : speed", 4, 0.021);
        QCOMPARE(plot.points().points(), QList<QPointF>({{1, 2}, {3, 4}}));
    }

    void keepsNewestPointsInOrder_data()
    {
        QTest::addColumn<int>("capacity"); ///< it was 3, with 4 points pushed
        QTest::addColumn<QList<double>>("order");
        QTest::newRow("grown") << 9 << QList{2.0, 3.0, 4.0, 5.0};
        QTest::newRow("shrunk") << 2 << QList{4.0, 5.0};
    }

    void keepsNewestPointsInOrder()
    {
        QFETCH(int, capacity);
        Plot plot;
        plot.loadConfig({{"maxPoints", 3}});
        for (int x = 1; x <= 4; ++x)
            plot.pushPoint({double(x), 0});
        plot.loadConfig({{"maxPoints", capacity}});
        plot.pushPoint({5, 0});
        QList<double> order;
        for (int i = 0; i < plot.points().size(); ++i)
            order.append(plot.points().at(i).x());
        QTEST(order, "order");
    }

    void fadesWithAge()
    {
        Plot plot;
        plot.loadConfig({{"autoScaleX", false}, {"xMin", 0}, {"xMax", 1}, {"maxPoints", 4}});
        const QRect area = plot.plotRect();
        const auto red = [&](double level) {
            return plot.redAt(area.bottomLeft() + QPoint(int(level * area.width()), 0));
        };
        const int background = red(0.75);
        for (const double level : {0.9, 0.125, 0.25, 0.5, 0.75})
            plot.pushPoint({level, 0});
        QVERIFY(red(0.25) < background - 30);
        QVERIFY(red(0.5) < red(0.25) - 30);
        QCOMPARE(red(0.75), 40);
    }

    void drawsHostilePointsAtTheEdge()
    {
        Plot plot;
        const QRect area = plot.plotRect();
        plot.pushPoint({0, 0});
        plot.pushPoint({10, qInf()}); // stretches no axis
        plot.pushPoint({0, 10});
        QVERIFY(plot.redAt(area.topLeft()) < 80);
        plot.pushPoint({1e308, -1e308});
        QVERIFY(plot.redAt(area.bottomRight()) < 80);
    }

    void looksLikeSingleCircles_data()
    {
        QTest::addColumn<double>("ratio");
        QTest::addColumn<int>("height");
        QTest::addColumn<int>("tolerance"); ///< of 255
        QTest::newRow("ratio 1") << 1.0 << 60 << 32;
        QTest::newRow("ratio 1.5") << 1.5 << 60 << 32;
        QTest::newRow("ratio 2, more than is painted at a time") << 2.0 << 900 << 4;
    }

    void looksLikeSingleCircles()
    {
        QFETCH(double, ratio);
        QFETCH(int, height);
        QFETCH(int, tolerance);
        QRandomGenerator random(1);
        QList<CloudDot> dots;
        for (int i = 0; i < height * 50; ++i)
            dots.append({{random.bounded(-3, 104), random.bounded(-3, height + 4)}, i * 5 / height});
        QImage cloud(QSize(100, height) * ratio, QImage::Format_RGB32);
        cloud.fill(Qt::white);
        cloud.setDevicePixelRatio(ratio);
        QImage circles = cloud;
        QPainter cloudPainter(&cloud);
        QPainter circlesPainter(&circles);
        for (QPainter* painter : {&cloudPainter, &circlesPainter})
            painter->translate(0.5, 0.25); // as on an item that does not lie on whole pixels
        drawDotCloud(cloudPainter, QRect(-2, -2, 110, height + 10), kColor, 1, dots);
        drawSingly(circlesPainter, dots);
        int largest = 0;
        for (qsizetype i = 0; i < cloud.sizeInBytes(); ++i)
            largest = std::max(largest, abs(cloud.constBits()[i] - circles.constBits()[i]));
        QVERIFY2(largest <= tolerance, qPrintable(QString::number(largest)));
    }
};

QTEST_MAIN(TestXYPlotAndDotCloud)
#include "tst_xyplotanddotcloud.moc"
