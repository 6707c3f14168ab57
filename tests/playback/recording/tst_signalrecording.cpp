#include "playback/recording/RecordingReader.h"
#include "support/Files.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

// What fuzz_recording does not see, which compares all that a recording says with a plain reader.
class TestSignalRecording : public QObject
{
    Q_OBJECT

    const QTemporaryDir m_dir;

private Q_SLOTS:
    void progressCountsOnlyLinesThatWereTaken()
    {
        const QByteArray lines = QByteArray("1 A=1\n").repeated(150'000); // one piece of reading
        RecordingReader reader(writeFile(m_dir.filePath(u"long.rec"_s), lines));
        QVERIFY(reader.open());
        QVERIFY(reader.readSlice(0));
        const double progress = reader.progress();
        QCOMPARE(progress * 150'000, double(reader.takeRecording().frameCount()));
    }

    void snapshotsTakeNoMoreRoomThanTheValues()
    {
        constexpr int kKeys = 100; // each of which is named once
        SignalRecording recording({.valuesPerSnapshot = 1});
        for (int i = 0; i < kKeys; ++i)
            recording.addValue(QString::number(i), 1.0);
        qsizetype numbers = 0;
        for (qsizetype place = kKeys; place > 0; place = recording.snapshotBefore(place).valueCount - 1)
            numbers += qsizetype(recording.snapshotBefore(place).numbers.size());
        QVERIFY(numbers > 0);
        QVERIFY2(numbers <= kKeys, qPrintable(QString::number(numbers)));
    }

    void refusesAPipe() // to read it would never end
    {
        const QString pipe = m_dir.filePath(u"pipe"_s);
        QCOMPARE(::mkfifo(qPrintable(pipe), 0600), 0);
        QVERIFY(!RecordingReader(pipe).open());
    }
};

QTEST_GUILESS_MAIN(TestSignalRecording)
#include "tst_signalrecording.moc"
