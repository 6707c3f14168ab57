#include "widgets/drawing/ValueLabels.h"

#include "widgets/drawing/NumberStyle.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int kDigits = 6;
constexpr int kSharedRows = 2; ///< digits are lower than their box: neighbours may share a little of it

} // namespace

ValueLabels::ValueLabels(const QRect& plot, int gap)
    : m_width(plot.left() - gap - 1)
{}

void ValueLabels::add(double value, int top, int height) { m_labels.append({value, boxOf(top, height)}); }

void ValueLabels::addIfFree(double value, int top, int height)
{
    const QRect written = boxOf(top, height).adjusted(0, kSharedRows, 0, -kSharedRows);
    const bool covered = std::any_of(m_labels.cbegin(), m_labels.cend(), [&written](const Label& other) {
        return other.box.top() + kSharedRows <= written.bottom() &&
               written.top() <= other.box.bottom() - kSharedRows;
    });
    if (!covered)
        add(value, top, height);
}

void ValueLabels::draw(QPainter& painter) const
{
    QList<double> values;
    for (const Label& label : m_labels)
        values.append(label.value);
    const NumberStyle style = NumberStyle::fitting(painter.font(), values, kDigits, m_width);
    painter.setPen(Qt::black);
    for (const Label& label : m_labels)
        style.draw(painter, label.box, Qt::AlignRight | Qt::AlignVCenter, label.value);
}
