#include "app/ValueRouter.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "definitions/ActiveDefinitions.h"
#include "support/Catalogue.h"
#include "widgets/DashboardWidget.h"
#include "widgets/consoles/ErrorConsoleWidget.h"
#include "widgets/values/StateIndicatorWidget.h"
#include "widgets/xyplot/XYPlotWidget.h"

#include <QGraphicsProxyWidget>
#include <QRandomGenerator>
#include <QRegularExpression>
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

    template <class Widget>
    Widget* add()
    {
        auto* widget = new Widget;
        scene.addItem(new DashboardItem(widget));
        return widget;
    }
    Probe* addProbe(const QList<QString>& names)
    {
        auto* probe = add<Probe>();
        probe->log = &log;
        probe->assignSignals(names);
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

/// Probes that come, go and change in every way that the router has to notice.
struct ChangingRig : Rig
{
    QRandomGenerator random{1};
    QList<Probe*> probes;

    QString name() { return QString(QChar(u'A' + ushort(random.bounded(6)))); }
    QList<QString> names()
    {
        return QList<QString>({name(), name() + u": text"_s, u" "_s + name()}).mid(random.bounded(4));
    }
    void change()
    {
        const int kind = random.bounded(12);
        if (kind == 0 && probes.size() < 30)
            probes.append(addProbe(names()));
        else if (!probes.isEmpty())
            change(kind, probes[random.bounded(probes.size())]);
    }
    void change(int kind, Probe* probe)
    {
        DashboardItem* item = probe->item();
        if (kind == 1) {
            probes.removeOne(probe);
            item->requestDelete();
        } else if (kind == 2) {
            probe->assignSignals(names());
        } else if (kind == 3) {
            item->setZValue(random.bounded(5));
        } else if (kind == 4) {
            DashboardItem* other = probes.first()->item();
            const bool free = item->parentItem() || other == item || other->parentItem();
            item->setParentItem(free ? nullptr : other);
        } else if (kind == 5 && random.bounded(4) == 0 && item->childItems().size() == 2) {
            probes.removeOne(probe);
            delete item;
        }
    }
};

const QByteArray kSignal = "DASHBOARD_SIGNAL(T, \"Temp\", M)\n";

/// A probe of the signal that a project's catalogue converts, after a live value of 100.
struct MappedRig : Rig
{
    Probe* probe = addProbe({u"T: °F"_s, u"T"_s, u"t"_s});

    MappedRig()
    {
        definitions.setProject(catalogueOf("DASHBOARD_MAPPING(M, 32, 1.8)\n" + kSignal));
        router.routeLiveValues({{u"T"_s, 100.0}, {u"U"_s, 5.0}});
    }
    Log heard() { return std::exchange(log, {}); }
    Log one(double value) const { return {{probe, u"T"_s, value}}; }
};

} // namespace

class TestValueRouter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void deliversWhatAWalkWouldDeliver()
    {
        ChangingRig rig;
        for (int step = 0; step < 10'000; ++step) {
            rig.change();
            const Log events = rig.walkForEvents();
            const qsizetype beforeEvents = rig.log.size();
            rig.router.routeState(u"G"_s, u"S"_s);
            rig.router.routeError(0.0, u"E"_s);
            rig.router.routeMessage(0.0, u"M"_s);
            QCOMPARE(rig.log.mid(beforeEvents), events);
            const QString key = rig.name();
            const Log expected = rig.walk(key, step);
            const qsizetype before = rig.log.size();
            rig.router.updateSignalValueAt(key, step, 0.0);
            QCOMPARE(rig.log.mid(before), expected);
        }
        QVERIFY(rig.log.size() > 1000);
    }

    void mapsLiveValuesAndStampsThemByTheClock()
    {
        MappedRig rig;
        QCOMPARE(rig.heard(), rig.one(212.0)); // once, though it is assigned twice
        QVERIFY(qAbs(rig.probe->lastTime - double(QDateTime::currentMSecsSinceEpoch()) / 1000.0) < 60.0);
    }

    void otherDefinitionsMapTheLastValuesAnew()
    {
        MappedRig rig;
        rig.log.clear();
        rig.definitions.setRecording(catalogueOf("DASHBOARD_MAPPING(M, 1, 2)\n" + kSignal));
        rig.router.reapplyMappingsToCurrentValues();
        QCOMPARE(rig.heard(), rig.one(201.0)); // the cache holds raw values
        rig.router.updateSignalValueAt(u"T"_s, 0.0, 7.5);
        QCOMPARE(rig.heard(), rig.one(1.0));
        QCOMPARE(rig.probe->lastTime, 7.5);
    }

    void liveValuesKeepOutOfAReplay()
    {
        MappedRig rig;
        rig.log.clear();
        rig.router.setLive(false);
        rig.router.routeLiveValues({{u"T"_s, 1.0}});
        rig.router.updateSignalValue(u"T"_s, 2.0);
        rig.router.reapplyMappingsToCurrentValues();
        QCOMPARE(rig.heard(), Log());
        QCOMPARE(rig.router.lastValues(), (QMap<QString, double>{{u"T"_s, 100.0}, {u"U"_s, 5.0}}));
    }

    void followsThePlotThatChoosesItsSignalsItself()
    {
        Rig rig;
        auto* plot = rig.add<XYPlotWidget>();
        const QMap<QString, double> values{{u"A"_s, 1.0}, {u"B"_s, 2.0}, {u"C"_s, 3.0}};
        plot->loadConfig({{u"xSignal"_s, u"A"_s}, {u"ySignal"_s, u"B"_s}});
        rig.router.routeReplayedValues(0.0, values);
        QCOMPARE(plot->points().points(), QList({QPointF(1.0, 2.0)}));
        plot->clearData();
        plot->loadConfig({{u"ySignal"_s, u"C"_s}});
        rig.router.routeReplayedValues(1.0, values);
        QCOMPARE(plot->points().points(), QList({QPointF(1.0, 3.0)}));
    }

    void stateFindsItsGroupInAnyLetterCase()
    {
        Rig rig;
        rig.definitions.setProject(catalogueOf("DASHBOARD_STATE(MODE, RUN, \"Running\")\n"));
        auto* indicator = rig.add<StateIndicatorWidget>();
        indicator->setGroupId(u"mode"_s);
        rig.router.routeState(u"MODE"_s, u"RUN"_s);
        rig.router.routeState(u"VALVE"_s, u"SHUT"_s); // of another group
        QCOMPARE(indicator->stateLabel(), u"Running"_s);
    }

    void errorIsShownByItsTextAlsoInANestedConsole()
    {
        Rig rig;
        rig.definitions.setProject(catalogueOf("DASHBOARD_ERROR(E7, 7, \"Too hot\")\n"));
        rig.addProbe({});
        auto* errors = new ErrorConsoleWidget;
        new DashboardItem(errors, rig.scene.dashboardItems().first());
        rig.router.routeError(1.0, u"E8"_s);
        rig.router.routeError(2.0, u"E7"_s);
        QCOMPARE(errors->plainText(), u"[1.000s] E8 : E8\n[2.000s] E7 : Too hot"_s);
    }
};

QTEST_MAIN(TestValueRouter)
#include "tst_valuerouter.moc"
