#pragma once

#include "playback/ChosenRecording.h"
#include "playback/PositionScrubber.h"

#include <QObject>
#include <QString>

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

// The replay's controls, as the window sees them: what entering and leaving its modes means for the chosen
// recording, the slider, the engine and the trend plots' time. The window tells it mode and project folder
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
    PlaybackController(SignalPlaybackEngine* engine, const DesignScene* scene, ActiveDefinitions* definitions,
                       const Controls& controls, QWidget* dialogParent);

    /// The chosen recording; empty until one is.
    QString playbackFile() const { return m_chosenRecording.path(); }
    /// Empty without a project.
    void setProjectFolder(const QString& dir) { m_chosenRecording.setProjectFolder(dir); }
    /// What the window is doing. A released slider resumes the replay only while playing, and must not reach
    /// into a recording.
    enum class Mode { Live, Recording, Playing, Paused };
    /// Told after each change, when the old mode has been left and the new one entered.
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
    /// The loaded recording, loading the chosen one when there is none; null after a box of that title that
    /// says so, or when the load was cancelled.
    std::shared_ptr<const SignalRecording> recordingToExport(const QString& boxTitle)
    {
        return m_chosenRecording.forExport(boxTitle);
    }
    /// Makes a recording that was just written the chosen one and loads it.
    void showRecorded(const QString& path) { m_chosenRecording.showRecorded(path); }

    // What the window does when it changes its mode, each before it tells the new one.
    void enterPlay();
    void leavePlay();
    void enterIdle();
    void enterRecord() { m_scrubber.letGo(); }

Q_SIGNALS:
    void playRequested();
    /// Entering Play was cancelled (told while it is being entered: what the user asks for meanwhile counts
    /// more), or a recording must end before another one is replayed.
    void idleRequested();
    /// Other definitions may give the last values another meaning: they must be shown anew.
    void reapplyRequested();
    void statusMessage(const QString& text, int milliseconds);

private:
    void connectRecording();
    void connectScrubber();
    void enableSlider();
    void leaveReplayTime();
    void rewindIfAtEnd();

    SignalPlaybackEngine* m_engine;
    const DesignScene* m_scene;
    QWidget* m_dialogParent;
    ChosenRecording m_chosenRecording;
    PositionScrubber m_scrubber;

    Mode m_mode = Mode::Live;
    bool m_enteringPlay = false; ///< a load or a box runs the event loop meanwhile
    bool m_plotsOnReplayTime = false;
};
