#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
#include "app/status/RecordingStatus.h"
#include "playback/recording/SignalRecorder.h"
#include "support/WindowRig.h"
#include "widgets/consoles/ErrorConsoleWidget.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QTest>

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kClock = 1'000'000'000'000; ///< milliseconds that only the clock shows, never a replay

/// The window while it records, in the midst of the replay of an earlier recording.
struct RecordingRig : WindowRig
{
    PseudoTerminal device;
    TrendPlotWidget* plot = add<TrendPlotWidget>();
    ErrorConsoleWidget* errors = add<ErrorConsoleWidget>();

    RecordingRig()
    {
        openProject();
        connectTo(device);
        replay("0 A=1 ERR=7\n100\n");
        press(u"Record"_s);
        device.writeAll("7 A=1\n7.5 A=2 word\n");
        if (!QTest::qWaitFor([this] { return window.router()->lastValues().value(u"A"_s) == 2.0; }))
            qFatal("nothing was heard");
    }
    using End = void (RecordingRig::*)();
    void stop() { press(u"Stop"_s); }
    void play() { press(u"Play"_s); }
    void unplug() { device.close(); }
    void close() { window.close(); }
};

} // namespace

// What the modes do, in the window.
class TestModeSwitch : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void buttonsChangeTheMode_data()
    {
        QTest::addColumn<Sigvane::Mode>("from");
        QTest::addColumn<QString>("button");
        QTest::addColumn<Sigvane::Mode>("to");
        QTest::addColumn<QString>("status");
        QTest::newRow("design") << Sigvane::Idle << u"Design"_s << Sigvane::Design << u"Design Mode"_s;
        QTest::newRow("design again") << Sigvane::Design << u"Design"_s << Sigvane::Idle << u"Idle"_s;
        QTest::newRow("play") << Sigvane::Idle << u"Play"_s << Sigvane::Play << u"Playing..."_s;
        QTest::newRow("pause") << Sigvane::Play << u"Pause"_s << Sigvane::Pause << u"Pause..."_s;
        QTest::newRow("go on") << Sigvane::Pause << u"Play"_s << Sigvane::Play << u"Playing..."_s;
        QTest::newRow("stop") << Sigvane::Pause << u"Stop"_s << Sigvane::Idle << u"Idle"_s;
    }

    void buttonsChangeTheMode()
    {
        QFETCH(Sigvane::Mode, from);
        QFETCH(QString, button);
        QFETCH(Sigvane::Mode, to);
        WindowRig rig;
        rig.window.addWidget(u"AnalogGauge"_s);
        rig.replay("0 A=1\n100\n");
        rig.window.setMode(from);
        rig.press(button);
        QCOMPARE(rig.window.mode(), to);
        QTEST(rig.status(), "status");
        const bool design = to == Sigvane::Design;
        QCOMPARE(rig.items().constFirst()->flags().testFlag(QGraphicsItem::ItemIsMovable), design);
        QCOMPARE(rig.window.findChild<WidgetPalette*>()->isEnabled(), design);
        const bool plays = to == Sigvane::Play;
        QCOMPARE(rig.engine->isPlaying(), plays);
        QCOMPARE(rig.action(u"Play"_s)->isEnabled(), !plays);
    }

    void stopIsPauseDuringAReplay()
    {
        WindowRig rig;
        rig.replay("0 A=1\n100\n");
        QCOMPARE(rig.action(u"Pause"_s)->toolTip(), u"Pause playback"_s);
    }

    void stopRewindsAndEmptiesThePlots()
    {
        WindowRig rig;
        auto* plot = rig.add<TrendPlotWidget>();
        plot->assignSignals({u"A"_s});
        rig.replay("0 A=1\n100 A=2\n");
        rig.engine->advance(1000);
        rig.press(u"Pause"_s);
        QCOMPARE(rig.slider->value(), 10);
        rig.press(u"Stop"_s);
        QCOMPARE(rig.slider->value(), 0);
        QVERIFY(!plot->series(u"A"_s));
        QVERIFY(plot->currentNowMs() > kClock);
    }

    void refusedRecordLeavesTheMode()
    {
        WindowRig rig;
        rig.answer.press(QMessageBox::Ok);
        rig.press(u"Record"_s);
        QCOMPARE(rig.answer.texts(), QStringList(u"Open a serial port before recording."_s));
        QCOMPARE(rig.window.mode(), Sigvane::Idle);
        QCOMPARE(rig.status(), u"Idle"_s);
    }

    void recordEndsTheReplay()
    {
        const RecordingRig rig;
        QCOMPARE(rig.window.mode(), Sigvane::Record);
        QCOMPARE(rig.status(), u"Recording..."_s);
        QVERIFY(rig.plot->currentNowMs() > kClock);
        QCOMPARE(rig.errors->plainText(), QString());
        QVERIFY(!rig.slider->isEnabled());
        QVERIFY(rig.window.findChild<RecordingStatus*>()->isVisibleTo(&rig.window));
    }

    void recordingEndsAsAWholeFile_data()
    {
        QTest::addColumn<RecordingRig::End>("end");
        QTest::addColumn<Sigvane::Mode>("mode");
        QTest::addColumn<QString>("status");
        const QString stopped = u"Recording stopped."_s;
        const QString lost = u"The device is gone. Press Connect when it is back."_s;
        QTest::newRow("stop") << &RecordingRig::stop << Sigvane::Idle << stopped;
        QTest::newRow("play") << &RecordingRig::play << Sigvane::Play << u"Playing..."_s;
        QTest::newRow("device lost") << &RecordingRig::unplug << Sigvane::Idle << lost;
        QTest::newRow("close") << &RecordingRig::close << Sigvane::Record << stopped;
    }

    void recordingEndsAsAWholeFile()
    {
        QFETCH(RecordingRig::End, end);
        QFETCH(Sigvane::Mode, mode);
        QFETCH(QString, status);
        RecordingRig rig;
        (rig.*end)();
        QTRY_COMPARE(rig.window.mode(), mode);
        QTRY_COMPARE(rig.status(), status);
        QVERIFY(!rig.window.recorder()->isRecording());
        QCOMPARE(readFile(rig.window.recorder()->path()), "0.000000 A=1\n0.500000 A=2\n0.500000 RAW word\n");
    }

    void modeThatIsAskedForDuringALoadFollowsIt()
    {
        WindowRig rig;
        connect(rig.engine, &SignalPlaybackEngine::loadProgressed, &rig.window,
                [&rig] { rig.window.setMode(Sigvane::Design); });
        rig.replay("0 A=1\n100\n");
        rig.press(u"Play"_s); // which loads again
        QCOMPARE(rig.window.mode(), Sigvane::Design);
        QVERIFY(!rig.engine->isPlaying());
        QCOMPARE(rig.answer.titles(), QStringList());
    }
};

QTEST_MAIN(TestModeSwitch)
#include "tst_modeswitch.moc"
