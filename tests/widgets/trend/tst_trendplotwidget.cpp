#include "support/TextRecorder.h"
#include "support/WidgetPicture.h"
#include "widgets/trend/TrendMarkerLabelEditor.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QTest>

namespace {

using Range = std::pair<double, double>;

const QJsonArray kMarkers{QJsonObject{{"kind", "screen"}, {"xFrac", 0.75}},
                          QJsonObject{{"kind", "data"}, {"t", 6000}}};

/// Counts the paintings of a widget.
struct PaintCounter : QObject
{
    int paints = 0;
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint;
        return false;
    }
};

/// A plot of A in a replay, with a window of 10 s.
struct Replay : TrendPlotWidget
{
    explicit Replay(qint64 nowMs)
    {
        assignSignals({"A"});
        setExternalTimeEnabled(true);
        setExternalNowMs(nowMs);
    }
};

/// At 10 s, between −10 and 10: A falls at 8 s from 5 to −5, B stays at −7.5. Markers stand at 7.5 and 6 s.
struct Drawn : Replay
{
    Drawn()
        : Replay(10'000)
    {
        resize(352, 250);
        assignSignals({"A", "B"});
        loadConfig({{"autoscale", false}, {"yMin", -10}, {"yMax", 10}, {"showGrid", false}});
        loadConfig({{"markers", kMarkers}});
        for (const int second : {4, 8}) {
            setValueForSignalAt("A", second == 4 ? 5.0 : -5.0, second);
            setValueForSignalAt("B", -7.5, second);
        }
    }
    /// Whether a line goes through the place.
    bool hasLineAt(double second, double value)
    {
        const QRect area = plotRect();
        const QRgb pixel = picture(*this).pixel(area.left() + int(second / 10 * (area.width() - 1)),
                                                area.bottom() - int((value + 10) / 20 * area.height()));
        return qRed(pixel) < 150 || qBlue(pixel) < 150;
    }
    /// The leftmost column of the plot's lower half with that colour, −1 when there is none.
    int columnOf(const QColor& color)
    {
        const QRect area = plotRect();
        const QImage image = picture(*this);
        for (int x = area.left(); x < area.right(); ++x) {
            for (int y = area.center().y() + 5; y < area.bottom(); ++y) {
                if (image.pixelColor(x, y) == color)
                    return x - area.left();
            }
        }
        return -1;
    }
};

/// On screen, its only sample so old that it scrolls by itself whenever its timer runs.
struct Silent : TrendPlotWidget
{
    PaintCounter counter{*this};

    Silent()
    {
        assignSignals({"A"});
        addSample("A", 1.0, TrendPlotWidget::nowMs() - 60'000, false);
        show();
        if (!QTest::qWaitForWindowExposed(this))
            qFatal("not shown");
        settle();
    }
    void settle()
    {
        QCoreApplication::processEvents();
        counter.paints = 0;
    }
};

} // namespace

class TestTrendPlotWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void followsTheRulesOfTheLayout()
    {
        Replay plot(0);
        plot.loadConfig({{"timeWindowMs", 1000}, {"sampleAndHold", 0}});
        for (const int ms : {0, 40, 60, 2000}) {
            plot.setExternalNowMs(ms);
            plot.setValueForSignalAt("A", 1.0, ms / 1000.0);
        }
        QCOMPARE(plot.series("A")->size(), 2);
        QCOMPARE(plot.series("A")->first().tMs, 60); // repeated, and the newest before the window
    }

    void scalesToWhatIsSeen_data()
    {
        QTest::addColumn<QList<double>>("values");
        QTest::addColumn<Range>("range");
        QTest::newRow("nothing") << QList<double>{} << Range(-1.0, 1.0);
        QTest::newRow("one value") << QList{3.0} << Range(2.0, 4.0);
        QTest::newRow("not finite") << QList{0.0, 10.0, qQNaN(), qInf()} << Range(-1.0, 11.0);
        QTest::newRow("beyond double") << QList{-1e308, 1e308} << Range(-4.8e307, 4.8e307);
        QTest::newRow("one large value") << QList{1e17} << Range(1e17 - 1e8, 1e17 + 1e8);
    }

