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
    if (ReusedValueMap* shape = find(numbers)) {
        shape->detach();
        for (std::size_t i = 0; i < numbers.size(); ++i)
            shape->set(i, numbers[i].number);
        return shape->map();
    }
    if (isWorthKeeping(numbers))
        return keep(numbers).map();
    QMap<QString, double> map;
    for (const KeyedNumber& number : numbers)
        map.insert(number.key.toString(), number.number);
    return map;
}

// Devices print their kinds of line in turn, and a shape follows the one that was seen before it.
ReusedValueMap* LineValues::find(std::span<const KeyedNumber> numbers)
{
    const auto sameKey = [](const QString& key, const KeyedNumber& number) {
        return QStringView(key) == number.key;
    };
    for (std::size_t i = 0; i < kMaxShapes; ++i) {
        const std::size_t at = (m_latest + i) % kMaxShapes;
        ReusedValueMap& shape = m_shapes[at];
        if (std::ranges::equal(shape.keys(), numbers, sameKey)) {
            m_latest = at;
            return &shape;
        }
    }
    return nullptr;
}

const ReusedValueMap& LineValues::keep(std::span<const KeyedNumber> numbers)
{
    m_latest = m_oldest;
    m_oldest = (m_oldest + 1) % kMaxShapes;
    ReusedValueMap& shape = m_shapes[m_latest];
    shape.clear();
    for (const KeyedNumber& number : numbers)
        shape.append(number.key.toString(), number.number);
    return shape;
}
