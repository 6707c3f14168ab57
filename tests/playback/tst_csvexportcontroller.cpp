#include "definitions/ActiveDefinitions.h"
#include "playback/CsvExportController.h"
#include "support/Catalogue.h"
#include "support/ModalAnswer.h"
#include "support/Recording.h"
#include "support/SmallDisk.h"

#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QListWidget>
#include <QSignalSpy>
#include <QTest>

#include <sys/stat.h>

using namespace Qt::StringLiterals;

class TestCsvExportController : public QObject
{
    Q_OBJECT

    struct Rig
    {
        const QTemporaryDir dir;
        const QString folder = dir.filePath(u"exports"_s); // which is not there yet
        ActiveDefinitions definitions;
        CsvExportController controller{&definitions, nullptr};
        const QSignalSpy messages{&controller, &CsvExportController::statusMessage};
        ModalAnswer answer;

        Rig() { controller.setExportFolder(folder); }

        /// Answers the first dialog: the first signal, in physical units.
        void chooseSignal(double hz = 0.0)
        {
            answer.then([hz](QDialog* dialog) {
                dialog->findChild<QListWidget*>()->setCurrentRow(0);
                dialog->findChild<QDoubleSpinBox*>()->setValue(hz);
                dialog->findChild<QCheckBox*>()->setChecked(true);
                dialog->accept();
            });
        }
        void exportSignals(const QByteArray& lines)
        {
            controller.exportSignals(std::make_shared<SignalRecording>(recordingOf(lines)));
        }
    };

private Q_SLOTS:
    void offersTheSignalsInOrder()
    {
        Rig rig;
        QStringList offered;
        rig.answer.then([&](QDialog* dialog) {
            const auto* list = dialog->findChild<QListWidget*>();
            for (int row = 0; row < list->count(); ++row)
                offered << list->item(row)->text();
            dialog->reject();
        });
        rig.exportSignals("0 b=1 C=1 A=1 a=1\n1 B=1\n");
        QCOMPARE(offered, QStringList({u"A"_s, u"B"_s, u"C"_s, u"a"_s, u"b"_s}));
    }

    void warnsWhenNothingIsSelected()
    {
        Rig rig;
        rig.answer.accept().press(QMessageBox::Ok);
        rig.exportSignals("0 A=1\n");
        QCOMPARE(rig.answer.titles(), QStringList({u"Export CSV"_s, u"Export CSV"_s}));
        QCOMPARE(rig.answer.texts().constLast(), u"No signals selected."_s);
    }

    void exportsSignalsWithTheRecordingsOwnDefinitions()
    {
        Rig rig;
        rig.definitions.setProject(catalogueOf("DASHBOARD_SIGNAL(A, \"Project's\", M)\n"));
        rig.definitions.setRecording(
            catalogueOf("DASHBOARD_MAPPING(M, -40, 0.5)\nDASHBOARD_SIGNAL(A, \"T, °C\", M)\n"));
        rig.chooseSignal();
        rig.answer.accept();
        rig.exportSignals("0 A=10 B=2\n");
        QCOMPARE(readFile(rig.folder + u"/signals.csv"_s), "time,T, °C(mapped)\n0.000000,-35\n");
        QCOMPARE(rig.messages.size(), 1);
        QCOMPARE(rig.messages[0], QVariantList({u"CSV exported → signals.csv"_s, 4000}));
    }

    void exportsEventsWithTheRecordingsOwnDefinitions()
    {
        Rig rig;
        rig.definitions.setProject(catalogueOf("DASHBOARD_ERROR(E, 1, \"Project's\")\n"));
        rig.definitions.setRecording(catalogueOf("DASHBOARD_ERROR(E, 1, \"Own\")\n"));
        rig.answer.accept();
        rig.controller.exportEvents(std::make_shared<SignalRecording>(recordingOf("0 ERR=E\n")));
        QCOMPARE(readFile(rig.folder + u"/events.csv"_s),
                 "time,type,key,value,display\n0.000000,ERROR,\"E\",,\"Own\"\n");
        QCOMPARE(rig.messages.size(), 1);
        QCOMPARE(rig.messages[0], QVariantList({u"Events CSV exported → events.csv"_s, 4000}));
    }

    void leavesTheOldFileWhenItCannotExport_data()
    {
        QTest::addColumn<QString>("file");
        QTest::addColumn<QByteArray>("last");
        QTest::addColumn<QString>("text");
        QTest::newRow("cancelled") << u"old.csv"_s << QByteArray("99000") << QString();
        QTest::newRow("endless") << u"old.csv"_s << QByteArray("1e17")
                                 << u"The recording's times cannot be sampled at 1000 Hz: "
                                    "it would take more than 100,000,000 rows."_s;
        QTest::newRow("pipe") << u"pipe.csv"_s << QByteArray("1") << u"Could not open file for writing."_s;
    }

    void leavesTheOldFileWhenItCannotExport()
    {
        QFETCH(QString, file);
        QFETCH(QByteArray, last);
        Rig rig;
        const QString old = writeFile(rig.dir.filePath(u"old.csv"_s), "precious");
        QCOMPARE(::mkfifo(qPrintable(rig.dir.filePath(u"pipe.csv"_s)), 0600), 0);
        rig.chooseSignal(1000.0);
        rig.answer.then([&](QDialog* dialog) {
            qobject_cast<QFileDialog*>(dialog)->setOption(QFileDialog::DontConfirmOverwrite);
            qobject_cast<QFileDialog*>(dialog)->selectFile(rig.dir.filePath(file));
            dialog->accept();
        });
        rig.answer.rejectOrCancel();
        rig.exportSignals("0 A=1\n" + last + " A=2\n");
        QTEST(rig.answer.texts().constLast(), "text");
        QCOMPARE(rig.answer.titles().constLast(), u"Export CSV"_s);
        QCOMPARE(readFile(old), "precious");
        QCOMPARE(QDir(rig.dir.path()).entryList(QDir::Files), QStringList(u"old.csv"_s)); // nothing half
        QCOMPARE(rig.messages.size(), 0);
    }

    void saysThatTheDiskIsFull()
    {
        Rig rig;
        const SmallDisk disk(rig.folder);
        if (!disk.isMounted())
            QSKIP("mounting a small disk is not permitted here");
        rig.chooseSignal(1000.0);
        rig.answer.accept().press(QMessageBox::Ok);
        rig.exportSignals("0 A=1\n99 A=2\n");
        QCOMPARE(rig.answer.texts().constLast(), u"Could not write the file: "_s + qt_error_string(ENOSPC));
        QVERIFY(!QFile::exists(rig.folder + u"/signals.csv"_s));
    }
};

QTEST_MAIN(TestCsvExportController)
#include "tst_csvexportcontroller.moc"
