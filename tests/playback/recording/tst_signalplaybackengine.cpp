#include "playback/recording/SignalPlaybackEngine.h"
#include "support/Files.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

#include <functional>

using namespace Qt::StringLiterals;

namespace {

// An engine that has loaded a recording, and all that it says from then on, one text per signal.
struct Rig
{
    const QTemporaryDir folder;
    SignalPlaybackEngine engine;
    QStringList said;

    explicit Rig(const QByteArray& lines)
    {
        if (!load(lines))
            qFatal("cannot load the recording");
        using Engine = SignalPlaybackEngine;
        hear("values", &Engine::signalValuesUpdated);
        hear("at", &Engine::signalValuesUpdatedAt);
        hear("state", &Engine::stateEvent);
        hear("error", &Engine::errorEvent);
        hear("no errors", &Engine::errorReset);
        hear("message", &Engine::messageEvent);
        hear("no messages", &Engine::messageReset);
        hear("no data", &Engine::dataReset);
        hear("time", &Engine::playbackTimeAdvanced);
        hear("step", &Engine::positionChanged);
        hear("end", &Engine::playbackFinished);
    }
    QString path() const { return folder.filePath(u"a.rec"_s); }
    bool load(const QByteArray& lines) { return engine.loadFromFile(writeFile(path(), lines)); }

    /// What the engine says while this is done.
    QStringList heard(const std::function<void()>& what)
    {
        said.clear();
        what();
        return said;
    }
    /// A listener that does this once, at the first such signal.
    template <typename Signal>
    void atFirst(Signal signal, const std::function<void()>& what)
    {
        QObject::connect(&engine, signal, &engine, what, Qt::SingleShotConnection);
    }

private:
    template <typename Signal>
    void hear(const char* name, Signal signal)
    {
        QObject::connect(&engine, signal, &engine, [this, name](const auto&... what) {
            QString text;
            ((QDebug(&text).noquote() << name) << ... << what);
            said << text.remove(u"QMap"_s).trimmed();
        });
    }
};

/// The texts of a row of signals.
QStringList texts(const QString& joined) { return joined.split(u"; "_s); }

} // namespace

class TestSignalPlaybackEngine : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void playsWhatIsDueInFileOrder()
    {
        Rig rig("2 A=1 ST_M=RUN ERR=7 ST_L=ON\n1 RAW hi  you\n4\n");
        QCOMPARE(rig.heard([&] { rig.engine.advance(1000); }), texts(u"time 1; step 250"_s));
        QCOMPARE(rig.heard([&] { rig.engine.advance(1000); }),
                 texts(u"values ((A, 1)); at 2 ((A, 1)); state 2 M RUN; state 2 L ON; error 2 7; "
                       "values ((A, 1)); at 1 ((A, 1)); message 1 hi you; time 2; step 500"_s));
    }

    void timeOfASleepingMachineDoesNotCount()
    {
        Rig rig("0\n5\n");
        rig.engine.advance(2000);
        QCOMPARE(rig.engine.playTime(), 0.0);
    }

    void startsWhereItStoppedOrWasRewoundTo()
    {
        Rig rig("0 A=1\n1 A=2\n");
        rig.engine.advance(500);
        QTest::ignoreMessage(QtDebugMsg, "[Playback] frames: 2 maxTimestamp: 1 playbackRate: 1 first dt: 1");
        QCOMPARE(rig.heard([&] { rig.engine.startPlayback(); }), texts(u"at 1 ((A, 2)); time 0.5"_s));
        QCOMPARE(rig.heard([&] { rig.engine.resetStartTime(); }), texts(u"step 0"_s));
        QCOMPARE(rig.heard([&] { rig.engine.startPlayback(); }), texts(u"at 0 ((A, 1)); time 0"_s));
    }

    void seekSendsTheHistoryAndWhatHoldsThere()
    {
        Rig rig("0 A=1 ERR=7 ST_M=STOP\n4.5 B=2 ST_M=RUN ST_L=ON\n3 RAW hi\n14.5 A=9\n");
        rig.engine.setKnownStateGroups({u"G"_s, u"M"_s});
        QCOMPARE(rig.heard([&] { rig.engine.seekToTimestamp(14.5); }),
                 texts(u"no data; at 4.5 ((A, 1)(B, 2)); at 3 ((A, 1)(B, 2)); values ((A, 1)(B, 2)); "
                       "state 3 G; state 3 L ON; state 3 M RUN; no errors; error 0 7; no messages; "
                       "message 3 hi"_s));
    }

    void seekToTheStartShowsTheFirstFrame()
    {
        Rig rig("0 A=1\n1 A=2\n");
        rig.engine.advance(500);
        QCOMPARE(rig.heard([&] { rig.engine.seekToTimestamp(0); }),
                 texts(u"no data; values ((A, 1)); no errors; no messages"_s));
        QCOMPARE(rig.heard([&] { rig.engine.startPlayback(); }), texts(u"at 0 ((A, 1)); time 0"_s));
    }

    void passesTimesThatAreNoNumbers()
    {
        Rig rig("0\nnan A=2\ninf\n");
        QCOMPARE(rig.heard([&] { rig.engine.advance(50); }),
                 texts(u"values (); at 0 (); values ((A, 2)); at nan ((A, 2)); time 0.05; step 0"_s));
    }

    void loadsAFileAgainOnlyWhenItWasReplaced()
    {
        Rig rig("0\n");
        const QSignalSpy loads(&rig.engine, &SignalPlaybackEngine::loadProgressed);
        QVERIFY(rig.engine.loadFromFile(rig.path()));
        QCOMPARE(loads.size(), 0);
        QVERIFY(rig.load("0\n7\n"));
        QCOMPARE(rig.engine.getMaxTimestamp(), 7.0);
    }

    void standsStillWhileItLoads()
    {
        Rig rig("0\n");
        rig.atFirst(&SignalPlaybackEngine::loadProgressed, [&] { rig.engine.advance(1); });
        QVERIFY(rig.load("0 A=2\n"));
        QCOMPARE(rig.said, QStringList());
    }

    void goesOnWhereAListenerJumpsTo()
    {
        Rig rig("0 A=1 ERR=5\n1 A=2\n");
        rig.engine.startPlayback();
        rig.atFirst(&SignalPlaybackEngine::signalValuesUpdated, [&] { rig.engine.seekToTimestamp(1); });
        QCOMPARE(rig.heard([&] { rig.engine.advance(1); }),
                 texts(u"values ((A, 1)); values ((A, 1)); no errors; error 0 5; no messages"_s));
        QCOMPARE(rig.heard([&] { rig.engine.startPlayback(); }), texts(u"at 1 ((A, 2)); time 1"_s));
    }

    void endsWhenAListenerLoadsAShorterRecording()
    {
        Rig rig("0\n0 A=2 ERR=2\n1\n");
        rig.atFirst(&SignalPlaybackEngine::signalValuesUpdatedAt, [&] { QVERIFY(rig.load("0 B=1\n")); });
        QCOMPARE(rig.heard([&] { rig.engine.advance(1); }), texts(u"values (); at 0 ()"_s));
        QCOMPARE(rig.heard([&] { rig.engine.advance(1); }), texts(u"end"_s));
    }
};

QTEST_GUILESS_MAIN(TestSignalPlaybackEngine)
#include "tst_signalplaybackengine.moc"
