#include "support/Catalogue.h"
#include "support/ModalAnswer.h"
#include "widgets/DashboardWidgetConfigDialog.h"
#include "widgets/values/AnalogGaugeWidget.h"
#include "widgets/values/BarGraphWidget.h"

#include <QTest>

static constexpr char kLines[] =
    "DASHBOARD_SIGNAL(SIG_A, \"Speed\", NONE)\nDASHBOARD_SIGNAL(sig_a, \"Lower\", NONE)\n"
    "DASHBOARD_SIGNAL(SIG_B, \"Inner pressure\", NONE)\n";

class TestDashboardWidgetConfigDialog : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void assignsNothingWithoutCatalogue()
    {
        AnalogGaugeWidget gauge;
        gauge.assignSignals({"SIG_X", "SIG_B"});
        DashboardWidgetConfigDialog(&gauge).applyConfig();
        QCOMPARE(gauge.assignedSignalList(), QStringList({"SIG_X", "SIG_B"}));
    }

    void assignsPreselectedSignal_data()
    {
        QTest::addColumn<QStringList>("before");
        QTest::addColumn<QString>("after");
        QTest::newRow("first without an assignment") << QStringList() << "SIG_A";
        QTest::newRow("exact name") << QStringList{"sig_a", "SIG_B"} << "sig_a";
        QTest::newRow("part of the text") << QStringList{"INNER"} << "SIG_B";
        QTest::newRow("suffix stays") << QStringList{"SIG_B: bar"} << "SIG_B: bar";
    }

    void assignsPreselectedSignal()
    {
        QFETCH(QStringList, before);
        QFETCH(QString, after);
        const ProjectCatalogue catalogue(kLines);
        AnalogGaugeWidget gauge;
        gauge.assignSignals(before);
        DashboardWidgetConfigDialog(&gauge).applyConfig();
        QCOMPARE(gauge.assignedSignalList(), QStringList{after});
    }

    void untouchedListKeepsWhatTheCatalogueLacks()
    {
        const ProjectCatalogue catalogue(kLines);
        BarGraphWidget graph;
        graph.assignSignals({"SIG_B", "SIG_X"});
        DashboardWidgetConfigDialog(&graph).applyConfig();
        QCOMPARE(graph.assignedSignalList(), QStringList({"SIG_B", "SIG_X"}));
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

QTEST_MAIN(TestDashboardWidgetConfigDialog)
#include "tst_dashboardwidgetconfigdialog.moc"
