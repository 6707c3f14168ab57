#include "support/WidgetTools.h"
#include "widgets/AnalogGaugeWidget.h"
#include "widgets/DigitalDisplayWidget.h"
#include "widgets/StateIndicatorWidget.h"

#include <QComboBox>
#include <QFormLayout>
#include <QLabel>
#include <QTest>
#include <QtMath>

using namespace Qt::StringLiterals;

// Gauge, digital display and state indicator: what the contract of all widgets does not cover.
class TestSingleValueWidgets : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void gaugeTurnsNeedle_data()
    {
        QTest::addColumn<QList<double>>("numbers"); // minimum, maximum, then the values
        QTest::addColumn<double>("angle");
        QTest::newRow("between") << QList{0.0, 100.0, 75.0} << 67.5;
        QTest::newRow("above") << QList{0.0, 100.0, 150.0} << 135.0;
        QTest::newRow("before the first value") << QList{20.0, 80.0} << -135.0;
        QTest::newRow("NaN") << QList{0.0, 100.0, 50.0, qQNaN()} << -135.0;
        QTest::newRow("limits NaN") << QList{qQNaN(), qQNaN(), 7.0} << -135.0;
        QTest::newRow("range overflows") << QList{-1e308, 1e308, 0.0} << -135.0;
    }
    void gaugeTurnsNeedle()
    {
        QFETCH(QList<double>, numbers);
        QFETCH(double, angle);
        AnalogGaugeWidget gauge;
        gauge.resize(200, 200);
        gauge.setRange(numbers.at(0), numbers.at(1));
        for (const double value : numbers.mid(2))
            gauge.setValue(value);
        const QImage image = picture(gauge);
        const auto pointsTo = [&image](double degrees) {
            const double angle = qDegreesToRadians(degrees);
            const QColor at = image.pixelColor(int(100 + 50 * sin(angle)), int(100 - 50 * cos(angle)));
            return at.red() > 200 && at.green() < 60;
        };
        QVERIFY(pointsTo(angle));
        QVERIFY(!pointsTo(angle + 90) && !pointsTo(angle + 180) && !pointsTo(angle - 90));
    }

    void gaugeRedrawsFaceWhenItMust()
    {
        AnalogGaugeWidget gauge;
        gauge.resize(200, 300);
        const QRect below(0, 255, 200, 45);
        QCOMPARE(darkPixels(picture(gauge), below), 0);
        gauge.assignSignals({"SIG_A"});
        QVERIFY(darkPixels(picture(gauge), below) > 20);
        // Labels at the ends: one digit on the left, three on the right, then the other way round.
        const QRect low(38, 180, 40, 24);
        const QRect high(122, 180, 40, 24);
        QVERIFY(darkPixels(picture(gauge), low) * 2 < darkPixels(picture(gauge), high));
        gauge.loadConfig({{"min", -88.9}, {"max", 0.9}});
        gauge.loadConfig({{"max", 7}}); // half a range is none
        QCOMPARE(gauge.saveConfig(), (QJsonObject{{"min", -88}, {"max", 0}}));
        QVERIFY(darkPixels(picture(gauge), low) > darkPixels(picture(gauge), high));
    }

    void gaugeStaysSharpAtEveryRatio()
    {
        AnalogGaugeWidget gauge;
        gauge.resize(200, 200);
        for (const double ratio : {1.0, 1.5, 2.0}) {
            QImage image = picture(gauge, ratio);
            image.setDevicePixelRatio(1);
            AnalogGaugeWidget large; // the same pixels without any scaling
            large.resize(QSize(200, 200) * ratio);
            QCOMPARE(image, picture(large));
        }
    }

    void displayShowsValue()
    {
        DigitalDisplayWidget display;
        const auto* label = display.findChild<QLabel*>();
        QCOMPARE(label->text(), u"0"_s);
        display.setValue(12.0);
        QCOMPARE(label->text(), u"12.0"_s);
        const auto shown = [&](const QJsonValue& places, double value) {
            display.loadConfig({{"decimalPlaces", places}});
            display.setValue(value);
            return label->text();
        };
        QCOMPARE(shown(8, 1.0 / 3), u"0.33333333"_s);
        QCOMPARE(shown("3", 1.25), u"1"_s);
        QCOMPARE(shown(1e9, 1.0), u"1.00000000000000000"_s);
    }

    void displayShowsNewestValueOfAFlood()
    {
        DigitalDisplayWidget display;
        for (int value = 0; value <= 1000; ++value)
            display.setValue(value);
        QTRY_COMPARE(display.findChild<QLabel*>()->text(), u"1000.0"_s);
    }

    void displayDrawsWideNumberWholeOrElided()
    {
        DigitalDisplayWidget display;
        for (int width = 80; width <= 160; ++width) {
            display.resize(width, 60);
            for (const double value : {1453.2, 12360.0, -1e308}) {
                display.setValue(value);
                QTRY_COMPARE(display.findChild<QLabel*>()->text(), QString::number(value, 'f', 1));
                const QImage image = picture(display);
                int right = width - 1;
                while (right > 0 && darkPixels(image, QRect(right, 0, 1, 60)) == 0)
                    --right;
                // The last digit is high, the dots of an elision low.
                QCOMPARE(darkPixels(image, QRect(right - 5, 0, 6, 30)) > 0, value > 0);
            }
        }
    }

    void displayWritesDescriptionAboveName()
    {
        DigitalDisplayWidget display;
        display.resize(200, 200);
        display.assignSignals({"  ::iiiiiiii : iii :iiiiiiiii", "SIG_B"});
        const QImage image = picture(display);
        const int description = darkPixels(image, QRect(0, 138, 200, 1)); // centred at 137.5
        QVERIFY(description > 0);
        QVERIFY(darkPixels(image, QRect(0, 153, 200, 1)) > description * 2); // 15 pixels below
    }

    void lampColoursByKeyword()
    {
        StateIndicatorWidget indicator;
        indicator.resize(160, 60); // lower than caption and lamp
        const auto lamp = [&](const QString& state) {
            indicator.setStateId(state, QString());
            return picture(indicator).pixelColor(20, 55);
        };
        for (const char* red : {"LOGOUT", "timeout", "PASS_FAIL", "STOPPING"})
            QCOMPARE(lamp(red), QColor(200, 60, 60));
        for (const char* green : {"RUNNING", " Pass ", "go"})
            QCOMPARE(lamp(green), QColor(60, 170, 80));
        QCOMPARE(lamp("PAUSED"), QColor(230, 170, 40));
        QCOMPARE(lamp("STANDBY"), QColor(90, 120, 160));
    }

    void lampShowsStateOfItsGroupOnly()
    {
        StateIndicatorWidget indicator;
        indicator.setGroupId(" MODE ");
        const TestCatalogue catalogue("DASHBOARD_STATE_GROUP(MODE, \"Operating mode\")\n");
        indicator.refreshGroupDisplayFromParser();
        QCOMPARE(indicator.groupLabel(), u"Operating mode"_s);
        indicator.setStateId(" Pass ", QString());
        indicator.setGroupId("MODE ");
        QCOMPARE(indicator.stateId() + indicator.stateLabel(), u"Pass Pass "_s);
        indicator.setGroupId("OTHER");
        QCOMPARE(indicator.groupLabel() + indicator.stateId() + indicator.stateLabel(), u"OTHER"_s);
    }

    void lampOffersGroups()
    {
        const TestCatalogue catalogue("DASHBOARD_STATE(B, ON, \"\")\nDASHBOARD_STATE_GROUP(A, \"First\")\n");
        StateIndicatorWidget indicator;
        QWidget parent;
        indicator.buildConfigUI(new QFormLayout(&parent), &parent);
        parent.findChild<QComboBox*>()->setCurrentText("First (A)");
        indicator.applyConfigUI();
        QCOMPARE(indicator.groupId(), u"A"_s);
    }
};

QTEST_MAIN(TestSingleValueWidgets)
#include "tst_singlevaluewidgets.moc"
