#include "support/WidgetTools.h"
#include "widgets/DigitalDisplayWidget.h"
#include "widgets/SignalCaption.h"

#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QTest>

#include <limits>

class TestDigitalDisplayWidget : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void showsValue_data();
    void showsValue();
    void keepsWidthWhateverTheValue();
    void cutsNameIntoPieces();
    void writesDescriptionAboveName();
    void reformatsWithNextValue();
};

void TestDigitalDisplayWidget::showsValue_data()
{
    QTest::addColumn<QJsonValue>("places");
    QTest::addColumn<double>("value");
    QTest::addColumn<QString>("text");
    QTest::newRow("default") << QJsonValue(QJsonValue::Undefined) << 12.0 << "12.0";
    QTest::newRow("two") << QJsonValue(2) << 3.14159 << "3.14";
    QTest::newRow("none") << QJsonValue(0) << 3.14159 << "3";
    QTest::newRow("eight") << QJsonValue(8) << 1.0 / 3 << "0.33333333";
    QTest::newRow("fraction cut off") << QJsonValue(2.9) << 1.0 << "1.00";
    QTest::newRow("not a number") << QJsonValue("3") << 1.25 << "1";
    QTest::newRow("negative") << QJsonValue(-5) << 1.0 << "1";
    QTest::newRow("absurd") << QJsonValue(1e9) << 1.0 << "1.00000000000000000";
    QTest::newRow("NaN") << QJsonValue(1) << std::numeric_limits<double>::quiet_NaN() << "nan";
    QTest::newRow("infinite") << QJsonValue(1) << -std::numeric_limits<double>::infinity() << "-inf";
}

void TestDigitalDisplayWidget::showsValue()
{
    QFETCH(QJsonValue, places);
    QFETCH(double, value);
    DigitalDisplayWidget display;
    const auto* label = display.findChild<QLabel*>();
    QCOMPARE(label->text(), QString("0"));
    if (!places.isUndefined())
        display.loadConfig({{"decimalPlaces", places}});
    display.setValue(value);
    QTEST(label->text(), "text");
}

void TestDigitalDisplayWidget::keepsWidthWhateverTheValue()
{
    DigitalDisplayWidget display;
    display.loadConfig({{"decimalPlaces", 8}});
    display.resize(100, 60);
    display.show();
    display.setValue(-1e308);
    QCoreApplication::processEvents();
    QCOMPARE(display.size(), QSize(100, 60));
    QCOMPARE(display.minimumCanvasSize().width(), 80);
}

void TestDigitalDisplayWidget::cutsNameIntoPieces()
{
    const SignalCaption both = signalCaption({"  SIG_A : Speed  ", "SIG_B"});
    QCOMPARE(both.name, QString("SIG_A"));
    QCOMPARE(both.description, QString("Speed"));
    QCOMPARE(signalCaption({"::SIG_A::Speed:x"}).description, QString("Speed"));
    QCOMPARE(signalCaption({"SIG_A"}).description, QString());
}

void TestDigitalDisplayWidget::writesDescriptionAboveName()
{
    DigitalDisplayWidget display;
    display.resize(200, 200);
    const QImage plain = picture(display);
    display.assignSignals({"iiiiiiii:iii"});
    const QImage named = picture(display);
    const auto changed = [&](int y) {
        int count = 0;
        for (int x = 0; x < named.width(); ++x)
            count += named.pixel(x, y) != plain.pixel(x, y);
        return count;
    };
    QVERIFY(changed(138) > 0);                // the description, centred at 137.5
    QVERIFY(changed(153) > changed(138) * 2); // the longer name, 15 pixels below
    QCOMPARE(changed(100), 0);
}

void TestDigitalDisplayWidget::reformatsWithNextValue()
{
    DigitalDisplayWidget display;
    const auto* label = display.findChild<QLabel*>();
    display.setValue(1.26);
    QWidget parent;
    display.buildConfigUI(new QFormLayout(&parent), &parent);
    parent.findChild<QDoubleSpinBox*>()->setValue(3);
    display.applyConfigUI();
    QCOMPARE(label->text(), QString("1.3"));
    display.setValue(1.26);
    QCOMPARE(label->text(), QString("1.260"));
}

QTEST_MAIN(TestDigitalDisplayWidget)
#include "tst_digitaldisplaywidget.moc"
