#pragma once

#include <QMap>
#include <QString>

#include <cstddef>
#include <vector>

// A value map whose numbers are replaced in place, which costs far less than a new map, as long as nobody
// else holds a copy of it. LineValues has one for each kind of line, RecordingValues one for a recording.
// Keys are numbered from 0 in the order in which they were appended.
class ReusedValueMap
{
public:
    /// A copy stays as it is if detach() is called before the next change.
    const QMap<QString, double>& map() const { return m_map; }
    /// As appended; a key may stand there twice.
    const std::vector<QString>& keys() const { return m_keys; }
    std::size_t size() const { return m_keys.size(); }

    /// Leaves the present map to those who hold copies of it, if any, and goes on with one of its own. To be
    /// called before the functions below whenever map() may have been copied.
    void detach();
    /// Adds a key as the next one. A key that is there already shares its number from now on.
    void append(const QString& key, double number);
    /// Replaces the number of a key, which must be there.
    void set(std::size_t key, double number)
    {
        Q_ASSERT(m_map.isDetached());
        *m_cells[key] = number;
    }
    /// Removes all keys from this one on. Each key must stand there once.
    void truncate(std::size_t size);
    void clear();

private:
    QMap<QString, double> m_map;
    std::vector<QString> m_keys;
    std::vector<double*> m_cells; // the place of each key's number in the map
};
