#include "support/ModalAnswer.h"
#include "support/WidgetTools.h"
#include "widgets/AnalogGaugeWidget.h"
#include "widgets/DashboardWidgetConfigDialog.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QLabel>
#include <QListWidget>
#include <QPushButton>
#include <QTest>

#include <memory>

namespace {

class SeveralSignals : public DashboardWidget
{
public:
    void setValue(double) override {}
    QString typeName() const override { return QStringLiteral("Several"); }
    bool supportsMultipleSignals() const override { return true; }
};

const QByteArray kLines = "DASHBOARD_SIGNAL(SIG_A, \"Speed\", NONE)\n"
                          "DASHBOARD_SIGNAL(sig_a, \"Lower case\", NONE)\n"
                          "DASHBOARD_SIGNAL(SIG_B, \"Inner pressure\", NONE)\n";

void click(const DashboardWidgetConfigDialog& dialog, QDialogButtonBox::StandardButton button)
{
    QTest::mouseClick(dialog.findChild<QDialogButtonBox*>()->button(button), Qt::LeftButton);
}

} // namespace

class TestWidgetConfigDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void preselectsSignal_data();
    void preselectsSignal();
    void leavesSignalsWithoutCatalogue();
    void assignsSelectedSignals();
    void closesWhenWidgetDies();
};

void TestWidgetConfigDialog::preselectsSignal_data()
{
    QTest::addColumn<QStringList>("assigned");
    QTest::addColumn<QString>("shown");
    QTest::newRow("none") << QStringList() << "SIG_A : Speed";
    QTest::newRow("exact name") << QStringList{"sig_a", "SIG_B"} << "sig_a : Lower case";
    QTest::newRow("part of the text") << QStringList{"INNER"} << "SIG_B : Inner pressure";
    QTest::newRow("unknown") << QStringList{"SIG_X"} << "SIG_A : Speed";
}

void TestWidgetConfigDialog::preselectsSignal()
{
    QFETCH(QStringList, assigned);
    const TestCatalogue catalogue(kLines);
    AnalogGaugeWidget gauge;
    gauge.assignSignals(assigned);
    DashboardWidgetConfigDialog dialog(&gauge);
    dialog.show();
    auto* choice = dialog.findChild<QComboBox*>();
    QCOMPARE(dialog.windowTitle(), QString("Configure Widget"));
    QCOMPARE(qobject_cast<QLabel*>(dialog.findChild<QFormLayout*>()->labelForField(choice))->text(),
             QString("Signal:"));
    QTEST(choice->currentText(), "shown");
    QCOMPARE(dialog.focusWidget(), choice);
}

void TestWidgetConfigDialog::leavesSignalsWithoutCatalogue()
{
    AnalogGaugeWidget gauge;
    gauge.assignSignals({"SIG_A", "SIG_B"});
    DashboardWidgetConfigDialog dialog(&gauge);
    dialog.show();
    click(dialog, QDialogButtonBox::Ok);
    QCOMPARE(gauge.assignedSignalList(), QList<QString>({"SIG_A", "SIG_B"}));
}

void TestWidgetConfigDialog::assignsSelectedSignals()
{
    const TestCatalogue catalogue(kLines);
    SeveralSignals widget;
    widget.assignSignals({"SIG_B", "SIG_X"});
    DashboardWidgetConfigDialog dialog(&widget);
    dialog.show();
    auto* list = dialog.findChild<QListWidget*>();
    QCOMPARE(list->selectedItems().size(), 1);
    QCOMPARE(list->selectedItems().first()->text(), QString("SIG_B (Inner pressure)"));
    QTest::mouseClick(list->viewport(), Qt::LeftButton, Qt::ControlModifier,
                      list->visualItemRect(list->item(0)).center());
    dialog.applyConfig();
    QList<QString> assigned = widget.assignedSignalList();
    assigned.sort();
    QCOMPARE(assigned, QList<QString>({"SIG_A", "SIG_B"}));
    list->clearSelection();
    click(dialog, QDialogButtonBox::Ok);
    QCOMPARE(widget.assignedSignalList(), QList<QString>());
}

void TestWidgetConfigDialog::closesWhenWidgetDies()
{
    auto widget = std::make_unique<AnalogGaugeWidget>();
    DashboardWidgetConfigDialog dialog(widget.get());
    ModalAnswer answer;
    answer.then([&](QDialog*) { widget.reset(); });
    QCOMPARE(dialog.exec(), int(QDialog::Rejected));
    dialog.applyConfig(); // nobody left to configure
}

QTEST_MAIN(TestWidgetConfigDialog)
#include "tst_widgetconfigdialog.moc"
