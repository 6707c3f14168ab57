#include "app/Sigvane.h"

#include "app/EventRouter.h"
#include "app/LicenseGate.h"
#include "app/ProjectFolder.h"
#include "app/RecordingController.h"
#include "app/StartUp.h"
#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
#include "app/status/ConnectionStatus.h"
#include "app/status/RecordingStatus.h"
#include "app/status/StatusLine.h"
#include "app/toolbars/ClickableLabel.h"
#include "app/toolbars/DesignAndPortToolBar.h"
#include "app/toolbars/PositionToolBar.h"
#include "app/toolbars/RecordingToolBar.h"
#include "app/toolbars/SerialControls.h"
#include "canvas/CanvasPlots.h"
#include "canvas/DashboardItem.h"
#include "canvas/DashboardView.h"
#include "canvas/DesignScene.h"
#include "canvas/LayoutFile.h"
#include "canvas/StackingOrder.h"
#include "playback/CsvExportController.h"
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

namespace {

constexpr QSize kInitialSize(1440, 900);

} // namespace

Sigvane::Sigvane(QWidget* parent)
    : QMainWindow(parent)
{
    setUnifiedTitleAndToolBarOnMac(true);
    setWindowTitle(QStringLiteral("Sigvane"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/sigvane.png")));
    resize(kInitialSize.boundedTo(screen()->availableSize()));
    setupCanvas();
    setupToolBars();
    setupSerialUi();
    setupLicense();
    setupRecorder();
    setupStatusBar();
    setupPlayback();
    setupModes();
    setupProject();
    setupMenus();
    connectSerialSignals();
    connectActions();
    m_modes->updateStatusLabel(mode());
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
    m_events = new EventRouter(m_router, m_scene, this);
    m_palette = new WidgetPalette(this);
    m_palette->setEnabled(false);
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

void Sigvane::setupToolBars()
{
    m_designBar = new DesignAndPortToolBar(this);
    addToolBar(m_designBar);
    addToolBarBreak();
    m_recordingBar = new RecordingToolBar(this);
    addToolBar(m_recordingBar);
    addToolBarBreak();
    m_positionBar = new PositionToolBar(this);
    addToolBar(m_positionBar);
}

void Sigvane::setupSerialUi()
{
    m_serial = new SerialManager(this);
    m_serialControls = new SerialControls(m_serial, m_designBar, this);
    m_serial->refreshPorts();
}

void Sigvane::setupLicense()
{
    m_designBar->addLicenseChip();
    m_license = new LicenseGate(m_designBar, this);
}

void Sigvane::setupRecorder()
{
    m_recorder = new SignalRecorder(this);
    m_recordingController = new RecordingController(m_recorder, m_serial, m_scene, this);
}

void Sigvane::setupStatusBar()
{
    m_status = new StatusLine(statusBar());
    auto* recording = new RecordingStatus(m_recorder, this);
    statusBar()->addPermanentWidget(recording);
    connect(m_recordingController, &RecordingController::changed, recording, &RecordingStatus::refresh);
    connect(m_recordingController, &RecordingController::statusMessage, m_status, &StatusLine::showMessage);
    m_connection = new ConnectionStatus(this);
    statusBar()->addPermanentWidget(m_connection);
    connect(m_serialControls, &SerialControls::opened, m_connection, &ConnectionStatus::showOpened);
    connect(m_serialControls, &SerialControls::closed, m_connection, &ConnectionStatus::showClosed);
    connect(m_serialControls, &SerialControls::lost, m_connection, &ConnectionStatus::showLost);
    connect(m_serialControls, &SerialControls::opened, m_status, &StatusLine::dropNotice);
    connect(m_serialControls, &SerialControls::statusMessage, m_status, &StatusLine::showMessage);
}

void Sigvane::setupPlayback()
{
    m_engine = new SignalPlaybackEngine(this);
    m_events->connectReplay(m_engine);
    const PlaybackController::Controls controls{m_positionBar->positionSlider(), m_positionBar->fileLabel(),
                                                m_positionBar->timeLabel(), m_recordingBar->speedBox(),
                                                m_recordingBar->recordingDefinitionsBox()};
    m_playback = new PlaybackController(m_engine, m_scene, &m_definitions, controls, this);
    connect(m_recordingController, &RecordingController::recorded, m_playback,
            &PlaybackController::showRecorded);
    connect(m_playback, &PlaybackController::reapplyRequested, m_router,
            &ValueRouter::reapplyMappingsToCurrentValues);
    connect(m_playback, &PlaybackController::statusMessage, m_status, &StatusLine::showMessage);
    m_csvExport = new CsvExportController(&m_definitions, this);
    connect(m_csvExport, &CsvExportController::statusMessage, m_status, &StatusLine::showMessage);
}

void Sigvane::setupModes()
{
    m_modes = new ModeSwitch({m_scene, &m_definitions, m_router, m_recordingController, m_engine, m_playback},
                             this);
    connect(m_modes, &ModeSwitch::designingChanged, m_palette, &QWidget::setEnabled);
    connect(m_modes, &ModeSwitch::changingChanged, m_status, &StatusLine::setModeChanging);
    connect(m_modes, &ModeSwitch::statusChanged, m_status, &StatusLine::showMode);
    connect(m_modes, &ModeSwitch::modeSettled, this, &Sigvane::updateStopActionUi);
    connect(m_events, &EventRouter::playbackFinished, this, [this] { setMode(Idle); });
    connect(m_playback, &PlaybackController::playRequested, this, &Sigvane::playButton);
    connect(m_playback, &PlaybackController::idleRequested, m_modes, &ModeSwitch::fallBackToIdle);
}

void Sigvane::setupProject()
{
    m_project = new ProjectFolder(&m_definitions, this);
    connect(&m_definitions, &ActiveDefinitions::projectChanged, this, &Sigvane::onProjectChanged);
    connect(m_project, &ProjectFolder::pathChanged, m_scene, &DesignScene::setProjectFolder);
    connect(m_project, &ProjectFolder::pathChanged, m_recordingController,
            &RecordingController::setProjectFolder);
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
    license->addAction(tr("License &Status…"), Qt::CTRL | Qt::Key_L, m_license, &LicenseGate::show);
}

void Sigvane::connectSerialSignals()
{
    connect(m_serial, &SerialManager::rawLineReceived, this, [this] {
        m_connection->countLine();
        m_playback->onLiveLine();
    });
    m_events->connectSerial(m_serial, m_recorder);
    connect(m_serial, &SerialManager::errorOccurred, this, [this](const QString& message) {
        m_connection->showError(m_serial->portName(), message, m_serial->lastError());
    });
    connect(m_serialControls, &SerialControls::lost, this, &Sigvane::onDeviceLost);
}

void Sigvane::connectActions()
{
    connect(m_designBar->designAction(), &QAction::triggered, this, &Sigvane::designButton);
    connect(m_designBar->saveAction(), &QAction::triggered, this, &Sigvane::saveButton);
    connect(m_designBar->loadAction(), &QAction::triggered, this, &Sigvane::loadButton);
    connect(m_recordingBar->recordAction(), &QAction::triggered, this, &Sigvane::recordButton);
    connect(m_recordingBar->stopAction(), &QAction::triggered, this, &Sigvane::stopButton);
    connect(m_recordingBar->playAction(), &QAction::triggered, this, &Sigvane::playButton);
    connect(m_recordingBar->exportSignalsAction(), &QAction::triggered, this, &Sigvane::exportButton);
    connect(m_recordingBar->exportEventsAction(), &QAction::triggered, this, &Sigvane::exportEventsButton);
    connect(m_positionBar->fileLabel(), &ClickableLabel::clicked, this, &Sigvane::selectPlaybackFile);
}

void Sigvane::setLicenseCheck(LicenseCheck* check) { m_license->setCheck(check); }

void Sigvane::onDeviceLost()
{
    if (m_recorder->isRecording())
        setMode(Idle);
    m_status->showNotice(tr("The device is gone. Press Connect when it is back."));
}

// --- Modes -------------------------------------------------------------------------------------------------

void Sigvane::setMode(Mode mode) { m_modes->setMode(mode); }

void Sigvane::designButton() { setMode(mode() == Design ? Idle : Design); }

void Sigvane::recordButton() { setMode(Record); }

void Sigvane::playButton() { setMode(Play); }

void Sigvane::stopButton()
{
    setMode(mode() == Play ? Pause : Idle);
    updateStopActionUi();
}

void Sigvane::updateStopActionUi() { m_recordingBar->showPlaying(mode() == Play); }

bool Sigvane::startRecording() { return m_recordingController->start(); }

void Sigvane::stopRecording(bool reloadForPlayback) { m_recordingController->stop(reloadForPlayback); }

// Menus send an empty status tip when they open and close, which would wipe the status bar.
bool Sigvane::event(QEvent* event) { return event->type() == QEvent::StatusTip || QMainWindow::event(event); }

void Sigvane::closeEvent(QCloseEvent* event)
{
    m_engine->cancelLoading();
    m_csvExport->cancel();
    stopRecording(false);
    QMainWindow::closeEvent(event);
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
        item->setDesignMode(mode() == Design);
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
