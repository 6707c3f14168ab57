#pragma once

class DesignScene;

// Questions and orders to all the plots of a canvas.
namespace CanvasPlots {

/// Empties every plot; markers and settings stay.
void clear(const DesignScene& scene);
/// The same for those at the top level, before a replay sends its history; warns of items that are not ours.
void reset(const DesignScene& scene);
/// Removes the markers that stay with the data from every trend plot.
void clearDataMarkers(const DesignScene& scene);
/// How much of the past a replay has to bring back when it jumps, in seconds: the widest time window on the
/// canvas, at most 30; 10 where there is none.
double dominantTrendWindowSeconds(const DesignScene& scene);
/// Whether the trend plots take their time from a replay (on) or from the clock.
void setExternalTimeEnabled(const DesignScene& scene, bool on);

} // namespace CanvasPlots
