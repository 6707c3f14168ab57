#include "playback/recording/RecordingReader.h"
#include "playback/recording/RecordingValues.h"

#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

// Recordings from file to memory. Their finer points are compared with a plain reader by fuzz_recording.
class SignalRecordingTest : public QObject
{
    Q_OBJECT

private:
    QTemporaryDir m_dir;
    int m_slices = 0; // of the last reading

    SignalRecording read(const QByteArray& bytes)
    {
        QFile file(m_dir.filePath(u"test.rec"_s));
        RecordingReader reader(file.fileName());
        if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size() || !file.flush() ||
            !reader.open())
            qFatal("cannot write or read the recording");
        m_slices = 1;
        while (reader.readSlice(0))
            ++m_slices;
        return reader.takeRecording();
    }

    // Time, values as last known, states, errors and messages of every frame.
    static QStringList framesOf(const SignalRecording& recording)
    {
        QStringList frames;
        RecordingValues values(&recording);
        for (qsizetype frame = 0; frame < recording.frameCount(); ++frame) {
            QString text = QString::number(recording.timestamp(frame));
            for (const auto& [key, number] : values.at(frame).toStdMap())
                text += u" %1=%2"_s.arg(key).arg(number);
            for (const auto& state : recording.states(frame, frame + 1))
                text += u" %1:%2"_s.arg(recording.stateGroup(state.group), recording.stateName(state.name));
            for (const auto& error : recording.errors(frame, frame + 1))
                text += u" !"_s + recording.errorId(error.id);
            for (const auto& message : recording.messages(frame, frame + 1))
                text += u" <%1>"_s.arg(message.text);
            frames << text;
        }
        return frames;
    }

private Q_SLOTS:
    void keepsWhatLinesSay_data()
    {
        QTest::addColumn<QByteArray>("bytes");
        QTest::addColumn<QString>("frames");
        QTest::newRow("nothing but comments") << QByteArray("# 1 A=1\n\n  #\n \t\r\n") << QString();
        QTest::newRow("all kinds of line")
            << QByteArray("0.0 A=1\n1.0 B=2 ST_M=RUN ERR=HOT ST_M=STOP word A=x\nA=3 ERR=\n2.5\n3 ST_V=ON")
            << u"0 A=1|1 A=1 B=2 M:RUN M:STOP !HOT|0 A=3 B=2|2.5 A=3 B=2|3 A=3 B=2 V:ON"_s;
        QTest::newRow("messages")
            << QByteArray("1 RAW  x \t A=1  y\r\nRAW 5 RAW\n2 RAW\n3 A=1 RAW z\n4 raw z\n5 RAW=6\n")
            << u"1 <x A=1 y>|0 <5 RAW>|2|3 A=1|4 A=1|5 A=1 RAW=6"_s;
    }

    void keepsWhatLinesSay()
    {
        QFETCH(QByteArray, bytes);
        QTEST(framesOf(read(bytes)).join(u'|'), "frames");
    }

    void keepsAllWholeLinesOfACutRecording()
    {
        const QByteArray bytes("0.0 A=1 B=2\n0.5 RAW all is well\n1.5 ST_M=RUN ERR=HOT \xc3\xa4=7\n2 A=12\n");
        const QStringList all = framesOf(read(bytes));
        for (qsizetype size = bytes.indexOf("1.5"); size <= bytes.size(); ++size) {
            const QByteArray cut = bytes.first(size);
            const qsizetype whole = cut.count('\n');
            const QStringList found = framesOf(read(cut));
            QCOMPARE(found.first(whole), all.first(whole));
            QCOMPARE(found.size(), whole + (cut.endsWith('\n') ? 0 : 1));
        }
    }

    void readsALongFirstLineInPieces()
    {
        constexpr int kSize = 50'000'000;
        const SignalRecording recording = read("1 RAW " + QByteArray(kSize, 'x') + "\n2 A=1\n");
        QCOMPARE(recording.frameCount(), 2);
        QCOMPARE(recording.messages().front().text.size(), kSize);
        QVERIFY2(m_slices > 20, "the window stands still");
    }

    void takesAMillionKeysInItsStride()
    {
        constexpr int kKeys = 1'000'000;
        QByteArray bytes;
        for (int i = 0; i < kKeys; ++i)
            bytes += " K" + QByteArray::number(i) + '=' + QByteArray::number(i) + (i % 10 == 9 ? "\n" : "");
        const SignalRecording recording = read(bytes);
        RecordingValues values(&recording);
        for (const qsizetype frame : {recording.frameCount() - 1, qsizetype(3), recording.frameCount() / 2}) {
            const QMap<QString, double>& map = values.at(frame);
            QCOMPARE(map.size(), 10 * (frame + 1));
            QCOMPARE(map.value(u"K%1"_s.arg(10 * frame + 7)), double(10 * frame + 7));
        }
        qsizetype numbers = 0; // of all snapshots, which must not outgrow the values
        for (qsizetype place = kKeys; place > 0; place = recording.snapshotBefore(place).valueCount - 1)
            numbers += qsizetype(recording.snapshotBefore(place).numbers.size());
        QVERIFY2(numbers > 0 && numbers <= kKeys, qPrintable(QString::number(numbers)));
    }

    void readsNothingButFiles()
    {
        const QString pipe = m_dir.filePath(u"pipe"_s);
        QCOMPARE(mkfifo(qPrintable(pipe), 0600), 0);
        for (const QString& path : {QString(), m_dir.filePath(u"missing"_s), m_dir.path(), pipe})
            QVERIFY2(!RecordingReader(path).open(), qPrintable(path));
    }
};

QTEST_GUILESS_MAIN(SignalRecordingTest)
#include "tst_signalrecording.moc"
