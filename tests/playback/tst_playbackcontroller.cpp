#include "definitions/ActiveDefinitions.h"
#include "playback/PlaybackController.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "support/Canvas.h"
#include "support/Files.h"
#include "support/ModalAnswer.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QCheckBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

// With the recording that it has chosen, its slider, and a trend plot of the signal A over 4 s.
class TestPlaybackController : public QObject
{
    Q_OBJECT

    struct Rig
    {
        const QTemporaryDir dir;
        Canvas canvas;
        TrendPlotWidget* plot = dynamic_cast<TrendPlotWidget*>(canvas.add("TrendPlot", {})->widget());
        SignalPlaybackEngine engine;
        QSlider slider{Qt::Horizontal};
        QLabel file;
        QLabel time;
        QDoubleSpinBox speed;
        QCheckBox own;
        ActiveDefinitions definitions;
        PlaybackController control{
            &engine, &canvas.scene, &definitions, {&slider, &file, &time, &speed, &own}, {}};
        const QSignalSpy messages{&control, &PlaybackController::statusMessage};
        ModalAnswer answer;
        bool playing = false;

        Rig()
        {
            plot->assignSignals({u"A"_s});
            plot->loadConfig({{u"timeWindowMs"_s, 4000}});
            slider.setRange(0, SignalPlaybackEngine::kPositionSteps);
            slider.resize(400, 30);
            speed.setValue(1.0);
            QObject::connect(&control, &PlaybackController::playRequested, &control, [this] { play(); });
        }
        // What the window does when it changes its mode.
        void play()
        {
            if (playing)
                return;
            control.enterPlay();
            playing = true;
            control.setMode(PlaybackController::Mode::Playing);
        }
        void pause()
        {
            control.leavePlay();
            playing = false;
            control.setMode(PlaybackController::Mode::Paused);
        }
        QString write(const QString& name, const QByteArray& bytes) const
        {
            return writeFile(dir.filePath(name), bytes);
        }
        /// In which a step of the slider is a second.
        QString recording() const { return write(u"a.rec"_s, "0 A=1\n495 A=2\n497 A=3\n1000 A=4\n"); }
        /// On the clock, and not on the time of a replay.
        bool plotIsLive() const { return plot->currentNowMs() > 1'000'000'000'000; }
        // With the button that takes the handle to it.
        void press(int x) { QTest::mousePress(&slider, Qt::MiddleButton, {}, {x, 15}); }
        void move(int x) { QTest::mouseMove(&slider, {x, 15}); }
    };

private Q_SLOTS:
    // --- Playing ---

    void jumpWhilePausedResumesNothing()
    {
        Rig rig;
        rig.control.startPlayback(rig.recording());
        rig.pause();
        QTest::keyClick(&rig.slider, Qt::Key_Home);
        QVERIFY(!rig.engine.isPlaying());
    }

    void playGoesOnWhereItWasPaused()
    {
        Rig rig;
        rig.speed.setValue(2);
        rig.control.startPlayback(rig.recording());
        rig.engine.advance(1000);
        rig.pause();
        rig.play();
        QCOMPARE(rig.engine.playTime(), 2.0);
    }

    void playBeginsAnewAtTheEnd()
    {
        Rig rig;
        rig.control.showRecorded(rig.recording());
        QTest::keyClick(&rig.slider, Qt::Key_End);
        rig.play();
        QCOMPARE(rig.engine.playTime(), 0.0);
        QCOMPARE(rig.time.text(), u"0.000"_s);
        QVERIFY(rig.plotIsLive());
    }

    void anotherRecordingBeginsAtItsStart()
    {
        Rig rig;
        rig.control.startPlayback(rig.recording());
        rig.engine.advance(1000);
        rig.engine.stopPlayback(); // in Play still, as when Record is refused
        rig.control.startPlayback(rig.write(u"b.rec"_s, "0 A=1\ninf A=2\n"));
        QVERIFY(rig.engine.isPlaying());
        QCOMPARE(rig.engine.playTime(), 0.0);
    }

