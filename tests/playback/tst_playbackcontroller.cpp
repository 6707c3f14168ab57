#include "definitions/ActiveDefinitions.h"
#include "playback/PlaybackController.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "support/Canvas.h"
#include "support/ModalAnswer.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QCheckBox>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QLabel>
#include <QSignalSpy>
#include <QSlider>
#include <QTemporaryDir>

using namespace Qt::StringLiterals;

class TestPlaybackController : public QObject
{
    Q_OBJECT

    struct Rig
    {
        Canvas canvas;
        TrendPlotWidget* plot = dynamic_cast<TrendPlotWidget*>(canvas.add("TrendPlot", {})->widget());
        QTemporaryDir dir;
        QSlider slider{Qt::Horizontal};
        QLabel file, time;
        QDoubleSpinBox speed;
        QCheckBox own;
        ActiveDefinitions definitions;
        SignalPlaybackEngine engine;
        PlaybackController control{
            &engine, &canvas.scene, &definitions, {&slider, &file, &time, &speed, &own}, {}};
        bool playing = false;

        Rig()
        {
            slider.setRange(0, SignalPlaybackEngine::kPositionSteps);
            slider.resize(400, 30);
            connect(&control, &PlaybackController::playRequested, &control, [this] { play(); });
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
            QFile out(dir.filePath(name));
            return out.open(QIODevice::WriteOnly) && out.write(bytes) > 0 ? out.fileName() : QString();
        }
    };

private Q_SLOTS:
    void everyWayToMoveTheSliderSeeks()
    {
        Rig rig;
        rig.plot->assignSignals({u"A"_s});
        rig.plot->loadConfig({{u"timeWindowMs"_s, 4000}});
        // A step of the slider is a second.
        rig.control.startPlayback(rig.write(u"a.rec"_s, "0 A=1\n495 A=2\n497 A=3\n1000 A=4\n"));
        const QDeadlineTimer early(290);
        QTest::mousePress(&rig.slider, Qt::MiddleButton, {}, {100, 15}); // grabs the handle in the groove
        QVERIFY(!rig.engine.isPlaying() && rig.slider.value() > 200 && rig.slider.value() < 300);
        const QSignalSpy seeks(&rig.engine, &SignalPlaybackEngine::messageReset);
        QTRY_VERIFY((QTest::mouseMove(&rig.slider, {350, 15}), seeks.size() >= 3)); // one per 100 ms
        QVERIFY(early.hasExpired());
        QTest::mouseRelease(&rig.slider, Qt::MiddleButton, {}, {350, 15});
        const int dropped = rig.slider.value();
        QVERIFY(dropped > 800 && rig.plot->currentNowMs() == dropped * 1000 && rig.engine.isPlaying());
        QTest::keyClick(&rig.slider, Qt::Key_Left);
        QVERIFY(rig.plot->currentNowMs() == (dropped - 1) * 1000 && rig.engine.isPlaying());
        rig.pause(); // after which nothing resumes
        QTest::keyClick(&rig.slider, Qt::Key_Home);
        QVERIFY(rig.plot->currentNowMs() == 0 && !rig.engine.isPlaying());

        rig.plot->addSample(u"A"_s, 9.0, 900'000, false);
        rig.slider.setValue(499);
        const QSignalSpy history(&rig.engine, &SignalPlaybackEngine::signalValuesUpdatedAt);
        QTest::keyClick(&rig.slider, Qt::Key_Right);
        // What the plot's window shows comes back, and what was to come is gone.
        QVERIFY(history.size() == 1 && history[0][0] == 497.0 && rig.plot->series(u"A"_s)->isEmpty());
        rig.canvas.view.grab();
        for (int pass = 0; pass < 5; ++pass) // until all changes so far have gone through the canvas
            QCoreApplication::processEvents();
        const QSignalSpy repaints(&rig.canvas.scene, &QGraphicsScene::changed);
        rig.plot->setValueForSignalAt(u"A"_s, 1.0, 500.0);
        QTRY_VERIFY(!repaints.isEmpty());
        rig.play();
        QVERIFY(rig.plot->currentNowMs() > 1e12); // on the clock again
    }

    void loadTakesTheHeldSliderAndResumesNothing()
    {
        Rig rig;
        rig.plot->assignSignals({u"A"_s});
        const QString path = rig.write(u"a.rec"_s, "0 A=1\n1000 A=2\n");
        rig.control.startPlayback(path);
        rig.slider.setSliderDown(true);
        rig.slider.setSliderPosition(300);
        const QSignalSpy starts(&rig.engine, &SignalPlaybackEngine::playbackTimeAdvanced);
        rig.control.showRecorded(path);
        QVERIFY(!rig.slider.isSliderDown());
        QCOMPARE(rig.plot->currentNowMs(), 300'000);
        QVERIFY(starts.isEmpty() && !rig.engine.isPlaying());
    }

    void startsOnceAndAnewAtTheEndOrWithAnotherFile()
    {
        Rig rig;
        const QString path = rig.write(u"a.rec"_s, "0 A=1\n1000 A=2\n");
        const QSignalSpy starts(&rig.engine, &SignalPlaybackEngine::playbackTimeAdvanced);
        rig.speed.setValue(2);
        rig.control.startPlayback(path);
        rig.engine.advance(1000);
        rig.pause();
        rig.control.startPlayback(path); // goes on
        rig.pause();
        rig.slider.setValue(1000);
        rig.control.startPlayback(path);
        rig.engine.advance(1000);
        rig.engine.stopPlayback(); // in Play still, as when Record is refused
        rig.control.startPlayback(rig.write(u"b.rec"_s, "0 A=1\ninf A=2\n"));
        QCOMPARE(starts, (QList<QVariantList>{{0.0}, {2.0}, {2.0}, {0.0}, {2.0}, {0.0}}));
        QCOMPARE(rig.time.text(), u"0.000"_s);
    }

    void lastWrittenRecordingIsTheOneThatGetsLoaded()
    {
        Rig rig;
        const QString other = rig.write(u"a.rec"_s, "5 A=1\n"), last = rig.write(u"b.rec"_s, "7 A=1\n");
        const auto chooseMeanwhile = [&] {
            rig.control.showRecorded(last);
            rig.control.startPlayback(other); // the user has to wait
        };
        connect(&rig.engine, &SignalPlaybackEngine::loadProgressed, this, chooseMeanwhile,
                Qt::SingleShotConnection);
        rig.control.showRecorded(other);
        QCOMPARE(rig.control.playbackFile(), last);
        QCOMPARE(rig.engine.getMaxTimestamp(), 7.0);
    }

    void liveLineDuringALoadLeavesTheReplaysPicture()
    {
        Rig rig;
        rig.control.showRecorded(rig.write(u"a.rec"_s, "0 A=1\n100 A=2\n"));
        QTest::keyClick(&rig.slider, Qt::Key_End);
        rig.write(u"a.rec"_s, "0 A=1\n100 A=3\n200 A=4\n"); // another file, so that Play loads it
        qint64 nowMs = -1;
        connect(&rig.engine, &SignalPlaybackEngine::loadProgressed, this, [&] {
            rig.control.onLiveLine();
            nowMs = rig.plot->currentNowMs();
        });
        rig.play();
        QCOMPARE(nowMs, 100'000);
    }

    void saysWhichDefinitionsAreUsed()
    {
        Rig rig;
        const QString plain = rig.write(u"a.rec"_s, "0 A=1\n");
        rig.control.showRecorded(plain);
        const QSignalSpy messages(&rig.control, &PlaybackController::statusMessage);
        rig.own.setChecked(true); // the recording has none
        QDir(rig.dir.path()).mkdir(u"c.signals.h"_s);
        rig.control.showRecorded(rig.write(u"c.rec"_s, "0 A=1\n"));
        rig.write(u"d.signals.h"_s, "DASHBOARD_STATE_GROUP(G, \"g\")\n");
        rig.control.showRecorded(rig.write(u"d.rec"_s, "0 A=1\n"));
        QVERIFY(messages.size() == 3 && messages[1][0].toString().startsWith("Failed to parse"_L1));
        const QSignalSpy states(&rig.engine, &SignalPlaybackEngine::stateEvent);
        rig.engine.seekToTimestamp(5);
        QCOMPARE(states.size(), 1); // the group that has no state is cleared
        rig.control.showRecorded(plain);
        QVERIFY(!rig.definitions.active()); // not another recording's
    }

    void tellsOfTroubleButNotOfACancel()
    {
        Rig rig;
        ModalAnswer answer;
        answer.reject().press(QMessageBox::Ok);
        rig.plot->loadConfig({{u"markers"_s, QJsonArray{QJsonObject()}}});
        rig.control.selectPlaybackFile();
        QVERIFY(rig.plot->markers().isEmpty());
        rig.control.showRecorded(rig.dir.filePath(u"b.rec"_s)); // which is not there
        rig.play();
        QTRY_VERIFY(!rig.engine.isPlaying()); // finished at once
        rig.pause();
        rig.write(u"b.rec"_s, QByteArray("1 A=1\n").repeated(500'000));
        const QSignalSpy idle(&rig.control, &PlaybackController::idleRequested);
        connect(&rig.engine, &SignalPlaybackEngine::loadProgressed, &rig.engine,
                &SignalPlaybackEngine::cancelLoading);
        rig.play();
        QVERIFY(idle.size() == 1 && !rig.engine.isPlaying() && !rig.slider.isEnabled());
        QCOMPARE(answer.titles(), QStringList({u"Open Recording"_s, u"Error"_s}));
    }
};

QTEST_MAIN(TestPlaybackController)
#include "tst_playbackcontroller.moc"
