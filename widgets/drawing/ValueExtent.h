#pragma once

#include <algorithm>
#include <limits>

/// The smallest and the largest of some values. NaN leaves no trace; infinities are only noted, so that the
/// finite limits stay useful.
struct ValueExtent
{
    double low = std::numeric_limits<double>::infinity();
    double high = -std::numeric_limits<double>::infinity();
    bool reachesPlusInfinity = false;
    bool reachesMinusInfinity = false;

    // All comparisons are false for NaN.
    void include(double value)
    {
        if (value > high) {
            if (value <= kLargest)
                high = value;
            else
                reachesPlusInfinity = true;
        }
        if (value < low) {
            if (value >= -kLargest)
                low = value;
            else
                reachesMinusInfinity = true;
        }
    }
    void include(const ValueExtent& other)
    {
        low = std::min(low, other.low);
        high = std::max(high, other.high);
        reachesPlusInfinity |= other.reachesPlusInfinity;
        reachesMinusInfinity |= other.reachesMinusInfinity;
    }
    bool hasFinite() const { return low <= high; }
    bool isEmpty() const { return !hasFinite() && !reachesPlusInfinity && !reachesMinusInfinity; }
    /// The ends with the infinities taken as such; meaningless when empty.
    double lowest() const { return reachesMinusInfinity ? -std::numeric_limits<double>::infinity() : low; }
    double highest() const { return reachesPlusInfinity ? std::numeric_limits<double>::infinity() : high; }

private:
    static constexpr double kLargest = std::numeric_limits<double>::max();
};
