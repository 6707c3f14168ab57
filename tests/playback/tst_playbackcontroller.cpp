#include "definitions/ActiveDefinitions.h"
#include "playback/PlaybackController.h"
#include "support/ModalAnswer.h"
#include "support/ReplayDesk.h"

#include <QCheckBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QSignalSpy>

using namespace Qt::StringLiterals;

// With the recording that it has chosen.
class TestPlaybackController : public QObject
{
    Q_OBJECT

    struct Rig : ReplayDesk
    {
        QLabel file;
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
        void duringALoad(const std::function<void()>& what)
        {
            QObject::connect(&engine, &SignalPlaybackEngine::loadProgressed, &engine, what,
                             Qt::SingleShotConnection);
        }
        /// In which a step of the slider is a second.
        QString recording() const { return write(u"a.rec"_s, "0 A=1\n1000 A=2\n"); }
    };

private Q_SLOTS:
    // --- Playing ---

    void sliderResumesTheReplayOnlyWhilePlaying()
    {
        Rig rig;
        rig.control.startPlayback(rig.recording());
        QTest::keyClick(&rig.slider, Qt::Key_Right);
        QVERIFY(rig.engine.isPlaying());
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
        rig.duringALoad([&] {
            rig.control.showRecorded(last);
            rig.control.startPlayback(first); // the user has to wait
        });
        rig.control.showRecorded(first);
        QCOMPARE(rig.control.playbackFile(), last);
        QCOMPARE(rig.engine.getMaxTimestamp(), 7.0);
    }

    void cancelledLoadLeadsBackToIdleWithoutABox()
    {
        Rig rig;
        rig.control.showRecorded(rig.dir.filePath(u"a.rec"_s)); // which is not there yet
        rig.recording();
        const QSignalSpy idle(&rig.control, &PlaybackController::idleRequested);
        rig.duringALoad([&] { rig.engine.cancelLoading(); });
        rig.play();
        QCOMPARE(idle.size(), 1);
        QVERIFY(!rig.engine.isPlaying());
        QVERIFY(!rig.slider.isEnabled());
        QCOMPARE(rig.answer.titles(), QStringList());
    }

    // --- Live lines ---

    void liveLineDuringALoadLeavesTheReplaysPicture()
    {
        Rig rig;
        rig.control.showRecorded(rig.recording());
        QTest::keyClick(&rig.slider, Qt::Key_End);
        rig.write(u"a.rec"_s, "0 A=1\n100 A=3\n200 A=4\n"); // another file, so that Play loads it
        qint64 nowMs = -1;
        rig.duringALoad([&] {
            rig.control.onLiveLine();
            nowMs = rig.plot->currentNowMs();
        });
        rig.play();
        QCOMPARE(nowMs, 1'000'000);
    }

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

    void warnsThatThereIsNoFileToPlay()
    {
        Rig rig;
        rig.answer.press(QMessageBox::Ok);
        rig.play();
        QCOMPARE(rig.answer.titles(), QStringList(u"No File"_s));
        QCOMPARE(rig.answer.texts(), QStringList(u"No playback file selected."_s));
    }

    void saysThatThereIsNothingToExport()
    {
        Rig rig;
        rig.answer.press(QMessageBox::Ok);
        QVERIFY(!rig.control.recordingToExport(u"Export CSV"_s));
        QCOMPARE(rig.answer.titles(), QStringList(u"Export CSV"_s));
        QCOMPARE(rig.answer.texts(), QStringList(u"No playback data loaded."_s));
    }

    // --- Its definitions ---

    void saysWhichDefinitionsAreUsed_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QVariantList>("message");
        QTest::addColumn<int>("clearedGroups");
        QTest::newRow("it has none")
            << u"a.rec"_s
            << QVariantList{u"No recording definitions found; using current definitions."_s, 5000} << 0;
        QTest::newRow("they cannot be read")
            << u"b.rec"_s
            << QVariantList{u"Failed to parse recording definitions; using current definitions."_s, 5000}
            << 0;
        QTest::newRow("its own") << u"c.rec"_s
                                 << QVariantList{u"Using recording’s signal definitions."_s, 4000} << 1;
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
        QTEST(rig.messages[0], "message");
        const QSignalSpy states(&rig.engine, &SignalPlaybackEngine::stateEvent);
        rig.engine.seekToTimestamp(5);
        QTEST(int(states.size()), "clearedGroups");
    }

    void boxChangesTheDefinitionsAtOnce()
    {
        Rig rig;
        const QSignalSpy reapplied(&rig.control, &PlaybackController::reapplyRequested);
        rig.write(u"a.signals.h"_s, "\n");
        rig.control.showRecorded(rig.recording());
        QVERIFY(!rig.definitions.active());
        rig.own.setChecked(true);
        QVERIFY(rig.definitions.active());
        QCOMPARE(reapplied.size(), 2);
        rig.own.setChecked(false);
        QVERIFY(!rig.definitions.active());
    }
};

QTEST_MAIN(TestPlaybackController)
#include "tst_playbackcontroller.moc"