    void idleRewinds()
    {
        Rig rig;
        rig.control.startPlayback(rig.recording());
        rig.engine.advance(1900);
        rig.pause();
        rig.control.enterIdle();
        QCOMPARE(rig.slider.value(), 0);
        QCOMPARE(rig.engine.playTime(), 0.0);
    }

    // --- Scrubbing ---

    void heldHandleIsFollowedNowAndThen()
    {
        Rig rig;
        const QSignalSpy seeks(&rig.engine, &SignalPlaybackEngine::messageReset);
        rig.control.startPlayback(rig.recording());
        rig.press(100);
        QVERIFY(!rig.engine.isPlaying());
        const auto before = seeks.size();
        rig.move(300);
        rig.move(350);
        QCOMPARE(seeks.size(), before);
        QTRY_VERIFY(seeks.size() > before);
        QVERIFY(rig.slider.value() > 800);
        QCOMPARE(rig.plot->currentNowMs(), rig.slider.value() * 1000);
        const auto first = seeks.size();
        QTRY_VERIFY(seeks.size() > first); // and on, until it is released
    }

    void replayGoesOnWhereTheHandleIsReleased()
    {
        Rig rig;
        rig.control.startPlayback(rig.recording());
        rig.press(100);
        rig.move(350);
        QTest::mouseRelease(&rig.slider, Qt::MiddleButton, {}, {350, 15});
        QCOMPARE(rig.plot->currentNowMs(), rig.slider.value() * 1000);
        QCOMPARE(rig.engine.playTime(), rig.slider.value());
        QVERIFY(rig.engine.isPlaying());
    }

