#include "playback/recording/SignalRecorder.h"
#include "support/Files.h"
#include "support/SmallDisk.h"

#include <QTemporaryDir>
#include <QTest>

#include <cerrno>
#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

struct Rig
{
    const QTemporaryDir dir;
    QString folder = dir.filePath(u"recordings"_s); // which is not there yet
    SignalRecorder recorder;

    [[nodiscard]] bool tryToStart()
    {
        return recorder.start(folder, {}, QDateTime(QDate(2024, 1, 31), QTime(14, 22, 5)));
    }
    void start()
    {
        if (!tryToStart())
            qFatal("%s", qPrintable(recorder.startProblem()));
    }
    /// What the file holds when the recording has ended.
    QByteArray stopped()
    {
        recorder.stop();
        return readFile(recorder.path());
    }
};

} // namespace

// What is in the file: also while it is written, when the disk is full and when there can be none.
class TestSignalRecorder : public QObject
{
    Q_OBJECT

    const QTemporaryDir m_dir;

private Q_SLOTS:
    void writesALinePerEvent()
    {
        Rig rig;
        rig.start();
        rig.recorder.writeState(0.0, u"MODE"_s, u"RUN"_s);
        rig.recorder.writeValues(0.5, {{u"T"_s, -qQNaN()}, {u"KEY"_s, 1500.0}, {u"Größe"_s, -1.0 / 3.0}});
        rig.recorder.writeError(1.0, u"HOT"_s);
        rig.recorder.writeMessage(1.25, u"not=a \"value\""_s);
        QCOMPARE(rig.stopped(), "0.000000 ST_MODE=RUN\n0.500000 Größe=-0.333333333333 KEY=1500 T=nan\n"
                                "1.000000 ERR=HOT\n1.250000 RAW not=a \"value\"\n");
    }

    void countsTimeFromTheFirstThatIsFinite()
    {
        Rig rig;
        rig.start();
        for (const double t : {qQNaN(), 100.25, 101.5, -qInf(), 99.25, 100.25 - 4e-7, -1e308})
            rig.recorder.writeError(t, u"E"_s);
        QCOMPARE(rig.stopped().replace(" ERR=E", ""),
                 "0.000000\n0.000000\n1.250000\n1.250000\n-1.000000\n0.000000\n" +
                     QByteArray::number(-1e308, 'f', 6) + '\n');
    }

    void fileFollowsWhileItRecords()
    {
        Rig rig;
        rig.start();
        rig.recorder.writeError(1.0, u"HOT"_s);
        QVERIFY(readFile(rig.recorder.path()).isEmpty()); // a line is not worth a write of its own
        QTRY_COMPARE(readFile(rig.recorder.path()), "0.000000 ERR=HOT\n");
        QCOMPARE(rig.recorder.lineCount(), 1);
        QCOMPARE(rig.recorder.byteCount(), 17);
    }

    void replacesTheRecordingOfTheSameSecond()
    {
        Rig rig;
        rig.start();
        rig.recorder.writeError(1.0, u"OLD"_s);
        rig.recorder.stop();
        rig.start();
        rig.recorder.writeError(5.0, u"NEW"_s);
        QCOMPARE(rig.stopped(), "0.000000 ERR=NEW\n");
        QCOMPARE(rig.recorder.lineCount(), 1);
    }

    void saysWhyItCannotBegin_data()
    {
        QTest::addColumn<QString>("folder");
        QTest::addColumn<QString>("problem");
        QTest::newRow("no project") << QString() << u"There is no project to record in."_s;
        QTest::newRow("folder is a file")
            << writeFile(m_dir.filePath(u"file"_s), "\n")
            << m_dir.filePath(u"file/log_20240131_142205.rec: Not a directory"_s);
        QTest::newRow("a pipe has its name")
            << m_dir.path() << u"Not a regular file: "_s + m_dir.filePath(u"log_20240131_142205.rec"_s);
    }

    void saysWhyItCannotBegin()
    {
        QFETCH(QString, folder);
        ::mkfifo(qPrintable(m_dir.filePath(u"log_20240131_142205.rec"_s)), 0600);
        Rig rig;
        rig.folder = folder;
        QVERIFY(!rig.tryToStart());
        QTEST(rig.recorder.startProblem(), "problem");
    }

    void goesOnWhenToldToBeginAnotherOne()
    {
        Rig rig;
        rig.start();
        rig.recorder.writeError(1.0, u"ONE"_s);
        QVERIFY(!rig.tryToStart());
        QCOMPARE(rig.recorder.startProblem(), u"A recording is running."_s);
        rig.recorder.writeError(2.0, u"TWO"_s);
        QCOMPARE(rig.stopped(), "0.000000 ERR=ONE\n1.000000 ERR=TWO\n");
    }

    void noticesThatItsFileIsGone()
    {
        Rig rig;
        rig.start();
        QVERIFY(QFile::remove(rig.recorder.path()));
        QTRY_COMPARE(rig.recorder.error(), u"The file is no longer in its place."_s);
    }

    void catchesUpWhenAFullDiskHasRoomAgain()
    {
        Rig rig;
        const SmallDisk disk(rig.folder);
        if (!disk.isMounted())
            QSKIP("mounting a small disk is not permitted here");
        rig.start();
        constexpr qsizetype kMessageSize = 1'048'576;
        QByteArray lines;
        for (; rig.recorder.error().isEmpty() && lines.size() < 1'000'000; lines += "0.000000 ERR=FULL\n")
            rig.recorder.writeError(1.0, u"FULL"_s);
        QCOMPARE(rig.recorder.error(), qt_error_string(ENOSPC));
        QCOMPARE(readFile(rig.recorder.path()), lines.left(65'520)); // of 65,536 bytes, whole lines only
        for (int i = 0; i < 20; ++i)                                 // of which 15 may wait
            rig.recorder.writeMessage(1.0, QString(kMessageSize, u'x'));
        QCOMPARE(rig.recorder.lostLines(), 5);
        QVERIFY(disk.resize("size=32m"));
        QTRY_COMPARE(rig.recorder.error(), QString());
        QCOMPARE(rig.stopped(),
                 lines + ("0.000000 RAW " + QByteArray(kMessageSize, 'x') + '\n').repeated(15));
    }
};

QTEST_GUILESS_MAIN(TestSignalRecorder)
#include "tst_signalrecorder.moc"
