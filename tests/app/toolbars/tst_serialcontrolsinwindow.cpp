#include "app/Sigvane.h"
#include "app/status/ConnectionStatus.h"
#include "app/toolbars/PortComboBox.h"
#include "app/toolbars/SerialControls.h"
#include "serial/SerialManager.h"
#include "support/PseudoTerminal.h"

#include <QTest>
#include <QToolButton>

using namespace Qt::StringLiterals;

// What the window tells its port controls and its status bar of the port.
class SerialControlsInWindowTest : public QObject
{
    Q_OBJECT

    struct Rig
    {
        PseudoTerminal device;
        Sigvane window;
        SerialControls* controls = window.findChild<SerialControls*>();
        ConnectionStatus* status = window.findChild<ConnectionStatus*>();

        void open() const
        {
            if (!controls->openPort(device.portName()))
                qFatal("no port");
        }
    };

private Q_SLOTS:
    void showsThePortsFromTheBeginning()
    {
        const Rig rig;
        const QStringList ports = rig.window.serial()->availablePorts();
        if (ports.isEmpty())
            QSKIP("this machine has no serial port");
        QCOMPARE(rig.window.findChild<PortComboBox*>()->count(), ports.size());
    }

    void saysThatThePortIsOpen()
    {
        const Rig rig;
        rig.open();
        QVERIFY(rig.status->toolTip().startsWith(rig.device.portName() + u" open at 115200 baud"_s));
    }

    void countsTheLines()
    {
        Rig rig;
        rig.open();
        QVERIFY(rig.device.writeAll("A=1\r\n\nword\n"));
        QTRY_COMPARE(rig.status->lineCount(), 2);
    }

    void saysThatThePortIsClosed()
    {
        const Rig rig;
        rig.open();
        rig.window.findChild<QToolButton*>(u"connectButton"_s)->click();
        QCOMPARE(rig.status->toolTip(), rig.device.portName() + u" not connected"_s);
    }

    void saysWhyThePortIsNotOpen()
    {
        const Rig rig;
        QVERIFY(!rig.controls->openPort(u"/no/such/port"_s));
        QVERIFY(rig.status->toolTip().startsWith(u"/no/such/port not open · "_s));
    }

    void saysThatTheDeviceIsGone()
    {
        Rig rig;
        rig.open();
        rig.device.close();
        QTRY_VERIFY(rig.status->toolTip().contains(u"the device is gone"_s));
    }
};

QTEST_MAIN(SerialControlsInWindowTest)
#include "tst_serialcontrolsinwindow.moc"
