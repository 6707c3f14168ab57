#include "app/ValueRouter.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "definitions/ActiveDefinitions.h"
#include "widgets/DashboardWidget.h"
#include "widgets/consoles/ErrorConsoleWidget.h"
#include "widgets/consoles/MessagesConsoleWidget.h"
#include "widgets/values/StateIndicatorWidget.h"
#include "widgets/xyplot/XYPlotWidget.h"

#include <QGraphicsProxyWidget>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTemporaryFile>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

using Log = QList<std::tuple<const DashboardWidget*, QString, double>>;

class Probe : public DashboardWidget
{
public:
    void setValue(double) override {}
    QString typeName() const override { return u"Probe"_s; }
    void setValueForSignalAt(const QString& name, double value, double tSec) override
    {
        log->append({this, name, value});
        lastTime = tSec;
    }
    Events shownEvents() const override { return {StateEvent, ErrorEvent, MessageEvent}; }
    void showState(const QString&, const QString&, const QString&) override { note(u"state"_s); }
    void appendError(double, const QString&, const QString&) override { note(u"error"_s); }
    void appendMessage(double, const QString&) override { note(u"message"_s); }
    DashboardItem* item() const { return static_cast<DashboardItem*>(graphicsProxyWidget()->parentItem()); }

    Log* log = nullptr;
    double lastTime = -1.0;

private:
    void note(const QString& event) { log->append({this, event, 0.0}); }
};

struct Rig
{
    DesignScene scene;
    ActiveDefinitions definitions;
    ValueRouter router{&scene, &definitions};
    Log log;

    Probe* addProbe(const QList<QString>& names)
    {
        auto* probe = new Probe;
        probe->log = &log;
        probe->assignSignals(names);
        scene.addItem(new DashboardItem(probe));
        return probe;
    }

    /// What a walk over the scene delivers for one value.
    Log walk(const QString& name, double value) const
    {
        Log expected;
        const QList<QGraphicsItem*> items = scene.items(Qt::DescendingOrder);
        for (QGraphicsItem* graphicsItem : items) {
            const auto* item = dynamic_cast<DashboardItem*>(graphicsItem);
            if (!item || item->parentItem() || !item->widget())
                continue;
            QStringList names = item->widget()->assignedSignalList();
            names.replaceInStrings(QRegularExpression(u"^\\s+|\\s*:.*$"_s), QString());
            if (names.contains(name))
                expected.append({item->widget(), name, value});
        }
        return expected;
    }

    /// The same for a state, an error and a message.
    Log walkForEvents() const
    {
        Log states, errors, messages;
        const QList<QGraphicsItem*> items = scene.items(Qt::DescendingOrder);
        for (QGraphicsItem* graphicsItem : items) {
            const auto* item = dynamic_cast<DashboardItem*>(graphicsItem);
            if (!item || !item->widget())
                continue;
            if (!item->parentItem())
                states.append({item->widget(), u"state"_s, 0.0});
            errors.append({item->widget(), u"error"_s, 0.0});
            messages.append({item->widget(), u"message"_s, 0.0});
        }
        return states + errors + messages;
    }
};

std::unique_ptr<DashboardSignalParser> catalogue(const QByteArray& text)
{
    QTemporaryFile file;
    if (!file.open() || file.write(text) != text.size() || !file.flush())
        return nullptr;
    auto parser = std::make_unique<DashboardSignalParser>(file.fileName());
    return parser->parse() ? std::move(parser) : nullptr;
}

} // namespace

