#pragma once

#include "serial/line/ReusedValueMap.h"

#include <QMap>
#include <QString>
#include <QStringView>

#include <array>
#include <cstddef>
#include <span>

// Makes the value map of a line. A device prints the same few kinds of line again and again, so the maps of
// the last kinds are kept and only their numbers replaced. What it keeps is bounded, whatever the device
// prints. SerialManager is its only user.
class LineValues
{
public:
    struct KeyedNumber
    {
        QStringView key;
        double number = 0.0;
    };

    /// The map of these numbers; a key that comes twice keeps its last number. A copy of it stays as it is.
    QMap<QString, double> toMap(std::span<const KeyedNumber> numbers);

private:
    static constexpr std::size_t kMaxShapes = 16;

    ReusedValueMap* find(std::span<const KeyedNumber> numbers);
    const ReusedValueMap& keep(std::span<const KeyedNumber> numbers);

    // Each has the keys of one kind of line, in the order of the line.
    std::array<ReusedValueMap, kMaxShapes> m_shapes;
    std::size_t m_latest = 0; // the shape used last; the search begins there
    std::size_t m_oldest = 0; // the shape that the next new one replaces
};
