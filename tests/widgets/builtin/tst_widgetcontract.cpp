#include "support/Catalogue.h"
#include "support/TextRecorder.h"
#include "support/WidgetPicture.h"
#include "widgets/DashboardWidgetConfigDialog.h"
#include "widgets/DashboardWidgetFactory.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QJsonDocument>
#include <QTest>

// All that each type saves, nothing as it starts.
static const char kConfigs[] = R"({
    "AnalogGauge": {"min": -5, "max": 20},
    "BarGraph": {"margin": 9, "barSpacing": 3, "minHeight": 1, "maxHeight": 50, "min": -2.5, "max": 3},
    "DigitalDisplay": {"signal": "A", "decimalPlaces": 3},
    "ErrorConsole": {"maxLines": 70, "autoScroll": false},
    "Image": {"path": "gone.png", "mode": 2, "opacity": 40, "border": true},
    "Line": {"orientation": "Vertical", "thickness": 7, "color": "Light Gray"},
    "MessagesConsole": {"maxLines": 70, "autoScroll": false},
    "StateIndicator": {"groupId": "GONE", "corner": 4},
    "TextLabel": {"text": "7", "color": "Red", "point": 20, "bold": true, "align": "Right"},
    "TrendPlot": {"margin": 9, "timeWindowMs": 200, "autoscale": false, "yMin": -3, "yMax": 4,
                  "showGrid": false, "gridLines": 7, "leftAxis": 5, "bottomPad": 3, "sampleAndHold": true,
                  "markers": [{"kind": "screen", "t": 1, "xFrac": 2, "label": ""}]},
    "XYPlot": {"xSignal": "A", "ySignal": "B", "autoScaleX": false, "autoScaleY": false, "xMin": -2,
               "xMax": 3, "yMin": 4, "yMax": 5.5, "maxPoints": 90, "drawLines": true, "showGrid": false}
})";

// What every type keeps to. A new one gets an entry above.
class TestWidgetContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        DashboardWidgetFactory::instance().registerBuiltInTypes();
        QTest::addColumn<QString>("type");
        for (const QString& type : DashboardWidgetFactory::instance().availableTypes())
            QTest::newRow(qPrintable(type)) << type;
    }

    void savesWhatItLoaded()
    {
        const auto widget = make();
        widget->loadConfig(config());
        widget->loadConfig({});
        QCOMPARE(widget->saveConfig(), config());
    }

    void untouchedDialogChangesNothing()
    {
        const auto widget = make();
        widget->loadConfig(config());
        DashboardWidgetConfigDialog(widget.get()).applyConfig();
        QCOMPARE(widget->saveConfig(), config());
    }

    void looksAsNewAfterHostileValues()
    {
        const auto widget = make();
        for (const double tSec : {0.0, qQNaN(), 1.0, qInf(), -qInf(), 1e300, 2.0, 1.5, 1.6e9, 3.0}) {
            for (const double value : {qQNaN(), 1e308, 5e-324, qInf(), -1e308, -qInf(), 9.0})
                deliver(*widget, value, tSec);
        }
        picture(*widget);
        const auto fresh = make();
        for (DashboardWidget* each : {widget.get(), fresh.get()}) {
            each->clearData();
            each->loadConfig(config());
            deliver(*each, 12.0, 4.0);
        }
        QTRY_COMPARE(picture(*widget), picture(*fresh));
    }

    void cutsOffNoText()
    {
        const auto widget = make();
        widget->resize(widget->minimumSize().expandedTo(widget->minimumCanvasSize()));
        deliver(*widget, -98765.4321, 1.0);
        TextRecorder recorder(widget->size());
        widget->render(&recorder);
        QCOMPARE(recorder.cutOff(), QStringList());
    }

private:
    static QString type()
    {
        QFETCH_GLOBAL(QString, type);
        return type;
    }
    static QJsonObject config() { return QJsonDocument::fromJson(kConfigs)[type()].toObject(); }
    static std::unique_ptr<DashboardWidget> make()
    {
        std::unique_ptr<DashboardWidget> widget(DashboardWidgetFactory::instance().create(type()));
        widget->resize(250, 220);
        widget->assignSignals({"A", "B"});
        widget->loadConfig({{"xSignal", "A"}, {"ySignal", "B"}}); // an XY plot ignores the assignment
        if (auto* plot = qobject_cast<TrendPlotWidget*>(widget.get()))
            plot->setExternalTimeEnabled(true); // live it would ignore the times
        return widget;
    }
    static void deliver(DashboardWidget& widget, double value, double tSec)
    {
        widget.setValueForSignalAt("A", value, tSec);
        widget.setValueForSignalAt("B", value, tSec);
    }

    ProjectCatalogue m_catalogue{"DASHBOARD_SIGNAL(A, \"A\", NONE)\nDASHBOARD_SIGNAL(B, \"B\", NONE)\n"
                                 "DASHBOARD_STATE_GROUP(M, \"M\")\n"};
};

QTEST_MAIN(TestWidgetContract)
#include "tst_widgetcontract.moc"
