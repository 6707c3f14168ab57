#include "support/TextRecorder.h"
#include "support/WidgetPicture.h"
#include "widgets/trend/TrendMarkerLabelEditor.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

/// A plot of A and B at 10 s of a replay, with a window of 10 s.
struct Replay : TrendPlotWidget
{
    Replay()
    {
        assignSignals({"A", "B"});
        setExternalTimeEnabled(true);
        setExternalNowMs(10'000);
    }
};

/// Between −10 and 10; A falls at 8 s from 5 to −5.
struct Drawn : Replay
{
    Drawn()
    {
        resize(352, 250);
        loadConfig({{"autoscale", false}, {"yMin", -10}, {"yMax", 10}, {"showGrid", false}});
        setValueForSignalAt("A", 5.0, 4.0);
        setValueForSignalAt("A", -5.0, 8.0);
    }
    bool hasHeldLine()
    {
        const QRect area = plotRect();
        const QPoint place(area.width() * 65 / 100, area.height() / 4);
        return darkPixels(picture(*this), QRect(area.topLeft() + place, QSize(1, 4)).translated(0, -2)) > 0;
    }
    int textCount()
    {
        TextRecorder recorder(size());
        render(&recorder);
        return recorder.textCount();
    }
};

/// On screen, its only sample so old that it scrolls by itself whenever its timer runs.
struct Silent : TrendPlotWidget
{
    int paints = 0;

    Silent()
    {
        assignSignals({"A"});
        addSample("A", 1.0, TrendPlotWidget::nowMs() - 60'000, false);
        show();
        if (!QTest::qWaitForWindowExposed(this))
            qFatal("not shown");
    }
    /// In a replay, which does not scroll, with nothing left to paint.
    void stop()
    {
        setExternalTimeEnabled(true);
        paintAll();
        paints = 0;
    }
    int paintAll()
    {
        QCoreApplication::processEvents();
        return paints;
    }
    void paintEvent(QPaintEvent* event) override
    {
        ++paints;
        TrendPlotWidget::paintEvent(event);
    }
};

class TestTrendPlotWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheRulesOfTheLayout()
    {
        Replay plot;
        plot.loadConfig({{"timeWindowMs", 1000}, {"sampleAndHold", 0}});
        for (const int ms : {0, 40, 60, 2000}) {
            plot.setExternalNowMs(ms);
            plot.setValueForSignalAt("A", 1.0, ms / 1000.0);
        }
        QCOMPARE(plot.series("A")->size(), 2);
        QCOMPARE(plot.series("A")->first().tMs, 60); // repeated, and the newest before the window
    }

    void stampsLiveValuesByTheClock()
    {
        Replay plot;
        plot.setExternalTimeEnabled(false);
        const qint64 before = TrendPlotWidget::nowMs();
        plot.setValueForSignalAt("A", -1.0, 5.0);
        QVERIFY(plot.series("A")->last().tMs >= before);
    }

    void scalesToWhatIsSeen()
    {
        Replay plot;
        plot.setValueForSignalAt("A", 777.0, -1.0); // held, but out of sight
        for (const double value : {0.0, 10.0, qQNaN(), qInf()})
            plot.setValueForSignalAt("A", value, 5.0);
        QCOMPARE(plot.currentYRange(0), std::pair(-1.0, 11.0));
    }

    void readsNearestValues()
    {
        Replay plot;
        plot.setValueForSignalAt("B", 0.25, 2.0);
        plot.setValueForSignalAt("B", 0.5, 8.0);
        QCOMPARE(plot.readingsAt(5000, 10'000), QStringList({"t = 5.000 s", "B: 0.25"}));
        QCOMPARE(plot.readingsAt(5001, 10'000), QStringList({"t = 4.999 s", "B: 0.5"}));
    }

    void scrollsAgainWhenShownAgain()
    {
        Silent plot;
        plot.hide();
        plot.show();
        plot.paints = 0;
        QTRY_VERIFY(plot.paints > 3);
    }

    void scrollsAgainAfterReplay()
    {
        Silent plot;
        plot.stop();
        plot.setExternalTimeEnabled(false);
        QTRY_VERIFY(plot.paints > 3);
    }

    void bulkLoadRepaintsOnceAtItsEnd()
    {
        Silent plot;
        plot.stop();
        plot.beginBulkLoad();
        plot.setValueForSignalAt("A", 3.0, 1.0);
        QCOMPARE(plot.paintAll(), 0);
        plot.addSample("A", 4.0, 1000, true);
        QCOMPARE(plot.paintAll(), 0);
        plot.idleTick();
        QCOMPARE(plot.paintAll(), 0);
        plot.endBulkLoad();
        QCOMPARE(plot.paintAll(), 1);
    }

    void repaintsWithEnteredLabel()
    {
        Silent plot;
        plot.loadConfig({{"markers", QJsonArray{QJsonObject()}}});
        plot.promptLabelForMarker(0, plot.mapToGlobal(QPoint(50, 50)));
        auto* editor = plot.findChild<TrendMarkerLabelEditor*>();
        QVERIFY(QTest::qWaitForWindowExposed(editor));
        plot.stop();
        Q_EMIT editor->labelEntered("valve"); // the closing editor would have the plot repainted as well
        QCOMPARE(plot.paintAll(), 1);
    }

    void holdsValuesInStepStyleOnly()
    {
        Drawn plot;
        QVERIFY(plot.hasHeldLine());
        plot.loadConfig({{"sampleAndHold", 0}});
        QVERIFY(!plot.hasHeldLine());
    }

    void drawsNoHiddenChannel()
    {
        Drawn plot;
        picture(plot); // the legend is hit where it was drawn
        QTest::mouseClick(&plot, Qt::LeftButton, Qt::AltModifier, plot.plotRect().topLeft() + QPoint(10, 14));
        QVERIFY(!plot.hasHeldLine());
    }

    void leavesOutNumberBesideTheLimit()
    {
        Drawn plot;
        plot.loadConfig({{"yMin", 0}});
        const int texts = plot.textCount();
        plot.loadConfig({{"yMin", -0.1}}); // the zero line is just above
        QCOMPARE(plot.textCount(), texts);
    }
};

QTEST_MAIN(TestTrendPlotWidget)
#include "tst_trendplotwidget.moc"
