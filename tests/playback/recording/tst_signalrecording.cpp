#include "playback/recording/RecordingValues.h"
#include "support/Recording.h"

#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

namespace {

/// Time, values as last known, states, errors and messages of every frame.
QString framesOf(const SignalRecording& recording)
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
    return frames.join(u'|');
}

} // namespace

// Recordings from file to memory. Their finer points are compared with a plain reader by fuzz_recording.
class TestSignalRecording : public QObject
{
    Q_OBJECT

    const QTemporaryDir m_dir;

private Q_SLOTS:
    void keepsWhatLinesSay_data()
    {
        QTest::addColumn<QByteArray>("lines");
        QTest::addColumn<QString>("frames");
        const auto row = [](auto name, const QByteArray& lines, const QString& frames) {
            QTest::newRow(name) << lines << frames;
        };
        row("comments", "# 1 A=1\n\n  #\n \t\r\n", u""_s);
        row("values stay", "0.0 A=1\n1.0 B=2\n2.5\n3 A=7\n", u"0 A=1|1 A=1 B=2|2.5 A=1 B=2|3 A=7 B=2"_s);
        row("events", "1 ST_M=RUN ERR=HOT ST_M=STOP\n", u"1 M:RUN M:STOP !HOT"_s);
        row("no time", "A=3\n", u"0 A=3"_s);
        row("words that say nothing", "1 word A=x ERR= A=1\n", u"1 A=1"_s);
        row("messages", "1 RAW  x \t A=1  y\r\nRAW 5 RAW\n", u"1 <x A=1 y>|0 <5 RAW>"_s);
        row("empty message", "2 RAW\n", u"2"_s);
        row("no messages", "3 A=1 RAW z\n4 raw z\n5 RAW=6\n", u"3 A=1|4 A=1|5 A=1 RAW=6"_s);
        row("cut off", "1 A=1\n2 A=12 B=", u"1 A=1|2 A=12"_s);
    }

    void keepsWhatLinesSay()
    {
        QFETCH(QByteArray, lines);
        QTEST(framesOf(recordingOf(lines)), "frames");
    }

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
        constexpr int kKeys = 100'000; // each of which is named once
        QByteArray line;
        for (int i = 0; i < kKeys; ++i)
            line += " K" + QByteArray::number(i) + "=1";
        const SignalRecording recording = recordingOf(line);
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
