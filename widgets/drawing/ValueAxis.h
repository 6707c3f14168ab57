#pragma once

#include "widgets/drawing/ValueScale.h"

#include <QRect>

// Where values lie along one side of a plot, as pixels of the painter. The plot is given as the rectangle of
// its pixels; the upper limit of the scale lies one pixel beyond the last one, so that the whole side is as
// long as the plot is wide or high. Width and height must not be negative.
class ValueAxis
{
public:
    /// From the leftmost column to the right.
    static ValueAxis across(const QRect& plot, const ValueScale& scale)
    {
        return {scale, plot.left(), plot.width(), 1};
    }
    /// From the lowest row upwards.
    static ValueAxis up(const QRect& plot, const ValueScale& scale)
    {
        return {scale, plot.bottom(), plot.height(), -1};
    }

    /// Values off the scale lie at the nearer end, NaN at the lower one.
    int pixel(double value) const { return m_start + m_direction * m_scale.pixels(value, m_length); }

private:
    ValueAxis(const ValueScale& scale, int start, int length, int direction)
        : m_scale(scale)
        , m_start(start)
        , m_length(length)
        , m_direction(direction)
    {}

    ValueScale m_scale;
    int m_start;
    int m_length;
    int m_direction; ///< 1 or -1
};
