#pragma once

#include <charconv>
#include <cmath>
#include <limits>

// Numbers as recordings and exports spell them. Both write millions, straight to where the text belongs.

/// How long the text of a number is at most.
constexpr int kMaxNumberTextBytes = 24;
/// How long the text of a time is at most: the digits of the largest one, a sign, a point and six decimals.
constexpr int kMaxTimeTextBytes = std::numeric_limits<double>::max_exponent10 + 16;

/// Writes the number in general notation with twelve significant digits, without a sign when it is zero or
/// NaN. Returns the end of the text, which has no terminating zero.
inline char* writeNumberText(char* to, double number)
{
    if (number == 0.0)
        number = 0.0;
    if (std::isnan(number))
        number = std::numeric_limits<double>::quiet_NaN();
    return std::to_chars(to, to + kMaxNumberTextBytes, number, std::chars_format::general, 12).ptr;
}

/// Writes the time in fixed notation with six decimals, without a sign when that reads as zero or when it is
/// NaN. Returns the end.
inline char* writeTimeText(char* to, double seconds)
{
    if (std::abs(seconds) <= 0.0000005)
        seconds = 0.0;
    if (std::isnan(seconds))
        seconds = std::numeric_limits<double>::quiet_NaN();
    return std::to_chars(to, to + kMaxTimeTextBytes, seconds, std::chars_format::fixed, 6).ptr;
}
