#include "support/WidgetTools.h"
#include "widgets/DashboardWidget.h"
#include "widgets/DashboardWidgetConfigDialog.h"
#include "widgets/DashboardWidgetFactory.h"

#include <QDialogButtonBox>
#include <QJsonArray>
#include <QPushButton>
#include <QTest>

#include <memory>

// What every registered type keeps to. A new type gets a row in initTestCase_data().
class TestWidgetContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        DashboardWidgetFactory::instance().registerBuiltInTypes();
        QTest::addColumn<QString>("type");
        QTest::addColumn<QJsonObject>("config");
        QTest::newRow("gauge") << "AnalogGauge" << QJsonObject{{"min", -5}, {"max", 20}};
        QTest::newRow("display") << "DigitalDisplay" << QJsonObject{{"signal", "A"}, {"decimalPlaces", 3}};
        QTest::newRow("state") << "StateIndicator" << QJsonObject{{"groupId", "GONE"}, {"corner", 4}};
        const QJsonObject console{{"maxLines", 70}, {"autoScroll", false}};
        QTest::newRow("errors") << "ErrorConsole" << console;
        QTest::newRow("messages") << "MessagesConsole" << console;
    }

    void isRegisteredOnce()
    {
        QFETCH_GLOBAL(QString, type);
        DashboardWidgetFactory::instance().registerBuiltInTypes();
        QCOMPARE(DashboardWidgetFactory::instance().availableTypes().count(type), 1);
        QCOMPARE(make()->typeName(), type);
    }

    void loadsAssignment()
    {
        const auto widget = make();
        widget->DashboardWidget::loadConfig({{"signals", QJsonArray{"B", 3, QJsonValue(), "A", "B"}}});
        widget->DashboardWidget::loadConfig({{"signals", "C"}});
        QCOMPARE(widget->assignedSignalList(), QStringList({"B", "A", "B"}));
    }

    void keepsConfigAndSurvivesHostileOnes()
    {
        QFETCH_GLOBAL(QJsonObject, config);
        const auto widget = make();
        QVERIFY(widget->saveConfig() != config);
        for (const QJsonValue value : QJsonArray{1e300, -1e300, 1e9, -5, 0, "text", true, QJsonArray{1}}) {
            QJsonObject hostile;
            for (const QString& key : config.keys())
                hostile[key] = value;
            widget->loadConfig(hostile);
            QCOMPARE(widget->saveConfig().keys(), config.keys());
            widget->setValueForSignalAt("A", 1e308, 0.0);
            picture(*widget);
        }
        widget->loadConfig(config);
        widget->loadConfig({});
        QCOMPARE(widget->saveConfig(), config);
    }

    void recoversFromHostileValuesAndSizes()
    {
        const auto widget = make();
        const auto fresh = make();
        for (const double value : {qQNaN(), qInf(), -qInf(), 1e308, -1e308}) {
            widget->setValueForSignalAt("A", value, value);
            picture(*widget, 2.0);
            QVERIFY(widget->minimumSizeHint().width() <= 250);
        }
        widget->setMinimumSize(0, 0);
        for (const QSize size : {QSize(0, 0), QSize(1, 500), QSize(16000, 3), QSize(16000, 16000)}) {
            widget->resize(size);
            QImage middle(QSize(300, 300), QImage::Format_RGB32);
            widget->render(&middle, {}, QRect(size.width() / 2, size.height() / 2, 300, 300));
        }
        widget->resize(fresh->size());
        widget->setValueForSignalAt("A", 12.0, 1.0);
        fresh->setValue(12.0);
        QCOMPARE(picture(*widget), picture(*fresh));
    }

    void configuresByDialog()
    {
        QFETCH_GLOBAL(QJsonObject, config);
        const auto widget = make();
        widget->loadConfig(config);
        for (const auto button : {QDialogButtonBox::Cancel, QDialogButtonBox::Ok}) {
            DashboardWidgetConfigDialog dialog(widget.get());
            dialog.show();
            for (QWidget* editor : dialog.findChildren<QWidget*>(QString(), Qt::FindDirectChildrenOnly)) {
                const bool explained = !editor->accessibleName().isEmpty() && !editor->toolTip().isEmpty();
                QVERIFY(explained || editor->focusPolicy() == Qt::NoFocus);
            }
            QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
            QCOMPARE(dialog.result() == QDialog::Accepted, button == QDialogButtonBox::Ok);
            QCOMPARE(widget->saveConfig(), config);
            const bool assigns = dialog.result() == QDialog::Accepted && widget->usesSignalSelection();
            QCOMPARE(widget->assignedSignalList(), assigns ? QStringList{"A"} : QStringList());
        }
    }

private:
    static std::unique_ptr<DashboardWidget> make()
    {
        QFETCH_GLOBAL(QString, type);
        std::unique_ptr<DashboardWidget> widget(DashboardWidgetFactory::instance().create(type));
        widget->resize(250, 220);
        return widget;
    }

    TestCatalogue m_catalogue{"DASHBOARD_SIGNAL(A, \"A\", NONE)\nDASHBOARD_STATE_GROUP(M, \"M\")\n"};
};

QTEST_MAIN(TestWidgetContract)
#include "tst_widgetcontract.moc"
