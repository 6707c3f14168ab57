#include "serial/line/ReusedValueMap.h"

void ReusedValueMap::detach()
{
    if (m_map.isDetached())
        return;
    QMap<QString, double> old; // keeps the old cells alive
    old.swap(m_map);
    for (std::size_t key = 0; key < m_keys.size(); ++key)
        m_cells[key] = &m_map.insert(m_keys[key], *m_cells[key]).value();
}

void ReusedValueMap::append(const QString& key, double number)
{
    Q_ASSERT(m_map.isEmpty() || m_map.isDetached());
    m_cells.push_back(&m_map.insert(key, number).value());
    m_keys.push_back(key);
}

void ReusedValueMap::truncate(std::size_t size)
{
    Q_ASSERT(m_map.isEmpty() || m_map.isDetached());
    for (; m_keys.size() > size; m_keys.pop_back(), m_cells.pop_back())
        m_map.remove(m_keys.back());
}

void ReusedValueMap::clear()
{
    m_map.clear();
    m_keys.clear();
    m_cells.clear();
}
