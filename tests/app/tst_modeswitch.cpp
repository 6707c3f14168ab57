#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
#include "app/status/RecordingStatus.h"
#include "playback/PlaybackController.h"
#include "playback/recording/SignalRecorder.h"
#include "support/WindowRig.h"
#include "widgets/consoles/ErrorConsoleWidget.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QDir>
#include <QSignalSpy>
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
    const QString earlier = write("earlier.rec", "0 A=1 ERR=7\n100\n");

    RecordingRig()
    {
        openProject();
        connectTo(device);
        plot->loadConfig({{u"markers"_s, QJsonArray{QJsonObject()}}});
        window.startPlayback(earlier);
        engine->advance(1);
        press(u"Record"_s);
        device.writeAll("7 A=1\n7.5 A=2 word\n");
        if (!QTest::qWaitFor([this] { return window.router()->lastValues().value(u"A"_s) == 2.0; }))
            qFatal("nothing was heard");
    }
    using End = void (RecordingRig::*)();
    void stop() { press(u"Stop"_s); }
    void play() { press(u"Play"_s); }
    void playOther() { window.startPlayback(earlier); }
    void unplug() { device.close(); }
    void close() { window.close(); }
};

/// The window, and a file that takes several slices to load.
struct LongLoadRig : WindowRig
{
    const QString path = write("long.rec", QByteArray("1 A=1 B=2\n").repeated(1'300'000));
    int slices = 0;

