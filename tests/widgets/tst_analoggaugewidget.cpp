#include "support/WidgetTools.h"
#include "widgets/AnalogGaugeWidget.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QGraphicsProxyWidget>
#include <QGraphicsScene>
#include <QPainter>
#include <QTest>
#include <QtMath>

#include <cmath>
#include <limits>

namespace {

constexpr double kNaN = std::numeric_limits<double>::quiet_NaN();

/// Whether the needle of a 200 × 200 gauge points there, in degrees clockwise from straight up.
bool pointsTo(const QImage& image, double degrees)
{
    const double angle = qDegreesToRadians(degrees);
    const QColor colour = image.pixelColor(int(100 + 50 * std::sin(angle)), int(100 - 50 * std::cos(angle)));
    return colour.red() > 200 && colour.green() < 60 && colour.blue() < 60;
}

int darkPixels(const QImage& image, const QRect& area)
{
    int count = 0;
    for (int y = area.top(); y <= area.bottom(); ++y) {
        for (int x = area.left(); x <= area.right(); ++x)
            count += image.pixelColor(x, y).lightness() < 100;
    }
    return count;
}

} // namespace

class TestAnalogGaugeWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void turnsNeedle_data();
    void turnsNeedle();
    void drawsScale();
    void ignoresHalfARange();
    void takesFractionsFromEditors();
    void redrawsFaceOnlyWhenItMust();
    void staysSharpInEnlargedScene();
    void writesNameBelowDial();
};

void TestAnalogGaugeWidget::turnsNeedle_data()
{
    QTest::addColumn<double>("minimum");
    QTest::addColumn<double>("maximum");
    QTest::addColumn<double>("value");
    QTest::addColumn<double>("angle");
    QTest::newRow("lower end") << 0.0 << 100.0 << 0.0 << -135.0;
    QTest::newRow("middle") << -10.0 << 10.0 << 0.0 << 0.0;
    QTest::newRow("between") << 0.0 << 100.0 << 75.0 << 67.5;
    QTest::newRow("above") << 0.0 << 100.0 << 150.0 << 135.0;
    QTest::newRow("below") << 0.0 << 100.0 << -1e308 << -135.0;
    QTest::newRow("NaN") << 0.0 << 100.0 << kNaN << -135.0;
    QTest::newRow("no range") << 5.0 << 5.0 << 7.0 << -135.0;
    QTest::newRow("wrong way round") << 10.0 << 5.0 << 7.0 << -135.0;
    QTest::newRow("limits NaN") << kNaN << kNaN << 7.0 << -135.0;
    QTest::newRow("range overflows") << -1e308 << 1e308 << 0.0 << -135.0;
}

void TestAnalogGaugeWidget::turnsNeedle()
{
    QFETCH(double, minimum);
    QFETCH(double, maximum);
    QFETCH(double, value);
    QFETCH(double, angle);
    AnalogGaugeWidget gauge;
    gauge.resize(200, 200);
    gauge.setRange(minimum, maximum);
    gauge.setValue(value);
    const QImage image = picture(gauge);
    QVERIFY(pointsTo(image, angle));
    QVERIFY(!pointsTo(image, angle + 90) && !pointsTo(image, angle + 180) && !pointsTo(image, angle - 90));
}

void TestAnalogGaugeWidget::drawsScale()
{
    AnalogGaugeWidget gauge;
    gauge.resize(200, 200);
    const QImage image = picture(gauge);
    QVERIFY(image.pixelColor(100, 17).lightness() < 40);   // major tick straight up
    QVERIFY(image.pixelColor(100, 185).lightness() > 180); // none straight down
    QCOMPARE(image.pixelColor(1, 1), gauge.palette().color(QPalette::Window));
    // Labels 0 and 100 at the ends: one digit on the left, three on the right.
    QVERIFY(darkPixels(image, QRect(38, 130, 40, 24)) * 2 < darkPixels(image, QRect(122, 130, 40, 24)));
}

void TestAnalogGaugeWidget::ignoresHalfARange()
{
    AnalogGaugeWidget gauge;
    gauge.setRange(1, 7);
    gauge.loadConfig({{"max", 50}});
    QCOMPARE(gauge.minimum(), 1.0);
    QCOMPARE(gauge.maximum(), 7.0);
}

void TestAnalogGaugeWidget::takesFractionsFromEditors()
{
    AnalogGaugeWidget gauge;
    auto* parent = new QWidget;
    gauge.buildConfigUI(new QFormLayout(parent), parent);
    const auto editors = parent->findChildren<QDoubleSpinBox*>();
    QCOMPARE(editors.size(), 2);
    editors.at(0)->setValue(0.5);
    editors.at(1)->setValue(2.5);
    gauge.applyConfigUI();
    QCOMPARE(gauge.saveConfig(), (QJsonObject{{"min", 0.5}, {"max", 2.5}}));
    editors.at(0)->setValue(1.5);
    delete parent;
    gauge.applyConfigUI(); // the dialog is gone: nothing to take
    QCOMPARE(gauge.minimum(), 0.5);
}

void TestAnalogGaugeWidget::redrawsFaceOnlyWhenItMust()
{
    AnalogGaugeWidget gauge;
    gauge.resize(200, 200);
    const QImage before = picture(gauge);
    QFont large = gauge.font();
    large.setFamily("DejaVu Serif"); // seen only in a face that is drawn again
    gauge.setFont(large);
    gauge.setValue(0);
    QCOMPARE(picture(gauge), before);
    gauge.setRange(0, 100);
    QVERIFY(picture(gauge) != before);
}

void TestAnalogGaugeWidget::staysSharpInEnlargedScene()
{
    QGraphicsScene scene;
    auto* embedded = new AnalogGaugeWidget;
    embedded->resize(200, 200);
    scene.addWidget(embedded);
    for (const double ratio : {1.5, 2.0}) {
        QImage image(QSize(200, 200) * ratio, QImage::Format_RGB32);
        image.setDevicePixelRatio(ratio);
        QPainter painter(&image);
        scene.render(&painter, QRectF(0, 0, 200, 200), QRectF(0, 0, 200, 200));
        painter.end();
        image.setDevicePixelRatio(1);
        AnalogGaugeWidget large; // the same pixels without any scaling
        large.resize(QSize(200, 200) * ratio);
        QCOMPARE(image, picture(large));
    }
}

void TestAnalogGaugeWidget::writesNameBelowDial()
{
    AnalogGaugeWidget gauge;
    gauge.resize(200, 300);
    const QRect below(0, 255, 200, 45);
    QCOMPARE(darkPixels(picture(gauge), below), 0);
    gauge.assignSignals({"SIG_A"});
    QVERIFY(darkPixels(picture(gauge), below) > 20);
    gauge.assignSignal("SIG_B");
    QCOMPARE(gauge.signalName(), QString("SIG_B"));
    QCOMPARE(gauge.assignedSignalList(), QList<QString>{"SIG_A"});
}

QTEST_MAIN(TestAnalogGaugeWidget)
#include "tst_analoggaugewidget.moc"
