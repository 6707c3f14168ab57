#include "support/WidgetTools.h"
#include "widgets/DashboardWidget.h"
#include "widgets/DashboardWidgetConfigDialog.h"
#include "widgets/DashboardWidgetFactory.h"

#include <QDialogButtonBox>
#include <QJsonArray>
#include <QPushButton>
#include <QTest>

#include <limits>
#include <memory>

// What every registered type keeps to. A new type gets a row in initTestCase_data().
class TestWidgetContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data();
    void initTestCase();
    void offersEachTypeOnce();
    void createsByExactName();
    void keepsConfig();
    void survivesHostileConfig();
    void recoversFromHostileValues();
    void paintsAtEveryRatio();
    void paintsAtExtremeSizes();
    void configuresByDialog();
    void explainsItsEditors();

private:
    static std::unique_ptr<DashboardWidget> make();

    TestCatalogue m_catalogue{"DASHBOARD_SIGNAL(SIG_A, \"First\", NONE)\n"
                              "DASHBOARD_STATE_GROUP(MODE, \"Mode\")\n"};
};

void TestWidgetContract::initTestCase_data()
{
    QTest::addColumn<QString>("type");
    QTest::addColumn<QJsonObject>("config");
    QTest::addColumn<QJsonObject>("saved"); // what config has become after loading and saving
    QTest::newRow("gauge") << "AnalogGauge" << QJsonObject{{"min", -5.5}, {"max", 20.9}}
                           << QJsonObject{{"min", -5}, {"max", 20}};
    const QJsonObject display{{"signal", "SIG_A"}, {"decimalPlaces", 3}};
    QTest::newRow("display") << "DigitalDisplay" << display << display;
    const QJsonObject state{{"groupId", "MODE"}, {"corner", 4}};
    QTest::newRow("state") << "StateIndicator" << state << state;
    const QJsonObject console{{"maxLines", 70}, {"autoScroll", false}};
    QTest::newRow("errors") << "ErrorConsole" << console << console;
    QTest::newRow("messages") << "MessagesConsole" << console << console;
}

std::unique_ptr<DashboardWidget> TestWidgetContract::make()
{
    QFETCH_GLOBAL(QString, type);
    std::unique_ptr<DashboardWidget> widget(DashboardWidgetFactory::instance().create(type));
    widget->resize(250, 220);
    return widget;
}

void TestWidgetContract::initTestCase() { DashboardWidgetFactory::instance().registerBuiltInTypes(); }

void TestWidgetContract::offersEachTypeOnce()
{
    auto& factory = DashboardWidgetFactory::instance();
    factory.registerBuiltInTypes();
    QStringList types = factory.availableTypes();
    types.sort();
    QCOMPARE(types, QStringList({"AnalogGauge", "DigitalDisplay", "ErrorConsole", "MessagesConsole",
                                 "StateIndicator"}));
}

void TestWidgetContract::createsByExactName()
{
    QFETCH_GLOBAL(QString, type);
    const auto widget = make();
    QCOMPARE(widget->typeName(), type);
    QVERIFY(!widget->parent());
    QVERIFY(!DashboardWidgetFactory::instance().create(type.toLower()));
}

void TestWidgetContract::keepsConfig()
{
    QFETCH_GLOBAL(QJsonObject, config);
    QFETCH_GLOBAL(QJsonObject, saved);
    const auto widget = make();
    QVERIFY(widget->saveConfig() != saved);
    widget->loadConfig(config);
    QCOMPARE(widget->saveConfig(), saved);
    widget->loadConfig({});
    QCOMPARE(widget->saveConfig(), saved);
}

void TestWidgetContract::survivesHostileConfig()
{
    QFETCH_GLOBAL(QJsonObject, config);
    QFETCH_GLOBAL(QJsonObject, saved);
    const QJsonArray values{1e300,        -1e300, 1e9,           -5,           0, "text",
                            QJsonValue(), true,   QJsonArray{1}, QJsonObject()};
    const auto widget = make();
    for (const QJsonValue& value : values) {
        QJsonObject hostile = config;
        for (const QString& key : config.keys())
            hostile[key] = value;
        widget->loadConfig(hostile);
        QCOMPARE(widget->saveConfig().keys(), saved.keys());
        widget->setValueForSignalAt("SIG_A", 1e308, 0.0);
        picture(*widget);
    }
    widget->loadConfig(config);
    QCOMPARE(widget->saveConfig(), saved);
}

void TestWidgetContract::recoversFromHostileValues()
{
    using Limits = std::numeric_limits<double>;
    const auto widget = make();
    const auto fresh = make();
    for (const double value : {Limits::quiet_NaN(), Limits::infinity(), -Limits::infinity(), 1e308, -1e308}) {
        widget->setValueForSignalAt("SIG_A", value, value);
        picture(*widget);
        QVERIFY(widget->minimumSizeHint().width() <= 250);
    }
    widget->setValueForSignalAt("SIG_A", 12.0, 1.0);
    fresh->setValue(12.0);
    QCOMPARE(picture(*widget), picture(*fresh));
}

void TestWidgetContract::paintsAtEveryRatio()
{
    const auto widget = make();
    for (const double ratio : {1.0, 2.0, 1.5}) {
        QCOMPARE(picture(*widget, ratio), picture(*make(), ratio)); // nothing is left of the ratio before
    }
}

void TestWidgetContract::paintsAtExtremeSizes()
{
    const auto widget = make();
    widget->setMinimumSize(0, 0);
    for (const QSize size : {QSize(0, 0), QSize(1, 1), QSize(1, 500), QSize(16000, 3), QSize(16000, 16000)}) {
        widget->resize(size);
        QImage corner(QSize(300, 300), QImage::Format_RGB32);
        widget->render(&corner, QPoint(), QRegion(size.width() / 2 - 150, size.height() / 2 - 150, 300, 300));
    }
    widget->resize(250, 220);
    QCOMPARE(picture(*widget), picture(*make()));
}

void TestWidgetContract::configuresByDialog()
{
    QFETCH_GLOBAL(QJsonObject, config);
    const auto widget = make();
    widget->loadConfig(config);
    const QJsonObject before = widget->saveConfig();
    for (const auto button : {QDialogButtonBox::Cancel, QDialogButtonBox::Ok}) {
        DashboardWidgetConfigDialog dialog(widget.get());
        dialog.show();
        QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
        const bool accepted = button == QDialogButtonBox::Ok;
        QVERIFY(!dialog.isVisible());
        QCOMPARE(dialog.result() == QDialog::Accepted, accepted);
        QCOMPARE(widget->saveConfig(), before);
        const bool assigns = accepted && widget->usesSignalSelection();
        QCOMPARE(widget->assignedSignalList(), assigns ? QList<QString>{"SIG_A"} : QList<QString>());
    }
}

void TestWidgetContract::explainsItsEditors()
{
    const auto widget = make();
    DashboardWidgetConfigDialog dialog(widget.get());
    const auto editors = dialog.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly);
    int explained = 0;
    for (const QWidget* editor : editors) {
        if (editor->focusPolicy() == Qt::NoFocus)
            continue;
        QVERIFY2(!editor->accessibleName().isEmpty(), editor->metaObject()->className());
        QVERIFY2(!editor->toolTip().isEmpty(), editor->metaObject()->className());
        ++explained;
    }
    QVERIFY(explained > 0);
}

QTEST_MAIN(TestWidgetContract)
#include "tst_widgetcontract.moc"
