#include "playback/recording/RecordingValues.h"

#include "playback/recording/SignalRecording.h"

#include <algorithm>

RecordingValues::RecordingValues(const SignalRecording* recording)
    : m_recording(recording)
{}

const QMap<QString, double>& RecordingValues::at(qsizetype frame)
{
    if (!m_recording)
        return m_values.map();
    const qsizetype wanted =
        m_recording->valuesBefore(std::clamp(frame + 1, qsizetype(0), m_recording->frameCount()));
    if (wanted == m_valueCount)
        return m_values.map();
    m_values.detach();
    restore(wanted);
    for (; m_valueCount < wanted; ++m_valueCount)
        setNumber(m_recording->valueKey(m_valueCount), m_recording->valueNumber(m_valueCount));
    return m_values.map();
}

// Goes to the last snapshot before that place if that is back or a shorter way than reading on.
void RecordingValues::restore(qsizetype valueCount)
{
    const SignalRecording::Snapshot snapshot = m_recording->snapshotBefore(valueCount);
    const auto keyCount = qsizetype(snapshot.numbers.size());
    if (valueCount > m_valueCount && snapshot.valueCount - m_valueCount <= keyCount)
        return;
    if (m_values.size() / 2 > snapshot.numbers.size())
        m_values.clear(); // to remove most of the keys one by one takes longer
    else
        m_values.truncate(snapshot.numbers.size());
    for (std::size_t key = 0; key < snapshot.numbers.size(); ++key)
        setNumber(key, snapshot.numbers[key]);
    m_valueCount = snapshot.valueCount;
}

// Keys are numbered as they appear, so that a new one is always the next.
void RecordingValues::setNumber(std::size_t key, double number)
{
    if (key < m_values.size())
        m_values.set(key, number);
    else
        m_values.append(m_recording->keys().at(qsizetype(key)), number);
}