    void keyJumpsAndBringsBackWhatThePlotShows()
    {
        Rig rig;
        rig.control.showRecorded(rig.recording());
        rig.plot->addSample(u"A"_s, 9.0, 900'000, false); // to come, and so gone
        rig.slider.setValue(499);
        const QSignalSpy history(&rig.engine, &SignalPlaybackEngine::signalValuesUpdatedAt);
        QTest::keyClick(&rig.slider, Qt::Key_Right);
        QCOMPARE(rig.plot->currentNowMs(), 500'000);
        QCOMPARE(history.size(), 1);
        QCOMPARE(history[0][0], 497.0);
        QVERIFY(rig.plot->series(u"A"_s)->isEmpty());
    }

    // --- Loading ---

    void loadTakesTheHeldSliderAndResumesNothing()
    {
        Rig rig;
        const QString path = rig.recording();
        rig.control.startPlayback(path);
        rig.slider.setSliderDown(true);
        rig.slider.setSliderPosition(300);
        rig.control.showRecorded(path);
        QVERIFY(!rig.slider.isSliderDown());
        QCOMPARE(rig.plot->currentNowMs(), 300'000);
        QVERIFY(!rig.engine.isPlaying());
    }

    void loadShowsTheTimeInTheNewRecording()
    {
        Rig rig;
        rig.control.showRecorded(rig.recording());
        rig.slider.setValue(500);
        rig.write(u"a.rec"_s, "0 A=1\n2000 A=200\n");
        rig.play();
        QCOMPARE(rig.time.text(), u"1000.000"_s);
    }

    void lastChosenRecordingIsTheOneThatGetsLoaded()
    {
        Rig rig;
        const QString first = rig.recording();
        const QString last = rig.write(u"b.rec"_s, "7 A=1\n");
        const auto duringTheLoad = [&] {
            rig.control.showRecorded(last);
            rig.control.startPlayback(first); // the user has to wait
        };
        connect(&rig.engine, &SignalPlaybackEngine::loadProgressed, this, duringTheLoad,
                Qt::SingleShotConnection);
        rig.control.showRecorded(first);
        QCOMPARE(rig.control.playbackFile(), last);
        QCOMPARE(rig.engine.getMaxTimestamp(), 7.0);
    }

    void cancelledLoadLeadsBackToIdle()
    {
        Rig rig;
        rig.control.showRecorded(rig.dir.filePath(u"a.rec"_s)); // which is not there yet
        rig.recording();
        const QSignalSpy idle(&rig.control, &PlaybackController::idleRequested);
        connect(&rig.engine, &SignalPlaybackEngine::loadProgressed, &rig.engine,
                &SignalPlaybackEngine::cancelLoading);
        rig.play();
        QCOMPARE(idle.size(), 1);
    }

    // --- Live lines ---

    void liveLineWaitsForTheHeldSlider()
    {
        Rig rig;
        rig.control.showRecorded(rig.recording());
        rig.slider.setSliderDown(true);
        rig.control.onLiveLine();
        QVERIFY(!rig.plotIsLive());
        rig.slider.setSliderDown(false);
        rig.control.onLiveLine();
        QVERIFY(rig.plotIsLive());
    }

    // --- The chosen recording ---

    void dialogBeginsInTheProjectsRecordings()
    {
        Rig rig;
        QVERIFY(QDir(rig.dir.path()).mkdir(u"recordings"_s));
        rig.control.setProjectFolder(rig.dir.path());
        rig.plot->loadConfig({{u"markers"_s, QJsonArray{QJsonObject()}}});
        QString folder;
        rig.answer.then([&](QDialog* dialog) {
            folder = qobject_cast<QFileDialog*>(dialog)->directory().path();
            dialog->reject();
        });
        rig.control.selectPlaybackFile();
        QCOMPARE(rig.answer.titles(), QStringList(u"Open Recording"_s));
        QCOMPARE(folder, rig.dir.filePath(u"recordings"_s));
        QVERIFY(rig.plot->markers().isEmpty()); // even without a choice
    }

    void showsTheFileWithItsPathAsToolTip()
    {
        Rig rig;
        const QString path = rig.write(u"<b>.rec"_s, "0 A=1\n");
        rig.answer.chooseFile(path);
        rig.control.selectPlaybackFile();
        QCOMPARE(rig.file.text(), u"<b>.rec"_s);
        QCOMPARE(rig.file.toolTip(), u"<p>%1</p>"_s.arg(path.toHtmlEscaped()));
    }

    void warnsOfAFileThatCannotBeLoaded()
    {
        Rig rig;
        rig.answer.press(QMessageBox::Ok);
        rig.control.startPlayback(rig.dir.filePath(u"missing.rec"_s));
        QCOMPARE(rig.answer.titles(), QStringList(u"Error"_s));
        QCOMPARE(rig.answer.texts(), QStringList(u"Failed to load playback file"_s));
        QVERIFY(!rig.playing);
    }

    // --- Its definitions ---

    void saysWhichDefinitionsAreUsed_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QString>("message");
        QTest::addColumn<int>("clearedGroups");
        QTest::newRow("it has none") << u"a.rec"_s
                                     << u"No recording definitions found; using current definitions."_s << 0;
        QTest::newRow("they cannot be read")
            << u"b.rec"_s << u"Failed to parse recording definitions; using current definitions."_s << 0;
        QTest::newRow("its own") << u"c.rec"_s << u"Using recording’s signal definitions."_s << 1;
    }

    void saysWhichDefinitionsAreUsed()
    {
        QFETCH(QString, file);
        Rig rig;
        QVERIFY(QDir(rig.dir.path()).mkdir(u"b.signals.h"_s));
        rig.write(u"c.signals.h"_s, "DASHBOARD_STATE_GROUP(G, \"g\")\n");
        rig.own.setChecked(true);
        rig.control.showRecorded(rig.write(file, "0 A=1\n"));
        QCOMPARE(rig.messages.size(), 1);
        QTEST(rig.messages[0][0].toString(), "message");
        const QSignalSpy states(&rig.engine, &SignalPlaybackEngine::stateEvent);
        rig.engine.seekToTimestamp(5);
        QTEST(int(states.size()), "clearedGroups");
    }
};

QTEST_MAIN(TestPlaybackController)
#include "tst_playbackcontroller.moc"
