#include "app/status/ConnectionStatus.h"
#include "support/TextColor.h"

#include <QTemporaryFile>
#include <QTest>

using namespace Qt::StringLiterals;

// What the status bar says of the port.
class ConnectionStatusTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void saysHowThePortIs_data()
    {
        QTest::addColumn<QString>("text");
        QTest::addColumn<bool>("red");
        QTest::addColumn<QString>("expectedText");
        QTest::addColumn<bool>("expectedRed");
        ConnectionStatus status;
        QTest::newRow("nothing") << status.text() << isRed(status) << u"Not connected"_s << false;
        status.showError({}, u"No such device"_s, QSerialPort::DeviceNotFoundError);
        QTest::newRow("no port chosen")
            << status.text() << isRed(status) << u"No port chosen · No such device"_s << true;
        status.showError(u"ttyX"_s, u"Not found"_s, QSerialPort::DeviceNotFoundError);
        QTest::newRow("not open") << status.text() << isRed(status) << u"ttyX not open · Not found"_s << true;
        status.showOpened(u"ttyX"_s, 9600); // which ends all trouble
        QTest::newRow("open") << status.text() << isRed(status)
                              << u"ttyX open at 9600 baud · 0.0 lines/s · no line yet"_s << false;
        status.showClosed();
        QTest::newRow("closed") << status.text() << isRed(status) << u"ttyX not connected"_s << false;
        status.showOpened(u"ttyX"_s, 9600);
        status.showError(u"ttyX"_s, u"Bad parity"_s, QSerialPort::UnknownError);
        QTest::newRow("error") << status.text() << isRed(status)
                               << u"ttyX open at 9600 baud · 0.0 lines/s · no line yet · Bad parity"_s
                               << false;
        status.showLost(u"ttyX"_s);
        QTest::newRow("lost") << status.text() << isRed(status)
                              << u"ttyX: the device is gone · no line yet · Bad parity"_s << true;
    }

    void saysHowThePortIs()
    {
        QFETCH(QString, text);
        QFETCH(bool, red);
        QTEST(text, "expectedText");
        QTEST(red, "expectedRed");
    }

    void measuresTheLinesUntilTheyStop()
    {
        ConnectionStatus status;
        status.showOpened(u"ttyX"_s, 9600);
        for (int i = 0; i < 100; ++i)
            status.countLine();
        QTRY_VERIFY(status.text().contains(u"last line"_s));
        QVERIFY(!status.text().contains(u" 0.0 lines/s"_s));
        QTRY_VERIFY(status.text().contains(u" 0.0 lines/s"_s));
        QVERIFY(!status.text().contains(u"last line 0.0 s ago"_s));
    }

    void longPathIsInTheToolTip()
    {
        const QString folder = u"/dev/serial/by-id-of-a-very-long-name-that-does-not-fit/"_s;
        ConnectionStatus status;
        status.showOpened(folder + u"rig"_s, 9600);
        QVERIFY2(status.text().startsWith(u"rig open"_s), qPrintable(status.text()));
        QVERIFY2(status.toolTip().startsWith(folder), qPrintable(status.toolTip()));
    }

    void readableDeviceMayBeInUse()
    {
        QTemporaryFile device;
        QVERIFY(device.open());
        ConnectionStatus status;
        status.showError(device.fileName(), u"No"_s, QSerialPort::PermissionError);
        QCOMPARE(status.toolTip(), device.fileName() + u" not open · No (another program uses it?)"_s);
    }
};

QTEST_MAIN(ConnectionStatusTest)
#include "tst_connectionstatus.moc"
