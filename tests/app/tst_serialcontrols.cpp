#include "app/ConnectionStatus.h"
#include "app/PortComboBox.h"
#include "app/Sigvane.h"
#include "app/ValueRouter.h"
#include "serial/SerialManager.h"
#include "support/PseudoTerminal.h"

#include <QAction>
#include <QSignalSpy>
#include <QTest>
#include <QToolButton>

class TestSerialControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void connectsReadsAndDisconnects()
    {
        PseudoTerminal device;
        Sigvane window;
        auto* button = window.findChild<QToolButton*>(QStringLiteral("connectButton"));
        auto* port = window.findChild<PortComboBox*>();
        auto* baud = window.findChild<QComboBox*>(QStringLiteral("baudBox"));
        auto* status = window.findChild<ConnectionStatus*>();
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QCOMPARE(baud->currentData().toInt(), 115200);
        port->setEditText(device.portName());
        baud->setEditText(QStringLiteral("250000"));
        button->click();
        QVERIFY(window.serial()->isOpen());
        QCOMPARE(button->text(), QStringLiteral("Disconnect"));
        QCOMPARE(baud->currentData().toInt(), 250000);
        QVERIFY(status->text().contains(device.portName()) &&
                status->text().contains(QStringLiteral("250000")));

        QVERIFY(device.writeAll("1.5 A=1 B=2\r\nA=3\n"));
        QTRY_COMPARE(status->lineCount(), 2);
        QCOMPARE(window.router()->lastValues().value(QStringLiteral("A")), 3.0);
        QTRY_VERIFY(status->text().contains(QStringLiteral("last line")));

        QTest::keyClick(&window, Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(!window.serial()->isOpen());
        QCOMPARE(button->text(), QStringLiteral("Connect"));
        QCOMPARE(status->text(), QStringLiteral("Not connected"));
    }

    void badBaudRateKeepsTheLastOne()
    {
        PseudoTerminal device;
        Sigvane window;
        window.findChild<PortComboBox*>()->setEditText(device.portName());
        auto* baud = window.findChild<QComboBox*>(QStringLiteral("baudBox"));
        for (const char* text : {"fast", "-9600", "0", "99999999999"}) {
            baud->setEditText(QLatin1String(text));
            auto* button = window.findChild<QToolButton*>(QStringLiteral("connectButton"));
            button->click();
            QVERIFY(window.serial()->isOpen());
            QCOMPARE(baud->currentText(), QStringLiteral("115200"));
            button->click();
        }
    }

    void pulledPlugClosesThePortAndIsSaid()
    {
        PseudoTerminal device;
        Sigvane window;
        auto* button = window.findChild<QToolButton*>(QStringLiteral("connectButton"));
        auto* status = window.findChild<ConnectionStatus*>();
        window.findChild<PortComboBox*>()->setEditText(device.portName());
        button->click();
        QVERIFY(window.serial()->isOpen());
        const QSignalSpy errors(window.serial(), &SerialManager::errorOccurred);
        device.close();
        QTRY_VERIFY(!window.serial()->isOpen());
        QCOMPARE(button->text(), QStringLiteral("Connect"));
        QTRY_VERIFY(status->text().contains(QStringLiteral("gone")));
        QVERIFY2(errors.size() < 100, qPrintable(QString::number(errors.size())));

        QVERIFY(device.reopen());
        window.findChild<PortComboBox*>()->setEditText(device.portName());
        button->click();
        QVERIFY(window.serial()->isOpen());
        QVERIFY(device.writeAll("A=1\n"));
        QTRY_COMPARE(status->lineCount(), 1);
    }

    void failedOpenIsShownNotBoxed()
    {
        Sigvane window;
        window.findChild<PortComboBox*>()->setEditText(QStringLiteral("/no/such/port"));
        window.findChild<QToolButton*>(QStringLiteral("connectButton"))->click();
        QVERIFY(!window.serial()->isOpen());
        const QString text = window.findChild<ConnectionStatus*>()->text();
        QVERIFY2(text.startsWith(QStringLiteral("/no/such/port: ")), qPrintable(text));
        QVERIFY(!QApplication::activeModalWidget());
    }

    void missingPermissionNamesTheGroup()
    {
        const PseudoTerminal device;
        ConnectionStatus status;
        status.showError(device.portName(), QStringLiteral("Permission denied"),
                         QSerialPort::PermissionError);
        const QString group = QFileInfo(device.portName()).group();
        if (group.isEmpty() || group == QLatin1String("root"))
            QSKIP("terminals belong to no group here");
        QVERIFY2(status.text().contains(QStringLiteral("“%1”").arg(group)), qPrintable(status.text()));
    }

    void newPortListKeepsWhatWasTyped()
    {
        PortComboBox box;
        box.setPorts({QStringLiteral("ttyUSB0"), QStringLiteral("ttyUSB1")});
        QCOMPARE(box.currentText(), QStringLiteral("ttyUSB0"));
        box.setCurrentIndex(1);
        box.setPorts({QStringLiteral("ttyACM0"), QStringLiteral("ttyUSB1")});
        QCOMPARE(box.currentText(), QStringLiteral("ttyUSB1"));
        QCOMPARE(box.currentIndex(), 1);
        box.setEditText(QStringLiteral("/dev/pts/7"));
        const QSignalSpy asked(&box, &PortComboBox::aboutToPopUp);
        box.showPopup();
        QCOMPARE(asked.size(), 1);
        box.setPorts({});
        QCOMPARE(box.currentText(), QStringLiteral("/dev/pts/7"));
        QCOMPARE(box.count(), 0);
    }
};

QTEST_MAIN(TestSerialControls)
#include "tst_serialcontrols.moc"
