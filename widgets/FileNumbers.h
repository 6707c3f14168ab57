#pragma once

#include <QJsonValue>

#include <algorithm>
#include <cmath>

// Conversions for numbers that come from a file or the wire and are about to become an int, a size or a
// pixel. Every such conversion goes through here, so that NaN, infinities and 1e300 have a defined result.

/// The value with its fraction cut off, kept within [low, high]; NaN becomes ifNaN.
inline int boundedInt(double value, int low, int high, int ifNaN)
{
    if (std::isnan(value))
        return ifNaN;
    return static_cast<int>(std::clamp(value, double(low), double(high)));
}

/// A JSON number with its fraction cut off (20.9 is 20, −5.5 is −5), kept within [low, high]; fallback for
/// anything that is not a number.
inline int jsonInt(const QJsonValue& value, int low, int high, int fallback)
{
    return value.isDouble() ? boundedInt(value.toDouble(), low, high, fallback) : fallback;
}
