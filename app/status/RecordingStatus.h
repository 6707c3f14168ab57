#pragma once

#include <QLabel>
#include <QTimer>

class SignalRecorder;

// The field of the status bar that says how far the recording is: lines and bytes in the file, and in red why
// it does not grow. It stays when the recording has ended, until the next one. It never opens a box.
class RecordingStatus : public QLabel
{
    Q_OBJECT

public:
    /// The recorder is not owned. Nothing is shown before its first recording.
    explicit RecordingStatus(const SignalRecorder* recorder, QWidget* parent = nullptr);

    /// Called when a recording has begun or ended; while one runs the field looks by itself.
    void refresh();

private:
    QString statusText() const;

    const SignalRecorder* m_recorder;
    QTimer m_timer;
};
