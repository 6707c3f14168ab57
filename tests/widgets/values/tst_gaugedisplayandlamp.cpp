#include "support/Catalogue.h"
#include "support/WidgetPicture.h"
#include "widgets/values/AnalogGaugeWidget.h"
#include "widgets/values/DigitalDisplayWidget.h"
#include "widgets/values/StateIndicatorWidget.h"

#include <QLabel>
#include <QTest>
#include <QtMath>

using namespace Qt::StringLiterals;

// The widgets that show one thing: AnalogGaugeWidget, DigitalDisplayWidget and StateIndicatorWidget.
class TestGaugeDisplayAndLamp : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void needlePointsAtValue_data()
    {
        QTest::addColumn<double>("value"); // on a scale from 0 to 100
        QTest::addColumn<double>("angle");
        QTest::newRow("inside") << 75.0 << 67.5;
        QTest::newRow("above the scale") << 150.0 << 135.0;
        QTest::newRow("no number") << qQNaN() << -135.0;
    }

    void needlePointsAtValue()
    {
        QFETCH(double, value);
        QFETCH(double, angle);
        AnalogGaugeWidget gauge;
        gauge.resize(200, 200);
        gauge.setValue(value);
        const double radians = qDegreesToRadians(angle);
        const QPoint tip(int(100 + 50 * sin(radians)), int(100 - 50 * cos(radians)));
        QVERIFY(picture(gauge).pixelColor(tip).red() > 200);
        QVERIFY(picture(gauge).pixelColor(tip).green() < 60);
    }

    void gaugeWritesNameOfItsSignalBelow()
    {
        AnalogGaugeWidget gauge;
        gauge.resize(200, 300);
        gauge.assignSignals({"SIG_A"});
        QVERIFY(darkPixels(picture(gauge), QRect(0, 255, 200, 45)) > 20);
    }

    void displayShowsNewestOfManyValues()
    {
        DigitalDisplayWidget display;
        for (int value = 0; value <= 1000; ++value)
            display.setValue(value);
        QTRY_COMPARE(display.findChild<QLabel*>()->text(), u"1000.0"_s);
    }

    void displayDrawsWideNumberWholeOrElided_data()
    {
        QTest::addColumn<double>("value");
        QTest::addColumn<bool>("isWhole");
        QTest::newRow("six digits") << 12360.0 << true;
        QTest::newRow("309 digits") << -1e308 << false;
    }

    void displayDrawsWideNumberWholeOrElided()
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

    void colorsLampByKeyword_data()
    {
        QTest::addColumn<QColor>("color");
        QTest::newRow("PASS_FAIL") << QColor(200, 60, 60);
        QTest::newRow("timeout") << QColor(200, 60, 60);
        QTest::newRow("RUNNING") << QColor(60, 170, 80);
        QTest::newRow("PAUSED") << QColor(230, 170, 40);
        QTest::newRow("STANDBY") << QColor(90, 120, 160);
    }

    void colorsLampByKeyword()
    {
        QFETCH(QColor, color);
        StateIndicatorWidget indicator;
        indicator.resize(160, 60); // lower than caption and lamp
        indicator.setStateId(QTest::currentDataTag(), QString());
        QCOMPARE(picture(indicator).pixelColor(20, 55), color);
    }

    void lampForgetsStateOfOldGroup()
    {
        StateIndicatorWidget indicator;
        indicator.setGroupId("MODE");
        indicator.showState("MODE", "Pass", {});
        indicator.setGroupId("VALVE");
        QCOMPARE(indicator.stateId(), QString());
        QCOMPARE(indicator.stateLabel(), QString());
    }

    void lampTakesCaptionFromNewCatalogue()
    {
        StateIndicatorWidget indicator;
        indicator.setGroupId("MODE");
        const ProjectCatalogue catalogue("DASHBOARD_STATE_GROUP(MODE, \"Operating\")\n");
        indicator.definitionsChanged();
        QCOMPARE(indicator.groupLabel(), u"Operating"_s);
    }
};

QTEST_MAIN(TestGaugeDisplayAndLamp)
#include "tst_gaugedisplayandlamp.moc"
