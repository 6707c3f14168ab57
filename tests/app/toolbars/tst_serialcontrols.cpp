#include "app/Sigvane.h"
#include "app/ValueRouter.h"
#include "app/status/ConnectionStatus.h"
#include "app/toolbars/PortComboBox.h"
#include "serial/SerialManager.h"
#include "support/PseudoTerminal.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QStatusBar>
#include <QTemporaryFile>
#include <QTest>
#include <QToolButton>

#include <unistd.h>

using namespace Qt::StringLiterals;

// The controls in a real window, used with mouse and keys, on a real pseudo-terminal.
class TestSerialControls : public QObject
{
    Q_OBJECT

    struct Rig
    {
        Sigvane window;
        QToolButton* button = window.findChild<QToolButton*>(u"connectButton"_s);
        PortComboBox* port = window.findChild<PortComboBox*>();
        QComboBox* baud = window.findChild<QComboBox*>(u"baudBox"_s);
        ConnectionStatus* status = window.findChild<ConnectionStatus*>();

        Rig()
        {
            window.resize(1400, 800);
            window.show();
            (void)QTest::qWaitForWindowActive(&window);
        }
        void type(QComboBox* box, const QString& text) const
        {
            box->lineEdit()->selectAll();
            QTest::keyClicks(box->lineEdit(), text);
        }
        bool open(const QString& name) const
        {
            type(port, name);
            QTest::mouseClick(button, Qt::LeftButton);
            return window.serial()->isOpen();
        }
        bool says(const QString& text) const { return status->toolTip().contains(text); }
    };

private Q_SLOTS:
    void connectsReadsAndDisconnects()
    {
        PseudoTerminal device;
        Rig rig;
        rig.type(rig.baud, u"1920"_s); // begins as 19200 does
        QVERIFY(rig.open(device.portName()));
        QCOMPARE(rig.button->text(), u"Disconnect"_s);
        QVERIFY(rig.says(device.portName() + u" open at 1920 baud"_s));
        QVERIFY(device.writeAll("1.5 A=1 B=2\r\nA=3\n"));
        QTRY_COMPARE(rig.status->lineCount(), 2);
        QCOMPARE(rig.window.router()->lastValues().value(u"A"_s), 3.0);
        QTRY_VERIFY(rig.says(u"last line"_s) && !rig.says(u" 0.0 lines/s"_s));
        QTRY_VERIFY(rig.says(u" 0.0 lines/s"_s)); // after a silence

        QTest::keyClick(&rig.window, Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_COMPARE(rig.button->text(), u"Connect"_s);
        for (const QString& bad : {u"0"_s, u"99999999999"_s}) {
            rig.type(rig.baud, bad);
            QVERIFY(rig.open(device.portName()));
            QCOMPARE(rig.baud->currentText(), u"1920"_s); // the last good one
            QVERIFY(rig.window.statusBar()->currentMessage().contains(bad));
            rig.button->click();
        }
    }

    void pulledPlugClosesThePortAndIsSaid()
    {
        PseudoTerminal device;
        Rig rig;
        QVERIFY(!rig.open(u"/no/such/port"_s)); // shown, not boxed
        QVERIFY(rig.says(u"/no/such/port not open · "_s));
        QVERIFY(rig.open(device.portName()));
        device.close();
        QTRY_VERIFY(!rig.window.serial()->isOpen());
        QTRY_VERIFY(rig.says(u"the device is gone"_s));
        QCOMPARE(rig.button->text(), u"Connect"_s);

        QVERIFY(device.reopen());
        QVERIFY(rig.open(device.portName()));
        QVERIFY(device.writeAll("A=1\n"));
        QTRY_COMPARE(rig.status->lineCount(), 1);
    }

    void missingPermissionNamesTheGroup()
    {
        QTemporaryFile device;
        QVERIFY(device.open());
        ConnectionStatus status;
        const auto says = [&](const QString& text) {
            status.showError(device.fileName(), u"No"_s, QSerialPort::PermissionError);
            return status.toolTip().contains(text);
        };
        QVERIFY(says(u"another program"_s));
        QVERIFY(device.setPermissions({}));
        const bool root = ::geteuid() == 0; // may read anything: become somebody who may not
        if (root) {
            QCOMPARE(::fchown(device.handle(), 0, 20), 0);
            QCOMPARE(::setresuid(65534, 65534, 0), 0);
        }
        const bool named = says(u"“%1”"_s.arg(QFileInfo(device.fileName()).group()));
        if (root)
            QCOMPARE(::setresuid(0, 0, 0), 0);
        QVERIFY2(named, qPrintable(status.toolTip()));
    }

    void newPortListKeepsWhatWasTyped()
    {
        PortComboBox box;
        box.show();
        QVERIFY(QTest::qWaitForWindowActive(&box));
        box.setPorts({u"ttyUSB0"_s, u"ttyUSB10"_s});
        box.setCurrentIndex(1);
        box.setPorts({u"ttyACM0"_s, u"ttyUSB10"_s});
        QCOMPARE(box.currentIndex(), 1);
        box.lineEdit()->selectAll();
        QTest::keyClicks(box.lineEdit(), u"ttyUSB1"_s); // not completed to the listed one
        box.setPorts({u"ttyUSB0"_s, u"ttyUSB10"_s});
        QCOMPARE(box.currentText(), u"ttyUSB1"_s);
    }
};

QTEST_MAIN(TestSerialControls)
#include "tst_serialcontrols.moc"
