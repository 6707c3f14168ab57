#include "support/WidgetPicture.h"
#include "widgets/xyplot/DotCloud.h"
#include "widgets/xyplot/XYPlotWidget.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QSignalSpy>
#include <QTest>

using Points = QList<QPointF>;

class TestXYPlot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pairsNewestValuesOncePerBucket()
    {
        XYPlotWidget plot;
        plot.loadConfig({{"xSignal", "X"}, {"ySignal", "Y"}});
        plot.setValueForSignalAt("X", 1, 0.000);
        plot.setValueForSignalAt("Y", 2, 0.005);
        plot.setValueForSignalAt("X", 3, 0.012);
        plot.setValueForSignalAt(" Y : speed", 4, 0.021);
        plot.setValueForSignalAt("Y", qQNaN(), 0.050);
        plot.setValueForSignalAt("X", 5, 0.070); // no Y to pair it with
        QCOMPARE(plot.points().points(), Points({{1, 2}, {3, 4}}));
        plot.clearData();
        plot.setValueForSignalAt("Y", 6, 1e300);
        QCOMPARE(plot.points().points(), Points({{5, 6}})); // with the X from before
        QSignalSpy spy(&plot, &DashboardWidget::assignmentChanged);
        plot.loadConfig({{"xSignal", "X"}, {"ySignal", 7}, {"yMax", 3}});
        plot.applyConfigUI();
        plot.loadConfig({{"xSignal", "Y"}}); // nothing changed before
        QCOMPARE(spy.count(), 1);
        plot.setValueForSignalAt("Y", 7, 0.090); // X alone takes it
        QCOMPARE(plot.points().points(), Points({{7, 6}}));
    }

    void changedSignalForgetsItsOwnValueOnly()
    {
        XYPlotWidget plot;
        plot.loadConfig({{"xSignal", "X"}, {"ySignal", "Y"}});
        plot.setValueForSignalAt("X", 1, 0.000);
        plot.setValueForSignalAt("Y", 2, 0.030);
        plot.loadConfig({{"ySignal", "Z"}});
        plot.setValueForSignalAt("X", 1, 0.060); // no Z to pair it with
        plot.loadConfig({{"ySignal", "W"}});
        plot.setValueForSignalAt("W", 4, 0.090);
        QCOMPARE(plot.points().points(), Points({{1, 2}, {1, 4}})); // with the X from before
    }

    void keepsOrderThroughChangesOfCapacity()
    {
        XYPointRing ring;
        const auto after = [&ring](int capacity, const QList<int>& pushed) {
            ring.setCapacity(capacity);
            for (const int x : pushed)
                ring.push({double(x), 0.0});
            QList<int> headAndOrder{ring.head()};
            for (int i = 0; i < ring.size(); ++i)
                headAndOrder.append(int(ring.at(i).x()));
            return headAndOrder;
        };
        QCOMPARE(after(3, {1, 2, 3, 4}), QList<int>({1, 2, 3, 4}));
        QCOMPARE(ring.points(), Points({{4, 0}, {2, 0}, {3, 0}}));
        QCOMPARE(after(5, {5, 6, 7}), QList<int>({1, 3, 4, 5, 6, 7}));
        QCOMPARE(after(2, {}), QList<int>({0, 6, 7}));
        QCOMPARE(after(0, {8}), QList<int>({0}));
        QCOMPARE(after(2'000'000'000, {9}), QList<int>({0, 9}));
        QCOMPARE(ring.capacity(), 200'000);
    }

    void cloudLooksLikeSingleCircles()
    {
        for (const double ratio : {1.0, 1.25, 1.5, 2.0}) {
            const int height = ratio == 2.0 ? 900 : 60; // more than is painted at a time
            QRandomGenerator random(1);
            QList<CloudDot> dots;
            for (int i = 0; i < height * 50; ++i)
                dots.append({{random.bounded(-3, 104), random.bounded(-3, height + 4)}, i * 5 / height});
            QImage one(QSize(100, height) * ratio, QImage::Format_RGB32);
            one.fill(Qt::white);
            one.setDevicePixelRatio(ratio);
            QImage cloud = one;
            QPainter together(&cloud);
            together.translate(0.5, 0.25); // as on an item that does not lie on whole pixels
            drawDotCloud(together, QRect(-2, -2, 110, height + 10), QColor(40, 140, 160), 1, dots);
            QPainter singly(&one);
            singly.translate(0.5, 0.25);
            singly.setRenderHint(QPainter::Antialiasing);
            singly.setPen(Qt::NoPen);
            for (const CloudDot& dot : dots) {
                singly.setBrush(QColor(40, 140, 160, dot.alpha));
                singly.drawEllipse(dot.centre, 1, 1);
            }
            qsizetype sum = 0;
            for (qsizetype i = 0; i < one.sizeInBytes(); ++i) {
                const int difference = abs(one.constBits()[i] - cloud.constBits()[i]);
                QVERIFY(difference <= (ratio == 2.0 ? 4 : 32));
                sum += difference;
            }
            QVERIFY(sum < 3 * one.sizeInBytes());
        }
    }

    void fadesWithAgeAtFixedLimits()
    {
        XYPlotWidget plot;
        plot.loadConfig({{"autoScaleX", false}, {"xMin", 100}, {"xMax", 200}, {"maxPoints", 4}});
        plot.loadConfig({{"autoScaleY", false}, {"yMin", -5}, {"yMax", 5}, {"showGrid", false}});
        const QRect area = plot.plotRect();
        const auto red = [&](double level) {
            const QPoint place(int(level * area.width()), -int((1 - level) * area.height()));
            return picture(plot).pixelColor(area.bottomLeft() + place).red();
        };
        const int background = red(0.75);
        for (const double level : {0.875, 0.125, 0.25, 0.5, 0.75})
            plot.pushPoint({100 + 100 * level, 5 - 10 * level});
        QCOMPARE(plot.points().size(), 4);
        QVERIFY(red(0.25) < background - 30);
        QVERIFY(red(0.5) < red(0.25) - 30);
        QCOMPARE(red(0.75), 40);
    }

    void writesTitleAndLimits()
    {
        XYPlotWidget plot;
        plot.loadConfig({{"xSignal", "X"}, {"showGrid", false}});
        const QRect area = plot.plotRect();
        const QRect title(area.left(), 0, area.width(), 20);
        QCOMPARE(darkPixels(picture(plot), title), 0);
        plot.loadConfig({{"ySignal", "Y"}});
        const QRect beside(0, 0, area.left(), 20);
        const QRect below(area.left(), area.bottom() + 2, 30, 20);
        for (const QRect& text : {title, beside, beside.translated(0, area.bottom() - 10), below,
                                  below.translated(area.width() - 30, 0)})
            QVERIFY(darkPixels(picture(plot), text & plot.rect()) > 0);
    }

    void drawsHostilePointsAtTheEdge()
    {
        XYPlotWidget plot;
        plot.loadConfig({{"showGrid", false}});
        const QRect area = plot.plotRect();
        const auto newest = [&](const QPointF& point, const QPoint& place) {
            plot.pushPoint(point);
            return picture(plot).pixelColor(place).red() < 80;
        };
        QVERIFY(newest({0, 0}, area.bottomLeft()));
        QVERIFY(newest({10, qInf()}, area.topRight())); // infinity stretches no axis
        QVERIFY(newest({10, -1e308}, area.bottomRight()));
        QVERIFY(newest({-1e308, 1e308}, area.topLeft()));
    }
};

QTEST_MAIN(TestXYPlot)
#include "tst_xyplot.moc"
