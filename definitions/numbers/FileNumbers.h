#pragma once

#include <QJsonValue>

#include <algorithm>
#include <cmath>
#include <limits>

// Conversions for numbers that come from a file or the wire and are about to become an int, a size, a pixel
// or a time. Every such conversion goes through here, so that NaN, infinities and 1e300 have a defined
// result.

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

/// As above, kept within what an int can hold.
inline int jsonInt(const QJsonValue& value, int fallback)
{
    using Limits = std::numeric_limits<int>;
    return jsonInt(value, Limits::min(), Limits::max(), fallback);
}

/// No time is further from 0 than this, in milliseconds (about 31,700 years): differences of times always
/// fit.
constexpr qint64 kMaxTimeMs = 1'000'000'000'000'000;

inline qint64 boundedTimeMs(qint64 ms) { return std::clamp(ms, -kMaxTimeMs, kMaxTimeMs); }

/// Milliseconds with their fraction cut off, kept within ±kMaxTimeMs; NaN is 0.
inline qint64 wholeMs(double ms)
{
    return std::isnan(ms) ? 0 : static_cast<qint64>(std::clamp(ms, -double(kMaxTimeMs), double(kMaxTimeMs)));
}
