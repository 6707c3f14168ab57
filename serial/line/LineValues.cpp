#include "serial/line/LineValues.h"

#include <algorithm>

namespace {

// Lines beyond these are not kept.
constexpr std::size_t kMaxKeys = 64;
constexpr qsizetype kMaxKeyCharacters = 4096;

bool isWorthKeeping(std::span<const LineValues::KeyedNumber> numbers)
{
    if (numbers.size() > kMaxKeys)
        return false;
    qsizetype characters = 0;
    for (const LineValues::KeyedNumber& number : numbers)
        characters += number.key.size();
    return characters <= kMaxKeyCharacters;
}

} // namespace

QMap<QString, double> LineValues::toMap(std::span<const KeyedNumber> numbers)
{
    Shape* shape = find(numbers);
    if (!shape) {
        if (!isWorthKeeping(numbers)) {
            QMap<QString, double> map;
            for (const KeyedNumber& number : numbers)
                map.insert(number.key.toString(), number.number);
            return map;
        }
        m_latest = m_oldest;
        m_oldest = (m_oldest + 1) % kMaxShapes;
        shape = &m_shapes[m_latest];
        shape->keys.clear();
        for (const KeyedNumber& number : numbers)
            shape->keys.push_back(number.key.toString());
        buildMap(*shape);
    } else if (!shape->map.isDetached()) {
        buildMap(*shape);
    }
    for (std::size_t i = 0; i < numbers.size(); ++i)
        *shape->cells[i] = numbers[i].number;
    return shape->map;
}

// Devices print their kinds of line in turn, and a shape follows the one that was seen before it.
LineValues::Shape* LineValues::find(std::span<const KeyedNumber> numbers)
{
    const auto sameKey = [](const QString& key, const KeyedNumber& number) {
        return QStringView(key) == number.key;
    };
    for (std::size_t i = 0; i < kMaxShapes; ++i) {
        const std::size_t at = (m_latest + i) % kMaxShapes;
        Shape& shape = m_shapes[at];
        if (std::ranges::equal(shape.keys, numbers, sameKey)) {
            m_latest = at;
            return &shape;
        }
    }
    return nullptr;
}

void LineValues::buildMap(Shape& shape)
{
    shape.map = QMap<QString, double>();
    shape.cells.clear();
    for (const QString& key : shape.keys)
        shape.cells.push_back(&shape.map.insert(key, 0.0).value());
}
