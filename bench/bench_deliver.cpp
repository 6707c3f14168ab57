// One value on its way from the router to the widget that shows it, beside a walk of the scene for every
// value. Each signal is shown by exactly one of the widgets, a cheap one, so that the finding is measured and
// not the showing.

#include "app/ValueRouter.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "definitions/ActiveDefinitions.h"
#include "definitions/numbers/SignalName.h"
#include "widgets/DashboardWidget.h"

#include <QApplication>

#include <benchmark/benchmark.h>

namespace {

constexpr int kValuesPerLine = 10;

qint64 g_delivered = 0;

class Probe : public DashboardWidget
{
public:
    QString typeName() const override { return QStringLiteral("Probe"); }
    void setValue(double value) override
    {
        benchmark::DoNotOptimize(value);
        ++g_delivered;
    }
};

QString signal(int number) { return QStringLiteral("SIGNAL_%1").arg(number); }

struct Dashboard
{
    DesignScene scene;
    ActiveDefinitions definitions;
    ValueRouter router{&scene, &definitions};

    explicit Dashboard(qint64 widgets)
    {
        for (int i = 0; i < widgets; ++i) {
            auto* probe = new Probe;
            probe->assignSignals({signal(i) + QStringLiteral(": shown somewhere")});
            scene.addItem(new DashboardItem(probe));
        }
    }
};

// What the router has to deliver, found anew for every value.
void walk(const DesignScene& scene, const QString& name, double value, double tSec)
{
    const QList<QGraphicsItem*> items = scene.items(Qt::DescendingOrder);
    for (QGraphicsItem* graphicsItem : items) {
        const auto* item = dynamic_cast<DashboardItem*>(graphicsItem);
        if (!item || item->parentItem() || !item->widget())
            continue;
        const QList<QString> entries = item->widget()->assignedSignalList();
        for (const QString& entry : entries) {
            if (canonical(entry) == name) {
                item->widget()->setValueForSignalAt(name, value, tSec);
                break;
            }
        }
    }
}

template <typename Deliver>
void run(benchmark::State& state, int valuesPerIteration, Deliver deliver)
{
    g_delivered = 0;
    double value = 0.0;
    for ([[maybe_unused]] auto _ : state)
        deliver(value += 1.0);
    if (g_delivered != qint64(state.iterations()) * valuesPerIteration)
        state.SkipWithError("values were lost or delivered twice");
    state.SetItemsProcessed(g_delivered);
}

void walkPerValue(benchmark::State& state)
{
    const Dashboard dashboard(state.range(0));
    const QString name = signal(0);
    run(state, 1, [&](double value) { walk(dashboard.scene, name, value, value); });
}

void router(benchmark::State& state)
{
    Dashboard dashboard(state.range(0));
    const QString name = signal(0);
    run(state, 1, [&](double value) { dashboard.router.updateSignalValueAt(name, value, value); });
}

// Items are values: the whole way of a line, with caching the raw values and asking the clock once.
void routerLineOfTen(benchmark::State& state)
{
    Dashboard dashboard(state.range(0));
    QMap<QString, double> values;
    for (int i = 0; i < kValuesPerLine; ++i)
        values.insert(signal(i), i);
    run(state, kValuesPerLine, [&](double) { dashboard.router.routeLiveValues(values); });
}

} // namespace

// The macro makes what clazy warns of. clazy:excludeall=non-pod-global-static
BENCHMARK(walkPerValue)->ArgName("widgets")->Arg(50)->Arg(500);
BENCHMARK(router)->ArgName("widgets")->Arg(50)->Arg(500);
BENCHMARK(routerLineOfTen)->ArgName("widgets")->Arg(50)->Arg(500);

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
