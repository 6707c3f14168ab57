#include "support/WidgetPicture.h"
#include "widgets/decor/LineWidget.h"
#include "widgets/decor/TextLabelWidget.h"

#include <QTest>

// LineWidget and TextLabelWidget: what the tests of all widgets do not cover.
class TestLineAndLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineIsNoThickerThanItsWidget()
    {
        LineWidget line;
        line.resize(40, 30);
        line.loadConfig({{"thickness", 2147483647}, {"color", "Black"}});
        QCOMPARE(darkPixels(picture(line, 2), QRect(0, 0, 80, 60)), 80 * 60);
    }

    void labelHasItsColor_data()
    {
        QTest::addColumn<QColor>("color");
        QTest::newRow("Green") << QColor(0, 128, 0);
        QTest::newRow("Red") << QColor(255, 0, 0);
        QTest::newRow("green") << QColor(0, 0, 0); // no name of ours
    }

    void labelHasItsColor()
    {
        QFETCH(QColor, color);
        TextLabelWidget label;
        label.resize(100, 90);
        label.loadConfig({{"text", "I"}, {"color", QTest::currentDataTag()}, {"point", 72}, {"bold", true}});
        QCOMPARE(picture(label).pixelColor(50, 45), color);
    }

    void labelStandsWhereItIsAligned_data()
    {
        QTest::addColumn<int>("left"); // edge of the 20 columns where a letter stands
        QTest::newRow("Left") << 0;
        QTest::newRow("Center") << 40;
        QTest::newRow("Right") << 80;
    }

    void labelStandsWhereItIsAligned()
    {
        QFETCH(int, left);
        TextLabelWidget label;
        label.resize(100, 90);
        label.loadConfig({{"text", "i"}, {"align", QTest::currentDataTag()}});
        const int all = darkPixels(picture(label), label.rect());
        QVERIFY(all > 5);
        QCOMPARE(darkPixels(picture(label), QRect(left, 0, 20, 90)), all);
    }
};

QTEST_MAIN(TestLineAndLabel)
#include "tst_lineandlabel.moc"
