#pragma once

#include <QList>
#include <QPointF>

// The newest points of an XY plot, at most as many as its capacity: a full ring overwrites its oldest point.
// It takes memory only as points come. It knows nothing of signals, times or pixels.
class XYPointRing
{
public:
    static constexpr int kMaxCapacity = 200'000;
    static constexpr int kInitialCapacity = 2000;

    int capacity() const { return m_capacity; }
    /// Kept within 0 … kMaxCapacity. The newest points that still fit stay, stored from the oldest on.
    void setCapacity(int capacity);
    /// Drops the oldest point when the ring is full; nothing with a capacity of 0.
    void push(const QPointF& point);
    void clear();

    int size() const { return int(m_points.size()); }
    /// By age, 0 is the oldest; i must be below size().
    const QPointF& at(int i) const
    {
        const int index = m_head + i;
        return m_points[index < size() ? index : index - size()];
    }
    /// The points as they are stored.
    const QList<QPointF>& points() const { return m_points; }
    /// The place of the oldest point once the ring is full, 0 before.
    int head() const { return m_head; }

private:
    QList<QPointF> m_points;
    int m_head = 0;
    int m_capacity = kInitialCapacity;
};
