#include "definitions/ActiveDefinitions.h"
#include "playback/CsvExportController.h"
#include "playback/recording/SignalRecording.h"
#include "support/ModalAnswer.h"
#include "support/SmallDisk.h"

#include <QDir>
#include <QDoubleSpinBox>
#include <QFile>
#include <QLineEdit>
#include <QListWidget>
#include <QTemporaryDir>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class TestCsvExportController : public QObject
{
    Q_OBJECT
    ActiveDefinitions definitions;
    CsvExportController controller{&definitions, nullptr};
    QString lastText;

    /// Exports all signals of two frames at 1000 Hz; what the file holds afterwards that was there before.
    QByteArray exported(const QTemporaryDir& dir, const QString& name, double seconds)
    {
        auto recording = std::make_shared<SignalRecording>();
        recording->addFrame(0);
        recording->addValue(u"B", 1);
        recording->addFrame(seconds);
        recording->addValue(u"A", 2);
        QFile old(dir.filePath(u"old.csv"_s));
        if (!old.open(QIODevice::WriteOnly) || old.write("precious") != 8 || !old.flush())
            qFatal("no file");
        ModalAnswer answer;
        answer.then([](QDialog* dialog) {
            dialog->findChild<QListWidget*>()->selectAll();
            dialog->findChild<QDoubleSpinBox*>()->setValue(1000.0);
            dialog->accept();
        });
        answer.then([path = dir.filePath(name)](QDialog* dialog) {
            dialog->findChild<QLineEdit*>()->setText(path);
            QMetaObject::invokeMethod(dialog, &QDialog::accept,
                                      Qt::QueuedConnection); // asks before it closes
        });
        answer.press(QMessageBox::Yes).reject(); // the progress or a box
        controller.exportSignals(recording);
        lastText = answer.texts().last();
        QFile now(old.fileName());
        return now.open(QIODevice::ReadOnly) && QDir(dir.path()).count() <= 4 ? now.readAll() : "not alone";
    }

private Q_SLOTS:
    void writesAWholeFileOrLeavesTheOldOne()
    {
        const QTemporaryDir dir, disk, project;
        controller.setExportFolder(project.filePath(u"exports"_s));
        QCOMPARE(exported(dir, u"old.csv"_s, 99'000.0), "precious"); // cancelled
        QVERIFY(QDir(project.filePath(u"exports"_s)).exists());
        QCOMPARE(exported(dir, u"old.csv"_s, 1e17), "precious");
        QVERIFY(lastText.contains(u"1000 Hz"_s));
        QCOMPARE(::mkfifo(qPrintable(dir.filePath(u"pipe.csv"_s)), 0600), 0);
        QCOMPARE(exported(dir, u"pipe.csv"_s, 1.0), "precious");
        QCOMPARE(lastText, u"Could not open file for writing."_s);
        QCOMPARE(exported(dir, u"old.csv"_s, 0.001), "time,A,B\n0.000000,nan,1\n0.001000,2,1\n");
        const SmallDisk small(disk.path());
        if (!small.isMounted())
            QSKIP("mounting a small disk is not permitted here");
        QCOMPARE(exported(disk, u"old.csv"_s, 99.0), "precious");
        QCOMPARE(lastText, u"Could not write the file: %1"_s.arg(qt_error_string(ENOSPC)));
    }
};

QTEST_MAIN(TestCsvExportController)
#include "tst_csvexportcontroller.moc"
