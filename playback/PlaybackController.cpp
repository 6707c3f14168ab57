#include "playback/PlaybackController.h"

#include "canvas/DesignScene.h"
#include "canvas/Plots.h"
#include "definitions/ActiveDefinitions.h"
#include "definitions/numbers/FileNumbers.h"
#include "playback/WorkProgress.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "playback/recording/SignalRecorder.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QCheckBox>
#include <QDebug>
#include <QDir>
#include <QDoubleSpinBox>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QSlider>
#include <QStandardPaths>

#include <algorithm>
#include <utility>

namespace {

constexpr int kSliderMaxSteps = SignalPlaybackEngine::kPositionSteps;
constexpr int kScrubIntervalMs = 100;
constexpr double kShortestLookBack = 0.1; // seconds
constexpr int kChosenMessageMs = 4000;
constexpr int kTroubleMessageMs = 5000;

// Beyond this a time in full would be wider than the toolbar.
constexpr double kLargestPlainTime = 1e12;

QString timeText(double seconds)
{
    const bool plain = seconds < kLargestPlainTime;
    return QString::number(seconds, plain ? 'f' : 'g', plain ? 3 : 6);
}

/// A tool tip guesses markup, and a path may look like it.
QString plainToolTip(const QString& text)
{
    return Qt::mightBeRichText(text) ? QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()) : text;
}

} // namespace

PlaybackController::PlaybackController(SignalPlaybackEngine* engine, DesignScene* scene,
                                       ActiveDefinitions* definitions, const Controls& controls,
                                       QWidget* dialogParent)
    : QObject(dialogParent)
    , m_engine(engine)
    , m_scene(scene)
    , m_definitions(definitions)
    , m_controls(controls)
    , m_dialogParent(dialogParent)
{
    connectControls();
    connectSlider();
    handOverStateGroups();
}

void PlaybackController::connectControls()
{
    const auto useDefinitionsToggled = [this] {
        if (!m_file.isEmpty())
            selectActiveSignalParserFor(m_file);
    };
    connect(m_controls.useRecordingDefinitions, &QCheckBox::toggled, this, useDefinitionsToggled);
    connect(m_definitions, &ActiveDefinitions::changed, this, &PlaybackController::handOverStateGroups);
    connect(m_controls.speed, &QDoubleSpinBox::valueChanged, m_engine,
            &SignalPlaybackEngine::setPlaybackRate);
    m_engine->setPlaybackRate(m_controls.speed->value());
}

void PlaybackController::connectSlider()
{
    QSlider* slider = m_controls.position;
    enableSlider();
    connect(m_engine, &SignalPlaybackEngine::positionChanged, slider, &QSlider::setValue);
    connect(slider, &QSlider::sliderPressed, this, &PlaybackController::beginScrub);
    connect(slider, &QSlider::sliderMoved, this, [this](int step) { m_scrubStep = step; });
    connect(slider, &QSlider::actionTriggered, this, &PlaybackController::onSliderAction);
    connect(slider, &QSlider::sliderReleased, this, &PlaybackController::endScrub);
    connect(slider, &QSlider::valueChanged, this, &PlaybackController::showTime);
    m_scrubTimer.setSingleShot(true);
    m_scrubTimer.setTimerType(Qt::PreciseTimer);
    m_scrubTimer.setInterval(kScrubIntervalMs);
    connect(&m_scrubTimer, &QTimer::timeout, this, &PlaybackController::scrub);
}

// --- The recording -----------------------------------------------------------------------------------------

void PlaybackController::selectPlaybackFile()
{
    if (m_engine->isLoading())
        return;
    const QString path = pickFile();
    if (!path.isEmpty()) {
        setFile(path);
        if (loadChosen() != Loading::Loaded)
            return;
        prepareSignalParserForPlaybackFile(m_file);
    }
    clearDataMarkers(*m_scene);
}

