#pragma once

#include <QMap>
#include <QString>
#include <QStringView>

#include <array>
#include <cstddef>
#include <span>
#include <vector>

// Makes the value map of a line. A device prints the same few kinds of line again and again, so the maps of
// the last kinds are kept and only their numbers replaced, which more than halves the time that a line of ten
// values takes; a map of which somebody still holds a copy is left to him. What it keeps is bounded, whatever
// the device prints. SerialManager is its only user.
class LineValues
{
public:
    struct KeyedNumber
    {
        QStringView key;
        double number = 0.0;
    };

    /// The map of these numbers; a key that comes twice keeps its last number.
    QMap<QString, double> toMap(std::span<const KeyedNumber> numbers);

private:
    // The lines with these keys in this order; cells[i] is the place of keys[i] in the map.
    struct Shape
    {
        QMap<QString, double> map;
        std::vector<QString> keys;
        std::vector<double*> cells;
    };

    static constexpr std::size_t kMaxShapes = 16;

    Shape* find(std::span<const KeyedNumber> numbers);
    static void buildMap(Shape& shape);

    std::array<Shape, kMaxShapes> m_shapes;
    std::size_t m_latest = 0; // the shape used last; the search begins there
    std::size_t m_oldest = 0; // the shape that the next new one replaces
};
