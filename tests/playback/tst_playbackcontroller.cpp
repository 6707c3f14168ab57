#include "definitions/ActiveDefinitions.h"
#include "playback/PlaybackController.h"
#include "playback/SignalPlaybackEngine.h"
#include "support/Canvas.h"
#include "support/ModalAnswer.h"
#include "widgets/TrendPlotWidget.h"

#include <QSignalSpy>
#include <QtWidgets>

using namespace Qt::StringLiterals;

// One session: each test goes on where the one before it left off.
class TestPlaybackController : public QObject
{
    Q_OBJECT
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
    QString write(const QString& name, const QByteArray& bytes) const
    {
        QFile out(dir.filePath(name));
        return out.open(QIODevice::WriteOnly) && out.write(bytes) > 0 ? out.fileName() : QString();
    }
private Q_SLOTS:
    void everyWayToMoveTheSliderSeeks()
    {
        slider.setRange(0, SignalPlaybackEngine::kPositionSteps);
        slider.resize(400, 30);
        connect(&control, &PlaybackController::playRequested, &control, &PlaybackController::enterPlay);
        control.startPlayback(write(u"a.rec"_s, "0 A=1\n1000 A=2\n")); // a step of the slider is a second
        QTest::mousePress(&slider, Qt::MiddleButton, {}, {100, 15});   // grabs the handle in the groove
        QVERIFY(!engine.isPlaying() && slider.value() > 200 && slider.value() < 300);
        const QSignalSpy seeks(&engine, &SignalPlaybackEngine::messageReset);
        const QDeadlineTimer early(280);
        QTRY_VERIFY((QTest::mouseMove(&slider, {350, 15}), seeks.size() == 3)); // one per 100 ms
        QVERIFY(early.hasExpired());
        QTest::mouseRelease(&slider, Qt::MiddleButton, {}, {350, 15});
        const int dropped = slider.value();
        QVERIFY(dropped > 800 && plot->currentNowMs() == dropped * 1000 && engine.isPlaying());
        QTest::keyClick(&slider, Qt::Key_Left);
        QVERIFY(plot->currentNowMs() == (dropped - 1) * 1000 && engine.isPlaying());
        control.leavePlay(); // after which nothing resumes
        QTest::keyClick(&slider, Qt::Key_Home);
        QVERIFY(plot->currentNowMs() == 0 && !engine.isPlaying());
    }

    void startsOnceAndAnewAtTheEndOrWithAnotherFile()
    {
        control.enterIdle();
        const QSignalSpy starts(&engine, &SignalPlaybackEngine::playbackTimeAdvanced);
        speed.setValue(2);
        engine.advance(1000);
        control.startPlayback(control.playbackFile()); // goes on
        slider.setValue(1000);
        control.startPlayback(control.playbackFile());
        engine.advance(1000);
        control.startPlayback(write(u"b.rec"_s, "0 A=1\ninf A=2\n"));
        QCOMPARE(starts, (QList<QVariantList>{{2.0}, {2.0}, {0.0}, {2.0}, {0.0}}));
        QCOMPARE(time.text(), u"0.000"_s);
    }

    void saysWhichDefinitionsAreUsed()
    {
        const QSignalSpy messages(&control, &PlaybackController::statusMessage);
        own.setChecked(true); // the recording has none
        QDir(dir.path()).mkdir(u"c.signals.h"_s);
        control.selectActiveSignalParserFor(dir.filePath(u"c.rec"_s));
        write(u"d.signals.h"_s, "DASHBOARD_STATE_GROUP(G, \"g\")\n");
        control.prepareSignalParserForPlaybackFile(dir.filePath(u"d.rec"_s));
        QVERIFY(messages.size() == 3 && messages[1][0].toString().startsWith("Failed to parse"_L1));
        const QSignalSpy states(&engine, &SignalPlaybackEngine::stateEvent);
        engine.seekToTimestamp(5);
        QCOMPARE(states.size(), 1); // the group that has no state is cleared
    }

    void tellsOfTroubleButNotOfACancel()
    {
        ModalAnswer answer;
        answer.reject().press(QMessageBox::Ok);
        plot->loadConfig({{u"markers"_s, QJsonArray{QJsonObject()}}});
        control.selectPlaybackFile();
        QVERIFY(plot->markers().isEmpty());
        QFile::remove(control.playbackFile());
        control.enterPlay();
        QTRY_VERIFY(!engine.isPlaying()); // finished at once
        write(u"b.rec"_s, QByteArray("1 A=1\n").repeated(500'000));
        const QSignalSpy idle(&control, &PlaybackController::idleRequested);
        connect(&engine, &SignalPlaybackEngine::loadProgressed, &engine,
                &SignalPlaybackEngine::cancelLoading);
        control.enterPlay();
        QVERIFY(idle.size() == 1 && !engine.isPlaying() && !slider.isEnabled());
        QCOMPARE(answer.titles(), QStringList({u"Open Recording"_s, u"Error"_s}));
    }
};

QTEST_MAIN(TestPlaybackController)
#include "tst_playbackcontroller.moc"
