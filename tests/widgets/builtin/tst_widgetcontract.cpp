#include "support/Catalogue.h"
#include "support/TextRecorder.h"
#include "support/WidgetPicture.h"
#include "widgets/DashboardWidgetConfigDialog.h"
#include "widgets/DashboardWidgetFactory.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QJsonArray>
#include <QJsonDocument>
#include <QTest>

// What every type keeps to. A new one gets a row: traits (see-through: the canvas is seen behind it), all
// that is saved (nothing as it starts, ' for "), odd loads and what they leave.
struct Type
{
    const char *name, *traits, *config, *odd = "[]", *taken = "{}";
};

static const Type kTypes[] = {
    {"AnalogGauge", "see-through", "{'min':-5,'max':20}", "[{'min':-5.9,'max':0},{'max':7}]",
     "{'min':-5,'max':0}"},
    {"DigitalDisplay", "see-through", "{'signal':'A','decimalPlaces':3}", "[{'decimalPlaces':'4'}]",
     "{'decimalPlaces':0}"},
    {"BarGraph", "", "{'margin':9,'barSpacing':3,'minHeight':1,'maxHeight':50,'min':-2.5,'max':3}",
     "[{'min':true,'max':'1','margin':'x','maxHeight':[]}]", "{'min':0,'max':0,'margin':9,'maxHeight':50}"},
    {"Line", "see-through", "{'orientation':'Vertical','thickness':7,'color':'Light Gray'}",
     "[{'thickness':-5},{'thickness':'9','color':'green'}]", "{'thickness':1,'color':'Black'}"},
    {"TextLabel", "", "{'text':'7','color':'Red','point':20,'bold':true,'align':'Right'}",
     "[{'color':'green','align':'left'}]", "{'color':'Black','align':'Center'}"},
    {"TrendPlot", "",
     "{'margin':9,'timeWindowMs':200,'autoscale':false,'yMin':-3,'yMax':4,'showGrid':false,'gridLines':7,"
     "'leftAxis':5,'bottomPad':3,'sampleAndHold':true,'markers':[{'kind':'screen','t':1,'xFrac':2,'label':''}"
     "]}",
     "[{'sampleAndHold':0},{'sampleAndHold':true}]", "{'sampleAndHold':false}"},
    {"StateIndicator", "", "{'groupId':'GONE','corner':4}"},
    {"ErrorConsole", "see-through", "{'maxLines':70,'autoScroll':false}"},
    {"MessagesConsole", "see-through", "{'maxLines':70,'autoScroll':false}"},
    {"Image", "", "{'path':'gone.png','mode':2,'opacity':40,'border':true}"},
    {"XYPlot", "own-signals",
     "{'xSignal':'A','ySignal':'B','autoScaleX':false,'autoScaleY':false,'xMin':-2,'xMax':3,'yMin':4,"
     "'yMax':5.5,'maxPoints':90,'drawLines':true,'showGrid':false}"}};

class TestWidgetContract : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase_data()
    {
        DashboardWidgetFactory::instance().registerBuiltInTypes();
        QTest::addColumn<int>("index");
        for (int i = 0; i < int(std::size(kTypes)); ++i)
            QTest::newRow(kTypes[i].name) << i;
    }

    void isRegisteredOnce()
    {
        DashboardWidgetFactory::instance().registerBuiltInTypes();
        QCOMPARE(DashboardWidgetFactory::instance().availableTypes().size(), qsizetype(std::size(kTypes)));
        QCOMPARE(make()->typeName(), type().name);
    }

    void savesWhatItLoaded()
    {
        const auto widget = make();
        widget->loadConfig(config());
        widget->loadConfig({});
        QCOMPARE(widget->saveConfig(), config());
    }

    void takesOddEntriesAsFarAsPossible()
    {
        const auto widget = make();
        widget->loadConfig(config());
        for (const auto odd : json(type().odd).array())
            widget->loadConfig(odd.toObject());
        const QJsonObject taken = json(type().taken).object();
        QJsonObject saved;
        for (const QString& key : taken.keys())
            saved[key] = widget->saveConfig()[key];
        QCOMPARE(saved, taken);
    }

    void skipsWhatIsNoNameInAssignment()
    {
        const auto widget = make();
        widget->DashboardWidget::loadConfig({{"signals", QJsonArray{"B", 3, QJsonValue(), "A", "B"}}});
        widget->DashboardWidget::loadConfig({{"signals", "C"}});
        QCOMPARE(widget->assignedSignalList(),
                 has("own-signals") ? QStringList() : QStringList({"B", "A", "B"}));
    }

    void survivesHostileConfig_data() { hostileEntries(); }
    void survivesHostileConfig()
    {
        QFETCH(QJsonValue, entry);
        const auto widget = make();
        widget->setMinimumSize(0, 0);
        misconfigure(*widget, entry);
        QCOMPARE(widget->saveConfig().keys(), config().keys());
        deliverHostileValues(*widget);
        for (const QSize size : {QSize(), QSize(16000, 3), QSize(16000, 16000), QSize(250, 220)}) {
            widget->resize(size);
            widget->grab(QRect(size.width() / 2, size.height() / 2, 300, 300));
        }
        picture(*widget, 2.0);
    }

    void looksAsNewAfterHostileConfig_data() { hostileEntries(); }
    void looksAsNewAfterHostileConfig()
    {
        QFETCH(QJsonValue, entry);
        const auto widget = make();
        misconfigure(*widget, entry);
        deliverHostileValues(*widget);
        const auto fresh = make();
        for (DashboardWidget* each : {widget.get(), fresh.get()}) {
            each->clearData();
            each->loadConfig({{"xSignal", ""}, {"ySignal", ""}}); // what an XY plot knows of them goes, too
            each->loadConfig(config());
            deliver(*each, 12.0, 4.0);
        }
        QTRY_COMPARE(picture(*widget), picture(*fresh));
    }

    void paintsAllOfItself_data()
    {
        QTest::addColumn<double>("ratio");
        for (const double ratio : {1.0, 1.5, 2.0})
            QTest::addRow("ratio %.1f", ratio) << ratio;
    }

    void paintsAllOfItself()
    {
        QFETCH(double, ratio);
        const auto widget = make();
        widget->resize(widget->minimumCanvasSize() * ratio);
        const QImage onBackground = picture(*widget, ratio);
        QImage onMagenta = onBackground.copy();
        onMagenta.fill(Qt::magenta);
        widget->render(&onMagenta, {}, {}, QWidget::DrawChildren);
        QCOMPARE(onMagenta != onBackground, has("see-through"));
    }

    void cutsOffNoText_data()
    {
        QTest::addColumn<double>("value");
        for (const double value : {7.0, -123.456, 98765.4321})
            QTest::addRow("%g", value) << value;
    }

    void cutsOffNoText()
    {
        QFETCH(double, value);
        const auto widget = make();
        widget->resize(widget->minimumSize().expandedTo(widget->minimumCanvasSize()));
        deliver(*widget, value, value);
        TextRecorder recorder(widget->size());
        widget->render(&recorder);
        QCOMPARE(recorder.cutOff(), QStringList());
        QCOMPARE(recorder.textCount() > 0, type().name != QByteArray("Line"));
    }

    void untouchedDialogChangesNothing()
    {
        const auto widget = make();
        widget->loadConfig(config());
        DashboardWidgetConfigDialog(widget.get()).applyConfig();
        QCOMPARE(widget->saveConfig(), config());
    }

