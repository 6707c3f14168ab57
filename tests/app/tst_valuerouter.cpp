#include "app/ValueRouter.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "definitions/ActiveDefinitions.h"
#include "widgets/DashboardWidget.h"
#include "widgets/ErrorConsoleWidget.h"
#include "widgets/MessagesConsoleWidget.h"
#include "widgets/StateIndicatorWidget.h"

#include <QGraphicsProxyWidget>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTest>
#include <QTextEdit>

#include <cmath>

using namespace Qt::StringLiterals;

namespace {

struct Delivery
{
    const DashboardWidget* widget;
    QString name;
    double value;
    bool operator==(const Delivery&) const = default;
};

/// Keeps what it is given; its signals can change behind assignSignals(), as a plot's do.
class Probe : public DashboardWidget
{
public:
    explicit Probe(QList<Delivery>* log)
        : m_log(log)
    {}
    void setValue(double) override {}
    QString typeName() const override { return u"Probe"_s; }
    QList<QString> assignedSignalList() const override
    {
        return own.isEmpty() ? DashboardWidget::assignedSignalList() : own;
    }
    void setValueForSignalAt(const QString& name, double value, double tSec) override
    {
        m_log->append({this, name, value});
        lastTime = tSec;
    }
    void setOwn(const QList<QString>& names)
    {
        own = names;
        Q_EMIT assignmentChanged();
    }
    QList<QString> own;
    double lastTime = std::nan("");

private:
    QList<Delivery>* m_log;
};

Probe* addProbe(DesignScene& scene, QList<Delivery>* log, const QList<QString>& names)
{
    auto* probe = new Probe(log);
    probe->assignSignals(names);
    scene.addItem(new DashboardItem(probe));
    return probe;
}

/// What a walk over the scene delivers for one value.
QList<Delivery> walk(const DesignScene& scene, const QString& name, double value)
{
    QList<Delivery> expected;
    const QList<QGraphicsItem*> items = scene.items(Qt::DescendingOrder);
    for (QGraphicsItem* graphicsItem : items) {
        const auto* item = dynamic_cast<DashboardItem*>(graphicsItem);
        if (!item || item->parentItem() || !item->widget())
            continue;
        const QList<QString> entries = item->widget()->assignedSignalList();
        for (const QString& entry : entries) {
            if (entry.split(QLatin1Char(':')).first().trimmed() == name) {
                expected.append({item->widget(), name, value});
                break;
            }
        }
    }
    return expected;
}

std::unique_ptr<DashboardSignalParser> catalogue(const QTemporaryDir& dir, const QByteArray& text)
{
    QFile file(dir.filePath(u"x.def"_s));
    if (!file.open(QIODevice::WriteOnly) || file.write(text) != text.size())
        return nullptr;
    file.close();
    auto parser = std::make_unique<DashboardSignalParser>(file.fileName());
    return parser->parse() ? std::move(parser) : nullptr;
}

} // namespace

class TestValueRouter : public QObject
{
    Q_OBJECT

    QTemporaryDir m_dir;

    static QString textOf(DashboardWidget* console)
    {
        return console->findChild<QTextEdit*>()->toPlainText();
    }

private Q_SLOTS:
    void deliversWhatAWalkWouldDeliver_data()
    {
        QTest::addColumn<quint32>("seed");
        for (quint32 seed = 1; seed <= 20; ++seed)
            QTest::addRow("seed %u", seed) << seed;
    }
    void deliversWhatAWalkWouldDeliver()
    {
        QFETCH(quint32, seed);
        QRandomGenerator random(seed);
        const auto name = [&random] { return QString(QChar(u'A' + ushort(random.bounded(6)))); };
        const auto names = [&] {
            const QString entries[] = {name(), name() + u": text"_s, u" "_s + name()};
            QList<QString> list;
            for (const QString& entry : entries) {
                if (random.bounded(2))
                    list.append(entry);
            }
            return list;
        };
        DesignScene scene;
        ActiveDefinitions definitions;
        ValueRouter router(&scene, &definitions);
        QList<Delivery> log;
        QList<Probe*> probes;
        int deliveries = 0;
        for (int step = 0; step < 1000; ++step) {
            const int change = random.bounded(10);
            Probe* any = probes.isEmpty() ? nullptr : probes[random.bounded(probes.size())];
            auto* item =
                any ? static_cast<DashboardItem*>(any->graphicsProxyWidget()->parentItem()) : nullptr;
            if (change == 0 && probes.size() < 30) {
                probes.append(addProbe(scene, &log, names()));
            } else if (change == 1 && any) {
                probes.removeOne(any);
                item->requestDelete();
            } else if (change == 2 && any) {
                any->assignSignals(names());
            } else if (change == 3 && any) {
                item->setZValue(random.bounded(5));
            } else if (change == 4 && any) {
                any->setOwn(names());
            } else if (change == 5 && any) {
                auto* other =
                    static_cast<DashboardItem*>(probes.first()->graphicsProxyWidget()->parentItem());
                item->setParentItem(item->parentItem() || other == item || other->parentItem() ? nullptr
                                                                                               : other);
            } else if (change == 6 && any && random.bounded(4) == 0 && item->childItems().size() == 2) {
                probes.removeOne(any);
                delete item;
            }
            const QString key = name();
            const QList<Delivery> expected = walk(scene, key, step);
            log.clear();
            router.updateSignalValueAt(key, step, 0.0);
            QCOMPARE(log, expected);
            deliveries += int(log.size());
        }
        QVERIFY(deliveries > 100);
    }

