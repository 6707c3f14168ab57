#include "support/TextRecorder.h"
#include "support/WidgetPicture.h"
#include "widgets/xyplot/XYPlotWidget.h"

#include <QSignalSpy>
#include <QTest>

using Points = QList<QPointF>;

/// A plot of X and Y without a grid.
struct Plot : XYPlotWidget
{
    Plot() { loadConfig({{"xSignal", "X"}, {"ySignal", "Y"}, {"showGrid", false}}); }
    void say(const QString& name, double value, double tSec) { setValueForSignalAt(name, value, tSec); }
};

class TestXYPlotWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void pairsNewestValuesOncePerBucket()
    {
        Plot plot;
        plot.say("X", 1, 0.000);
        plot.say("Y", 2, 0.005);
        plot.say("X", 3, 0.012);
        plot.say(" Y : speed", 4, 0.021);
        QCOMPARE(plot.points().points(), Points({{1, 2}, {3, 4}}));
    }

    void breaksOffPairingAtNoNumber()
    {
        Plot plot;
        plot.say("Y", 2, 0.000);
        plot.say("Y", qQNaN(), 0.050);
        plot.say("X", 5, 0.070); // no Y to pair it with
        QCOMPARE(plot.points().size(), 0);
    }

    void clearedDataLeavesNewestValues()
    {
        Plot plot;
        plot.say("X", 5, 0.000);
        plot.say("Y", 2, 0.030);
        plot.clearData();
        plot.say("Y", 6, 1e300);
        QCOMPARE(plot.points().points(), Points({{5, 6}})); // with the X from before
    }

    void tellsItsSignalsOnlyWhenTheyChange()
    {
        Plot plot;
        QSignalSpy spy(&plot, &DashboardWidget::assignmentChanged);
        plot.loadConfig({{"xSignal", "X"}, {"ySignal", 7}, {"yMax", 3}});
        plot.applyConfigUI();
        QCOMPARE(spy.count(), 0);
        plot.loadConfig({{"xSignal", "Z"}});
        QCOMPARE(spy.count(), 1);
    }

    void sameSignalOnBothAxesGoesToX()
    {
        Plot plot;
        plot.say("Y", 6, 0.000);
        plot.loadConfig({{"xSignal", "Y"}});
        plot.say("Y", 7, 0.030);
        QCOMPARE(plot.points().points(), Points({{7, 6}}));
    }

    void changedSignalForgetsItsOwnValueOnly()
    {
        Plot plot;
        plot.say("X", 1, 0.000);
        plot.say("Y", 2, 0.030);
        plot.loadConfig({{"ySignal", "Z"}});
        plot.say("X", 1, 0.060); // no Z to pair it with
        plot.loadConfig({{"ySignal", "W"}});
        plot.say("W", 4, 0.090);
        QCOMPARE(plot.points().points(), Points({{1, 2}, {1, 4}})); // with the X from before
    }

    void fadesWithAge()
    {
        Plot plot;
        plot.loadConfig({{"autoScaleX", false}, {"xMin", 100}, {"xMax", 200}, {"maxPoints", 4}});
        plot.loadConfig({{"autoScaleY", false}, {"yMin", -5}, {"yMax", 5}});
        const QRect area = plot.plotRect();
        const auto red = [&](double level) {
            const QPoint place(int(level * area.width()), -int((1 - level) * area.height()));
            return picture(plot).pixelColor(area.bottomLeft() + place).red();
        };
        const int background = red(0.75);
        for (const double level : {0.125, 0.25, 0.5, 0.75})
            plot.pushPoint({100 + 100 * level, 5 - 10 * level});
        QVERIFY(red(0.25) < background - 30);
        QVERIFY(red(0.5) < red(0.25) - 30);
        QCOMPARE(red(0.75), 40);
    }

    void writesTitleAndFourLimits()
    {
        Plot plot;
        TextRecorder recorder(plot.size());
        plot.render(&recorder);
        QCOMPARE(recorder.textCount(), 5);
    }

    void writesNoTitleWithoutY()
    {
        Plot plot;
        const QRect title(plot.plotRect().left(), 0, plot.plotRect().width(), 20);
        QVERIFY(darkPixels(picture(plot), title) > 0);
        plot.loadConfig({{"ySignal", ""}});
        QCOMPARE(darkPixels(picture(plot), title), 0);
    }

    void drawsHostilePointsAtTheEdge()
    {
        Plot plot;
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

QTEST_MAIN(TestXYPlotWidget)
#include "tst_xyplotwidget.moc"
