#pragma once

#include "playback/recording/RecordingReader.h"
#include "support/Files.h"

#include <QTemporaryDir>

/// What a recording file of these lines says; the file itself is gone again.
inline SignalRecording recordingOf(const QByteArray& lines)
{
    const QTemporaryDir folder;
    RecordingReader reader(writeFile(folder.filePath(QStringLiteral("a.rec")), lines));
    if (!reader.open() || reader.readSlice(60'000))
        qFatal("cannot read the recording");
    return reader.takeRecording();
}
