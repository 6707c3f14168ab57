#pragma once

#include <cstddef>
#include <vector>

// A long array that grows without ever copying what it holds, so that no append takes longer than the others
// and nothing is held in reserve. SignalRecording keeps in it what every line adds to.
template <typename T>
class ChunkedArray
{
public:
    bool empty() const { return m_chunks.empty(); }
    std::size_t size() const { return empty() ? 0 : (m_chunks.size() - 1) * kChunk + m_chunks.back().size(); }
    /// The index is below size().
    const T& operator[](std::size_t index) const { return m_chunks[index / kChunk][index % kChunk]; }

    void append(const T& value)
    {
        if (empty() || m_chunks.back().size() == kChunk) {
            m_chunks.emplace_back();
            m_chunks.back().reserve(kChunk);
        }
        m_chunks.back().push_back(value);
    }

private:
    static constexpr std::size_t kChunk = 8192;

    std::vector<std::vector<T>> m_chunks;
};