private:
    static QJsonDocument json(QByteArray text) { return QJsonDocument::fromJson(text.replace('\'', '"')); }
    static const Type& type()
    {
        QFETCH_GLOBAL(int, index);
        return kTypes[index];
    }
    static bool has(const char* trait) { return QByteArray(type().traits).contains(trait); }
    static QJsonObject config() { return json(type().config).object(); }
    static std::unique_ptr<DashboardWidget> make()
    {
        std::unique_ptr<DashboardWidget> widget(DashboardWidgetFactory::instance().create(type().name));
        widget->resize(250, 220);
        widget->assignSignals({"A", "B"});
        if (auto* plot = qobject_cast<TrendPlotWidget*>(widget.get()))
            plot->setExternalTimeEnabled(true); // live it would ignore the times
        return widget;
    }

    static void hostileEntries()
    {
        const QByteArray two = "{'t':1e300},{'kind':'screen','xFrac':1e300,'label':'x'},";
        QTest::addColumn<QJsonValue>("entry");
        for (const double number : {0.0, 1e308, -1e308, 1e9, -1e9, 2147483648.0, -5.0})
            QTest::addRow("%g", number) << QJsonValue(number);
        QTest::newRow("true") << QJsonValue(true);
        QTest::newRow("100,001 markers") << QJsonValue(json('[' + two.repeated(50'000) + "7]").array());
        QTest::newRow("long text") << QJsonValue(QString(1 << 20, 'x'));
    }
    /// Every setting that value; the signs of numbers alternate, so that limits are also swapped.
    static void misconfigure(DashboardWidget& widget, const QJsonValue& value)
    {
        QJsonObject hostile;
        for (const QString& key : config().keys())
            hostile[key] = value.isDouble() && hostile.size() % 2 ? QJsonValue(-value.toDouble()) : value;
        widget.loadConfig(config());
        widget.loadConfig(hostile);
    }

    static void deliverHostileValues(DashboardWidget& widget)
    {
        for (const double tSec : {0.0, qQNaN(), 1.0, qInf(), -qInf(), 1e300, 2.0, 1.5, 1.6e9, 3.0}) {
            for (const double number : {qQNaN(), 1e308, 5e-324, qInf(), -1e308, -qInf(), 5e-324, 9.0})
                deliver(widget, number, tSec);
        }
    }
    static void deliver(DashboardWidget& widget, double value, double tSec)
    {
        widget.loadConfig({{"xSignal", "A"}, {"ySignal", "B"}}); // an XY plot ignores the assignment
        widget.setValueForSignalAt("A", value, tSec);
        widget.setValueForSignalAt("B", value, tSec);
    }

    ProjectCatalogue m_catalogue{"DASHBOARD_SIGNAL(A, \"A\", NONE)\nDASHBOARD_SIGNAL(B, \"B\", NONE)\n"
                                 "DASHBOARD_STATE_GROUP(M, \"M\")\n"};
};

QTEST_MAIN(TestWidgetContract)
#include "tst_widgetcontract.moc"
