#include "support/Catalogue.h"
#include "support/WidgetPicture.h"
#include "widgets/values/AnalogGaugeWidget.h"
#include "widgets/values/DigitalDisplayWidget.h"
#include "widgets/values/StateIndicatorWidget.h"

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
    void gaugeTurnsNeedle()
    {
        AnalogGaugeWidget gauge;
        gauge.resize(200, 200);
        using Row = std::tuple<double, double, double, double>;
        for (const auto& [minimum, maximum, value, angle] :
             {Row{0, 100, 75, 67.5}, Row{0, 100, 150, 135}, Row{0, 100, qQNaN(), -135},
              Row{-1e308, 1e308, 0, -135}}) {
            gauge.setRange(minimum, maximum);
            gauge.setValue(value);
            const double radians = qDegreesToRadians(angle);
            const QPoint tip(int(100 + 50 * sin(radians)), int(100 - 50 * cos(radians)));
            const QColor there = picture(gauge).pixelColor(tip);
            QVERIFY2(there.red() > 200 && there.green() < 60, qPrintable(QString::number(value)));
        }
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
        gauge.loadConfig({{"min", -88}, {"max", 0}});
        gauge.loadConfig({{"max", 7}}); // half a range is none
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

    void displayShowsNewestValue()
    {
        DigitalDisplayWidget display;
        const auto* label = display.findChild<QLabel*>();
        for (int value = 0; value <= 1000; ++value)
            display.setValue(value);
        QTRY_COMPARE(label->text(), u"1000.0"_s);
        const auto shown = [&](const QJsonValue& places) {
            display.loadConfig({{"decimalPlaces", places}});
            display.setValue(1.0);
            return label->text();
        };
        QCOMPARE(shown("3"), u"1"_s);
        QCOMPARE(shown(1e9), u"1.00000000000000000"_s);
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
        display.assignSignals({"  ::iiiiiiii : iii :iiiiiiiii"});
        const QImage image = picture(display); // lines centred at 137.5 and 15 pixels below
        const int description = darkPixels(image, QRect(0, 138, 200, 1));
        QVERIFY(description > 0 && darkPixels(image, QRect(0, 153, 200, 1)) > description * 2);
    }

    void lampColoursByKeyword()
    {
        StateIndicatorWidget indicator;
        indicator.resize(160, 60); // lower than caption and lamp
        const auto lamp = [&](const QString& state) {
            indicator.setStateId(state, QString());
            return picture(indicator).pixelColor(20, 55);
        };
        QCOMPARE(lamp("PASS_FAIL"), QColor(200, 60, 60));
        QCOMPARE(lamp("timeout"), QColor(200, 60, 60));
        QCOMPARE(lamp("RUNNING"), QColor(60, 170, 80));
        QCOMPARE(lamp("PAUSED"), QColor(230, 170, 40));
        QCOMPARE(lamp("STANDBY"), QColor(90, 120, 160));
    }

    void lampShowsStateOfItsGroupOnly()
    {
        StateIndicatorWidget indicator;
        indicator.setGroupId(" MODE ");
        const ProjectCatalogue catalogue(
            "DASHBOARD_STATE_GROUP(MODE, \"Operating\")\nDASHBOARD_STATE_GROUP(B, \"Other\")\n");
        indicator.definitionsChanged();
        QCOMPARE(indicator.groupLabel(), u"Operating"_s);
        indicator.setStateId(" Pass ", QString());
        indicator.setGroupId("MODE ");
        QCOMPARE(indicator.stateId() + indicator.stateLabel(), u"Pass Pass "_s);
        QWidget parent;
        indicator.buildConfigUI(new QFormLayout(&parent), &parent);
        parent.findChild<QComboBox*>()->setCurrentText("Other (B)");
        indicator.applyConfigUI();
        QCOMPARE(indicator.groupId() + indicator.stateId() + indicator.stateLabel(), u"B"_s);
    }
};

QTEST_MAIN(TestSingleValueWidgets)
#include "tst_singlevaluewidgets.moc"
