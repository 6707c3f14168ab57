#include "app/ValueRouter.h"

#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "definitions/ActiveDefinitions.h"
#include "definitions/numbers/FileNumbers.h"
#include "definitions/numbers/SignalName.h"
#include "widgets/DashboardWidget.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QDateTime>

namespace {

QList<DashboardWidget*> thoseThatShow(DashboardWidget::Event event, QList<DashboardWidget*> widgets)
{
    widgets.removeIf(
        [event](const DashboardWidget* widget) { return !widget->shownEvents().testFlag(event); });
    return widgets;
}

double wallClockSeconds() { return double(QDateTime::currentMSecsSinceEpoch()) / 1000.0; }

} // namespace

ValueRouter::ValueRouter(DesignScene* scene, const ActiveDefinitions* definitions, QObject* parent)
    : QObject(parent)
    , m_scene(scene)
    , m_definitions(definitions)
{
    connect(definitions, &ActiveDefinitions::changed, this,
            [this] { m_itemsRevision = 0; }); // other mappings
}

void ValueRouter::routeLiveValues(const QMap<QString, double>& values)
{
    if (m_live)
        routeValues(wallClockSeconds(), values);
}

void ValueRouter::routeReplayedValues(double tSec, const QMap<QString, double>& values)
{
    routeValues(tSec, values);
}

void ValueRouter::routeReplayedTrends(double tSec, const QMap<QString, double>& values)
{
    ensureIndex();
    const qint64 now = wholeMs(tSec * 1000.0);
    const QList<TrendFeed> feeds = m_trendFeeds;
    for (const TrendFeed& feed : feeds) {
        feed.plot->setExternalTimeEnabled(true);
        feed.plot->setExternalNowMs(now);
        for (auto it = feed.routes.cbegin(); it != feed.routes.cend(); ++it) {
            const auto value = values.constFind(it.key());
            if (value != values.cend())
                feed.plot->setValueForSignalAt(it.key(), physical(m_routes[it.value()], *value), tSec);
        }
        feed.plot->trimToWindowEndingAt(now);
    }
}

void ValueRouter::routeValues(double tSec, const QMap<QString, double>& values)
{
    for (auto it = values.cbegin(); it != values.cend(); ++it) {
        ensureIndex(); // a widget may have changed the canvas
        Signal& signal = m_signals[it.key()];
        signal.lastRaw = it.value();
        signal.cached = true;
        deliver(signal, it.key(), it.value(), tSec);
    }
}

void ValueRouter::updateSignalValue(const QString& name, double raw)
{
    if (m_live)
        updateSignalValueAt(name, raw, wallClockSeconds());
}

void ValueRouter::updateSignalValueAt(const QString& name, double raw, double tSec)
{
    ensureIndex();
    const auto signal = m_signals.constFind(name);
    if (signal != m_signals.cend())
        deliver(*signal, name, raw, tSec);
}

void ValueRouter::reapplyMappingsToCurrentValues()
{
    const QMap<QString, double> values = lastValues();
    for (auto it = values.cbegin(); it != values.cend(); ++it)
        updateSignalValue(it.key(), it.value());
}

QMap<QString, double> ValueRouter::lastValues() const
{
    QMap<QString, double> values;
    for (auto it = m_signals.cbegin(); it != m_signals.cend(); ++it) {
        if (it->cached)
            values.insert(it.key(), it->lastRaw);
    }
    return values;
}

void ValueRouter::routeState(const QString& group, const QString& stateId)
{
    updateStateValue(group, stateId, QString());
}

void ValueRouter::updateStateValue(const QString& group, const QString& stateId, const QString& label)
{
    const DashboardSignalParser* definitions = m_definitions->active();
    const QString shown = label.isEmpty() && definitions ? definitions->stateLabel(group, stateId) : label;
    ensureIndex();
    const QList<DashboardWidget*> widgets = m_stateWidgets;
    for (DashboardWidget* widget : widgets)
        widget->showState(group, stateId, shown);
}

