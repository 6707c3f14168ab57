#include "playback/PlaybackController.h"

#include "canvas/CanvasPlots.h"
#include "canvas/DesignScene.h"
#include "playback/recording/SignalPlaybackEngine.h"

#include <QDebug>
#include <QDoubleSpinBox>
#include <QMessageBox>
#include <QScopedValueRollback>

PlaybackController::PlaybackController(SignalPlaybackEngine* engine, const DesignScene* scene,
                                       ActiveDefinitions* definitions, const Controls& controls,
                                       QWidget* dialogParent)
    : QObject(dialogParent)
    , m_engine(engine)
    , m_scene(scene)
    , m_dialogParent(dialogParent)
    , m_chosenRecording(engine, definitions, controls.file, controls.useRecordingDefinitions, dialogParent)
    , m_scrubber(engine, scene, controls.position, controls.time)
{
    connectRecording();
    connectScrubber();
    enableSlider();
    connect(controls.speed, &QDoubleSpinBox::valueChanged, engine, &SignalPlaybackEngine::setPlaybackRate);
    engine->setPlaybackRate(controls.speed->value());
}

void PlaybackController::connectRecording()
{
    connect(&m_chosenRecording, &ChosenRecording::aboutToLoad, &m_scrubber, &PositionScrubber::letGo);
    connect(&m_chosenRecording, &ChosenRecording::loadEnded, this, &PlaybackController::enableSlider);
    connect(&m_chosenRecording, &ChosenRecording::loadEnded, &m_scrubber, &PositionScrubber::refreshTime);
    connect(&m_chosenRecording, &ChosenRecording::reapplyRequested, this,
            &PlaybackController::reapplyRequested);
    connect(&m_chosenRecording, &ChosenRecording::statusMessage, this, &PlaybackController::statusMessage);
}

void PlaybackController::connectScrubber()
{
    connect(&m_scrubber, &PositionScrubber::started, this, [this] { m_plotsOnReplayTime = true; });
    connect(&m_scrubber, &PositionScrubber::released, this, [this] {
        if (m_mode == Mode::Playing)
            m_engine->startPlayback();
    });
}

void PlaybackController::setMode(Mode mode)
{
    m_mode = mode;
    enableSlider();
}

// Not while a recording runs: a jump clears the consoles and takes the plots off the live values.
void PlaybackController::enableSlider()
{
    m_scrubber.setEnabled(m_engine->hasFrames() && m_mode != Mode::Recording);
}

// --- The recording -----------------------------------------------------------------------------------------

void PlaybackController::selectPlaybackFile()
{
    if (m_chosenRecording.selectPlaybackFile())
        CanvasPlots::clearDataMarkers(*m_scene);
}

void PlaybackController::startPlayback(const QString& path)
{
    if (m_engine->isLoading())
        return;
    if (m_mode == Mode::Recording)
        Q_EMIT idleRequested(); // a recording that ends becomes the chosen one: let that come first
    if (!m_chosenRecording.open(path))
        return;
    Q_EMIT playRequested();
    if (m_mode != Mode::Playing)
        return; // entering Play was cancelled, or comes after another change
    rewindIfAtEnd();
    if (!m_engine->isPlaying()) // entering Play has started it already, unless the window was in Play before
        m_engine->startPlayback();
}

// --- Modes -------------------------------------------------------------------------------------------------

// A mode that is asked for while this loads or shows a box comes after Play, which is then left again at
// once. So a replay may start here that leavePlay() stops before it has shown more than its first line.
void PlaybackController::enterPlay()
{
    const QScopedValueRollback entering(m_enteringPlay, true);
    m_scrubber.letGo();
    if (m_chosenRecording.path().isEmpty()) {
        QMessageBox::warning(m_dialogParent, tr("No File"), tr("No playback file selected."));
        return;
    }
    if (m_chosenRecording.reload() == ChosenRecording::Loading::Cancelled) {
        Q_EMIT idleRequested();
        return;
    }
    rewindIfAtEnd();
    CanvasPlots::setExternalTimeEnabled(*m_scene, false);
    m_plotsOnReplayTime = true;
    m_engine->startPlayback(); // without frames it finishes at once, which leads back to Idle
}

void PlaybackController::leavePlay()
{
    m_scrubber.letGo();
    m_engine->cancelLoading();
    m_engine->stopPlayback();
}

void PlaybackController::enterIdle()
{
    m_scrubber.letGo();
    m_engine->resetStartTime();
    CanvasPlots::setExternalTimeEnabled(*m_scene, false);
    m_plotsOnReplayTime = false; // the window empties them
}

// What the plots hold has times of the replay, which would come before all live ones.
void PlaybackController::leaveReplayTime()
{
    const bool replayIsShown = m_enteringPlay || m_mode == Mode::Playing || m_mode == Mode::Paused;
    if (replayIsShown || m_scrubber.isScrubbing())
        return;
    m_plotsOnReplayTime = false;
    CanvasPlots::setExternalTimeEnabled(*m_scene, false);
    CanvasPlots::clear(*m_scene);
}

void PlaybackController::rewindIfAtEnd()
{
    const int step = m_scrubber.step();
    constexpr int kEnd = SignalPlaybackEngine::kPositionSteps;
    qDebug() << "Slider: " << step << " SLIDER_MAX_STEPS: " << kEnd;
    if (step == kEnd) {
        m_engine->resetStartTime();
        qDebug() << "Reset start time";
    }
}
