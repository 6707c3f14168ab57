#include "support/ModalAnswer.h"
#include "support/Catalogue.h"
#include "widgets/DashboardWidgetConfigDialog.h"
#include "widgets/values/AnalogGaugeWidget.h"

#include <QListWidget>
#include <QTest>

static const QByteArray kLines =
    "DASHBOARD_SIGNAL(SIG_A, \"Speed\", NONE)\nDASHBOARD_SIGNAL(sig_a, \"Lower\", NONE)\n"
    "DASHBOARD_SIGNAL(SIG_B, \"Inner pressure\", NONE)\n";

class SeveralSignals : public AnalogGaugeWidget
{
public:
    bool supportsMultipleSignals() const override { return true; }
};

class TestWidgetConfigDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void assignsPreselectedSignal()
    {
        const auto assigned = [](const QStringList& before) {
            AnalogGaugeWidget gauge;
            gauge.assignSignals(before);
            DashboardWidgetConfigDialog(&gauge).applyConfig();
            return gauge.assignedSignalList();
        };
        QCOMPARE(assigned({"SIG_X", "SIG_B"}), QStringList({"SIG_X", "SIG_B"})); // no catalogue, no choice
        const ProjectCatalogue catalogue(kLines);
        QCOMPARE(assigned({}), QStringList{"SIG_A"});
        QCOMPARE(assigned({"sig_a", "SIG_B"}), QStringList{"sig_a"});
        QCOMPARE(assigned({"INNER"}), QStringList{"SIG_B"}); // part of the text
        QCOMPARE(assigned({"SIG_B: bar"}), QStringList{"SIG_B: bar"});
        QCOMPARE(assigned({"SIG_X: bar"}), QStringList{"SIG_A"});
    }

    void assignsSelectedSignals()
    {
        const ProjectCatalogue catalogue(kLines);
        SeveralSignals widget;
        widget.assignSignals({"SIG_B", "SIG_X"});
        DashboardWidgetConfigDialog dialog(&widget);
        dialog.applyConfig(); // untouched, it does not lose what the catalogue lacks
        QCOMPARE(widget.assignedSignalList(), QStringList({"SIG_B", "SIG_X"}));
        dialog.findChild<QListWidget*>()->item(0)->setSelected(true);
        dialog.applyConfig();
        QStringList assigned = widget.assignedSignalList();
        assigned.sort();
        QCOMPARE(assigned, QStringList({"SIG_A", "SIG_B"}));
    }

    void closesWhenWidgetDies()
    {
        auto* widget = new AnalogGaugeWidget;
        DashboardWidgetConfigDialog dialog(widget);
        ModalAnswer answer;
        answer.then([widget](QDialog*) { delete widget; });
        QCOMPARE(dialog.exec(), int(QDialog::Rejected));
        dialog.applyConfig(); // nobody left to configure
    }
};

QTEST_MAIN(TestWidgetConfigDialog)
#include "tst_widgetconfigdialog.moc"
