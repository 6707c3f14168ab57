#include "support/WidgetPicture.h"
#include "widgets/values/AnalogGaugeWidget.h"

#include <QTest>
#include <QtMath>

class TestAnalogGaugeWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void needlePointsAtValue_data()
    {
        QTest::addColumn<double>("minimum");
        QTest::addColumn<double>("maximum");
        QTest::addColumn<double>("value");
        QTest::addColumn<double>("angle");
        QTest::newRow("inside") << 0.0 << 100.0 << 75.0 << 67.5;
        QTest::newRow("above the scale") << 0.0 << 100.0 << 150.0 << 135.0;
        QTest::newRow("no number") << 0.0 << 100.0 << qQNaN() << -135.0;
        QTest::newRow("infinite range") << -1e308 << 1e308 << 0.0 << -135.0;
    }

    void needlePointsAtValue()
    {
        QFETCH(double, minimum);
        QFETCH(double, maximum);
        QFETCH(double, value);
        QFETCH(double, angle);
        AnalogGaugeWidget gauge;
        gauge.resize(200, 200);
        gauge.setRange(minimum, maximum);
        gauge.setValue(value);
        const double radians = qDegreesToRadians(angle);
        const QPoint tip(int(100 + 50 * sin(radians)), int(100 - 50 * cos(radians)));
        QVERIFY(picture(gauge).pixelColor(tip).red() > 200);
        QVERIFY(picture(gauge).pixelColor(tip).green() < 60);
    }

    void writesNameOfItsSignalBelow()
    {
        AnalogGaugeWidget gauge;
        gauge.resize(200, 300);
        const QRect below(0, 255, 200, 45);
        QCOMPARE(darkPixels(picture(gauge), below), 0);
        gauge.assignSignals({"SIG_A"});
        QVERIFY(darkPixels(picture(gauge), below) > 20);
    }

    void redrawsFaceForNewLimits()
    {
        AnalogGaugeWidget gauge;
        gauge.resize(200, 300);
        QVERIFY(darkPixels(picture(gauge), kLowLabel) * 2 < darkPixels(picture(gauge), kHighLabel)); // 0, 100
        gauge.loadConfig({{"min", -88}, {"max", 0}});
        QVERIFY(darkPixels(picture(gauge), kLowLabel) > darkPixels(picture(gauge), kHighLabel));
    }

    void staysSharpAtEveryRatio_data()
    {
        QTest::addColumn<double>("ratio");
        for (const double ratio : {1.0, 1.5, 2.0})
            QTest::addRow("%.1f", ratio) << ratio;
    }

    void staysSharpAtEveryRatio()
    {
        QFETCH(double, ratio);
        AnalogGaugeWidget gauge;
        gauge.resize(200, 200);
        QImage image = picture(gauge, ratio);
        image.setDevicePixelRatio(1);
        AnalogGaugeWidget large; // the same pixels without any scaling
        large.resize(QSize(200, 200) * ratio);
        QCOMPARE(image, picture(large));
    }

private:
    // The labels at the ends of the scale.
    static constexpr QRect kLowLabel{38, 180, 40, 24};
    static constexpr QRect kHighLabel{122, 180, 40, 24};
};

QTEST_MAIN(TestAnalogGaugeWidget)
#include "tst_analoggaugewidget.moc"
