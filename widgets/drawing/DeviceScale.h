#pragma once

#include <QPainter>
#include <QTransform>

#include <algorithm>
#include <cmath>

/// Device pixels per logical unit: the ratio of the device and whatever scales the painter, a zoomed view
/// too. At least 1; 1 when the painter's scale is not finite.
inline double deviceScale(const QPainter& painter)
{
    const QTransform transform = painter.deviceTransform();
    const double scale = std::hypot(transform.m11(), transform.m12());
    return std::isfinite(scale) ? std::max(scale, 1.0) : 1.0;
}
