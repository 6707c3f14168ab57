#include "support/LineEvents.h"
#include "support/PseudoTerminal.h"

#include <QElapsedTimer>
#include <QSignalSpy>
#include <QTemporaryFile>
#include <QTest>

using namespace Qt::StringLiterals;

// Cutting bytes into lines, and the port itself on a pseudo-terminal.
class SerialManagerTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void emitsTheEventsOfALineInOrder();
    void cutsTheSameLinesHoweverTheBytesArrive();
    void survivesSlotsThatInterfere_data();
    void survivesSlotsThatInterfere();
    void takesALineOf100MegabytesInSmallReads();
    void opensAndReadsAPort();
    void reopeningDropsAnUnfinishedLineAndRestartsTheClock();
    void reportsAFailedOpenOnce_data();
    void reportsAFailedOpenOnce();
    void reportsALostDeviceOnceAndOpensAgain();
};

void SerialManagerTest::emitsTheEventsOfALineInOrder()
{
    LineEvents events;
    SerialManager manager;
    events.listenTo(manager, &manager);
    manager.parseLine(u"12.5 hello RPM=1500 ERR=HOT  A=1 ST_MODE=RUN world A=2"_s);
    QCOMPARE(events.texts(),
             (QStringList{u"raw 12.5: 12.5 hello RPM=1500 ERR=HOT  A=1 ST_MODE=RUN world A=2"_s,
                          u"error 12.5: HOT"_s, u"state 12.5: MODE -> RUN"_s,
                          u"values 12.5: [A=2][RPM=1500]"_s, u"text 12.5: hello world"_s}));
    events.clear();
    manager.parseLine(QString());
    QVERIFY(events.texts().isEmpty());
    manager.parseLine(u"  "_s); // not empty, although it says nothing
    QCOMPARE(events.texts(), QStringList{u"raw 0:   "_s});
}

void SerialManagerTest::cutsTheSameLinesHoweverTheBytesArrive()
{
    const QByteArray bytes = QByteArray("\xef\xbb\xbf"
                                        "1 A=1\r\r\n\n\r\n 2 caf\xc3\xa9 \rB=\xff\r\n"
                                        "3 N=1") +
                             '\0' + QByteArray("2\n\xc2\xa0\n4 \xf0\x9f\x9a\x80 C=3\n5 unfinished");
    LineEvents expected;
    parseStreamPlainly(bytes, 0.0, expected);
    QVERIFY(expected.texts().size() > 6);
    for (qsizetype first = 0; first <= bytes.size(); ++first) {
        for (qsizetype second = first; second <= bytes.size(); ++second) {
            LineEvents found;
            SerialManager manager;
            found.listenTo(manager, &manager);
            manager.receive(bytes.left(first));
            manager.receive(bytes.sliced(first, second - first));
            manager.receive(bytes.sliced(second));
            QCOMPARE(found.texts(), expected.texts());
        }
    }
}

void SerialManagerTest::survivesSlotsThatInterfere_data()
{
    QTest::addColumn<QString>("what");
    QTest::addColumn<QStringList>("expected");
    QTest::newRow("closes") << u"close"_s << QStringList{u"1 A=1"_s, u"2 A=2"_s};
    QTest::newRow("reopens") << u"reopen"_s << QStringList{u"1 A=1"_s};
    QTest::newRow("parses") << u"parse"_s << QStringList{u"1 A=1"_s, u"9 A=9 B=9"_s, u"2 A=2"_s};
    QTest::newRow("receives") << u"receive"_s << QStringList{u"1 A=1"_s, u"2 A=2"_s, u"3 A=3"_s};
}

// At the first line, while a second one waits in the buffer.
void SerialManagerTest::survivesSlotsThatInterfere()
{
    QFETCH(QString, what);
    QFETCH(QStringList, expected);
    PseudoTerminal device;
    SerialManager manager;
    QVERIFY(manager.open({device.portName()}));
    QStringList lines;
    QList<QMap<QString, double>> values;
    connect(&manager, &SerialManager::lineParsed, this, [&](double, const auto& map) { values.append(map); });
    connect(&manager, &SerialManager::rawLineReceived, this, [&](double, const QString& line) {
        lines.append(line);
        if (lines.size() > 1)
            return;
        if (what == u"close"_s)
            manager.close();
        else if (what == u"reopen"_s)
            QVERIFY(manager.open({device.portName()}));
        else if (what == u"parse"_s)
            manager.parseLine(u"9 A=9 B=9"_s);
        else
            manager.receive("\n3 A=3\n");
    });
    device.write("1 A=1\n2 A=2\n");
    QTRY_COMPARE(lines.size(), expected.size());
    QCOMPARE(lines, expected);
    QCOMPARE(values.size(), expected.size());
    if (what == u"reopen"_s) { // the new connection works
        device.write("4 A=4\n");
        QTRY_COMPARE(lines.last(), u"4 A=4"_s);
    }
}