class TestValueRouter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deliversWhatAWalkWouldDeliver()
    {
        QRandomGenerator random(1);
        const auto name = [&random] { return QString(QChar(u'A' + ushort(random.bounded(6)))); };
        const auto names = [&] {
            return QList<QString>({name(), name() + u": text"_s, u" "_s + name()}).mid(random.bounded(4));
        };
        Rig rig;
        QList<Probe*> probes;
        for (int step = 0; step < 10'000; ++step) {
            const int change = random.bounded(12);
            Probe* any = probes.isEmpty() ? nullptr : probes[random.bounded(probes.size())];
            DashboardItem* item = any ? any->item() : nullptr;
            if (change == 0 && probes.size() < 30) {
                probes.append(rig.addProbe(names()));
            } else if (change == 1 && any) {
                probes.removeOne(any);
                item->requestDelete();
            } else if (change == 2 && any) {
                any->assignSignals(names());
            } else if (change == 3 && any) {
                item->setZValue(random.bounded(5));
            } else if (change == 4 && any) {
                DashboardItem* other = probes.first()->item();
                const bool free = item->parentItem() || other == item || other->parentItem();
                item->setParentItem(free ? nullptr : other);
            } else if (change == 5 && any && random.bounded(4) == 0 && item->childItems().size() == 2) {
                probes.removeOne(any);
                delete item;
            }
            const Log events = rig.walkForEvents();
            const qsizetype beforeEvents = rig.log.size();
            rig.router.routeState(u"G"_s, u"S"_s);
            rig.router.routeError(0.0, u"E"_s);
            rig.router.routeMessage(0.0, u"M"_s);
            QCOMPARE(rig.log.mid(beforeEvents), events);
            const QString key = name();
            const Log expected = rig.walk(key, step);
            const qsizetype before = rig.log.size();
            rig.router.updateSignalValueAt(key, step, 0.0);
            QCOMPARE(rig.log.mid(before), expected);
        }
        QVERIFY(rig.log.size() > 1000);
    }

    void mapsWithTheActiveCatalogue()
    {
        Rig rig;
        Probe* probe = rig.addProbe({u"T: °F"_s, u"T"_s, u"t"_s});
        const QString name = u"T"_s;
        const QByteArray signal = "DASHBOARD_SIGNAL(T, \"Temp\", M)\n";
        rig.router.routeLiveValues({{name, 100.0}});
        QCOMPARE(std::exchange(rig.log, {}), Log({{probe, name, 100.0}}));

        rig.definitions.setProject(catalogue("DASHBOARD_MAPPING(M, 32, 1.8)\n" + signal));
        rig.router.routeLiveValues({{name, 100.0}, {u"U"_s, 5.0}});
        QCOMPARE(std::exchange(rig.log, {}), Log({{probe, name, 212.0}}));
        QVERIFY(qAbs(probe->lastTime - double(QDateTime::currentMSecsSinceEpoch()) / 1000.0) < 60.0);

        // The cache holds raw values, so that other definitions map them anew.
        rig.definitions.setRecording(catalogue("DASHBOARD_MAPPING(M, 1, 2)\n" + signal));
        rig.router.reapplyMappingsToCurrentValues();
        QCOMPARE(std::exchange(rig.log, {}), Log({{probe, name, 201.0}}));
        rig.router.updateSignalValueAt(name, 0.0, 7.5);
        QCOMPARE(std::exchange(rig.log, {}), Log({{probe, name, 1.0}}));
        QCOMPARE(probe->lastTime, 7.5);

        rig.router.setLive(false); // a replay is shown
        rig.router.routeLiveValues({{name, 1.0}});
        rig.router.updateSignalValue(name, 2.0);
        rig.router.reapplyMappingsToCurrentValues();
        QVERIFY(rig.log.isEmpty());
        QCOMPARE(rig.router.lastValues(), (QMap<QString, double>{{name, 100.0}, {u"U"_s, 5.0}}));
    }

    void followsThePlotThatChoosesItsSignalsItself()
    {
        Rig rig;
        auto* plot = new XYPlotWidget;
        rig.scene.addItem(new DashboardItem(plot));
        for (const QString& ySignal : {u"B"_s, u"C"_s}) {
            plot->clearData();
            plot->loadConfig({{u"xSignal"_s, u"A"_s}, {u"ySignal"_s, ySignal}});
            rig.router.routeReplayedValues(ySignal == u"B"_s, {{u"A"_s, 1.0}, {u"B"_s, 2.0}, {u"C"_s, 3.0}});
            QCOMPARE(plot->points().points(), QList({QPointF(1.0, ySignal == u"B" ? 2.0 : 3.0)}));
        }
    }

    void statesErrorsAndMessagesFindTheirWidgets()
    {
        Rig rig;
        rig.definitions.setProject(
            catalogue("DASHBOARD_STATE(MODE, RUN, \"Running\")\nDASHBOARD_ERROR(E7, 7, \"Too hot\")\n"));
        auto* indicator = new StateIndicatorWidget;
        indicator->setGroupId(u"mode"_s);
        auto* errors = new ErrorConsoleWidget;
        auto* messages = new MessagesConsoleWidget;
        for (DashboardWidget* widget : std::initializer_list<DashboardWidget*>{indicator, messages})
            rig.scene.addItem(new DashboardItem(widget));
        new DashboardItem(errors, rig.scene.dashboardItems().first()); // consoles hear also inside others

        rig.router.routeState(u"MODE"_s, u"RUN"_s);
        rig.router.routeState(u"VALVE"_s, u"SHUT"_s); // of another group
        QCOMPARE(indicator->stateLabel(), u"Running"_s);
        rig.router.routeError(1.0, u"E8"_s);
        QCOMPARE(errors->plainText(), u"[1.000s] E8 : E8"_s);
        rig.router.clearErrorConsoles();
        rig.router.routeError(2.0, u"E7"_s);
        QCOMPARE(errors->plainText(), u"[2.000s] E7 : Too hot"_s);
        rig.router.routeMessage(-0.25, u"<b>hello</b>"_s);
        QCOMPARE(messages->plainText(), u"[-0.250s] <b>hello</b>"_s);
        rig.router.clearMessageConsoles();
        QCOMPARE(messages->plainText(), QString());
    }
};

QTEST_MAIN(TestValueRouter)
#include "tst_valuerouter.moc"
