#include "app/CommandLine.h"
#include "definitions/DashboardSignalParser.h"
#include "serial/SerialManager.h"
#include "support/WindowRig.h"

#include <QDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// The window that is asked for a layout that does not exist and for a port.
struct StartRig : WindowRig
{
    const PseudoTerminal device;
    CommandLine wanted;

    StartRig()
    {
        wanted.layoutFile = dir.filePath(u"missing.json"_s);
        wanted.baudRate = 9600;
        wanted.portName = device.portName();
        window.show();
    }
};

} // namespace

// How the window starts with what the command line asks for.
class TestStartUp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void startsWithWhatCanBeUsed()
    {
        StartRig rig;
        rig.wanted.definitionsFile = rig.write("rig.def", "DASHBOARD_SIGNAL(A, \"a\", M)\n");
        rig.window.startWith(rig.wanted);
        QVERIFY(gSignalParser);
        QCOMPARE(gSignalParser->signalList().size(), 1);
        QTRY_VERIFY2(rig.status().contains(*rig.wanted.layoutFile), qPrintable(rig.status()));
        QCOMPARE(rig.window.findChild<QComboBox*>(u"baudBox"_s)->currentData().toInt(), 9600);
        QVERIFY(rig.window.serial()->isOpen());
    }

    void definitionsAloneMakeNoFolder()
    {
        StartRig rig;
        rig.wanted.definitionsFile = rig.write("rig.def", "\n");
        rig.wanted.record = true; // there is no project to record in
        rig.window.startWith(rig.wanted);
        rig.answer.press(QMessageBox::Ok).reject();
        rig.press(u"Save Layout"_s);
        QTRY_VERIFY(rig.answer.allUsed());
        QVERIFY(!QFile::exists(u"/layouts"_s));
        QCOMPARE(QDir(rig.dir.path()).entryList(QDir::AllEntries | QDir::NoDotAndDotDot).size(), 1);
    }

    void startWithoutAProjectEndsTheProgram()
    {
        StartRig rig;
        rig.answer.accept().reject();
        rig.window.startWith(rig.wanted);
        QVERIFY(!rig.window.serial()->isOpen());
        QTRY_VERIFY(!rig.window.isVisible());
    }
};

QTEST_MAIN(TestStartUp)
#include "tst_startup.moc"