    LongLoadRig()
    {
        QObject::connect(engine, &SignalPlaybackEngine::loadProgressed, &window, [this] {
            if (++slices == 2)
                window.setMode(Sigvane::Design);
        });
    }
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
        QCOMPARE(rig.items().first()->flags().testFlag(QGraphicsItem::ItemIsMovable), design);
        QCOMPARE(rig.window.scene()->isDesignMode(), design);
        QCOMPARE(rig.window.findChild<WidgetPalette*>()->isEnabled(), design);
        const bool replays = to == Sigvane::Play || to == Sigvane::Pause;
        QCOMPARE(rig.window.router()->isLive(), !replays);
        QCOMPARE(rig.engine->isPlaying(), to == Sigvane::Play);
        QCOMPARE(rig.action(u"Play"_s)->isEnabled(), to != Sigvane::Play);
    }

    void stopIsPauseDuringAReplay()
    {
        WindowRig rig;
        const QAction* stop = rig.action(u"Stop"_s);
        rig.replay("0 A=1\n100\n");
        QCOMPARE(stop->text(), u"Pause"_s);
        QCOMPARE(stop->toolTip(), u"Pause playback"_s);
        rig.press(u"Pause"_s);
        QCOMPARE(stop->text(), u"Stop"_s);
        QCOMPARE(stop->toolTip(), u"Stop"_s);
    }

    void stopRewinds()
    {
        WindowRig rig;
        rig.replay("0 A=1\n100 A=2\n");
        rig.engine->advance(1000);
        rig.press(u"Pause"_s);
        QCOMPARE(rig.slider->value(), 10);
        rig.press(u"Stop"_s);
        QCOMPARE(rig.slider->value(), 0);
        QCOMPARE(rig.engine->playTime(), 0.0);
    }

    void playWithoutARecordingIsPlayAllTheSame()
    {
        WindowRig rig;
        rig.answer.press(QMessageBox::Ok);
        rig.press(u"Play"_s);
        QCOMPARE(rig.answer.texts(), QStringList(u"No playback file selected."_s));
        QCOMPARE(rig.window.mode(), Sigvane::Play);
        QCOMPARE(rig.status(), u"Playing..."_s);
    }

    void refusedRecordLeavesDesignAllTheSame()
    {
        WindowRig rig;
        auto* plot = rig.add<TrendPlotWidget>();
        rig.press(u"Design"_s);
        plot->setExternalTimeEnabled(true);
        rig.answer.press(QMessageBox::Ok);
        rig.press(u"Record"_s);
        QCOMPARE(rig.window.mode(), Sigvane::Design);
        QCOMPARE(rig.status(), u"Design Mode"_s);
        QVERIFY(!rig.window.findChild<WidgetPalette*>()->isEnabled());
        QVERIFY(plot->currentNowMs() > kClock);
    }

    void recordNeedsAProject()
    {
        const PseudoTerminal device;
        WindowRig rig;
        rig.connectTo(device);
        rig.answer.press(QMessageBox::Ok);
        rig.press(u"Record"_s);
        QCOMPARE(rig.answer.titles(), QStringList(u"Record"_s));
        QCOMPARE(rig.answer.texts(), QStringList(u"Could not open file for writing."_s));
        QTRY_COMPARE(rig.status(), u"There is no project to record in."_s);
        QCOMPARE(rig.window.mode(), Sigvane::Idle);
    }

    void recordEndsTheReplay()
    {
        const RecordingRig rig;
        QCOMPARE(rig.window.mode(), Sigvane::Record);
        QCOMPARE(rig.status(), u"Recording..."_s);
        QVERIFY(rig.plot->currentNowMs() > kClock);
        QCOMPARE(rig.plot->markers().size(), 0);
        QCOMPARE(rig.errors->plainText(), QString());
        QVERIFY(!rig.slider->isEnabled());
        QVERIFY(rig.window.findChild<RecordingStatus*>()->isVisibleTo(&rig.window));
    }

    void recordingEndsAsAWholeFile_data()
    {
        QTest::addColumn<RecordingRig::End>("end");
        QTest::addColumn<Sigvane::Mode>("mode");
        QTest::addColumn<QString>("status");
        QTest::addColumn<bool>("becomesTheChosenOne");
        const QString stopped = u"Recording stopped."_s;
        const QString playing = u"Playing..."_s;
        const QString lost = u"The device is gone. Press Connect when it is back."_s;
        QTest::newRow("stop") << &RecordingRig::stop << Sigvane::Idle << stopped << true;
        QTest::newRow("play") << &RecordingRig::play << Sigvane::Play << playing << true;
        QTest::newRow("other file") << &RecordingRig::playOther << Sigvane::Play << playing << false;
        QTest::newRow("device lost") << &RecordingRig::unplug << Sigvane::Idle << lost << true;
        QTest::newRow("close") << &RecordingRig::close << Sigvane::Record << stopped << false;
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
        QTEST(rig.window.playback()->playbackFile() != rig.earlier, "becomesTheChosenOne");
    }

    void cancelledLoadOfWhatWasRecordedLeadsToIdle()
    {
        const RecordingRig rig;
        const QSignalSpy loads(rig.engine, &SignalPlaybackEngine::loadProgressed);
        connect(rig.engine, &SignalPlaybackEngine::loadProgressed, rig.engine,
                &SignalPlaybackEngine::cancelLoading);
        rig.press(u"Play"_s);
        QCOMPARE(rig.window.mode(), Sigvane::Idle);
        QCOMPARE(loads.size(), 1); // and not for Play once more
        QCOMPARE(rig.answer.titles(), QStringList());
    }

    void removedRecordingLeadsToIdle()
    {
        RecordingRig rig;
        rig.dir.remove();
        rig.answer.press(QMessageBox::Ok);
        rig.press(u"Play"_s);
        QTRY_COMPARE(rig.window.mode(), Sigvane::Idle);
        QCOMPARE(rig.answer.texts(), QStringList(u"Failed to load playback file"_s));
    }

    void modeThatIsAskedForEndsALoad()
    {
        LongLoadRig rig;
        rig.window.startPlayback(rig.path);
        QCOMPARE(rig.window.mode(), Sigvane::Design);
        QCOMPARE(rig.window.playback()->playbackFile(), rig.path);
        QVERIFY(!rig.engine->hasFrames());
        QCOMPARE(rig.answer.titles(), QStringList());
    }

    void modeThatIsAskedForWhilePlayIsEnteredFollowsIt()
    {
        LongLoadRig rig;
        rig.window.startPlayback(rig.path);
        rig.slices = 0;
        rig.press(u"Play"_s);
        QCOMPARE(rig.window.mode(), Sigvane::Design);
        QVERIFY(!rig.engine->isPlaying());
        QCOMPARE(rig.answer.titles(), QStringList());
    }
};

QTEST_MAIN(TestModeSwitch)
#include "tst_modeswitch.moc"
