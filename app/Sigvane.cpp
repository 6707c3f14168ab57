#include "app/Sigvane.h"

#include "app/EventRouting.h"
#include "app/LicenseStatus.h"
#include "app/ProjectFolder.h"
#include "app/RecordingControl.h"
#include "app/StartUp.h"
#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
#include "app/status/ConnectionStatus.h"
#include "app/status/RecordingStatus.h"
#include "app/status/StatusLine.h"
#include "app/toolbars/ClickableLabel.h"
#include "app/toolbars/ControlsToolBar.h"
#include "app/toolbars/ExportToolBar.h"
#include "app/toolbars/IoToolBar.h"
#include "app/toolbars/SerialControls.h"
#include "canvas/CanvasPlots.h"
#include "canvas/DashboardItem.h"
#include "canvas/DashboardView.h"
#include "canvas/DesignScene.h"
#include "canvas/LayoutFile.h"
#include "canvas/StackingOrder.h"
#include "playback/CsvExportFlow.h"
#include "playback/PlaybackController.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "playback/recording/SignalRecorder.h"
#include "serial/SerialManager.h"

#include <QCloseEvent>
#include <QDebug>
#include <QEvent>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>

#include <utility>

namespace {

constexpr QSize kInitialSize(1440, 900);

PlaybackController::Mode playbackMode(Sigvane::Mode mode)
{
    using enum PlaybackController::Mode;
    return mode == Sigvane::Play     ? Playing
           : mode == Sigvane::Pause  ? Paused
           : mode == Sigvane::Record ? Recording
                                     : Live;
}

} // namespace

