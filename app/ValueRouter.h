#pragma once

#include "definitions/DashboardSignalParser.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QObject>
#include <QString>

#include <optional>

class ActiveDefinitions;
class DashboardWidget;
class DesignScene;
class TrendPlotWidget;

// Brings every value, state, error and message, live or replayed, to the widgets that show it, in physical
// units. It finds the widgets by an index from signal name to widgets that it rebuilds after the canvas or an
// assignment changed: what is delivered, and in which order, is what a walk over the scene for every value
// would deliver. It owns no widget and paints nothing.
class ValueRouter : public QObject
{
    Q_OBJECT

public:
    /// Neither is owned; both must outlive the router.
    ValueRouter(DesignScene* scene, const ActiveDefinitions* definitions, QObject* parent = nullptr);

    /// Whether live values reach the widgets and the cache; they do not while a replay is shown.
    bool isLive() const { return m_live; }
    void setLive(bool live) { m_live = live; }

    /// The values of one live line. Ignored unless live.
    void routeLiveValues(const QMap<QString, double>& values);
    /// One live value, stamped with the wall clock and not cached. Ignored unless live.
    void updateSignalValue(const QString& name, double raw);
    /// One value at a given time in seconds, live or not.
    void updateSignalValueAt(const QString& name, double raw, double tSec);
    /// Sends every cached value again, in name order; called after the definitions changed.
    void reapplyMappingsToCurrentValues();
    /// The values of a replayed frame to every widget that shows them, and to the cache. Live or not.
    void routeReplayedValues(double tSec, const QMap<QString, double>& values);
    /// The values of a replayed frame to the trend plots alone, which follow the replay's time from then on.
    void routeReplayedTrends(double tSec, const QMap<QString, double>& values);
    /// The last raw value of every signal that was heard.
    QMap<QString, double> lastValues() const;

    /// A state change, live or replayed: its label is looked up.
    void routeState(const QString& group, const QString& stateId);
    /// Shows a state on every widget that shows its group. An empty label is looked up.
    void updateStateValue(const QString& group, const QString& stateId, const QString& label);
    void routeError(double tSec, const QString& id);
    void routeMessage(double tSec, const QString& text);
    void clearErrorConsoles();
    void clearMessageConsoles();

private:
    /// What is kept of every name that was heard or assigned: little, as a device may print any number of
    /// names.
    struct Signal
    {
        double lastRaw = 0.0;
        bool cached = false; ///< lastRaw was heard
        int route = -1;      ///< index into m_routes; −1 when no widget shows the signal
    };
    /// How one shown signal reaches its widgets.
    struct Route
    {
        QList<DashboardWidget*> widgets; ///< topmost first, each once
        std::optional<DashboardMapping> mapping;
    };

    /// One trend plot and the signals that it shows, in name order.
    struct TrendFeed
    {
        TrendPlotWidget* plot = nullptr;
        QMap<QString, int> routes; ///< indices into m_routes
    };

    void routeValues(double tSec, const QMap<QString, double>& values);
    void deliver(const Signal& signal, const QString& name, double raw, double tSec) const;
    void ensureIndex();
    void rebuildIndex();
    Route& routeTo(const QString& name);
    static double physical(const Route& route, double raw);

    DesignScene* m_scene;
    const ActiveDefinitions* m_definitions;
    bool m_live = true;
    quint64 m_itemsRevision =
        0; ///< the scene's counters at the last rebuild; 0, which no scene has, asks for one
    quint64 m_assignmentsRevision = 0;
    QHash<QString, Signal> m_signals;
    QList<Route> m_routes;
    QList<TrendFeed> m_trendFeeds;
    QList<DashboardWidget*> m_stateWidgets; ///< at the top level
    QList<DashboardWidget*> m_errorWidgets; ///< anywhere, as the next
    QList<DashboardWidget*> m_messageWidgets;
};
