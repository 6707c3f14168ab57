#include "app/status/ConnectionStatus.h"
#include "support/TextColor.h"

#include <QFileInfo>
#include <QTemporaryFile>
#include <QTest>

#include <unistd.h>

using namespace Qt::StringLiterals;

// What the status bar says of the port.
class ConnectionStatusTest : public QObject
{
    Q_OBJECT

    struct OpenPort
    {
        ConnectionStatus status;

        OpenPort() { status.showOpened(u"ttyX"_s, 9600); }
        void fail(const QString& text) { status.showError(u"ttyX"_s, text, QSerialPort::UnknownError); }
        bool says(const QString& text) const { return status.text().contains(text); }
    };

private Q_SLOTS:
    void initTestCase() { QLocale::setDefault(QLocale::c()); }

    void saysThatNothingIsConnected()
    {
        const ConnectionStatus status;
        QCOMPARE(status.text(), u"Not connected"_s);
    }

    void saysThatThePortIsOpen()
    {
        OpenPort rig;
        rig.fail(u"Input/output error"_s);
        rig.status.showLost(u"ttyX"_s);
        rig.status.showOpened(u"ttyX"_s, 9600); // which ends all trouble
        QCOMPARE(rig.status.text(), u"ttyX open at 9600 baud · 0.0 lines/s · no line yet"_s);
        QCOMPARE(rig.status.toolTip(), rig.status.text());
        QVERIFY(!isRed(rig.status));
    }

    void saysThatThePortIsClosed()
    {
        OpenPort rig;
        rig.status.showClosed();
        QCOMPARE(rig.status.text(), u"ttyX not connected"_s);
        QVERIFY(!isRed(rig.status));
    }

    void saysTheLastErrorOfAnOpenPort()
    {
        OpenPort rig;
        rig.fail(u"Bad parity"_s);
        QCOMPARE(rig.status.text(), u"ttyX open at 9600 baud · 0.0 lines/s · no line yet · Bad parity"_s);
        QVERIFY(!isRed(rig.status));
    }

    void saysInRedThatTheDeviceIsGone()
    {
        OpenPort rig;
        rig.fail(u"Input/output error"_s);
        rig.status.showClosed();
        rig.status.showLost(u"ttyX"_s);
        QCOMPARE(rig.status.text(), u"ttyX: the device is gone · no line yet · Input/output error"_s);
        QVERIFY(isRed(rig.status));
    }

    void saysInRedWhyThePortIsNotOpen()
    {
        OpenPort rig;
        rig.status.showClosed();
        rig.fail(u"No such device"_s);
        QCOMPARE(rig.status.text(), u"ttyX not open · No such device"_s);
        QVERIFY(isRed(rig.status));
    }

    void saysInRedThatNoPortIsChosen()
    {
        ConnectionStatus status;
        status.showError({}, u"No such device"_s, QSerialPort::DeviceNotFoundError);
        QCOMPARE(status.text(), u"No port chosen · No such device"_s);
        QVERIFY(isRed(status));
    }

    void measuresTheLinesUntilTheyStop()
    {
        OpenPort rig;
        for (int i = 0; i < 100; ++i)
            rig.status.countLine();
        QTRY_VERIFY(rig.says(u"last line"_s));
        QVERIFY(!rig.says(u" 0.0 lines/s"_s));
        QTRY_VERIFY(rig.says(u" 0.0 lines/s"_s));
        QVERIFY(!rig.says(u"last line 0.0 s ago"_s));
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

    void missingPermissionNamesTheGroup()
    {
        QTemporaryFile device;
        QVERIFY(device.open());
        const QString path = device.fileName(); // gives it its name while we still may
        QVERIFY(device.setPermissions({}));
        const bool root = ::geteuid() == 0; // may read anything: becomes somebody who may not
        if (root) {
            QCOMPARE(::fchown(device.handle(), 0, 20), 0);
            QCOMPARE(::setresuid(65534, 65534, 0), 0);
        }
        ConnectionStatus status;
        status.showError(path, u"No"_s, QSerialPort::PermissionError);
        if (root)
            QCOMPARE(::setresuid(0, 0, 0), 0);
        QCOMPARE(status.toolTip(), u"%1 not open · No (join the group “%2”, then log in again)"_s.arg(
                                       path, QFileInfo(path).group()));
    }
};

QTEST_MAIN(ConnectionStatusTest)
#include "tst_connectionstatus.moc"
