#pragma once

#include <algorithm>
#include <cmath>

// Where a value lies between two limits, safe for whatever limits a layout or a device gives: the distance of
// the limits is always finite, and no value lies outside of them.
struct ValueScale
{
    /// Beyond this a range is cut: the distance of two limits, with room around them, must not overflow.
    static constexpr double kLimit = 4e307;

    double low;
    double high;

    /// NaN counts as 0.
    ValueScale(double low, double high)
        : low(bounded(low))
        , high(bounded(high))
    {}

    /// As the constructor, with the upper limit raised by 1 (by more where 1 is lost in rounding) when it is
    /// not above the lower one.
    static ValueScale raised(double low, double high)
    {
        ValueScale scale(low, high);
        if (!(scale.high > scale.low))
            scale.high = scale.low + std::max(1.0, std::abs(scale.low) * 1e-9);
        return scale;
    }

    /// False where every value would lie at one place, or the limits are the wrong way round.
    bool isUsable() const { return high > low; }
    /// 0 at the lower and 1 at the upper limit, values outside at the nearer one; NaN is 0. 0 when the scale
    /// is not usable.
    double level(double value) const
    {
        return isUsable() && !std::isnan(value) ? (std::clamp(value, low, high) - low) / (high - low) : 0.0;
    }
    /// level() on an axis of so many pixels, with its fraction cut off; length must not be negative.
    int pixels(double value, int length) const { return static_cast<int>(level(value) * length); }

private:
    static double bounded(double value)
    {
        return std::isnan(value) ? 0.0 : std::clamp(value, -kLimit, kLimit);
    }
};