void ValueRouter::routeError(double tSec, const QString& id)
{
    const DashboardSignalParser* definitions = m_definitions->active();
    const QString text = definitions ? definitions->errorText(id) : id;
    ensureIndex();
    const QList<DashboardWidget*> widgets = m_errorWidgets;
    for (DashboardWidget* widget : widgets)
        widget->appendError(tSec, id, text);
}

void ValueRouter::routeMessage(double tSec, const QString& text)
{
    ensureIndex();
    const QList<DashboardWidget*> widgets = m_messageWidgets;
    for (DashboardWidget* widget : widgets)
        widget->appendMessage(tSec, text);
}

void ValueRouter::clearErrorConsoles()
{
    ensureIndex();
    const QList<DashboardWidget*> widgets = m_errorWidgets;
    for (DashboardWidget* widget : widgets)
        widget->clearErrors();
}

void ValueRouter::clearMessageConsoles()
{
    ensureIndex();
    const QList<DashboardWidget*> widgets = m_messageWidgets;
    for (DashboardWidget* widget : widgets)
        widget->clearMessages();
}

void ValueRouter::deliver(const Signal& signal, const QString& name, double raw, double tSec) const
{
    if (signal.route < 0)
        return;
    const Route& route = m_routes[signal.route];
    const double value = physical(route, raw);
    // A copy (one counter): a widget may ask for another value, and that rebuild the index, from in here.
    const QList<DashboardWidget*> widgets = route.widgets;
    for (DashboardWidget* widget : widgets)
        widget->setValueForSignalAt(name, value, tSec);
}

double ValueRouter::physical(const Route& route, double raw)
{
    return route.mapping ? route.mapping->physical(raw) : raw;
}

void ValueRouter::ensureIndex()
{
    if (m_itemsRevision != m_scene->itemsRevision() ||
        m_assignmentsRevision != m_scene->assignmentsRevision())
        rebuildIndex();
}

void ValueRouter::rebuildIndex()
{
    m_itemsRevision = m_scene->itemsRevision();
    m_assignmentsRevision = m_scene->assignmentsRevision();
    m_routes.clear();
    for (Signal& signal : m_signals)
        signal.route = -1;
    const QList<DashboardWidget*> all = m_scene->widgets(false);
    const QList<DashboardWidget*> topLevel = m_scene->widgets(true);
    m_stateWidgets = thoseThatShow(DashboardWidget::StateEvent, topLevel);
    m_errorWidgets = thoseThatShow(DashboardWidget::ErrorEvent, all);
    m_messageWidgets = thoseThatShow(DashboardWidget::MessageEvent, all);
    for (DashboardWidget* widget : topLevel) {
        const QList<QString> entries = widget->assignedSignalList();
        for (const QString& entry : entries) {
            QList<DashboardWidget*>& receivers = routeTo(canonical(entry)).widgets;
            if (receivers.isEmpty() || receivers.last() != widget)
                receivers.append(widget);
        }
    }
    m_trendFeeds.clear();
    const QList<TrendPlotWidget*> plots = m_scene->widgetsOfType<TrendPlotWidget>(true);
    for (TrendPlotWidget* plot : plots) {
        TrendFeed feed{plot, {}};
        const QList<QString> entries = plot->assignedSignalList();
        for (const QString& entry : entries)
            feed.routes.insert(canonical(entry), m_signals[canonical(entry)].route);
        m_trendFeeds.append(feed);
    }
}

ValueRouter::Route& ValueRouter::routeTo(const QString& name)
{
    Signal& signal = m_signals[name];
    if (signal.route < 0) {
        const DashboardSignalParser* definitions = m_definitions->active();
        signal.route = int(m_routes.size());
        m_routes.append({{}, definitions ? definitions->mappingOfSignal(name) : std::nullopt});
    }
    return m_routes[signal.route];
}
