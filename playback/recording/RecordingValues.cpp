#include "playback/recording/RecordingValues.h"

#include "playback/recording/SignalRecording.h"

#include <algorithm>
#include <utility>

RecordingValues::RecordingValues(const SignalRecording* recording)
    : m_recording(recording)
{}

const QMap<QString, double>& RecordingValues::at(qsizetype frame)
{
    if (!m_recording)
        return m_values;
    const qsizetype wanted =
        m_recording->valuesBefore(std::clamp(frame + 1, qsizetype(0), m_recording->frameCount()));
    if (wanted == m_valueCount)
        return m_values;
    if (!m_values.isDetached())
        keepListenersCopy();
    restore(wanted);
    for (; m_valueCount < wanted; ++m_valueCount)
        setNumber(m_recording->valueKey(m_valueCount), m_recording->valueNumber(m_valueCount));
    return m_values;
}

// Goes to the last snapshot before that place if that is back or a shorter way than reading on.
void RecordingValues::restore(qsizetype valueCount)
{
    const SignalRecording::Snapshot snapshot = m_recording->snapshotBefore(valueCount);
    const auto keyCount = qsizetype(snapshot.numbers.size());
    if (valueCount > m_valueCount && snapshot.valueCount - m_valueCount <= keyCount)
        return;
    if (m_cells.size() / 2 > snapshot.numbers.size()) {
        m_values.clear();
        m_cells.clear();
    }
    for (; m_cells.size() > snapshot.numbers.size(); m_cells.pop_back())
        m_values.remove(m_recording->keys().at(qsizetype(m_cells.size()) - 1));
    for (std::size_t key = 0; key < snapshot.numbers.size(); ++key)
        setNumber(key, snapshot.numbers[key]);
    m_valueCount = snapshot.valueCount;
}

// Keys are numbered as they appear, so that a new one is always the next.
void RecordingValues::setNumber(std::size_t key, double number)
{
    if (key < m_cells.size())
        *m_cells[key] = number;
    else
        m_cells.push_back(&m_values.insert(m_recording->keys().at(qsizetype(key)), number).value());
}

// The old map is his from now on.
void RecordingValues::keepListenersCopy()
{
    const QMap<QString, double> old = std::exchange(m_values, {});
    for (std::size_t key = 0; key < m_cells.size(); ++key)
        m_cells[key] = &m_values.insert(m_recording->keys().at(qsizetype(key)), *m_cells[key]).value();
}
