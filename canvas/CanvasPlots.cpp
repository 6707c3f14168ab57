#include "canvas/CanvasPlots.h"

#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"
#include "widgets/DashboardWidget.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QDebug>

#include <algorithm>

namespace {

constexpr int kDefaultWindowMs = 10'000;
constexpr int kLargestWindowMs = 30'000;

void clearData(const DesignScene& scene, bool topLevelOnly)
{
    const QList<DashboardWidget*> widgets = scene.widgets(topLevelOnly);
    for (DashboardWidget* widget : widgets)
        widget->clearData();
}

} // namespace

void CanvasPlots::clear(const DesignScene& scene) { clearData(scene, false); }

void CanvasPlots::reset(const DesignScene& scene)
{
    const QList<QGraphicsItem*> items = scene.items();
    for (const QGraphicsItem* item : items) {
        if (!item->parentItem() && !dynamic_cast<const DashboardItem*>(item))
            qWarning("No DashboardItem");
    }
    clearData(scene, true);
}

void CanvasPlots::clearDataMarkers(const DesignScene& scene)
{
    const QList<TrendPlotWidget*> plots = scene.widgetsOfType<TrendPlotWidget>(false);
    for (TrendPlotWidget* plot : plots)
        plot->clearDataMarkers();
}

double CanvasPlots::dominantTrendWindowSeconds(const DesignScene& scene)
{
    int widest = 0;
    const QList<TrendPlotWidget*> plots = scene.widgetsOfType<TrendPlotWidget>(false);
    for (const TrendPlotWidget* plot : plots)
        widest = std::max(widest, plot->timeWindowMs());
    return (widest > 0 ? std::min(widest, kLargestWindowMs) : kDefaultWindowMs) / 1000.0;
}

void CanvasPlots::setExternalTimeEnabled(const DesignScene& scene, bool on)
{
    const QList<TrendPlotWidget*> plots = scene.widgetsOfType<TrendPlotWidget>(false);
    for (TrendPlotWidget* plot : plots)
        plot->setExternalTimeEnabled(on);
}
