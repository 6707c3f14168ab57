#include "playback/recording/SignalRecorder.h"
#include "support/SmallDisk.h"

#include <QScopeGuard>
#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <sys/stat.h>

// What is in the file: also while it is written, when the disk is full and when there can be none.
class TestSignalRecorder : public QObject
{
    Q_OBJECT

    const QTemporaryDir m_dir;

    static QByteArray contents(const QString& path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : "no file";
    }

private Q_SLOTS:
    void hasALinePerEventInTheFileWithinASecond()
    {
        const QString folder = m_dir.filePath("a/b");
        const QDateTime now(QDate(2024, 1, 31), QTime(14, 22, 5));
        SignalRecorder recorder;
        QVERIFY(recorder.start(folder, QFINDTESTDATA("CMakeLists.txt"), now));
        recorder.writeMessage(qQNaN(), "no time=\"yet\"");
        recorder.writeState(100.25, "MODE", "RUN");
        recorder.writeValues(101.5, {{"T", 81.5}, {"KEY", 1500.0}, {"Größe", -1.0 / 3.0}});
        recorder.writeError(-qInf(), "HOT");
        recorder.writeValues(100.25 - 4e-7, {{"A", -0.0}, {"B", -qQNaN()}, {"C", -qInf()}});
        recorder.writeValues(-1e308, {{"D", -1.7e-308}, {"E", 1234567.000005}});
        QByteArray lines =
            "0.000000 RAW no time=\"yet\"\n0.000000 ST_MODE=RUN\n1.250000 Größe=-0.333333333333 KEY=1500 "
            "T=81.5\n1.250000 ERR=HOT\n0.000000 A=0 B=nan C=-inf\n";
        lines += QByteArray::number(-1e308, 'f', 6) + " D=-1.7e-308 E=1234567.00001\n";
        QVERIFY(contents(folder + "/log_20240131_142205.rec").isEmpty()); // a few lines are not worth a write
        QTRY_COMPARE_WITH_TIMEOUT(contents(recorder.path()), lines, 1500);
        QVERIFY(recorder.lineCount() == 6 && recorder.byteCount() == lines.size());
        QVERIFY(contents(companionDefinitionsPath(recorder.path())).contains("tst_signalrecorder"));
        recorder.stop();
        QVERIFY(recorder.start(folder, {}, now) && contents(recorder.path()).isEmpty());
        QVERIFY(!recorder.start(m_dir.path(), {}, now) && !recorder.startProblem().isEmpty());
        recorder.writeError(7.0, "NEW");
        recorder.stop();
        QCOMPARE(contents(recorder.path()), "0.000000 ERR=NEW\n");
        QVERIFY(recorder.lineCount() == 1 && !QFile::exists(companionDefinitionsPath(recorder.path())));
        QVERIFY(recorder.start(folder, {}, now) && QFile::remove(recorder.path()));
        QTRY_VERIFY(!recorder.error().isEmpty());
        recorder.stop();
        QVERIFY(::mkfifo(qPrintable(recorder.path()), 0600) == 0 && !recorder.start(folder, {}, now));
        QVERIFY(!recorder.start({}, {}, now) && !recorder.start(recorder.path(), {}, now));
    }

    void catchesUpWhenAFullDiskHasRoomAgain()
    {
        const SmallDisk disk(m_dir.path());
        if (!disk.isMounted())
            QSKIP("mounting a small disk is not permitted here");
        SignalRecorder recorder;
        QVERIFY(recorder.start(m_dir.path(), {}, QDateTime::currentDateTime()));
        QByteArray lines;
        for (; recorder.error().isEmpty() && lines.size() < 1'000'000; lines += "0.000000 ERR=FULL\n")
            recorder.writeError(1.0, "FULL");
        QCOMPARE(recorder.error(), qt_error_string(ENOSPC));
        QCOMPARE(contents(recorder.path()), lines.left(65536 / 18 * 18)); // whole ones only
        for (int i = 0; i < 20; ++i)                                      // of which 15 may wait
            recorder.writeMessage(1.0, QString(1024 * 1024, u'x'));
        QVERIFY(disk.resize("size=16m"));
        QTRY_COMPARE(recorder.error(), QString());
        recorder.writeMessage(1.0, QString(1024 * 1024, u'x')); // too much for the disk at the end
        recorder.stop();
        lines += ("0.000000 RAW " + QByteArray(1024 * 1024, 'x') + '\n').repeated(15);
        QVERIFY(contents(recorder.path()) == lines && recorder.lostLines() == 6);
    }
};

QTEST_GUILESS_MAIN(TestSignalRecorder)
#include "tst_signalrecorder.moc"
