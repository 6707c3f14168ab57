#include "support/LineEvents.h"
#include "support/PseudoTerminal.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

// Cutting bytes into lines, and the port itself on a pseudo-terminal.
class SerialManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emitsTheEventsOfALineInOrder()
    {
        SerialManager manager;
        LineEvents events;
        events.listenTo(manager, &manager);
        for (const char byte : QByteArray("12.5 hello R=15 ERR=HOT ST_MODE=RUN you A=1 R=2 \r\r\n \nB=2"))
            manager.receive(QByteArray(1, byte));
        manager.parseLine(u" "_s); // not empty, although it says nothing
        QCOMPARE(events.texts().join(u'\n'),
                 u"raw 12.5: 12.5 hello R=15 ERR=HOT ST_MODE=RUN you A=1 R=2\nerror 12.5: HOT\n"
                 "state 12.5: MODE -> RUN\nvalues 12.5: [A=1][R=2]\ntext 12.5: hello you\nraw 0:  "_s);
    }

    void survivesSlotsThatInterfere()
    {
        const PseudoTerminal device;
        SerialManager manager;
        QStringList lines;
        connect(&manager, &SerialManager::rawLineReceived, this, [&](double, const QString& line) {
            lines << line;
            if (line == u"A=1"_s)
                manager.receive("\nA=3\nLEFT\nOUT");
            else if (line == u"A=3"_s) {
                QVERIFY(manager.open({device.portName()})); // drops what waits
                manager.receive("A=4\n");
            }
        });
        manager.receive("A=1\nA=2\n");
        manager.receive("A=5\n");
        QCOMPARE(lines, (QStringList{u"A=1"_s, u"A=2"_s, u"A=3"_s, u"A=4"_s, u"A=5"_s}));
    }

    void takesALineOf100MegabytesInSmallReads()
    {
        SerialManager manager;
        QList<qsizetype> sizes;
        connect(&manager, &SerialManager::rawLineReceived, this,
                [&](double, const QString& line) { sizes << line.size(); });
        for (int i = 0; i < 100'000; ++i) // searching all of it each time would outlast the time limit
            manager.receive(QByteArray(1000, '7'));
        manager.receive("\nA=1\n");
        QCOMPARE(sizes, (QList<qsizetype>{100'000'000, 3}));
    }

    void countsTimeFromTheLastOpen()
    {
        const PseudoTerminal device;
        SerialManager manager;
        double time = -1.0; // of the last line
        connect(&manager, &SerialManager::rawLineReceived, this, [&](double t) { time = t; });
        for (int round = 0; round < 2; ++round) {
            QElapsedTimer sinceOpen;
            sinceOpen.start();
            QVERIFY(manager.open({device.portName()}));
            manager.close(); // the clock goes on
            QTRY_VERIFY((manager.parseLine(u"A=1"_s), time > 0.02));
            QVERIFY(time <= double(sinceOpen.elapsed()) / 1000.0);
        }
        QVERIFY(!manager.open({}));
        manager.parseLine(u"A=1"_s);
        QCOMPARE(time, 0.0);
    }

    void reportsAFailedOpenOnce()
    {
        for (const QString& port : {u"/dev/sigvane-no-such-port"_s, QString(), u"/dev/null"_s}) {
            SerialManager manager;
            QSignalSpy errors(&manager, &SerialManager::errorOccurred);
            QVERIFY(!manager.open({port}) && !manager.isOpen() &&
                    manager.lastError() != QSerialPort::NoError);
            QCOMPARE(errors.size(), 1);
            QVERIFY(!errors.first().first().toString().isEmpty());
        }
    }

    void readsAPortAndReportsItsLossOnce()
    {
        PseudoTerminal device;
        SerialManager manager;
        const auto reopen = [&] { QVERIFY(manager.open({device.portName(), 57600})); };
        const QSignalSpy lines(&manager, &SerialManager::rawLineReceived);
        const QSignalSpy lost(&manager, &SerialManager::deviceLost);
        reopen();
        QCOMPARE(device.speed(), 57600);
        QVERIFY(device.writeAll(QByteArray("A=1\r\n").repeated(20'000)));
        QTRY_COMPARE(lines.size(), 20'000);
        device.close();
        QTRY_COMPARE(lost.size(), 1);

        // The port's own signal stands for a pulled adapter, which a pseudo-terminal cannot imitate.
        const auto report = [&](auto error) { manager.findChild<QSerialPort*>()->errorOccurred(error); };
        QVERIFY(manager.isOpen() && device.reopen());
        reopen();
        report(QSerialPort::WriteError);
        QCOMPARE(lost.size(), 1);
        report(QSerialPort::ResourceError);
        report(QSerialPort::ReadError);
        QCOMPARE(lost.size(), 2);

        reopen();
        connect(&manager, &SerialManager::errorOccurred, this, reopen); // which mends the loss
        report(QSerialPort::ResourceError);
        QCOMPARE(lost.size(), 2);
        QCOMPARE(manager.lastError(), QSerialPort::NoError);
    }
};

QTEST_GUILESS_MAIN(SerialManagerTest)
#include "tst_serialmanager.moc"