QString PlaybackController::pickFile() const
{
    const QString folder = m_projectFolder.isEmpty()
                               ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                               : QDir(m_projectFolder).filePath(QStringLiteral("recordings"));
    QFileDialog dialog(m_dialogParent, tr("Open Recording"), folder, tr("Recordings (*.rec)"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

void PlaybackController::startPlayback(const QString& path)
{
    if (m_engine->isLoading())
        return;
    if (m_mode == Mode::Recording)
        Q_EMIT idleRequested(); // a recording that ends becomes the chosen one: let that come first
    setFile(path);
    prepareSignalParserForPlaybackFile(path);
    if (loadChosen() != Loading::Loaded)
        return;
    Q_EMIT playRequested();
    if (m_mode != Mode::Playing)
        return; // entering Play was cancelled
    rewindIfAtEnd();
    if (!m_engine->isPlaying()) // entering Play has started it already, unless the window was in Play before
        m_engine->startPlayback();
}

bool PlaybackController::ensurePlaybackLoaded()
{
    if (m_engine->hasFrames())
        return true;
    if (m_file.isEmpty())
        return false;
    selectActiveSignalParserFor(m_file);
    if (load() != Loading::Loaded)
        return false;
    m_engine->resetStartTime();
    updatePlaybackFileDisplay();
    return m_engine->hasFrames();
}

std::shared_ptr<const SignalRecording> PlaybackController::recordingToExport(const QString& boxTitle)
{
    if (m_engine->isLoading()) // what is loaded is not what is chosen
        return nullptr;
    if (ensurePlaybackLoaded())
        return m_engine->recording();
    if (!m_engine->wasLoadCancelled())
        QMessageBox::information(m_dialogParent, boxTitle, tr("No playback data loaded."));
    return nullptr;
}

void PlaybackController::showRecorded(const QString& path)
{
    setFile(path);
    selectActiveSignalParserFor(path);
    load();
    m_engine->resetStartTime();
}

void PlaybackController::setFile(const QString& path)
{
    m_file = path;
    updatePlaybackFileDisplay();
}

void PlaybackController::updatePlaybackFileDisplay()
{
    const QString name = QFileInfo(m_file).fileName();
    m_controls.file->setText(name.isEmpty() ? tr("No file selected") : name);
    if (!name.isEmpty())
        m_controls.file->setToolTip(plainToolTip(m_file));
}

PlaybackController::Loading PlaybackController::loadChosen()
{
    const Loading result = load();
    if (result == Loading::Failed)
        QMessageBox::warning(m_dialogParent, tr("Error"), tr("Failed to load playback file"));
    return result;
}

// The window is alive meanwhile: a device may go away, the mode may change, another recording be chosen.
PlaybackController::Loading PlaybackController::load()
{
    if (m_engine->isLoading()) {
        if (m_file != m_loadingFile)
            m_engine->cancelLoading(); // the one under way goes on with what is chosen now
        return Loading::Cancelled;
    }
    releaseSlider();
    bool loaded = false;
    do {
        m_loadingFile = m_file;
        WorkProgress progress(tr("Loading"), tr("Loading %1…").arg(QFileInfo(m_loadingFile).fileName()),
                              m_dialogParent);
        const auto onProgress = [this, &progress](double done) {
            if (!progress.update(done))
                m_engine->cancelLoading();
        };
        const auto connection = connect(m_engine, &SignalPlaybackEngine::loadProgressed, this, onProgress);
        loaded = m_engine->loadFromFile(m_loadingFile);
        disconnect(connection);
    } while (m_loadingFile != m_file);

    // A position that belongs to another recording means nothing in this one.
    if (loaded && m_file != m_positionFile) {
        m_positionFile = m_file;
        m_engine->resetStartTime();
    }
    enableSlider();
    showTime(m_controls.position->value()); // the end of the recording is another one
    if (loaded)
        return Loading::Loaded;
    return m_engine->wasLoadCancelled() ? Loading::Cancelled : Loading::Failed;
}

// --- Its definitions ---------------------------------------------------------------------------------------

void PlaybackController::prepareSignalParserForPlaybackFile(const QString& path)
{
    m_definitions->discardRecording();
    if (!m_controls.useRecordingDefinitions->isChecked())
        return;
    const QFileInfo companion(companionDefinitionsPath(path));
    if (!companion.exists()) {
        Q_EMIT statusMessage(tr("No recording definitions found; using current definitions."),
                             kTroubleMessageMs);
        return;
    }
    auto catalogue = std::make_unique<DashboardSignalParser>(companion.filePath());
    // A pipe of that name would never open.
    if (!companion.isFile() || !catalogue->parse()) {
        Q_EMIT statusMessage(tr("Failed to parse recording definitions; using current definitions."),
                             kTroubleMessageMs);
        return;
    }
    m_definitions->setRecording(std::move(catalogue));
    Q_EMIT statusMessage(tr("Using recording’s signal definitions."), kChosenMessageMs);
}

void PlaybackController::selectActiveSignalParserFor(const QString& path)
{
    prepareSignalParserForPlaybackFile(path);
    handOverStateGroups();
    Q_EMIT reapplyRequested();
}

void PlaybackController::handOverStateGroups()
{
    const DashboardSignalParser* active = m_definitions->active();
    m_engine->setKnownStateGroups(active ? active->stateGroupIds() : QStringList());
}

// --- Modes -------------------------------------------------------------------------------------------------

void PlaybackController::setMode(Mode mode)
{
    m_mode = mode;
    enableSlider();
}

// Not while a recording runs: a jump clears the consoles and takes the plots off the live values.
void PlaybackController::enableSlider()
{
    m_controls.position->setEnabled(m_engine->hasFrames() && m_mode != Mode::Recording);
}

void PlaybackController::enterPlay()
{
    releaseSlider();
    m_mode = Mode::Playing;
    if (m_file.isEmpty()) {
        QMessageBox::warning(m_dialogParent, tr("No File"), tr("No playback file selected."));
        return;
    }
    selectActiveSignalParserFor(m_file);
    const Loading result = loadChosen();
    if (m_mode != Mode::Playing)
        return; // left again while it was loading or while a box stood open
    if (result == Loading::Cancelled) {
        Q_EMIT idleRequested();
        return;
    }
    rewindIfAtEnd();
    setExternalTimeEnabled(*m_scene, false);
    m_plotsOnReplayTime = true;
    m_engine->startPlayback(); // without frames it finishes at once, which leads back to Idle
}

void PlaybackController::leavePlay()
{
    m_mode = Mode::Paused;
    releaseSlider();
    m_engine->cancelLoading();
    m_engine->stopPlayback();
}

void PlaybackController::enterIdle()
{
    releaseSlider();
    m_engine->resetStartTime();
    setExternalTimeEnabled(*m_scene, false);
    m_plotsOnReplayTime = false; // the window empties them
}

// What the plots hold has times of the replay, which would come before all live ones.
void PlaybackController::leaveReplayTime()
{
    if (m_scrubbing || m_mode == Mode::Playing || m_mode == Mode::Paused)
        return;
    m_plotsOnReplayTime = false;
    setExternalTimeEnabled(*m_scene, false);
    clearPlots(*m_scene);
}

void PlaybackController::rewindIfAtEnd()
{
    const int step = m_controls.position->value();
    qDebug() << "Slider: " << step << " SLIDER_MAX_STEPS: " << kSliderMaxSteps;
    if (step == kSliderMaxSteps) {
        m_engine->resetStartTime();
        qDebug() << "Reset start time";
    }
}

// --- The slider --------------------------------------------------------------------------------------------

double PlaybackController::timeAt(int step) const
{
    // The largest time may be infinite, which times 0 is no number.
    return step <= 0 ? 0.0 : m_engine->getMaxTimestamp() * step / kSliderMaxSteps;
}

void PlaybackController::showTime(int step) { m_controls.time->setText(timeText(timeAt(step))); }

void PlaybackController::beginScrub()
{
    if (m_engine->isPlaying())
        m_engine->stopPlayback();
    m_scrubbing = true;
    m_plotsOnReplayTime = true;
    m_scrubStep = m_controls.position->value();
    const QList<TrendPlotWidget*> plots = trendPlots();
    for (TrendPlotWidget* plot : plots) {
        plot->beginBulkLoad();
        plot->setExternalTimeEnabled(true);
    }
    if (!m_scrubTimer.isActive())
        m_scrubTimer.start();
}

void PlaybackController::scrub()
{
    if (!m_scrubbing || m_scrubStep < 0)
        return;
    seekTo(m_scrubStep);
    if (m_scrubbing)
        m_scrubTimer.start();
}

void PlaybackController::endScrub()
{
    m_scrubbing = false;
    m_scrubTimer.stop();
    seekTo(m_scrubStep >= 0 ? m_scrubStep : m_controls.position->value());
    const QList<TrendPlotWidget*> plots = trendPlots();
    for (TrendPlotWidget* plot : plots)
        plot->endBulkLoad();
    if (m_mode == Mode::Playing)
        m_engine->startPlayback();
}

// A box, a loading or another mode may come up while the slider is held, and take its release away.
void PlaybackController::releaseSlider()
{
    if (!m_scrubbing)
        return;
    const Mode mode = std::exchange(m_mode, Mode::Paused); // without resuming
    m_controls.position->setSliderDown(false);
    m_mode = mode;
}

// Keys, the wheel and a click in the groove come without press and release. The slider's position is the new
// one here, its value still the old one.
void PlaybackController::onSliderAction()
{
    const int step = m_controls.position->sliderPosition();
    const bool onItsOwn = !m_scrubbing;
    if (onItsOwn)
        beginScrub();
    m_scrubStep = step;
    if (onItsOwn)
        endScrub();
}

void PlaybackController::seekTo(int step)
{
    m_engine->setHistoryWindow(std::max(kShortestLookBack, dominantTrendWindowSeconds(*m_scene)));
    const double t = timeAt(step);
    m_engine->seekToTimestamp(t);
    const qint64 nowMs = wholeMs(t * 1000.0);
    const QList<TrendPlotWidget*> plots = trendPlots();
    for (TrendPlotWidget* plot : plots) {
        plot->setExternalTimeEnabled(true);
        plot->setExternalNowMs(nowMs);
        plot->trimToWindowEndingAt(nowMs);
    }
}

QList<TrendPlotWidget*> PlaybackController::trendPlots() const
{
    return m_scene->widgetsOfType<TrendPlotWidget>(false);
}
