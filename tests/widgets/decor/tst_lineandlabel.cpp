#include "support/WidgetPicture.h"
#include "widgets/decor/LineWidget.h"
#include "widgets/decor/TextLabelWidget.h"

#include <QTest>

using namespace Qt::StringLiterals;

// LineWidget and TextLabelWidget: what the contract of all widgets does not cover.
class TestLineAndLabel : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void lineIsAsThickAsTheLayoutSays()
    {
        LineWidget line;
        line.resize(40, 30);
        line.loadConfig({{"thickness", 25}, {"color", "black"}}); // more than the dialog offers
        QCOMPARE(darkPixels(picture(line), line.rect()), 40 * 25);
    }

    void lineStandsUpright()
    {
        LineWidget line;
        line.resize(40, 30);
        line.loadConfig({{"orientation", "Vertical"}, {"thickness", 3}, {"color", "Green"}});
        const QImage image = picture(line);
        for (int x = 17; x < 24; ++x)
            QCOMPARE(image.pixelColor(x, 0) == Qt::darkGreen, x >= 19 && x <= 21);
    }

    void labelStandsWhereItIsAligned_data() { alignments(); }
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

    void longLabelStaysOnOneLine_data() { alignments(); }
    void longLabelStaysOnOneLine()
    {
        TextLabelWidget label;
        label.resize(100, 90);
        label.loadConfig({{"text", u"wide words\n"_s.repeated(100'000)}, {"align", QTest::currentDataTag()}});
        const int all = darkPixels(picture(label), label.rect());
        QVERIFY(all > 50);
        QCOMPARE(darkPixels(picture(label), QRect(2, 35, 96, 20)), all);
    }

    void labelIsBoldOrLarge()
    {
        const int plain = ink({{"point", 12}});
        QVERIFY(ink({{"point", 12}, {"bold", true}}) > 1.2 * plain);
        QVERIFY(ink({{"point", 24}}) > 2 * plain);
    }

private:
    /// Row by row the left edge of the 20 columns where a letter stands.
    static void alignments()
    {
        QTest::addColumn<int>("left");
        QTest::newRow("Left") << 0;
        QTest::newRow("Center") << 40;
        QTest::newRow("Right") << 80;
    }
    static int ink(const QJsonObject& font)
    {
        TextLabelWidget label;
        label.resize(100, 90);
        label.loadConfig({{"text", "Ag"}});
        label.loadConfig(font);
        return darkPixels(picture(label), label.rect());
    }
};

QTEST_MAIN(TestLineAndLabel)
#include "tst_lineandlabel.moc"
