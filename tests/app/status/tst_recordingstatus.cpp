#include "app/status/RecordingStatus.h"
#include "playback/recording/SignalRecorder.h"
#include "support/SmallDisk.h"
#include "support/TextColor.h"

#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

// What the status bar says of the recording.
class RecordingStatusTest : public QObject
{
    Q_OBJECT

    struct Rig
    {
        QTemporaryDir dir;
        SignalRecorder recorder;
        QWidget bar;
        RecordingStatus field{&recorder, &bar};

        void record()
        {
            if (!recorder.start(dir.path(), {}, QDateTime::currentDateTime()))
                qFatal("no recording");
            field.refresh();
        }
        void stop()
        {
            recorder.stop();
            field.refresh();
        }
        /// All of it: the field itself shows what there is room for.
        QString says() const { return field.toolTip().section(u'\n', 0, 0); }
    };

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void showsNothingBeforeTheFirstRecording()
    {
        Rig rig;
        rig.field.refresh();
        QVERIFY(!rig.field.isVisibleTo(&rig.bar));
    }

    void beginsWithAnEmptyFile()
    {
        Rig rig;
        rig.record();
        QVERIFY(rig.field.isVisibleTo(&rig.bar));
        QCOMPARE(rig.field.text(), u"● Recording · 0 line(s) · 0 bytes"_s);
        QCOMPARE(rig.field.toolTip(), rig.field.text() + u'\n' + rig.recorder.path());
        QVERIFY(!isRed(rig.field));
    }

    void followsTheFileByItself()
    {
        Rig rig;
        rig.record();
        rig.recorder.writeError(0.0, u"HOT"_s);
        QTRY_COMPARE(rig.field.text(), u"● Recording · 1 line(s) · 17 bytes"_s);
    }

    void staysWhenTheRecordingHasEnded()
    {
        Rig rig;
        rig.record();
        rig.recorder.writeError(0.0, u"HOT"_s);
        rig.stop();
        QCOMPARE(rig.field.text(), u"Recorded · 1 line(s) · 17 bytes"_s);
        QVERIFY(rig.field.isVisibleTo(&rig.bar));
        QVERIFY(!isRed(rig.field));
    }

    void saysInRedThatTheFileDoesNotGrow()
    {
        Rig rig;
        rig.record();
        QVERIFY(QFile::remove(rig.recorder.path()));
        QTRY_COMPARE(rig.says(), u"● Recording · 0 line(s) · 0 bytes · "
                                 "does not grow: The file is no longer in its place."_s);
        QVERIFY(isRed(rig.field));
    }

    void saysInRedWhatIsLost()
    {
        Rig rig;
        const SmallDisk disk(rig.dir.path());
        if (!disk.isMounted())
            QSKIP("mounting is not permitted");
        rig.record();
        rig.recorder.writeMessage(0.0, QString(17'000'000, u'x')); // waits, and no more can
        rig.recorder.writeMessage(0.0, u"lost"_s);
        QVERIFY(disk.resize("size=64m"));
        rig.stop();
        QCOMPARE(rig.says(), u"Recorded · 1 line(s) · 17.0 MB · 1 line(s) lost"_s);
        QVERIFY(isRed(rig.field));
    }
};

QTEST_MAIN(RecordingStatusTest)
#include "tst_recordingstatus.moc"
