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

using namespace Qt::StringLiterals;

class TestSerialControls : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void connectsReadsAndDisconnects()
    {
        PseudoTerminal device;
        Sigvane window;
        auto* button = window.findChild<QToolButton*>(u"connectButton"_s);
        auto* port = window.findChild<PortComboBox*>();
        auto* baud = window.findChild<QComboBox*>(u"baudBox"_s);
        auto* status = window.findChild<ConnectionStatus*>();
        window.show();
        QVERIFY(QTest::qWaitForWindowActive(&window));
        QCOMPARE(baud->currentData().toInt(), 115200);
        port->setEditText(device.portName());
        baud->setEditText(u"250000"_s);
        button->click();
        QVERIFY(window.serial()->isOpen());
        QCOMPARE(button->text(), u"Disconnect"_s);
        QCOMPARE(baud->currentData().toInt(), 250000);
        QVERIFY(status->text().contains(device.portName()) && status->text().contains(u"250000"_s));

        QVERIFY(device.writeAll("1.5 A=1 B=2\r\nA=3\n"));
        QTRY_COMPARE(status->lineCount(), 2);
        QCOMPARE(window.router()->lastValues().value(u"A"_s), 3.0);
        QTRY_VERIFY(status->text().contains(u"last line"_s));

        QTest::keyClick(&window, Qt::Key_K, Qt::ControlModifier | Qt::ShiftModifier);
        QTRY_VERIFY(!window.serial()->isOpen());
        QCOMPARE(button->text(), u"Connect"_s);
        QCOMPARE(status->text(), u"Not connected"_s);
    }

    void badBaudRateKeepsTheLastOne()
    {
        PseudoTerminal device;
        Sigvane window;
        window.findChild<PortComboBox*>()->setEditText(device.portName());
        auto* baud = window.findChild<QComboBox*>(u"baudBox"_s);
        for (const char* text : {"fast", "-9600", "0", "99999999999"}) {
            baud->setEditText(QLatin1String(text));
            auto* button = window.findChild<QToolButton*>(u"connectButton"_s);
            button->click();
            QVERIFY(window.serial()->isOpen());
            QCOMPARE(baud->currentText(), u"115200"_s);
            button->click();
        }
    }

    void pulledPlugClosesThePortAndIsSaid()
    {
        PseudoTerminal device;
        Sigvane window;
        auto* button = window.findChild<QToolButton*>(u"connectButton"_s);
        auto* status = window.findChild<ConnectionStatus*>();
        window.findChild<PortComboBox*>()->setEditText(device.portName());
        button->click();
        QVERIFY(window.serial()->isOpen());
        const QSignalSpy errors(window.serial(), &SerialManager::errorOccurred);
        device.close();
        QTRY_VERIFY(!window.serial()->isOpen());
        QCOMPARE(button->text(), u"Connect"_s);
        QTRY_VERIFY(status->text().contains(u"gone"_s));
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
        window.findChild<PortComboBox*>()->setEditText(u"/no/such/port"_s);
        window.findChild<QToolButton*>(u"connectButton"_s)->click();
        QVERIFY(!window.serial()->isOpen());
        const QString text = window.findChild<ConnectionStatus*>()->text();
        QVERIFY2(text.startsWith(u"/no/such/port: "_s), qPrintable(text));
        QVERIFY(!QApplication::activeModalWidget());
    }

    void missingPermissionNamesTheGroup()
    {
        const PseudoTerminal device;
        ConnectionStatus status;
        status.showError(device.portName(), u"Permission denied"_s, QSerialPort::PermissionError);
        const QString group = QFileInfo(device.portName()).group();
        if (group.isEmpty() || group == QLatin1String("root"))
            QSKIP("terminals belong to no group here");
        QVERIFY2(status.text().contains(u"“%1”"_s.arg(group)), qPrintable(status.text()));
    }

    void newPortListKeepsWhatWasTyped()
    {
        PortComboBox box;
        box.setPorts({u"ttyUSB0"_s, u"ttyUSB1"_s});
        QCOMPARE(box.currentText(), u"ttyUSB0"_s);
        box.setCurrentIndex(1);
        box.setPorts({u"ttyACM0"_s, u"ttyUSB1"_s});
        QCOMPARE(box.currentText(), u"ttyUSB1"_s);
        QCOMPARE(box.currentIndex(), 1);
        box.setEditText(u"/dev/pts/7"_s);
        const QSignalSpy asked(&box, &PortComboBox::aboutToPopUp);
        box.showPopup();
        QCOMPARE(asked.size(), 1);
        box.setPorts({});
        QCOMPARE(box.currentText(), u"/dev/pts/7"_s);
        QCOMPARE(box.count(), 0);
    }
};

QTEST_MAIN(TestSerialControls)
#include "tst_serialcontrols.moc"
