#include "canvas/Plots.h"

#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "widgets/trend/TrendPlotWidget.h"
#include "widgets/xyplot/XYPlotWidget.h"

#include <QDebug>

#include <algorithm>

namespace {

constexpr int kDefaultWindowMs = 10'000;
constexpr int kLargestWindowMs = 30'000;

void clear(const DesignScene& scene, bool topLevelOnly)
{
    const QList<TrendPlotWidget*> trendPlots = scene.widgetsOfType<TrendPlotWidget>(topLevelOnly);
    for (TrendPlotWidget* plot : trendPlots)
        plot->clearData();
    const QList<XYPlotWidget*> xyPlots = scene.widgetsOfType<XYPlotWidget>(topLevelOnly);
    for (XYPlotWidget* plot : xyPlots)
        plot->clearData();
}

} // namespace

void clearPlots(const DesignScene& scene) { clear(scene, false); }

void resetPlots(const DesignScene& scene)
{
    const QList<QGraphicsItem*> items = scene.items();
    for (const QGraphicsItem* item : items) {
        if (!item->parentItem() && !dynamic_cast<const DashboardItem*>(item))
            qWarning("No DashboardItem");
    }
    clear(scene, true);
}

void clearDataMarkers(const DesignScene& scene)
{
    const QList<TrendPlotWidget*> plots = scene.widgetsOfType<TrendPlotWidget>(false);
    for (TrendPlotWidget* plot : plots)
        plot->clearDataMarkers();
}

double dominantTrendWindowSeconds(const DesignScene& scene)
{
    int widest = 0;
    const QList<TrendPlotWidget*> plots = scene.widgetsOfType<TrendPlotWidget>(false);
    for (const TrendPlotWidget* plot : plots)
        widest = std::max(widest, plot->timeWindowMs());
    return (widest > 0 ? std::min(widest, kLargestWindowMs) : kDefaultWindowMs) / 1000.0;
}

void setExternalTimeEnabled(const DesignScene& scene, bool on)
{
    const QList<TrendPlotWidget*> plots = scene.widgetsOfType<TrendPlotWidget>(false);
    for (TrendPlotWidget* plot : plots)
        plot->setExternalTimeEnabled(on);
}
