#include "support/Catalogue.h"
#include "widgets/DashboardWidget.h"
#include "widgets/DashboardWidgetConfigDialog.h"
#include "widgets/DashboardWidgetFactory.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QLabel>
#include <QLineEdit>
#include <QListWidget>
#include <QMetaProperty>
#include <QPixmap>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QTemporaryDir>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// A row of the configuration dialog of a new widget to which A is assigned, and the key under which a layout
/// stores it.
struct Row
{
    const char *type, *label, *key, *editor, *toolTip;
};

const char* const kSignals = "A : Pump of [A : Pump, B : Fan]";
const char* const kSignalTip = "The signal that the widget shows";
const char* const kList = "[A (Pump), B (Fan)]";
const char* const kListTip = "The signals that the widget shows; Ctrl and Shift select several";

const Row kRows[] = {
    {"AnalogGauge", "Signal:", "signals", kSignals, kSignalTip},
    {"AnalogGauge", "Min Value:", "min", "0.0 in -1e+09 to 1e+09", "The value at the lower end of the scale"},
    {"AnalogGauge", "Max Value:", "max", "100.0 in -1e+09 to 1e+09",
     "The value at the upper end of the scale"},
    {"DigitalDisplay", "Signal:", "signals", kSignals, kSignalTip},
    {"DigitalDisplay", "Decimal Places:", "decimalPlaces", "1 in 0 to 8",
     "Digits after the decimal point, from the next value on"},
    {"BarGraph", "Signals:", "signals", kList, kListTip},
    {"BarGraph", "Min Value:", "min", "0.00 in -1e+09 to 1e+09", "The value at the bottom of the graph"},
    {"BarGraph", "Max Value:", "max", "100.00 in -1e+09 to 1e+09", "The value at the top of the graph"},
    {"Line", "Orientation:", "orientation", "Horizontal of [Horizontal, Vertical]",
     "Which way the line runs"},
    {"Line", "Thickness:", "thickness", "2 in 1 to 20", "How thick the line is, in pixels"},
    {"Line", "Color:", "color", "Gray of [Black, Gray, Light Gray, White, Red, Blue, Green]",
     "The colour of the line"},
    {"TextLabel", "Text:", "text", "'Label'", "What the label says"},
    {"TextLabel", "Color:", "color", "Black of [Black, Gray, White, Red, Blue, Green]",
     "The colour of the text"},
    {"TextLabel", "Size:", "point", "12 in 6 to 72", "The size of the text, in points"},
    {"TextLabel", "Bold", "bold", "[ ]", "Draw the text in bold"},
    {"TextLabel", "Align:", "align", "Center of [Left, Center, Right]",
     "Where the text stands in the widget"},
    {"TrendPlot", "Signals:", "signals", kList, kListTip},
    {"TrendPlot", "Time window (ms):", "timeWindowMs", "10000 in 200 to 600000, step 100",
     "How much of the past is shown"},
    {"TrendPlot", "Autoscale Y:", "autoscale", "[x]", "Fit the limits to what is seen, with a little room"},
    {"TrendPlot", "Y min:", "yMin", "-1.0000 in -1e+12 to 1e+12, disabled",
     "The value at the lower edge, without autoscale"},
    {"TrendPlot", "Y max:", "yMax", "1.0000 in -1e+12 to 1e+12, disabled",
     "The value at the upper edge, without autoscale"},
    {"TrendPlot", "Show grid:", "showGrid", "[x]", "Draw lines at the divisions"},
    {"TrendPlot", "Grid lines:", "gridLines", "5 in 2 to 12", "Into how many divisions both axes are split"},
    {"TrendPlot", "Step plot style:", "sampleAndHold", "[x]",
     "Hold each value until the next one instead of drawing a line between them"},
    {"StateIndicator", "State Group:", "groupId", "Mode (M) of [Mode (M), Valve (N)]",
     "The group of states that the lamp follows"},
    {"ErrorConsole", "Signal:", "signals", kSignals, kSignalTip},
    {"ErrorConsole", "Max lines:", "maxLines", "500 in 50 to 100000",
     "How many of the newest lines are kept"},
    {"ErrorConsole", "Auto-scroll", "autoScroll", "[x]", "Keep the newest line in sight"},
    {"MessagesConsole", "Signal:", "signals", kSignals, kSignalTip},
    {"MessagesConsole", "Max lines:", "maxLines", "500 in 50 to 100000",
     "How many of the newest lines are kept"},
    {"MessagesConsole", "Auto-scroll", "autoScroll", "[x]", "Keep the newest line in sight"},
    {"Image", "Image:", "path", "''", "The picture's file; a relative path starts in the project's folder"},
    {"Image", "Scale:", "mode", "Contain of [Contain, Cover, Stretch, Actual size]",
     "How the picture is fitted into the widget"},
    {"Image", "Opacity:", "opacity", "slider at 100 in 10 to 100",
     "How much the picture covers, in per cent"},
    {"XYPlot", "X Signal:", "xSignal", " of [, A, B]", "The signal that goes to the right"},
    {"XYPlot", "Y Signal:", "ySignal", " of [, A, B]", "The signal that goes upwards"},
    {"XYPlot", "Auto-scale X", "autoScaleX", "[x]", "Fit the axis to the points instead of the limits below"},
    {"XYPlot", "X Min:", "xMin", "-1.000 in -1e+09 to 1e+09", "The lower limit, without auto-scale"},
    {"XYPlot", "X Max:", "xMax", "1.000 in -1e+09 to 1e+09", "The upper limit, without auto-scale"},
    {"XYPlot", "Auto-scale Y", "autoScaleY", "[x]", "Fit the axis to the points instead of the limits below"},
    {"XYPlot", "Y Min:", "yMin", "-1.000 in -1e+09 to 1e+09", "The lower limit, without auto-scale"},
    {"XYPlot", "Y Max:", "yMax", "1.000 in -1e+09 to 1e+09", "The upper limit, without auto-scale"},
    {"XYPlot", "Max points:", "maxPoints", "2000 in 1 to 200000", "How many of the newest points are shown"},
    {"XYPlot", "Connect points", "drawLines", "[ ]", "Kept with the layout; points are drawn as dots"},
    {"XYPlot", "Show grid", "showGrid", "[x]", "Draw the frame and the grid lines"},
};

