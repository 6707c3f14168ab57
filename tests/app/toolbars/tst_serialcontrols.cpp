#include "app/Sigvane.h"
#include "app/status/ConnectionStatus.h"
#include "app/toolbars/PortComboBox.h"
#include "app/toolbars/SerialControls.h"
#include "serial/SerialManager.h"
#include "support/PseudoTerminal.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

// The controls in the window, used with mouse and keys on a pseudo-terminal, and the status bar beside them.
class SerialControlsTest : public QObject
{
    Q_OBJECT

    struct Rig
    {
        PseudoTerminal device;
        Sigvane window;
        SerialManager* serial = window.serial();
        QSerialPort* serialPort = serial->findChild<QSerialPort*>();
        SerialControls* controls = window.findChild<SerialControls*>();
        PortComboBox* port = window.findChild<PortComboBox*>();
        QComboBox* baud = window.findChild<QComboBox*>(u"baudBox"_s);
        QToolButton* button = window.findChild<QToolButton*>(u"connectButton"_s);
        ConnectionStatus* status = window.findChild<ConnectionStatus*>();
        QSignalSpy lost{controls, &SerialControls::lost};

        Rig()
        {
            window.show();
            if (!QTest::qWaitForWindowActive(&window))
                qFatal("no window");
        }
        static void type(QComboBox* box, const QString& text)
        {
            box->setFocus();
            box->lineEdit()->selectAll();
            QTest::keyClicks(box->lineEdit(), text);
        }
        void press() const { QTest::mouseClick(button, Qt::LeftButton); }
        void open(const QString& portName) const
        {
            type(port, portName);
            press();
        }
    };

    static QStringList itemsOf(const QComboBox* box)
    {
        QStringList texts;
        for (int i = 0; i < box->count(); ++i)
            texts << box->itemText(i);
        return texts;
    }

private Q_SLOTS:
    void offersThePortsFromTheBeginning()
    {
        const Rig rig;
        const QStringList ports = rig.serial->availablePorts();
        if (ports.isEmpty())
            QSKIP("this machine has no serial port");
        QCOMPARE(itemsOf(rig.port), ports);
    }

    void newPortsKeepWhatWasTyped()
    {
        Rig rig;
        const QStringList ports{u"ttyUSB0"_s, u"ttyUSB10"_s};
        Q_EMIT rig.serial->portsChanged(ports);
        rig.type(rig.port, u"ttyUSB1"_s); // not completed to the listed one
        Q_EMIT rig.serial->portsChanged(ports);
        QCOMPARE(rig.port->currentText(), u"ttyUSB1"_s);
        QCOMPARE(itemsOf(rig.port), ports);
    }

    void popupAsksForThePortsAnew()
    {
        Rig rig;
        const QSignalSpy refreshes(rig.serial, &SerialManager::portsChanged);
        rig.port->showPopup();
        QCOMPARE(refreshes.size(), 1);
    }

    void offersTheDescribedRates()
    {
        const Rig rig;
        QCOMPARE(itemsOf(rig.baud),
                 QStringList({u"115200"_s, u"57600"_s, u"38400"_s, u"19200"_s, u"9600"_s}));
        QCOMPARE(rig.baud->currentText(), u"115200"_s);
    }

    void opensAtTheChosenRate()
    {
        const Rig rig;
        rig.baud->setCurrentIndex(rig.baud->findText(u"9600"_s));
        rig.open(rig.device.portName());
        QCOMPARE(rig.device.speed(), 9600);
        QVERIFY(rig.status->toolTip().startsWith(rig.device.portName() + u" open at 9600 baud"_s));
    }

    void opensAtTheTypedRate()
    {
        const Rig rig;
        rig.type(rig.baud, u"1920"_s); // begins as 19200 does
        rig.open(rig.device.portName());
        QCOMPARE(rig.serialPort->baudRate(), 1920);
    }

    void refusesWhatIsNoRate()
    {
        Rig rig;
        const QSignalSpy messages(rig.controls, &SerialControls::statusMessage);
        rig.baud->setCurrentIndex(1);
        rig.type(rig.baud, u"0"_s);
        rig.open(rig.device.portName());
        QCOMPARE(rig.serialPort->baudRate(), 57600); // the last good one
        QCOMPARE(rig.baud->currentText(), u"57600"_s);
        QCOMPARE(messages.value(0).value(0), u"Not a baud rate: 0"_s);
    }

    void buttonSaysWhatItDoes()
    {
        const Rig rig;
        QCOMPARE(rig.button->toolTip(), u"Open or close the serial port (Ctrl+Shift+K)"_s);
        QCOMPARE(rig.button->text(), u"Connect"_s);
        rig.open(rig.device.portName());
        QCOMPARE(rig.button->text(), u"Disconnect"_s);
        rig.press();
        QCOMPARE(rig.button->text(), u"Connect"_s);
        QVERIFY(!rig.serial->isOpen());
        QCOMPARE(rig.status->toolTip(), rig.device.portName() + u" not connected"_s);
    }

    void shortcutWorksAsTheButton()
    {
        Rig rig;
        rig.open(rig.device.portName());
        QTest::keyClick(&rig.window, Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(!rig.serial->isOpen());
    }

    void failedOpenIsSaid()
    {
        const Rig rig;
        rig.open(u"/no/such/port"_s);
        QCOMPARE(rig.button->text(), u"Connect"_s);
        QVERIFY(rig.status->toolTip().startsWith(u"/no/such/port not open · "_s));
    }

    void countsTheLines()
    {
        Rig rig;
        rig.open(rig.device.portName());
        QVERIFY(rig.device.writeAll("A=1\r\n\nword\n"));
        QTRY_COMPARE(rig.status->lineCount(), 2);
    }

    void pulledPlugClosesThePort()
    {
        Rig rig;
        const QString portName = rig.device.portName();
        rig.open(portName);
        rig.device.close();
        QTRY_COMPARE(rig.lost.size(), 1);
        QVERIFY(!rig.serial->isOpen());
        QCOMPARE(rig.button->text(), u"Connect"_s);
        QVERIFY(rig.status->toolTip().startsWith(portName + u": the device is gone"_s));
    }

    void lateReportOfALossLeavesTheNextPortOpen()
    {
        Rig rig;
        rig.open(rig.device.portName());
        Q_EMIT rig.serial->deviceLost();
        QVERIFY(rig.controls->openPort(rig.device.portName()));
        QCoreApplication::processEvents();
        QVERIFY(rig.serial->isOpen());
        QCOMPARE(rig.lost.size(), 0);
    }
};

QTEST_MAIN(SerialControlsTest)
#include "tst_serialcontrols.moc"
