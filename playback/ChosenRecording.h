#pragma once

#include <QObject>
#include <QString>

#include <memory>

class ActiveDefinitions;
class QCheckBox;
class QLabel;
class QWidget;
class SignalPlaybackEngine;
class SignalRecording;

// The recording that is chosen for the replay: its file with dialog, label and tool tip, its way into the
// engine, and the definitions it is shown with. PlaybackController owns it and says when to load. It knows
// neither the slider nor what the window is doing.
class ChosenRecording : public QObject
{
    Q_OBJECT

public:
    enum class Loading { Loaded, Failed, Cancelled };

    /// dialogParent is the window above which boxes and dialogs appear; nothing is owned.
    ChosenRecording(SignalPlaybackEngine* engine, ActiveDefinitions* definitions, QLabel* fileLabel,
                    const QCheckBox* useItsDefinitions, QWidget* dialogParent);

    /// Empty until a recording is chosen.
    QString path() const { return m_path; }
    /// The folder whose recordings the dialog offers. Empty without a project.
    void setProjectFolder(const QString& dir) { m_projectFolder = dir; }
    /// Shows the file's name.
    void updatePlaybackFileDisplay();

    /// Lets the user choose a recording and loads it. False when that cannot be: after a box, when cancelled,
    /// or while another one is loading. True also when the user chooses none.
    bool selectPlaybackFile();
    /// Chooses that recording, with its definitions, and loads it. False after a box or when cancelled.
    [[nodiscard]] bool open(const QString& path);
    /// Chooses its definitions anew and loads it if the engine does not hold it as the file is now. Failed
    /// comes after a box.
    [[nodiscard]] Loading reload();
    /// Makes a recording that was just written the chosen one and loads it, without a box.
    void showRecorded(const QString& path);
    /// Whether the engine holds a recording, loading the chosen one when it does not, without a box.
    bool ensurePlaybackLoaded();
    /// The loaded recording, loading the chosen one when there is none; null after a box of that title that
    /// says so, or when the load was cancelled.
    std::shared_ptr<const SignalRecording> forExport(const QString& boxTitle);

    /// Makes the definitions of that recording the active ones if they are wanted and can be read, else the
    /// project's.
    void prepareSignalParserForPlaybackFile(const QString& path);
    /// The same; the engine and all that is shown follow.
    void selectActiveSignalParserFor(const QString& path);

Q_SIGNALS:
    /// A load begins, during which the window is alive.
    void aboutToLoad();
    /// A load has ended, well or not: the engine holds another recording, or none.
    void loadEnded();
    /// Other definitions may give the last values another meaning: they must be shown anew.
    void reapplyRequested();
    void statusMessage(const QString& text, int milliseconds);

private:
    QString askForFile() const;
    void choose(const QString& path);
    Loading load();
    Loading loadOrWarn();
    bool loadFile(const QString& path);
    void handOverStateGroups();

    SignalPlaybackEngine* m_engine;
    ActiveDefinitions* m_definitions;
    QLabel* m_fileLabel;
    const QCheckBox* m_useItsDefinitions;
    QWidget* m_dialogParent;

    QString m_projectFolder;
    QString m_path;
    QString m_loadingPath;  ///< meaningful while the engine loads
    QString m_positionPath; ///< the recording that the engine's position is one of
};