QString choiceOf(const QAbstractItemModel& model)
{
    QStringList offered;
    for (int i = 0; i < model.rowCount(); ++i)
        offered.append(model.index(i, 0).data().toString());
    return u'[' + offered.join(u", "_s) + u']';
}

template <class Numbers>
QString withRange(const Numbers& editor)
{
    const QString range = u"%1 in %2 to %3"_s.arg(editor.text()).arg(editor.minimum()).arg(editor.maximum());
    return editor.singleStep() == 1 ? range : range + u", step %1"_s.arg(editor.singleStep());
}

/// The value and the choice that the user sees.
QString described(const QWidget* editor)
{
    if (const auto* number = qobject_cast<const QSpinBox*>(editor))
        return withRange(*number);
    if (const auto* number = qobject_cast<const QDoubleSpinBox*>(editor))
        return withRange(*number);
    if (const auto* slider = qobject_cast<const QSlider*>(editor))
        return u"slider at %1 in %2 to %3"_s.arg(QString::number(slider->value()),
                                                 QString::number(slider->minimum()),
                                                 QString::number(slider->maximum()));
    if (const auto* box = qobject_cast<const QCheckBox*>(editor))
        return box->isChecked() ? u"[x]"_s : u"[ ]"_s;
    if (const auto* line = qobject_cast<const QLineEdit*>(editor))
        return u'\'' + line->text() + u'\'';
    if (const auto* choice = qobject_cast<const QComboBox*>(editor))
        return choice->currentText() + u" of "_s + choiceOf(*choice->model());
    const auto* list = qobject_cast<const QListWidget*>(editor);
    return list ? choiceOf(*list->model()) : u"unknown editor"_s;
}

