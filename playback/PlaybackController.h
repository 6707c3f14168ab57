#pragma once

#include <QList>
#include <QObject>
#include <QString>
#include <QTimer>

#include <memory>

class ActiveDefinitions;
class DesignScene;
class QCheckBox;
class QDoubleSpinBox;
class QLabel;
class QSlider;
class SignalPlaybackEngine;
class SignalRecording;
class QWidget;
class TrendPlotWidget;

// The replay's controls: which recording is chosen, with which definitions it is shown, and what slider,
// speed box and check box do to the engine and the trend plots. The window tells it mode and project folder
// and changes the mode when it asks. It owns none of the objects it is given.
class PlaybackController : public QObject
{
    Q_OBJECT

public:
    struct Controls
    {
        QSlider* position = nullptr; ///< range 0 to SignalPlaybackEngine::kPositionSteps
        QLabel* file = nullptr;
        QLabel* time = nullptr;
        QDoubleSpinBox* speed = nullptr;
        QCheckBox* useRecordingDefinitions = nullptr;
    };

    /// dialogParent is the window above which boxes and dialogs appear.
    PlaybackController(SignalPlaybackEngine* engine, DesignScene* scene, ActiveDefinitions* definitions,
                       const Controls& controls, QWidget* dialogParent);

    /// The chosen recording; empty until one is.
    QString playbackFile() const { return m_file; }
    /// Empty without a project.
    void setProjectFolder(const QString& dir) { m_projectFolder = dir; }
    /// What the window is doing, told after each change: a released slider resumes the replay only while
    /// playing, and must not reach into a recording.
    enum class Mode { Live, Recording, Playing, Paused };
    void setMode(Mode mode);
    /// Told of every live line before its values are shown. The first one after a replay or a jump brings the
    /// plots back to the clock, empty.
    void onLiveLine()
    {
        if (m_plotsOnReplayTime)
            leaveReplayTime();
    }

    /// Lets the user choose a recording and loads it.
    void selectPlaybackFile();
    /// Chooses that recording and replays it; asks for the mode by playRequested(), which must be answered
    /// before it returns.
    void startPlayback(const QString& path);
    /// Whether the engine holds a recording, loading the chosen one when it does not.
    bool ensurePlaybackLoaded();
    /// The loaded recording, loading the chosen one when there is none; null after a box of that title that
    /// says so, or when the loading was cancelled.
    std::shared_ptr<const SignalRecording> recordingToExport(const QString& boxTitle);
    /// Makes a recording that was just written the chosen one and loads it.
    void showRecorded(const QString& path);
    void prepareSignalParserForPlaybackFile(const QString& path);
    void selectActiveSignalParserFor(const QString& path);
    /// Shows the name of the chosen recording.
    void updatePlaybackFileDisplay();

    // What the window does when it changes its mode.
    void enterPlay();
    void leavePlay();
    void enterIdle();
    void enterRecord() { releaseSlider(); }

Q_SIGNALS:
    void playRequested();
    void idleRequested();
    /// Other definitions may give the last values another meaning: they must be shown anew.
    void reapplyRequested();
    void statusMessage(const QString& text, int milliseconds);

private:
    enum class Loading { Loaded, Failed, Cancelled };

    void connectControls();
    void connectSlider();

    Loading load();
    void releaseSlider();
    void enableSlider();
    void leaveReplayTime();
    /// Loads the file that the user chose just now; a box tells when it cannot be read.
    Loading loadChosen();
    QString pickFile() const;
    void setFile(const QString& path);
    void handOverStateGroups();
    void rewindIfAtEnd();

    double timeAt(int step) const;
    void showTime(int step);
    void seekTo(int step);
    void beginScrub();
    void endScrub();
    void scrub();
    void onSliderAction();
    QList<TrendPlotWidget*> trendPlots() const;

    SignalPlaybackEngine* m_engine;
    DesignScene* m_scene;
    ActiveDefinitions* m_definitions;
    const Controls m_controls;
    QWidget* m_dialogParent;

    QString m_projectFolder;
    QString m_file;
    QString m_loadingFile;  ///< meaningful while the engine loads
    QString m_positionFile; ///< the recording that the engine's position is one of
    Mode m_mode = Mode::Live;
    bool m_plotsOnReplayTime = false;

    bool m_scrubbing = false;
    int m_scrubStep = -1; ///< where the slider was last while scrubbing; −1 for nowhere yet
    QTimer m_scrubTimer;
};
