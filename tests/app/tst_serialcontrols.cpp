#include "app/ConnectionStatus.h"
#include "app/PortComboBox.h"
#include "app/Sigvane.h"
#include "app/ValueRouter.h"
#include "serial/SerialManager.h"
#include "support/PseudoTerminal.h"

#include <QFileInfo>
#include <QLineEdit>
#include <QSignalSpy>
#include <QStatusBar>
#include <QTemporaryFile>
#include <QTest>
#include <QToolButton>

#include <sys/stat.h>
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
        QCOMPARE(rig.baud->currentData().toInt(), 1920);
        QVERIFY(rig.says(device.portName() + u" open at 1920 baud"_s));
        QVERIFY(device.writeAll("1.5 A=1 B=2\r\nA=3\n"));
        QTRY_COMPARE(rig.status->lineCount(), 2);
        QCOMPARE(rig.window.router()->lastValues().value(u"A"_s), 3.0);
        QTRY_VERIFY(rig.says(u"last line"_s) && !rig.says(u" 0.0 lines/s"_s));
        QTRY_VERIFY(rig.says(u" 0.0 lines/s"_s)); // after a silence

        QTest::keyClick(&rig.window, Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(!rig.window.serial()->isOpen());
        QCOMPARE(rig.button->text(), u"Connect"_s);
        QVERIFY(rig.says(u"not connected"_s));
        for (const QString& bad : {u"fast"_s, u"-9600"_s, u"0"_s, u"99999999999"_s}) {
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
        QVERIFY(rig.open(device.portName()));
        const QSignalSpy errors(rig.window.serial(), &SerialManager::errorOccurred);
        device.close();
        QTRY_VERIFY(!rig.window.serial()->isOpen());
        QCOMPARE(rig.button->text(), u"Connect"_s);
        QTRY_VERIFY(rig.says(u"the device is gone"_s));
        QVERIFY2(errors.size() < 100, qPrintable(QString::number(errors.size())));
        QVERIFY(rig.window.statusBar()->currentMessage().contains(u"Press Connect"_s));

        QVERIFY(device.reopen());
        QVERIFY(rig.open(device.portName()));
        QCOMPARE(rig.window.statusBar()->currentMessage(), u"Idle"_s);
        QVERIFY(device.writeAll("A=1\n"));
        QTRY_COMPARE(rig.status->lineCount(), 1);
    }

    void failedOpenIsShownNotBoxed()
    {
        Rig rig;
        QVERIFY(!rig.open(u"/no/such/port"_s));
        QVERIFY2(rig.says(u"/no/such/port not open · "_s), qPrintable(rig.status->toolTip()));
        QVERIFY(!QApplication::activeModalWidget());
    }

    void missingPermissionNamesTheGroup()
    {
        QTemporaryFile device;
        QVERIFY(device.open());
        const QByteArray path = device.fileName().toLocal8Bit();
        ConnectionStatus status;
        const auto hintFor = [&](QSerialPort::SerialPortError error) {
            status.showError(device.fileName(), u"No"_s, error);
            return status.toolTip();
        };
        QVERIFY(hintFor(QSerialPort::PermissionError).contains(u"another program"_s));
        QVERIFY(!hintFor(QSerialPort::OpenError).contains(u"another program"_s));
        if (::geteuid() == 0) { // may read anything: become somebody who may not
            QCOMPARE(::chown(path.constData(), 0, 20), 0);
            QCOMPARE(::chmod(path.constData(), 0640), 0);
            QCOMPARE(::setresuid(65534, 65534, 0), 0);
        } else {
            QCOMPARE(::chmod(path.constData(), 0), 0);
        }
        const QString group = QFileInfo(device.fileName()).group();
        const QString hint = hintFor(QSerialPort::PermissionError);
        if (::getuid() == 65534)
            QCOMPARE(::setresuid(0, 0, 0), 0);
        QVERIFY2(hint.contains(u"“%1”"_s.arg(group)), qPrintable(hint));
    }

    void newPortListKeepsWhatWasTyped()
    {
        PortComboBox box;
        box.setPorts({u"ttyUSB0"_s, u"ttyUSB10"_s});
        QCOMPARE(box.currentText(), u"ttyUSB0"_s);
        box.setCurrentIndex(1);
        box.setPorts({u"ttyACM0"_s, u"ttyUSB10"_s});
        QCOMPARE(box.currentText(), u"ttyUSB10"_s);
        QCOMPARE(box.currentIndex(), 1);
        box.lineEdit()->selectAll();
        QTest::keyClicks(box.lineEdit(), u"ttyUSB1"_s); // not completed to the listed one
        QCOMPARE(box.currentText(), u"ttyUSB1"_s);
        const QSignalSpy asked(&box, &PortComboBox::aboutToPopUp);
        box.showPopup();
        QCOMPARE(asked.size(), 1);
        box.setPorts({});
        QCOMPARE(box.currentText(), u"ttyUSB1"_s);
    }
};

QTEST_MAIN(TestSerialControls)
#include "tst_serialcontrols.moc"
