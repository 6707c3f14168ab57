#include "app/ValueRouter.h"
#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "definitions/ActiveDefinitions.h"
#include "widgets/DashboardWidget.h"

#include <QGraphicsProxyWidget>
#include <QRandomGenerator>
#include <QRegularExpression>
#include <QTest>

using namespace Qt::StringLiterals;

namespace {

/// Who was told, and which signal or what else.
using Log = QList<std::pair<const DashboardWidget*, QString>>;

class Probe : public DashboardWidget
{
public:
    explicit Probe(Log* log)
        : m_log(log)
    {}
    QString typeName() const override { return u"Probe"_s; }
    void setValue(double) override {}
    void setValueForSignalAt(const QString& name, double, double) override { note(name); }
    Events shownEvents() const override { return {StateEvent, ErrorEvent, MessageEvent}; }
    void showState(const QString&, const QString&, const QString&) override { note(u"state"_s); }
    void appendError(double, const QString&, const QString&) override { note(u"error"_s); }
    void appendMessage(double, const QString&) override { note(u"message"_s); }
    DashboardItem* item() const { return static_cast<DashboardItem*>(graphicsProxyWidget()->parentItem()); }

private:
    void note(const QString& what) { m_log->append({this, what}); }

    Log* m_log;
};

/// Probes that come, go and change in every way that the router has to notice.
struct ChangingRig
{
    DesignScene scene;
    ActiveDefinitions definitions;
    ValueRouter router{&scene, &definitions};
    QRandomGenerator random{1};
    QList<Probe*> probes;
    Log told;

    QString name() { return QString(QChar(u'A' + ushort(random.bounded(6)))); }
    QList<QString> names()
    {
        return QList<QString>({name(), name() + u": text"_s, u" "_s + name()}).mid(random.bounded(4));
    }
    void change()
    {
        const int kind = random.bounded(12);
        if (kind == 0 && probes.size() < 30)
            add();
        else if (!probes.isEmpty())
            change(kind, probes[random.bounded(probes.size())]);
    }
    void add()
    {
        probes.append(new Probe(&told));
        scene.addItem(new DashboardItem(probes.last()));
        probes.last()->assignSignals(names());
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
    void route(const QString& signal)
    {
        told.clear();
        router.updateSignalValueAt(signal, 1.0, 0.0);
        router.routeState(u"G"_s, u"S"_s);
        router.routeError(0.0, u"E"_s);
        router.routeMessage(0.0, u"M"_s);
    }
    /// Whom a walk over the scene finds for the same.
    Log walk(const QString& signal) const
    {
        Log values, states, errors, messages;
        const QList<QGraphicsItem*> items = scene.items(Qt::DescendingOrder);
        for (QGraphicsItem* graphicsItem : items) {
            const auto* item = dynamic_cast<DashboardItem*>(graphicsItem);
            if (!item || !item->widget())
                continue;
            errors.append({item->widget(), u"error"_s});
            messages.append({item->widget(), u"message"_s});
            if (item->parentItem())
                continue;
            states.append({item->widget(), u"state"_s});
            QStringList names = item->widget()->assignedSignalList();
            names.replaceInStrings(QRegularExpression(u"^\\s+|\\s*:.*$"_s), QString());
            if (names.contains(signal))
                values.append({item->widget(), signal});
        }
        return values + states + errors + messages;
    }
};

} // namespace

class TestValueRouter : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void tellsThoseThatAWalkWouldFind()
    {
        ChangingRig rig;
        qsizetype told = 0;
        for (int step = 0; step < 10'000; ++step) {
            rig.change();
            const QString signal = rig.name();
            const Log expected = rig.walk(signal);
            rig.route(signal);
            QCOMPARE(rig.told, expected);
            told += expected.size();
        }
        QVERIFY(told > 1000);
    }
};

QTEST_MAIN(TestValueRouter)
#include "tst_valuerouter.moc"
