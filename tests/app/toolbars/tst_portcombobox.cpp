#include "app/toolbars/PortComboBox.h"

#include <QLineEdit>
#include <QSignalSpy>
#include <QTest>

using namespace Qt::StringLiterals;

class PortComboBoxTest : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void newListKeepsWhatWasChosen()
    {
        PortComboBox box;
        box.setPorts({u"ttyUSB0"_s, u"ttyUSB10"_s});
        QCOMPARE(box.currentText(), u"ttyUSB0"_s);
        box.setCurrentIndex(1);
        box.setPorts({u"ttyACM0"_s, u"ttyACM1"_s, u"ttyUSB10"_s});
        QCOMPARE(box.currentIndex(), 2);
    }

    void newListKeepsWhatWasTyped()
    {
        PortComboBox box;
        box.show();
        QVERIFY(QTest::qWaitForWindowActive(&box));
        box.setPorts({u"ttyUSB0"_s, u"ttyUSB10"_s});
        box.lineEdit()->selectAll();
        QTest::keyClicks(box.lineEdit(), u"ttyUSB1"_s); // not completed to the listed one
        box.setPorts({u"ttyUSB0"_s, u"ttyUSB10"_s});
        QCOMPARE(box.currentText(), u"ttyUSB1"_s);
        QCOMPARE(box.count(), 2);
    }
};

QTEST_MAIN(PortComboBoxTest)
#include "tst_portcombobox.moc"
