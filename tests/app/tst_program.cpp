#include "playback/recording/SignalPlaybackEngine.h"
#include "support/PseudoTerminal.h"

#include <QDir>
#include <QElapsedTimer>
#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTest>

#include <tuple>

using namespace Qt::StringLiterals;

// The real program as a process of its own.
class TestProgram : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersOnTheCommandLine()
    {
        for (const auto& [option, status, answer] :
             {std::tuple("--version", 0, "Sigvane " SIGVANE_VERSION),
              std::tuple("--help", 0, "Path to dashboard_signals.def."),
              std::tuple("--nonsense", 1, "nonsense")}) {
            QProcess program;
            program.setProcessChannelMode(QProcess::MergedChannels);
            program.start(QStringLiteral(SIGVANE_PROGRAM), {QString::fromLatin1(option)});
            QVERIFY(program.waitForFinished());
            QCOMPARE(program.exitCode(), status);
            QVERIFY(program.readAll().contains(answer));
        }
    }

    void goesOnWithoutWhatCannotBeUsed()
    {
        QTemporaryDir dir;
        QProcess program;
        program.setProcessChannelMode(QProcess::MergedChannels);
        program.start(QStringLiteral(SIGVANE_PROGRAM),
                      {u"--project"_s, dir.path(), u"--baud"_s, u"quick"_s, u"--port"_s,
                       dir.filePath(u"port"_s), u"--play"_s, QStringLiteral(SIGVANE_RECORDING)});
        QByteArray said;
        QTRY_VERIFY2_WITH_TIMEOUT((said += program.readAll()).contains("[Playback] frames: "), said, 30'000);
        QVERIFY(said.contains("Not a usable project: " + dir.path().toUtf8()));
        QVERIFY(said.contains("Not a baud rate: quick") && said.contains("Could not open the port"));
        QCOMPARE(program.state(), QProcess::Running);
        program.terminate();
        QVERIFY(program.waitForFinished());
    }

    void killedWhileRecordingLosesASecondAtMost()
    {
        QTemporaryDir dir;
        QFile definitions(dir.filePath(u"dashboard_signals.def"_s));
        QVERIFY(definitions.open(QIODevice::WriteOnly));
        definitions.close();
        PseudoTerminal device;
        QProcess program;
        program.start(QStringLiteral(SIGVANE_PROGRAM),
                      {u"--project"_s, dir.path(), u"--port"_s, device.portName(), u"--record"_s});
        const QDir recordings(dir.filePath(u"recordings"_s));
        QTRY_VERIFY_WITH_TIMEOUT(!recordings.entryList({u"*.rec"_s}).isEmpty(), 30'000);

        // A line per millisecond, up to just before a flush.
        const QFileInfo file(recordings.filePath(recordings.entryList({u"*.rec"_s}).constFirst()));
        QElapsedTimer clock;
        clock.start();
        QList<qint64> sentMs;
        while (sentMs.size() < 1900) {
            QVERIFY(device.writeAll("N=" + QByteArray::number(sentMs.size()) + '\n'));
            sentMs.append(clock.elapsed());
            while (clock.elapsed() < sentMs.size())
                QCoreApplication::processEvents(QEventLoop::AllEvents, 1);
        }
        program.kill();
        const qint64 killedMs = clock.elapsed();
        QVERIFY(program.waitForFinished());

        SignalPlaybackEngine engine;
        QVERIFY(engine.loadFromFile(file.filePath()));
        double last = -1.0;
        bool whole = true;
        connect(&engine, &SignalPlaybackEngine::signalValuesUpdated, this, [&](const auto& values) {
            whole = whole && values.value(u"N"_s) == last + 1;
            last = values.value(u"N"_s);
        });
        engine.setPlaybackRate(100.0);
        while (last + 1 < double(engine.recording()->frameCount()))
            engine.advance(1000);
        QVERIFY(whole);
        const qint64 lostMs = killedMs - sentMs.at(qint64(last));
        qInfo("%lld of %lld lines recorded, the last %lld ms are lost", (long long)last + 1,
              (long long)sentMs.size(), (long long)lostMs);
        QVERIFY(lostMs < 1500); // a second, and what a busy machine adds
    }
};

QTEST_GUILESS_MAIN(TestProgram)
#include "tst_program.moc"
