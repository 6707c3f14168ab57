#include "app/status/RecordingStatus.h"
#include "playback/recording/SignalRecorder.h"
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
    };

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

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
        rig.recorder.stop();
        rig.field.refresh();
        QCOMPARE(rig.field.text(), u"Recorded · 1 line(s) · 17 bytes"_s);
        QVERIFY(rig.field.isVisibleTo(&rig.bar));
        QVERIFY(!isRed(rig.field));
    }

    void saysInRedThatTheFileDoesNotGrow()
    {
        Rig rig;
        rig.record();
        QVERIFY(QFile::remove(rig.recorder.path()));
        QTRY_COMPARE(rig.field.toolTip().section(u'\n', 0, 0),
                     u"● Recording · 0 line(s) · 0 bytes · "
                     "does not grow: The file is no longer in its place."_s);
        QVERIFY(isRed(rig.field));
    }
};

QTEST_MAIN(RecordingStatusTest)
#include "tst_recordingstatus.moc"
