#include "app/toolbars/PortComboBox.h"
#include "app/toolbars/SerialControls.h"
#include "support/PseudoTerminal.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>
#include <QToolBar>
#include <QToolButton>

using namespace Qt::StringLiterals;

// The controls on a toolbar, used with mouse and keys, on a real pseudo-terminal.
class SerialControlsTest : public QObject
{
    Q_OBJECT

    struct Rig
    {
        PseudoTerminal device;
        SerialManager serial;
        QToolBar bar;
        SerialControls controls{&serial, &bar};
        QSerialPort* serialPort = serial.findChild<QSerialPort*>();
        PortComboBox* port = bar.findChild<PortComboBox*>();
        QComboBox* baud = bar.findChild<QComboBox*>(u"baudBox"_s);
        QToolButton* button = bar.findChild<QToolButton*>(u"connectButton"_s);
        QSignalSpy lost{&controls, &SerialControls::lost};

        Rig()
        {
            bar.show();
            if (!QTest::qWaitForWindowActive(&bar))
                qFatal("no toolbar");
        }
        static void type(QComboBox* box, const QString& text)
        {
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
    void offersThePortsOfTheManager()
    {
        Rig rig;
        Q_EMIT rig.serial.portsChanged({u"ttyACM0"_s, u"ttyUSB0"_s});
        QCOMPARE(itemsOf(rig.port), QStringList({u"ttyACM0"_s, u"ttyUSB0"_s}));
    }

    void popupAsksForThePortsAnew()
    {
        Rig rig;
        const QSignalSpy refreshes(&rig.serial, &SerialManager::portsChanged);
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

    void opensAtTheChosenRateOtherwiseAsDescribed()
    {
        const Rig rig;
        rig.baud->setCurrentIndex(rig.baud->findText(u"9600"_s));
        rig.open(rig.device.portName());
        QCOMPARE(rig.device.speed(), 9600);
        QCOMPARE(rig.serialPort->dataBits(), QSerialPort::Data8);
        QCOMPARE(rig.serialPort->parity(), QSerialPort::NoParity);
        QCOMPARE(rig.serialPort->stopBits(), QSerialPort::OneStop);
        QCOMPARE(rig.serialPort->flowControl(), QSerialPort::NoFlowControl);
    }

    void opensAtTheTypedRate()
    {
        const Rig rig;
        rig.type(rig.baud, u"1920"_s); // begins as 19200 does
        rig.open(rig.device.portName());
        QCOMPARE(rig.serialPort->baudRate(), 1920);
    }

    void refusesWhatIsNoRate_data()
    {
        QTest::addColumn<QString>("text");
        QTest::newRow("zero") << u"0"_s;
        QTest::newRow("too large") << u"99999999999"_s;
    }

    void refusesWhatIsNoRate()
    {
        QFETCH(QString, text);
        Rig rig;
        const QSignalSpy messages(&rig.controls, &SerialControls::statusMessage);
        rig.baud->setCurrentIndex(1);
        rig.type(rig.baud, text);
        rig.open(rig.device.portName());
        QCOMPARE(rig.serialPort->baudRate(), 57600); // the last good one
        QCOMPARE(rig.baud->currentText(), u"57600"_s);
        QCOMPARE(messages.value(0).value(0), u"Not a baud rate: "_s + text);
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
        QVERIFY(!rig.serial.isOpen());
    }

    void shortcutWorksAsTheButton()
    {
        Rig rig;
        rig.open(rig.device.portName());
        QTest::keyClick(&rig.bar, Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
        QVERIFY(!rig.serial.isOpen());
    }

    void failedOpenLeavesTheButton()
    {
        const Rig rig;
        rig.open(u"/no/such/port"_s);
        QVERIFY(!rig.serial.isOpen());
        QCOMPARE(rig.button->text(), u"Connect"_s);
    }

    void pulledPlugClosesThePort()
    {
        Rig rig;
        const QString portName = rig.device.portName();
        rig.open(portName);
        rig.device.close();
        QTRY_COMPARE(rig.lost.size(), 1);
        QCOMPARE(rig.lost.first().first().toString(), portName);
        QVERIFY(!rig.serial.isOpen());
        QCOMPARE(rig.button->text(), u"Connect"_s);
    }

    void lateReportOfALossLeavesTheNextPortOpen()
    {
        Rig rig;
        rig.open(rig.device.portName());
        Q_EMIT rig.serial.deviceLost();
        QVERIFY(rig.controls.openPort(rig.device.portName()));
        QCoreApplication::processEvents();
        QVERIFY(rig.serial.isOpen());
        QCOMPARE(rig.lost.size(), 0);
    }
};

QTEST_MAIN(SerialControlsTest)
#include "tst_serialcontrols.moc"