void SerialManagerTest::takesALineOf100MegabytesInSmallReads()
{
    SerialManager manager;
    QSignalSpy values(&manager, &SerialManager::lineParsed);
    qsizetype rawSize = 0;
    connect(&manager, &SerialManager::rawLineReceived, this,
            [&](double, const QString& line) { rawSize = line.size(); });
    const QByteArray block(1000, '7');
    QElapsedTimer timer;
    timer.start();
    for (int i = 0; i < 100'000; ++i)
        manager.receive(block);
    manager.receive("\nA=1\n");
    const qint64 elapsed = timer.elapsed();
    QCOMPARE(values.size(), 1); // the line after it
    QCOMPARE(rawSize, 3);
    // Searching the unfinished line again at every read, or moving it, would take minutes.
    QVERIFY2(elapsed < 20'000, qPrintable(QString::number(elapsed)));
}

void SerialManagerTest::opensAndReadsAPort()
{
    PseudoTerminal device;
    SerialManager manager;
    QSignalSpy lines(&manager, &SerialManager::rawLineReceived);
    QSignalSpy errors(&manager, &SerialManager::errorOccurred);
    manager.parseLine(u"A=1"_s);
    QCOMPARE(lines.takeFirst().at(0).toDouble(), 0.0); // the clock does not run yet
    QVERIFY(manager.open({device.portName(), 9600}));
    QVERIFY(manager.isOpen());
    QCOMPARE(manager.portName(), device.portName());

    QByteArray bytes;
    for (int i = 0; i < 20'000; ++i)
        bytes += QByteArray::number(i) + " A=" + QByteArray::number(i) + "\r\n";
    QVERIFY(device.writeAll(bytes));
    QTRY_COMPARE(lines.size(), 20'000);
    for (int i = 0; i < 20'000; ++i)
        QCOMPARE(lines.at(i).at(0).toInt(), i);
    manager.close();
    QVERIFY(!manager.isOpen());
    manager.close();
    QCOMPARE(errors.size(), 0);
    QCOMPARE(manager.lastError(), QSerialPort::NoError);
}

void SerialManagerTest::reopeningDropsAnUnfinishedLineAndRestartsTheClock()
{
    PseudoTerminal device;
    SerialManager manager;
    QSignalSpy lines(&manager, &SerialManager::rawLineReceived);
    QVERIFY(manager.open({device.portName()}));
    QElapsedTimer sinceOpen;
    sinceOpen.start();
    device.write("A=1\nLEFT");
    QTRY_COMPARE(lines.size(), 1);
    QTRY_VERIFY(sinceOpen.elapsed() > 300);
    manager.parseLine(u"B=1"_s);
    const double before = lines.at(1).at(0).toDouble();
    QVERIFY(before >= 0.3 && before <= double(sinceOpen.elapsed() + 1) / 1000.0);

    QVERIFY(manager.open({device.portName()}));
    sinceOpen.start();
    device.write("A=2\n");
    QTRY_COMPARE(lines.size(), 3);
    QCOMPARE(lines.at(2).at(1).toString(), u"A=2"_s);
    QVERIFY(lines.at(2).at(0).toDouble() <= double(sinceOpen.elapsed() + 1) / 1000.0);
    manager.close(); // the clock goes on
    QTRY_VERIFY(sinceOpen.elapsed() > 100);
    manager.parseLine(u"B=2"_s);
    QVERIFY(lines.at(3).at(0).toDouble() >= 0.1);
}

void SerialManagerTest::reportsAFailedOpenOnce_data()
{
    QTest::addColumn<QString>("port");
    QTest::newRow("missing") << u"/dev/sigvane-no-such-port"_s;
    QTest::newRow("no name") << QString();
    QTest::newRow("not a port") << u"<file>"_s;
}

void SerialManagerTest::reportsAFailedOpenOnce()
{
    QFETCH(QString, port);
    QTemporaryFile file;
    QVERIFY(file.open());
    if (port == u"<file>"_s)
        port = file.fileName();
    SerialManager manager;
    QSignalSpy errors(&manager, &SerialManager::errorOccurred);
    QSignalSpy lost(&manager, &SerialManager::deviceLost);
    QVERIFY(!manager.open({port}));
    QVERIFY(!manager.isOpen());
    QCOMPARE(errors.size(), 1);
    QVERIFY(!errors.first().first().toString().isEmpty());
    QVERIFY(manager.lastError() != QSerialPort::NoError);
    QCOMPARE(lost.size(), 0);
    manager.parseLine(u"A=1"_s);

    PseudoTerminal device;
    QVERIFY(manager.open({device.portName()}));
    QCOMPARE(manager.lastError(), QSerialPort::NoError);
    QCOMPARE(errors.size(), 1);
}

void SerialManagerTest::reportsALostDeviceOnceAndOpensAgain()
{
    PseudoTerminal device;
    SerialManager manager;
    QSignalSpy lines(&manager, &SerialManager::rawLineReceived);
    QSignalSpy errors(&manager, &SerialManager::errorOccurred);
    QSignalSpy lost(&manager, &SerialManager::deviceLost);
    for (int round = 1; round <= 2; ++round) {
        QVERIFY(manager.open({device.portName()}));
        device.write("A=1\n");
        QTRY_COMPARE(lines.size(), round);
        errors.clear();
        device.close();
        QTRY_VERIFY(errors.size() > 1); // the port goes on reporting
        QCOMPARE(lost.size(), round);
        QVERIFY(manager.lastError() != QSerialPort::NoError);
        QVERIFY(manager.isOpen());
        manager.close();
        QVERIFY(device.reopen());
    }
}

QTEST_GUILESS_MAIN(SerialManagerTest)
#include "tst_serialmanager.moc"
