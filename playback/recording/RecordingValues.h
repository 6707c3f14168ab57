#pragma once

#include "serial/line/ReusedValueMap.h"

#include <QMap>
#include <QString>

#include <cstddef>

class SignalRecording;

// The values as last known at any frame of a recording, as one complete map. Walking forward costs what the
// frames in between say; a jump costs a snapshot and a bounded walk. The replay and the export hold one each.
class RecordingValues
{
public:
    /// The recording, not owned, must outlive this and not change. Null counts as an empty one.
    explicit RecordingValues(const SignalRecording* recording = nullptr);

    /// The last number of every key that the frames up to and including this one name. Valid until the next
    /// call; a copy that somebody keeps stays as it is.
    const QMap<QString, double>& at(qsizetype frame);

private:
    void restore(qsizetype valueCount);
    void setNumber(std::size_t key, double number);

    const SignalRecording* m_recording;
    ReusedValueMap m_values;    // its keys are numbered as the recording's
    qsizetype m_valueCount = 0; // how many values of the recording are in the map
};
