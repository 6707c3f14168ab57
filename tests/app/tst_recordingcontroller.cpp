#include "app/RecordingController.h"
#include "canvas/DesignScene.h"
#include "playback/recording/SignalRecorder.h"
#include "serial/SerialManager.h"
#include "support/Files.h"
#include "support/ModalAnswer.h"
#include "support/PseudoTerminal.h"

#include <QSignalSpy>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

class TestRecordingController : public QObject
{
    Q_OBJECT

    struct Rig
    {
        PseudoTerminal device;
        SerialManager serial;
        SignalRecorder recorder;
        DesignScene scene;
        RecordingController controller{&recorder, &serial, &scene, nullptr};
        const QSignalSpy messages{&controller, &RecordingController::statusMessage};
        ModalAnswer answer;

        void openPort()
        {
            if (!serial.open({device.portName()}))
                qFatal("no port");
        }
    };

private Q_SLOTS:
    void asksForAnOpenPort()
    {
        Rig rig;
        rig.answer.press(QMessageBox::Ok);
        QVERIFY(!rig.controller.start());
        QCOMPARE(rig.answer.titles(), QStringList(u"Serial"_s));
        QCOMPARE(rig.answer.texts(), QStringList(u"Open a serial port before recording."_s));
    }

    void saysWhyItCannotRecord()
    {
        Rig rig;
        rig.openPort(); // but there is no project
        rig.answer.press(QMessageBox::Ok);
        QVERIFY(!rig.controller.start());
        QCOMPARE(rig.answer.titles(), QStringList(u"Record"_s));
        QCOMPARE(rig.answer.texts(), QStringList(u"Could not open file for writing."_s));
        QCOMPARE(rig.messages.size(), 1);
        QCOMPARE(rig.messages[0], QVariantList({u"There is no project to record in."_s, 5000}));
    }

    void recordsInTheProjectWithItsDefinitions()
    {
        const QTemporaryDir project;
        writeFile(project.filePath(u"dashboard_signals.def"_s), "DASHBOARD_ERROR(E, 1, \"e\")\n");
        Rig rig;
        rig.openPort();
        rig.controller.setProjectFolder(project.path());
        QVERIFY(rig.controller.start());
        const QFileInfo file(rig.recorder.path());
        QCOMPARE(file.path(), project.filePath(u"recordings"_s));
        QCOMPARE(rig.messages.size(), 1);
        QCOMPARE(rig.messages[0], QVariantList({u"Recording → %1"_s.arg(file.fileName()), 0}));
        QCOMPARE(readFile(companionDefinitionsPath(file.filePath())), "DASHBOARD_ERROR(E, 1, \"e\")\n");
    }
};

QTEST_MAIN(TestRecordingController)
#include "tst_recordingcontroller.moc"