/// A new widget with its dialog.
class Configured
{
public:
    explicit Configured(const QByteArray& type, const QJsonObject& config = {})
        : widget(DashboardWidgetFactory::instance().create(QLatin1String(type)))
    {
        widget->assignSignals({"A"});
        widget->loadConfig(config);
        dialog = std::make_unique<DashboardWidgetConfigDialog>(widget.get());
        m_form = dialog->findChild<QFormLayout*>();
    }

    /// Label, value and choice, tool tip of every row.
    QStringList rows() const
    {
        QStringList rows;
        for (int i = 0; i < m_form->rowCount(); ++i) {
            const QWidget* editor = editorIn(i);
            QString state = editor->isEnabled() ? QString() : u", disabled"_s;
            if (editor->accessibleName().isEmpty())
                state += u", without an accessible name"_s;
            rows.append(u"%1 %2%3: %4"_s.arg(labelOf(i), described(editor), state, editor->toolTip()));
        }
        return rows;
    }
    /// Of that row, its first one where there are several; null without such a row.
    QWidget* editor(const QString& label) const
    {
        for (int i = 0; i < m_form->rowCount(); ++i) {
            if (labelOf(i) == label)
                return editorIn(i);
        }
        return nullptr;
    }
    void click(QDialogButtonBox::StandardButton button) const
    {
        dialog->findChild<QDialogButtonBox*>()->button(button)->click();
    }
    /// All that a layout stores.
    QJsonObject saved() const
    {
        QJsonObject saved = widget->saveConfig();
        saved["signals"] = widget->DashboardWidget::saveConfig()["signals"];
        return saved;
    }

    std::unique_ptr<DashboardWidget> widget;
    std::unique_ptr<DashboardWidgetConfigDialog> dialog;

private:
    QString labelOf(int row) const
    {
        if (const QLayoutItem* item = m_form->itemAt(row, QFormLayout::LabelRole))
            return qobject_cast<QLabel*>(item->widget())->text();
        return qobject_cast<QCheckBox*>(editorIn(row))->text();
    }
    QWidget* editorIn(int row) const
    {
        QLayoutItem* item = m_form->itemAt(row, QFormLayout::FieldRole);
        if (!item)
            item = m_form->itemAt(row, QFormLayout::SpanningRole);
        return item->layout() ? item->layout()->itemAt(0)->widget() : item->widget();
    }

    QFormLayout* m_form;
};

} // namespace