Sigvane::Sigvane(QWidget* parent)
    : QMainWindow(parent)
{
    setUnifiedTitleAndToolBarOnMac(true);
    setWindowTitle(QStringLiteral("Sigvane"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/sigvane.png")));
    resize(kInitialSize.boundedTo(screen()->availableSize()));
    setupCanvas();
    setupRecorder();
    setupStatusBar();
    setupToolBars();
    setupPlayback();
    setupProject();
    setupMenus();
    m_scene->setDesignMode(false);
    m_palette->setEnabled(false);
    updateStatusLabel(m_mode);
    updateStopActionUi();
}

Sigvane::~Sigvane()
{
    // The parts that listen to the serial port go before it; the port may still report while it closes.
    disconnect(m_serial, nullptr, nullptr, nullptr);
    m_recorder->stop();
}

void Sigvane::setupCanvas()
{
    m_scene = new DesignScene(this);
    m_router = new ValueRouter(m_scene, &m_definitions, this);
    m_routing = new EventRouting(m_router, m_scene, this);
    m_palette = new WidgetPalette(this);
    connect(m_palette, &WidgetPalette::widgetRequested, this, &Sigvane::addWidget);

    auto* central = new QWidget(this);
    auto* layout = new QHBoxLayout(central);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(0);
    layout->addWidget(m_palette);
    auto* right = new QVBoxLayout;
    right->addWidget(new DashboardView(m_scene, this));
    layout->addLayout(right, 1);
    setCentralWidget(central);
}

void Sigvane::setupRecorder()
{
    m_serial = new SerialManager(this);
    m_recorder = new SignalRecorder(this);
    m_recording = new RecordingControl(m_recorder, m_serial, m_scene, this);
}

void Sigvane::setupStatusBar()
{
    m_status = new StatusLine(statusBar());
    auto* recording = new RecordingStatus(m_recorder, this);
    statusBar()->addPermanentWidget(recording);
    connect(m_recording, &RecordingControl::changed, recording, &RecordingStatus::refresh);
    connect(m_recording, &RecordingControl::statusMessage, m_status, &StatusLine::showMessage);
    m_connection = new ConnectionStatus(this);
    statusBar()->addPermanentWidget(m_connection);
}

void Sigvane::setupToolBars()
{
    m_controls = new ControlsToolBar(this);
    m_export = new ExportToolBar(this);
    addToolBar(m_controls);
    addToolBarBreak();
    addToolBar(m_export);
    addToolBarBreak();
    m_io = new IoToolBar(this);
    addToolBar(m_io);

    connect(m_controls->designAction(), &QAction::triggered, this, &Sigvane::designButton);
    connect(m_controls->saveAction(), &QAction::triggered, this, &Sigvane::saveButton);
    connect(m_controls->loadAction(), &QAction::triggered, this, &Sigvane::loadButton);
    connect(m_export->recordAction(), &QAction::triggered, this, &Sigvane::recordButton);
    connect(m_export->stopAction(), &QAction::triggered, this, &Sigvane::stopButton);
    connect(m_export->playAction(), &QAction::triggered, this, &Sigvane::playButton);
    connect(m_export->exportSignalsAction(), &QAction::triggered, this, &Sigvane::exportButton);
    connect(m_export->exportEventsAction(), &QAction::triggered, this, &Sigvane::exportEventsButton);
    connect(m_io->fileLabel(), &ClickableLabel::clicked, this, &Sigvane::selectPlaybackFile);

    setupSerialUi();
    connectSerialSignals();
    m_serial->refreshPorts();
    m_controls->addLicenseChip();
    m_license = new LicenseStatus(m_controls, this);
}

void Sigvane::setupSerialUi()
{
    m_serialControls = new SerialControls(m_serial, m_controls, this);
    connect(m_serialControls, &SerialControls::opened, m_connection, &ConnectionStatus::showOpened);
    connect(m_serialControls, &SerialControls::closed, m_connection, &ConnectionStatus::showClosed);
    connect(m_serialControls, &SerialControls::lost, m_connection, &ConnectionStatus::showLost);
    connect(m_serialControls, &SerialControls::opened, m_status, &StatusLine::dropNotice);
    connect(m_serialControls, &SerialControls::statusMessage, m_status, &StatusLine::showMessage);
    connect(m_serialControls, &SerialControls::lost, this, [this] {
        if (m_recorder->isRecording())
            setMode(Idle);
        m_status->showNotice(tr("The device is gone. Press Connect when it is back."));
    });
}

void Sigvane::connectSerialSignals()
{
    connect(m_serial, &SerialManager::rawLineReceived, this, [this] {
        m_connection->countLine();
        m_playback->onLiveLine();
    });
    m_routing->connectSerial(m_serial, m_recorder);
    connect(m_serial, &SerialManager::errorOccurred, this, [this](const QString& message) {
        m_connection->showError(m_serial->portName(), message, m_serial->lastError());
    });
}

void Sigvane::setupPlayback()
{
    m_engine = new SignalPlaybackEngine(this);
    m_routing->connectReplay(m_engine);
    connect(m_routing, &EventRouting::playbackFinished, this, [this] { setMode(Idle); });
    const PlaybackController::Controls controls{m_io->positionSlider(), m_io->fileLabel(), m_io->timeLabel(),
                                                m_export->speedBox(), m_export->recordingDefinitionsBox()};
    m_playback = new PlaybackController(m_engine, m_scene, &m_definitions, controls, this);
    connect(m_playback, &PlaybackController::playRequested, this, &Sigvane::playButton);
    connect(m_playback, &PlaybackController::idleRequested, this, [this] {
        if (!m_nextMode) // what the user asked for meanwhile counts
            setMode(Idle);
    });
    connect(m_playback, &PlaybackController::reapplyRequested, this,
            &Sigvane::reapplyMappingsToCurrentValues);
    connect(m_playback, &PlaybackController::statusMessage, m_status, &StatusLine::showMessage);
    m_csvExport = new CsvExportFlow(&m_definitions, this);
    connect(m_csvExport, &CsvExportFlow::statusMessage, m_status, &StatusLine::showMessage);
}

void Sigvane::setupProject()
{
    m_project = new ProjectFolder(&m_definitions, this);
    connect(&m_definitions, &ActiveDefinitions::projectChanged, this, &Sigvane::onProjectChanged);
    connect(m_project, &ProjectFolder::pathChanged, m_scene, &DesignScene::setProjectFolder);
    connect(m_project, &ProjectFolder::pathChanged, m_playback, &PlaybackController::setProjectFolder);
    connect(m_project, &ProjectFolder::pathChanged, this,
            [this] { m_csvExport->setExportFolder(projFile(QStringLiteral("exports"))); });
    connect(m_project, &ProjectFolder::aboutToOpen, this, [this] { setMode(Idle); });
    connect(m_project, &ProjectFolder::titleChanged, this, &QWidget::setWindowTitle);
    connect(m_project, &ProjectFolder::statusMessage, m_status, &StatusLine::showMessage);
    connect(m_project, &ProjectFolder::refused, this,
            [this] { QTimer::singleShot(0, this, &QWidget::close); });
}

void Sigvane::setupMenus()
{
    QMenu* project = menuBar()->addMenu(tr("&Project"));
    project->addAction(tr("&Open Project…"), QKeySequence::Open, this, &Sigvane::chooseProjectDir);
    project->addAction(tr("&Reload Definitions"), QKeySequence::Refresh, this, &Sigvane::reloadDefinitions);
    project->addSeparator();
    project->addAction(tr("&Quit"), QKeySequence::Quit, this, &QWidget::close);

    QMenu* license = menuBar()->addMenu(tr("&License"));
    license->addAction(tr("License &Status…"), Qt::CTRL | Qt::Key_L, m_license, &LicenseStatus::show);
}

void Sigvane::setLicenseCheck(LicenseCheck* check) { m_license->setCheck(check); }

// --- Modes -------------------------------------------------------------------------------------------------

void Sigvane::setMode(Mode mode)
{
    m_engine->cancelLoading(); // a loading runs the event loop, from which this may come
    if (m_changingMode) {
        m_nextMode = mode;
        return;
    }
    m_changingMode = true;
    m_status->setModeChanging(true);
    changeMode(mode);
    while (m_nextMode)
        changeMode(*std::exchange(m_nextMode, std::nullopt));
    m_changingMode = false;
    m_status->setModeChanging(false);
}

void Sigvane::changeMode(Mode mode)
{
    if (mode == m_mode) {
        updateStatusLabel(mode);
        return;
    }
    leaveMode(m_mode);
    if (m_nextMode) // the user has thought better of it while the old one was left
        mode = *std::exchange(m_nextMode, std::nullopt);
    else if (m_mode == Record && mode == Play && m_engine->wasLoadCancelled())
        mode = Idle;
    // A mode that refuses leaves only the old one's number: what it ended stays ended.
    if (enterMode(mode))
        m_mode = mode;
    m_router->setLive(m_mode != Play && m_mode != Pause);
    m_playback->setMode(playbackMode(m_mode));
    updateStatusLabel(m_mode);
    updateStopActionUi();
}

void Sigvane::leaveMode(Mode mode)
{
    if (mode == Design)
        exitDesignMode();
    else if (mode == Play)
        exitPlayMode();
    else if (mode == Record)
        exitRecordMode();
}

bool Sigvane::enterMode(Mode mode)
{
    switch (mode) {
    case Design:
        enterDesignMode();
        return true;
    case Idle:
        enterIdleMode();
        return true;
    case Record:
        return enterRecordMode();
    case Play:
        enterPlayMode();
        return true;
    case Pause:
        break;
    }
    return true;
}

void Sigvane::enterDesignMode()
{
    qDebug("Design mode started");
    m_palette->setEnabled(true);
    m_scene->setDesignMode(true);
    m_definitions.discardRecording();
}

void Sigvane::exitDesignMode()
{
    qDebug("Design mode ended");
    m_palette->setEnabled(false);
    m_scene->setDesignMode(false);
    CanvasPlots::setExternalTimeEnabled(*m_scene, false);
}

bool Sigvane::enterRecordMode()
{
    m_playback->enterRecord();
    if (m_recorder->isRecording() || !startRecording())
        return false;
    qDebug("Record mode started");
    CanvasPlots::setExternalTimeEnabled(*m_scene, false);
    clearErrorConsoles();
    return true;
}

void Sigvane::exitRecordMode()
{
    stopRecording(true);
    qDebug("Record mode ended");
}

bool Sigvane::startRecording() { return m_recording->start(projectDir()); }

void Sigvane::stopRecording(bool reloadForPlayback)
{
    const QString path = m_recording->stop();
    if (reloadForPlayback && !path.isEmpty())
        m_playback->showRecorded(path);
}

// The mode becomes Play also without a recording, after the box that says so.
void Sigvane::enterPlayMode()
{
    qDebug("Play mode started");
    m_playback->enterPlay();
}

void Sigvane::exitPlayMode()
{
    qDebug("Play mode ended");
    m_playback->leavePlay();
}

void Sigvane::enterIdleMode()
{
    qDebug("Idle mode started");
    m_playback->enterIdle();
    clearData();
}

void Sigvane::updateStatusLabel(Mode mode)
{
    const QString texts[] = {tr("Design Mode"), tr("Recording..."), tr("Playing..."), tr("Pause..."),
                             tr("Idle")};
    m_status->showMode(texts[mode]);
}

// Menus send an empty status tip when they open and close, which would wipe the status bar.
bool Sigvane::event(QEvent* event) { return event->type() == QEvent::StatusTip || QMainWindow::event(event); }

void Sigvane::closeEvent(QCloseEvent* event)
{
    m_engine->cancelLoading();
    m_csvExport->cancel();
    stopRecording(false);
    QMainWindow::closeEvent(event);
}

void Sigvane::updateStopActionUi() { m_export->showPlaying(m_mode == Play); }

void Sigvane::designButton() { setMode(m_mode == Design ? Idle : Design); }

void Sigvane::recordButton() { setMode(Record); }

void Sigvane::playButton() { setMode(Play); }

void Sigvane::stopButton()
{
    setMode(m_mode == Play ? Pause : Idle);
    updateStopActionUi();
}

// --- Layouts and widgets -----------------------------------------------------------------------------------

void Sigvane::saveButton()
{
    saveLayout();
    qDebug("Layout saved");
}

void Sigvane::loadButton()
{
    loadLayout();
    qDebug("Layout loaded");
}

void Sigvane::saveLayout() { LayoutFile(this, m_scene).save(layoutsDir()); }

void Sigvane::loadLayout() { LayoutFile(this, m_scene).load(layoutsDir()); }

QString Sigvane::layoutsDir() const
{
    // Without a project this would be a folder at the root of the disk.
    return projectDir().isEmpty() ? QString() : projFile(QStringLiteral("layouts"));
}

void Sigvane::normalizeZOrder(QGraphicsScene* scene) { ::normalizeZOrder(scene); }

void Sigvane::addWidget(const QString& typeName)
{
    if (!m_license->allowsWidget(int(m_scene->dashboardItems().size())))
        return;
    if (DashboardItem* item = m_scene->addNewWidget(typeName))
        item->setDesignMode(m_mode == Design);
}

// --- Values ------------------------------------------------------------------------------------------------

void Sigvane::updateSignalValue(const QString& name, double raw) { m_router->updateSignalValue(name, raw); }

void Sigvane::updateSignalValueAt(const QString& name, double raw, double tSec)
{
    m_router->updateSignalValueAt(name, raw, tSec);
}

void Sigvane::updateStateValue(const QString& group, const QString& stateId, const QString& label)
{
    m_router->updateStateValue(group, stateId, label);
}

void Sigvane::reapplyMappingsToCurrentValues() { m_router->reapplyMappingsToCurrentValues(); }

void Sigvane::clearErrorConsoles() { m_router->clearErrorConsoles(); }

void Sigvane::clearData() { CanvasPlots::clear(*m_scene); }

double Sigvane::dominantTrendWindowSeconds() const
{
    return CanvasPlots::dominantTrendWindowSeconds(*m_scene);
}

// --- Replay and export -------------------------------------------------------------------------------------

void Sigvane::selectPlaybackFile() { m_playback->selectPlaybackFile(); }

void Sigvane::startPlayback(const QString& path) { m_playback->startPlayback(path); }

void Sigvane::exportButton()
{
    if (m_license->allowsExport())
        m_csvExport->exportSignals(m_playback->recordingToExport(tr("Export CSV")));
}

void Sigvane::exportEventsButton()
{
    m_csvExport->exportEvents(m_playback->recordingToExport(tr("Export Events CSV")));
}

// --- Project -----------------------------------------------------------------------------------------------

bool Sigvane::isValidProjectDir(const QString& dir) const { return ProjectFolder::isValid(dir); }

QString Sigvane::projectDir() const { return m_project->path(); }

QString Sigvane::projFile(const QString& name) const { return m_project->file(name); }

void Sigvane::ensureProjectSubdirs() { m_project->ensureSubdirs(); }

bool Sigvane::setProjectDir(const QString& dir) { return m_project->open(dir); }

bool Sigvane::loadSignalsDef(const QString& path) { return m_project->loadDefinitions(path); }

void Sigvane::chooseProjectDir() { m_project->choose(); }

void Sigvane::loadLastProjectOrPrompt() { m_project->loadLastOrPrompt(); }

void Sigvane::showProjectIntroAndPrompt() { m_project->showIntroAndPrompt(); }

void Sigvane::reloadDefinitions()
{
    if (m_project->reloadDefinitions())
        reapplyMappingsToCurrentValues();
}

void Sigvane::onProjectChanged()
{
    m_scene->showNewDefinitions();
    Q_EMIT signalsDefChanged(m_project->definitionsFile());
}

void Sigvane::startWith(const CommandLine& wanted)
{
    auto* start = new StartUp(m_project, m_serialControls, m_status, this, m_scene);
    connect(start, &StartUp::recordRequested, this, &Sigvane::recordButton);
    connect(start, &StartUp::playRequested, this, &Sigvane::startPlayback);
    start->run(wanted);
}
