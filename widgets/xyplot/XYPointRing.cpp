#include "widgets/xyplot/XYPointRing.h"

#include <algorithm>

void XYPointRing::setCapacity(int capacity)
{
    m_capacity = std::clamp(capacity, 0, kMaxCapacity);
    std::rotate(m_points.begin(), m_points.begin() + m_head, m_points.end());
    m_head = 0;
    if (size() > m_capacity)
        m_points = m_points.last(m_capacity); // a copy, so that the memory is given back
}

void XYPointRing::push(const QPointF& point)
{
    if (m_capacity <= 0)
        return;
    if (size() < m_capacity) {
        m_points.append(point);
        return;
    }
    m_points[m_head] = point;
    m_head = (m_head + 1) % m_capacity;
}

void XYPointRing::clear()
{
    m_points.clear();
    m_head = 0;
}
