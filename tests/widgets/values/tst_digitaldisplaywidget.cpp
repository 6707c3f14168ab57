#include "support/WidgetPicture.h"
#include "widgets/values/DigitalDisplayWidget.h"

#include <QLabel>
#include <QTest>

using namespace Qt::StringLiterals;

class TestDigitalDisplayWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsNewestOfManyValues()
    {
        DigitalDisplayWidget display;
        for (int value = 0; value <= 1000; ++value)
            display.setValue(value);
        QTRY_COMPARE(label(display)->text(), u"1000.0"_s);
    }

    void drawsWideNumberWholeOrElided_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("isWhole");
        QTest::newRow("six digits") << 12360.0 << true;
        QTest::newRow("five digits") << 1453.2 << true;
        QTest::newRow("309 digits") << -1e308 << false;
    }

    void drawsWideNumberWholeOrElided()
    {
        QFETCH(double, value);
        QFETCH(bool, isWhole);
        DigitalDisplayWidget display;
        display.setValue(value);
        for (int width = 80; width <= 160; ++width) {
            display.resize(width, 60);
            const QImage image = picture(display);
            int right = width - 1;
            while (right > 0 && darkPixels(image, QRect(right, 0, 1, 60)) == 0)
                --right;
            // The last digit is high, the dots of an elision low.
            QCOMPARE(darkPixels(image, QRect(right - 5, 0, 6, 30)) > 0, isWhole);
        }
    }

    void writesDescriptionAboveName()
    {
        DigitalDisplayWidget display;
        display.resize(200, 200);
        display.assignSignals({"  ::iiiiiiii : iii :iiiiiiiii"});
        const QImage image = picture(display); // lines centred at 137.5 and 15 pixels below
        const int description = darkPixels(image, QRect(0, 138, 200, 1));
        QVERIFY(description > 0);
        QVERIFY(darkPixels(image, QRect(0, 153, 200, 1)) > description * 2);
    }

private:
    static const QLabel* label(const DigitalDisplayWidget& display) { return display.findChild<QLabel*>(); }
};

QTEST_MAIN(TestDigitalDisplayWidget)
#include "tst_digitaldisplaywidget.moc"
