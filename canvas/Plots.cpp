#include "canvas/Plots.h"

#include "canvas/DesignScene.h"
#include "widgets/TrendPlotWidget.h"
#include "widgets/XYPlotWidget.h"

#include <algorithm>

namespace {

constexpr int kDefaultWindowMs = 10'000;
constexpr int kLargestWindowMs = 30'000;

} // namespace

void clearPlots(const DesignScene& scene)
{
    const QList<TrendPlotWidget*> trendPlots = scene.widgetsOfType<TrendPlotWidget>(false);
    for (TrendPlotWidget* plot : trendPlots)
        plot->clearData();
    const QList<XYPlotWidget*> xyPlots = scene.widgetsOfType<XYPlotWidget>(false);
    for (XYPlotWidget* plot : xyPlots)
        plot->clearData();
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
