#include "support/LineEvents.h"
#include "support/PseudoTerminal.h"

#include <QElapsedTimer>
#include <QSerialPortInfo>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

// What a line makes the manager say, and the port itself on a pseudo-terminal.
class SerialManagerTest : public QObject
{
    Q_OBJECT

    struct OpenPort
    {
        PseudoTerminal device;
        SerialManager manager;
        QSerialPort* port = manager.findChild<QSerialPort*>();
        QSignalSpy lost{&manager, &SerialManager::deviceLost};

        OpenPort() { open(); }
        void open()
        {
            if (!manager.open({device.portName()}))
                qFatal("no port");
        }
        /// Stands for a pulled adapter, which a pseudo-terminal cannot imitate.
        void report(QSerialPort::SerialPortError error) const { Q_EMIT port->errorOccurred(error); }
    };

    static double timeOfALine(SerialManager& manager)
    {
        const QSignalSpy lines(&manager, &SerialManager::rawLineReceived);
        manager.parseLine(u"A=1"_s);
        return lines.value(0).value(0).toDouble();
    }

private Q_SLOTS:
    void emitsTheEventsOfALineInOrder()
    {
        const QString line = u"12.5 42 R=15 ERR=HOT ST_MODE=RUN you A=1 R=2"_s;
        SerialManager manager;
        LineEvents events;
        events.listenTo(manager, &manager);
        manager.parseLine(line);
        QCOMPARE(events.texts(),
                 QStringList({u"raw 12.5: "_s + line, u"error 12.5: HOT"_s, u"state 12.5: MODE -> RUN"_s,
                              u"values 12.5: [A=1][R=2]"_s, u"text 12.5: 42 you"_s}));
    }

    void takesALongLineInSmallReads()
    {
        SerialManager manager;
        const QSignalSpy lines(&manager, &SerialManager::rawLineReceived);
        for (int i = 0; i < 1'000'000; ++i) // searching all of it each time would outlast the time limit
            manager.receive("7777777777");
        manager.receive("\n");
        QCOMPARE(lines.value(0).value(1).toString().size(), 10'000'000);
    }

    void slotMayOpenThePortAnew()
    {
        OpenPort rig;
        QStringList lines;
        connect(&rig.manager, &SerialManager::rawLineReceived, this, [&](double, const QString& line) {
            lines << line;
            if (line == u"A=1"_s)
                rig.open(); // drops what waits
        });
        rig.manager.receive("A=1\nA=2\nA=");
        rig.manager.receive("3\n");
        QCOMPARE(lines, QStringList({u"A=1"_s, u"3"_s}));
    }

    void countsTimeFromTheLastOpen()
    {
        OpenPort rig;
        rig.manager.close(); // the clock goes on
        QTRY_VERIFY(timeOfALine(rig.manager) > 0.02);
        QElapsedTimer sinceReopened;
        sinceReopened.start();
        rig.open();
        const double time = timeOfALine(rig.manager);
        QVERIFY(time <= double(sinceReopened.elapsed()) / 1000.0);
    }

    void listsThePortsOfTheSystem()
    {
        QStringList names;
        for (const QSerialPortInfo& port : QSerialPortInfo::availablePorts())
            names << port.portName();
        if (names.isEmpty())
            QSKIP("this machine has no serial port");
        SerialManager manager;
        const QSignalSpy changes(&manager, &SerialManager::portsChanged);
        manager.refreshPorts();
        QCOMPARE(changes.value(0).value(0).toStringList(), names);
    }

    void opensAsDescribed()
    {
        const OpenPort rig;
        QCOMPARE(rig.port->openMode(), QIODevice::OpenMode(QIODevice::ReadOnly));
        QCOMPARE(rig.port->baudRate(), 115200);
        QCOMPARE(rig.port->dataBits(), QSerialPort::Data8);
        QCOMPARE(rig.port->parity(), QSerialPort::NoParity);
        QCOMPARE(rig.port->stopBits(), QSerialPort::OneStop);
        QCOMPARE(rig.port->flowControl(), QSerialPort::NoFlowControl);
    }

    void failedOpenIsReportedOnce()
    {
        OpenPort rig;
        const QSignalSpy errors(&rig.manager, &SerialManager::errorOccurred);
        QVERIFY(!rig.manager.open({u"/dev/sigvane-no-such-port"_s}));
        QVERIFY(!rig.manager.isOpen());
        QVERIFY(rig.manager.lastError() != QSerialPort::NoError);
        QCOMPARE(errors.size(), 1);
        QVERIFY(!errors.first().first().toString().isEmpty());
    }

    void lossIsReportedOncePerOpen()
    {
        OpenPort rig;
        rig.report(QSerialPort::ResourceError);
        rig.report(QSerialPort::ReadError);
        QCOMPARE(rig.lost.size(), 1);
        rig.open();
        rig.report(QSerialPort::ReadError);
        QCOMPARE(rig.lost.size(), 2);
    }

    void errorOfALivingDeviceIsNoLoss()
    {
        const OpenPort rig;
        const QSignalSpy errors(&rig.manager, &SerialManager::errorOccurred);
        rig.report(QSerialPort::WriteError);
        QCOMPARE(errors.size(), 1);
        QCOMPARE(rig.lost.size(), 0);
    }
};

QTEST_GUILESS_MAIN(SerialManagerTest)
#include "tst_serialmanager.moc"
