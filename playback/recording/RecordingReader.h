#pragma once

#include "playback/recording/SignalRecording.h"
#include "serial/line/LineBuffer.h"

#include <QByteArrayView>
#include <QFile>
#include <QString>

// Reads a recording file in slices, so that a long one does not hold up the window. It takes lines apart as
// the live input does, knows what only recordings have (comments, RAW), and drops what makes no sense.
class RecordingReader
{
public:
    /// Reads into that recording, which is empty.
    explicit RecordingReader(const QString& path, SignalRecording recording = {});

    /// False when there is no such regular file or it may not be read.
    [[nodiscard]] bool open();
    /// Reads on for about that long, false when the end was reached. A very long line is read in pieces, but
    /// taken apart at once.
    [[nodiscard]] bool readSlice(int milliseconds);
    /// Whether the file could not be read to its end.
    bool hasFailed() const { return m_failed; }
    /// How much of the file has been read, 0 to 1.
    double progress() const;
    /// What was read so far; the reader is empty then.
    SignalRecording takeRecording();

private:
    bool step();
    bool readPiece();
    void addLine(QByteArrayView bytes);

    QFile m_file;
    qint64 m_fileSize = 0;
    bool m_failed = false;
    LineBuffer m_lines;
    SignalRecording m_recording;
};