    void mapsWithTheActiveCatalogue()
    {
        DesignScene scene;
        ActiveDefinitions definitions;
        ValueRouter router(&scene, &definitions);
        QList<Delivery> log;
        Probe* probe = addProbe(scene, &log, {u"T: °F"_s, u"T"_s, u"t"_s});
        const QString name = u"T"_s;
        router.routeLiveValues({{name, 100.0}});
        QCOMPARE(log, QList<Delivery>({{probe, name, 100.0}}));

        definitions.setProject(catalogue(m_dir,
                                         "DASHBOARD_MAPPING(M, 32, 1.8)\nDASHBOARD_SIGNAL(T, \"Temp\", M)\n"
                                         "DASHBOARD_SIGNAL(U, \"No mapping\", NONE)\n"));
        log.clear();
        router.routeLiveValues({{name, 100.0}, {u"U"_s, 5.0}});
        QCOMPARE(log, QList<Delivery>({{probe, name, 212.0}}));
        QVERIFY(qAbs(probe->lastTime - double(QDateTime::currentMSecsSinceEpoch()) / 1000.0) < 60.0);

        // The cache holds raw values, so that other definitions map them anew.
        definitions.setRecording(
            catalogue(m_dir, "DASHBOARD_MAPPING(M, 1, 2)\nDASHBOARD_SIGNAL(T, \"Temp\", M)\n"));
        log.clear();
        router.reapplyMappingsToCurrentValues();
        QCOMPARE(log, QList<Delivery>({{probe, name, 201.0}}));
        definitions.discardRecording();
        router.updateSignalValueAt(name, 0.0, 7.5);
        QCOMPARE(log.last(), (Delivery{probe, name, 32.0}));
        QCOMPARE(probe->lastTime, 7.5);
        router.setLive(false); // a replay is shown
        log.clear();
        router.routeLiveValues({{name, 1.0}});
        router.updateSignalValue(name, 2.0);
        router.reapplyMappingsToCurrentValues();
        QVERIFY(log.isEmpty());
        QCOMPARE(router.lastValues(), (QMap<QString, double>{{name, 100.0}, {u"U"_s, 5.0}}));
    }

    void statesErrorsAndMessagesFindTheirWidgets()
    {
        DesignScene scene;
        ActiveDefinitions definitions;
        ValueRouter router(&scene, &definitions);
        auto* indicator = new StateIndicatorWidget;
        indicator->setGroupId(u"mode"_s);
        auto* other = new StateIndicatorWidget;
        other->setGroupId(u"valve"_s);
        auto* errors = new ErrorConsoleWidget;
        auto* nested = new ErrorConsoleWidget;
        auto* messages = new MessagesConsoleWidget;
        for (DashboardWidget* widget :
             {static_cast<DashboardWidget*>(indicator), static_cast<DashboardWidget*>(other),
              static_cast<DashboardWidget*>(errors), static_cast<DashboardWidget*>(messages)})
            scene.addItem(new DashboardItem(widget));
        new DashboardItem(nested, scene.dashboardItems().first());

        router.routeState(u"MODE"_s, u"RUN"_s);
        QCOMPARE(indicator->stateLabel(), u"RUN"_s);
        QCOMPARE(other->stateLabel(), QString());
        router.routeError(1.0, u"E7"_s);
        router.routeMessage(-0.25, u"<b>hello</b>"_s);
        QTRY_COMPARE(textOf(errors), u"[1.000s] E7 : E7"_s);
        QTRY_COMPARE(textOf(nested), textOf(errors));
        QTRY_COMPARE(textOf(messages), u"[-0.250s] <b>hello</b>"_s);

        definitions.setProject(catalogue(
            m_dir, "DASHBOARD_STATE(MODE, RUN, \"Running\")\nDASHBOARD_ERROR(E7, 7, \"Too hot\")\n"));
        router.routeState(u"MODE"_s, u"RUN"_s);
        QCOMPARE(indicator->stateLabel(), u"Running"_s);
        router.updateStateValue(u"MODE"_s, u"RUN"_s, QString());
        QCOMPARE(indicator->stateLabel(), u"Running"_s);
        router.clearErrorConsoles();
        router.routeError(2.0, u"E7"_s);
        QTRY_COMPARE(textOf(errors), u"[2.000s] E7 : Too hot"_s);
        router.clearMessageConsoles();
        QTRY_COMPARE(textOf(messages), QString());
    }
};

QTEST_MAIN(TestValueRouter)
#include "tst_valuerouter.moc"
