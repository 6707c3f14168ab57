#include "support/TextRecorder.h"
#include "support/Catalogue.h"
#include "support/WidgetPicture.h"
#include "widgets/DashboardWidgetConfigDialog.h"
#include "widgets/DashboardWidgetFactory.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QJsonArray>
#include <QJsonDocument>
#include <QMetaProperty>
#include <QPushButton>
#include <QTest>

// What every type keeps to. A new one gets a row: traits (see-through: the canvas is seen behind it), keys
// that no editor has, all that is saved (nothing as it starts, ' for "), odd loads and what they leave.
struct Type
{
    const char *name, *traits, *withoutEditor, *config, *odd = "[]", *taken = "{}";
};

static const Type kTypes[] = {
    {"AnalogGauge", "see-through", "", "{'min':-5,'max':20}", "[{'min':-5.9,'max':0}]", "{'min':-5}"},
    {"DigitalDisplay", "see-through", "signal", "{'signal':'A','decimalPlaces':3}"},
    {"BarGraph", "", "margin barSpacing minHeight maxHeight",
     "{'margin':9,'barSpacing':3,'minHeight':1,'maxHeight':50,'min':-2.5,'max':3}",
     "[{'max':true,'margin':'x','maxHeight':[]}]", "{'max':0,'margin':9,'maxHeight':50}"},
    {"Line", "see-through", "", "{'orientation':'Vertical','thickness':7,'color':'Light Gray'}"},
    {"TextLabel", "", "", "{'text':'7','color':'Red','point':20,'bold':true,'align':'Right'}"},
    {"TrendPlot", "history", "margin leftAxis bottomPad markers",
     "{'margin':9,'timeWindowMs':200,'autoscale':false,'yMin':-3,'yMax':4,'showGrid':false,'gridLines':7,"
     "'leftAxis':5,'bottomPad':3,'sampleAndHold':true,'markers':[{'kind':'screen','t':1,'xFrac':2,'label':''}"
     "]}",
     "[{'sampleAndHold':0},{'sampleAndHold':true}]", "{'sampleAndHold':false}"},
    {"StateIndicator", "", "corner", "{'groupId':'GONE','corner':4}"},
    {"ErrorConsole", "see-through", "", "{'maxLines':70,'autoScroll':false}"},
    {"MessagesConsole", "see-through edited-at-once", "", "{'maxLines':70,'autoScroll':false}"},
    {"Image", "", "path border", "{'path':'gone.png','mode':2,'opacity':40,'border':true}"},
    {"XYPlot", "history own-signals", "",
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

    void keepsConfigAndAssignment()
    {
        const auto widget = make();
        widget->loadConfig(config());
        widget->loadConfig({});
        QCOMPARE(widget->saveConfig(), config());
        for (const auto odd : json(type().odd).array())
            widget->loadConfig(odd.toObject());
        for (const QJsonObject taken = json(type().taken).object(); const QString& key : taken.keys())
            QCOMPARE(widget->saveConfig()[key], taken[key]);
        widget->DashboardWidget::loadConfig({{"signals", QJsonArray{"B", 3, QJsonValue(), "A", "B"}}});
        widget->DashboardWidget::loadConfig({{"signals", "C"}});
        QCOMPARE(widget->assignedSignalList().join(' '), has("own-signals") ? "A B" : "B A B");
    }

    void survivesWhatIsHostile()
    {
        const QByteArray two = "{'t':1e300},{'kind':'screen','xFrac':1e300,'label':'x'},";
        const QJsonArray markers = json('[' + two.repeated(50'000) + "7]").array();
        const auto widget = make();
        widget->setMinimumSize(0, 0);
        for (const QJsonValue value : QJsonArray{0, 1e308, -1e308, 1e9, -1e9, 2147483648.0, -5, true, markers,
                                                 QString(1 << 20, 'x')}) {
            QJsonObject hostile;
            for (const QString& key : config().keys()) // signs alternate, so that limits are also swapped
                hostile[key] = value.isDouble() && hostile.size() % 2 ? QJsonValue(-value.toDouble()) : value;
            widget->loadConfig(config());
            widget->loadConfig(hostile);
            QCOMPARE(widget->saveConfig().keys(), config().keys());
            for (const double tSec : {0.0, qQNaN(), 1.0, qInf(), -qInf(), 1e300, 2.0, 1.5, 1.6e9, 3.0})
                for (const double number : {qQNaN(), 1e308, 5e-324, qInf(), -1e308, -qInf(), 5e-324, 9.0})
                    deliver(*widget, number, tSec);
            for (const QSize size : {QSize(), QSize(16000, 3), QSize(16000, 16000), QSize(250, 220)}) {
                widget->resize(size);
                widget->grab(QRect(size.width() / 2, size.height() / 2, 300, 300));
            }
            picture(*widget, 2.0);
        }
        const auto fresh = make();
        for (DashboardWidget* each : {widget.get(), fresh.get()}) {
            each->loadConfig(config());
            deliver(*each, 12.0, 4.0);
        }
        QTRY_VERIFY(has("history") || picture(*widget) == picture(*fresh));
    }

    void paintsAllOfItself()
    {
        const auto widget = make();
        for (const double ratio : {1.0, 1.5, 2.0}) {
            widget->resize(widget->minimumCanvasSize() * ratio);
            const QImage onBackground = picture(*widget, ratio);
            QImage onMagenta = onBackground.copy();
            onMagenta.fill(Qt::magenta);
            widget->render(&onMagenta, {}, {}, QWidget::DrawChildren);
            QCOMPARE(onMagenta != onBackground, has("see-through"));
        }
    }

    void cutsOffNoText()
    {
        const auto widget = make();
        widget->resize(widget->minimumSize().expandedTo(widget->minimumCanvasSize()));
        for (const double value : {7.0, -123.456, 98765.4321}) {
            deliver(*widget, value, value);
            TextRecorder recorder(widget->size());
            widget->render(&recorder);
            QCOMPARE(recorder.cutOff(), QStringList());
            QVERIFY(recorder.textCount() > 0 || type().name == QByteArray("Line"));
        }
    }

    void isConfiguredByDialog()
    {
        const auto widget = make();
        for (const bool accept : {false, true}) {
            widget->loadConfig(config());
            DashboardWidgetConfigDialog dialog(widget.get());
            dialog.applyConfig();
            QCOMPARE(widget->saveConfig(), config());
            changeEditors(dialog);
            const auto button = accept ? QDialogButtonBox::Ok : QDialogButtonBox::Cancel;
            dialog.findChild<QDialogButtonBox*>()->button(button)->click();
            QCOMPARE(dialog.result() == QDialog::Accepted, accept);
            const QStringList kept =
                accept || has("edited-at-once") ? QString(type().withoutEditor).split(' ') : config().keys();
            for (const QString& key : config().keys())
                QCOMPARE(widget->saveConfig()[key] == config()[key], kept.contains(key));
        }
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

    static void deliver(DashboardWidget& widget, double value, double tSec)
    {
        widget.loadConfig({{"xSignal", "A"}, {"ySignal", "B"}}); // an XY plot ignores the assignment
        widget.setValueForSignalAt("A", value, tSec);
        widget.setValueForSignalAt("B", value, tSec);
    }

    static void changeEditors(const QDialog& dialog)
    {
        for (QWidget* editor : dialog.findChildren<QWidget*>()) {
            if (editor->focusPolicy() == Qt::NoFocus || editor->window() != &dialog ||
                editor->parentWidget()->focusPolicy() != Qt::NoFocus ||
                editor->parent()->inherits("QDialogButtonBox"))
                continue;
            QVERIFY(!editor->toolTip().isEmpty() && !editor->accessibleName().isEmpty());
            const QMetaProperty property = editor->metaObject()->userProperty();
            const QVariant value = property.read(editor);
            if (auto* choice = qobject_cast<QComboBox*>(editor))
                choice->setCurrentIndex((choice->currentIndex() + 1) % choice->count());
            else if (value.typeId() == QMetaType::Bool)
                property.write(editor, !value.toBool());
            else
                property.write(editor, value.toDouble() + 1);
        }
    }

    ProjectCatalogue m_catalogue{"DASHBOARD_SIGNAL(A, \"A\", NONE)\nDASHBOARD_SIGNAL(B, \"B\", NONE)\n"
                              "DASHBOARD_STATE_GROUP(M, \"M\")\n"};
};

QTEST_MAIN(TestWidgetContract)
#include "tst_widgetcontract.moc"