    void scalesToWhatIsSeen()
    {
        QFETCH(QList<double>, values);
        QFETCH(Range, range);
        Replay plot(10'000);
        plot.setValueForSignalAt("A", 777.0, -1.0); // held, but out of sight
        for (int i = 0; i < values.size(); ++i)
            plot.setValueForSignalAt("A", values[i], i);
        QCOMPARE(plot.currentYRange(0), range);
    }

    void readsValuesAtTime()
    {
        Replay plot(30'000);
        plot.assignSignals({"A", "B", "Silent"});
        plot.setValueForSignalAt("A", 19.0, 25.0);
        plot.setValueForSignalAt("B", 0.5, 30.0);
        QCOMPARE(plot.readingsAt(30'000, 30'000), QStringList({"t = 0.000 s", "A: 19", "B: 0.5"}));
        QCOMPARE(plot.readingsAt(20'000, 30'000).first(), "t = 10.000 s");
    }

    void silentPlotPrunesByItself()
    {
        Silent plot;
        plot.addSample("A", 2.0, TrendPlotWidget::nowMs() - 50'000, false);
        QTRY_COMPARE(plot.series("A")->size(), 1);
    }

    void scrollsAgainWhenShownAgain()
    {
        Silent plot;
        plot.hide();
        plot.show();
        QTRY_VERIFY(plot.counter.paints > 3);
    }

    void scrollsAgainAfterReplay()
    {
        Silent plot;
        plot.setExternalTimeEnabled(true);
        plot.setExternalTimeEnabled(false);
        QTRY_VERIFY(plot.counter.paints > 3);
    }

    void bulkLoadRepaintsOnceAtItsEnd_data()
    {
        QTest::addColumn<bool>("stamped");
        QTest::newRow("values of a replay") << false;
        QTest::newRow("samples from elsewhere") << true;
    }

    void bulkLoadRepaintsOnceAtItsEnd()
    {
        QFETCH(bool, stamped);
        Silent plot;
        plot.setExternalTimeEnabled(true);
        plot.settle();
        plot.beginBulkLoad();
        if (stamped)
            plot.addSample("A", 3.0, 1000, true);
        else
            plot.setValueForSignalAt("A", 3.0, 1.0);
        plot.idleTick();
        QCoreApplication::processEvents();
        QCOMPARE(plot.counter.paints, 0);
        plot.endBulkLoad();
        QCoreApplication::processEvents();
        QCOMPARE(plot.counter.paints, 1);
    }

    void repaintsWithEnteredLabel()
    {
        Silent plot;
        plot.setExternalTimeEnabled(true);
        plot.loadConfig({{"markers", kMarkers}});
        plot.promptLabelForMarker(0, plot.mapToGlobal(QPoint(50, 50)));
        auto* editor = plot.findChild<TrendMarkerLabelEditor*>();
        QVERIFY(QTest::qWaitForWindowExposed(editor));
        plot.settle();
        Q_EMIT editor->labelEntered(
            "valve opens"); // the closing editor would have the plot repainted as well
        QCoreApplication::processEvents();
        QCOMPARE(plot.counter.paints, 1);
    }

    void holdsValueUntilTheNext()
    {
        Drawn plot;
        QVERIFY(plot.hasLineAt(6.5, 5.0));
        QVERIFY(!plot.hasLineAt(6.5, -2.0));
    }

    void drawsStepWhereTheValueChanges() { QVERIFY(Drawn().hasLineAt(8.0, -2.0)); }

    void holdsLastValueUntilNow() { QVERIFY(Drawn().hasLineAt(9.5, -5.0)); }

    void drawsLineAtZero() { QVERIFY(Drawn().hasLineAt(0.1, 0.0)); }

    void leavesOutNumberBesideTheLimit()
    {
        Drawn plot;
        plot.loadConfig({{"yMin", 0}});
        const int texts = textsOf(plot);
        plot.loadConfig({{"yMin", -0.1}}); // the zero line is just above
        QCOMPARE(textsOf(plot), texts);
    }

    void drawsSlopesWithoutHold()
    {
        Drawn plot;
        plot.loadConfig({{"sampleAndHold", 0}});
        QVERIFY(plot.hasLineAt(6.0, 0.01));
        QVERIFY(!plot.hasLineAt(6.5, 5.0));
    }

    void drawsScreenMarkerAtItsPlace()
    {
        Drawn plot;
        QCOMPARE(plot.columnOf(TrendMarkers::screenMarkerColor()), plot.plotRect().width() * 3 / 4);
    }

    void drawsDataMarkerAtItsTime()
    {
        Drawn plot;
        QCOMPARE(plot.columnOf(TrendMarkers::dataMarkerColor()), plot.plotRect().width() * 6 / 10);
    }

    void dataMarkerLeavesWithItsTime()
    {
        Drawn plot;
        plot.setExternalNowMs(16'100);
        QCOMPARE(plot.columnOf(TrendMarkers::dataMarkerColor()), -1);
    }

    void drawsNoHiddenChannel()
    {
        Drawn plot;
        QVERIFY(plot.hasLineAt(5.0, -7.5));
        QTest::mouseClick(&plot, Qt::LeftButton, Qt::AltModifier, plot.plotRect().topLeft() + QPoint(10, 30));
        QVERIFY(!plot.hasLineAt(5.0, -7.5));
    }

    void stampsLiveValuesByTheClock()
    {
        Replay plot(0);
        plot.setExternalTimeEnabled(false);
        const qint64 before = TrendPlotWidget::nowMs();
        plot.setValueForSignalAt("A", -1.0, 5.0);
        QVERIFY(plot.series("A")->last().tMs >= before);
        QVERIFY(plot.currentNowMs() >= before);
    }

    void goesOnWhenTheClockWasSetBack()
    {
        Replay plot(0);
        plot.setExternalTimeEnabled(false);
        plot.addSample("A", 2.0, TrendPlotWidget::nowMs() + 3'600'000, false);
        plot.setValueForSignal("A", 3.0);
        QCOMPARE(plot.series("A")->last().value, 3.0);
        QVERIFY(plot.series("A")->last().tMs <= TrendPlotWidget::nowMs());
    }

private:
    static int textsOf(TrendPlotWidget& plot)
    {
        TextRecorder recorder(plot.size());
        plot.render(&recorder);
        return recorder.textCount();
    }
};

QTEST_MAIN(TestTrendPlotWidget)
#include "tst_trendplotwidget.moc"
