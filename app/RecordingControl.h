#pragma once

#include <QObject>
#include <QString>

class DesignScene;
class QWidget;
class SerialManager;
class SignalRecorder;

// Begins and ends recordings for the window: asks whether they can begin, and says in a box why not. The
// recorder does the writing.
class RecordingControl : public QObject
{
    Q_OBJECT

public:
    /// Nothing is owned; dialogParent is the window above which boxes appear.
    RecordingControl(SignalRecorder* recorder, const SerialManager* serial, const DesignScene* scene,
                     QWidget* dialogParent);

    /// Begins a recording in the project's folder. False after a box that says why.
    [[nodiscard]] bool start(const QString& projectDir);
    /// Ends the recording and returns its path; empty when none was running.
    QString stop();

Q_SIGNALS:
    /// A recording has begun or ended.
    void changed();
    /// milliseconds of 0 keep the message.
    void statusMessage(const QString& text, int milliseconds);

private:
    SignalRecorder* m_recorder;
    const SerialManager* m_serial;
    const DesignScene* m_scene;
    QWidget* m_dialogParent;
};