// What the configuration dialog of each type offers, and what becomes of it.
class TestWidgetSettings : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void initTestCase()
    {
        QLocale::setDefault(QLocale::c());
        DashboardWidgetFactory::instance().registerBuiltInTypes();
        QPixmap picture(9, 9);
        picture.fill(Qt::green);
        QVERIFY(picture.save(m_dir.filePath("a.png")));
    }

    void dialogShowsTheseRows_data()
    {
        QTest::addColumn<QStringList>("rows");
        for (const QString& type : DashboardWidgetFactory::instance().availableTypes()) {
            QStringList rows;
            for (const Row& row : kRows) {
                if (row.type == type)
                    rows.append(u"%1 %2: %3"_s.arg(row.label, row.editor, row.toolTip));
            }
            QTest::newRow(qPrintable(type)) << rows;
        }
    }

    void dialogShowsTheseRows()
    {
        QFETCH(QStringList, rows);
        QCOMPARE(Configured(QTest::currentDataTag()).rows(), rows);
    }

    void okTakesChangedRow_data() { tableRows(); }
    void okTakesChangedRow()
    {
        QFETCH(Row, row);
        QCOMPARE(keysChangedBy(row, QDialogButtonBox::Ok), QStringList{row.key});
    }

    void cancelDropsChangedRow_data() { tableRows(); }
    void cancelDropsChangedRow()
    {
        QFETCH(Row, row);
        const bool changedAtOnce = row.type == "MessagesConsole"_ba && row.key != "signals"_ba;
        QCOMPARE(keysChangedBy(row, QDialogButtonBox::Cancel),
                 changedAtOnce ? QStringList{row.key} : QStringList());
    }

    void limitsFollowAutoscale()
    {
        const Configured configured("TrendPlot", {{"autoscale", false}});
        QVERIFY(configured.editor("Y min:")->isEnabled());
        QVERIFY(configured.editor("Y max:")->isEnabled());
        qobject_cast<QCheckBox*>(configured.editor("Autoscale Y:"))->setChecked(true);
        QVERIFY(!configured.editor("Y min:")->isEnabled());
    }

    void typedNumberCountsWhenItIsComplete()
    {
        const Configured configured("MessagesConsole");
        auto* editor = qobject_cast<QSpinBox*>(configured.editor("Max lines:"));
        editor->selectAll();
        QTest::keyClicks(editor, "70");
        QCOMPARE(configured.saved()["maxLines"], 500);
        QTest::keyClicks(editor, "0\r");
        QCOMPARE(configured.saved()["maxLines"], 700);
    }

    void loadsOddEntries_data()
    {
        QTest::addColumn<QByteArray>("type");
        QTest::addColumn<QJsonObject>("entry");
        QTest::addColumn<QJsonValue>("taken");
        QTest::newRow("half a range") << "AnalogGauge"_ba << QJsonObject{{"max", 7}} << QJsonValue(100);
        QTest::newRow("no number") << "BarGraph"_ba << QJsonObject{{"max", "1"}} << QJsonValue(0);
        QTest::newRow("too thin") << "Line"_ba << QJsonObject{{"thickness", -5}} << QJsonValue(1);
        QTest::newRow("no colour") << "Line"_ba << QJsonObject{{"color", "green"}} << QJsonValue("Black");
        QTest::newRow("no way") << "TextLabel"_ba << QJsonObject{{"align", "left"}} << QJsonValue("Center");
    }

    void loadsOddEntries()
    {
        QFETCH(QByteArray, type);
        QFETCH(QJsonObject, entry);
        QTEST(QJsonValue(Configured(type, entry).saved()[entry.constBegin().key()]), "taken");
    }

private:
    static void tableRows()
    {
        QTest::addColumn<Row>("row");
        for (const Row& row : kRows)
            QTest::addRow("%s: %s", row.type, row.label) << row;
    }
    /// What a layout would store otherwise once the row has been changed and the button pressed.
    QStringList keysChangedBy(const Row& row, QDialogButtonBox::StandardButton button) const
    {
        const Configured configured(row.type);
        const QJsonObject before = configured.saved();
        QWidget* editor = configured.editor(row.label);
        if (!editor)
            return {u"no such row"_s};
        change(editor);
        configured.click(button);
        const QJsonObject after = configured.saved();
        QStringList changed = after.keys();
        changed.removeIf([&](const QString& key) { return before[key] == after[key]; });
        return changed;
    }
    void change(QWidget* editor) const
    {
        const QMetaProperty property = editor->metaObject()->userProperty();
        const QVariant value = property.read(editor);
        if (auto* choice = qobject_cast<QComboBox*>(editor))
            choice->setCurrentIndex((choice->currentIndex() + 1) % choice->count());
        else if (auto* list = qobject_cast<QListWidget*>(editor))
            list->selectAll();
        else if (auto* line = qobject_cast<QLineEdit*>(editor))
            line->setText(m_dir.filePath("a.png")); // also read as a path
        else if (value.typeId() == QMetaType::Bool)
            property.write(editor, !value.toBool());
        else
            property.write(editor, value.toDouble() - 1);
    }

    QTemporaryDir m_dir;
    ProjectCatalogue m_catalogue{"DASHBOARD_SIGNAL(A, \"Pump\", NONE)\nDASHBOARD_SIGNAL(B, \"Fan\", NONE)\n"
                                 "DASHBOARD_STATE_GROUP(M, \"Mode\")\nDASHBOARD_STATE_GROUP(N, \"Valve\")\n"};
};

QTEST_MAIN(TestWidgetSettings)
#include "tst_widgetsettings.moc"
