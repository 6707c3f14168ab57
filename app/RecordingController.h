#pragma once

#include <QObject>
#include <QString>

class DesignScene;
class QWidget;
class SerialManager;
class SignalRecorder;

// Begins and ends recordings for the window: asks whether they can begin, and says in a box why not. The
// recorder does the writing.
class RecordingController : public QObject
{
    Q_OBJECT

public:
    /// Nothing is owned; dialogParent is the window above which boxes appear.
    RecordingController(SignalRecorder* recorder, const SerialManager* serial, const DesignScene* scene,
                        QWidget* dialogParent);

    /// Where recordings go from now on; empty without a project.
    void setProjectFolder(const QString& dir) { m_projectFolder = dir; }
    bool isRecording() const;
    /// Begins a recording in the project's folder. False after a box that says why.
    [[nodiscard]] bool start();
    /// Ends the recording, if one is running. When it is to be replayed, recorded() tells of it.
    void stop(bool toReplay);

Q_SIGNALS:
    /// This file was just written and shall be the chosen one.
    void recorded(const QString& path);
    /// A recording has begun or ended.
    void changed();
    /// milliseconds of 0 keep the message.
    void statusMessage(const QString& text, int milliseconds);

private:
    SignalRecorder* m_recorder;
    const SerialManager* m_serial;
    const DesignScene* m_scene;
    QWidget* m_dialogParent;
    QString m_projectFolder;
};
