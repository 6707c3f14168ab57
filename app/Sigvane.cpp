#include "app/Sigvane.h"

#include "app/CommandLine.h"
#include "app/ConnectionStatus.h"
#include "app/ControlsToolBar.h"
#include "app/ExportToolBar.h"
#include "app/IoToolBar.h"
#include "app/LicenseStatus.h"
#include "app/ProjectFolder.h"
#include "app/SerialControls.h"
#include "app/StatusLine.h"
#include "app/ValueRouter.h"
#include "app/WidgetPalette.h"
#include "canvas/DashboardItem.h"
#include "canvas/DashboardView.h"
#include "canvas/DesignScene.h"
#include "canvas/LayoutFile.h"
#include "canvas/Plots.h"
#include "canvas/StackingOrder.h"
#include "serial/SerialManager.h"
#include "widgets/DashboardWidget.h"
#include "widgets/DashboardWidgetFactory.h"
#include "widgets/StateIndicatorWidget.h"

#include <QDebug>
#include <QEvent>
#include <QFileInfo>
#include <QHBoxLayout>
#include <QMenuBar>
#include <QMessageBox>
#include <QScreen>
#include <QStatusBar>
#include <QTimer>

#include <cstdio>

namespace {

constexpr int kProjectMessageMs = 3000;
constexpr QSize kInitialSize(1440, 900);
constexpr int kNewWidgetSide = 250;
constexpr int kNewWidgetPosition = 100;

} // namespace

Sigvane::Sigvane(QWidget* parent)
    : QMainWindow(parent)
{
    setUnifiedTitleAndToolBarOnMac(true);
    setWindowTitle(QStringLiteral("Sigvane"));
    setWindowIcon(QIcon(QStringLiteral(":/icons/sigvane.png")));
    resize(kInitialSize.boundedTo(screen()->availableSize()));
    setupCanvas();
    setupStatusBar();
    setupToolBars();
    setupProject();
    setupMenus();
    setCanvasDesignMode(false);
    m_palette->setEnabled(false);
    updateStatusLabel(m_mode);
    updateStopActionUi();
}

Sigvane::~Sigvane()
{
    // The parts that listen to the serial port go before it; the port may still report while it closes.
    disconnect(m_serial, nullptr, nullptr, nullptr);
}

void Sigvane::setupCanvas()
{
    m_scene = new DesignScene(this);
    m_router = new ValueRouter(m_scene, &m_definitions, this);
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

void Sigvane::setupStatusBar()
{
    m_status = new StatusLine(statusBar());
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
    addToolBar(new IoToolBar(this));

    connect(m_controls->designAction(), &QAction::triggered, this, &Sigvane::designButton);
    connect(m_controls->saveAction(), &QAction::triggered, this, &Sigvane::saveButton);
    connect(m_controls->loadAction(), &QAction::triggered, this, &Sigvane::loadButton);
    connect(m_export->stopAction(), &QAction::triggered, this, &Sigvane::stopButton);

    m_serial = new SerialManager(this);
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
    connect(m_serialControls, &SerialControls::lost, this,
            [this] { m_status->showNotice(tr("The device is gone. Press Connect when it is back.")); });
}

void Sigvane::connectSerialSignals()
{
    connect(m_serial, &SerialManager::rawLineReceived, m_connection, &ConnectionStatus::countLine);
    connect(m_serial, &SerialManager::lineParsed, this,
            [this](double, const QMap<QString, double>& values) { m_router->routeLiveValues(values); });
    connect(
        m_serial, &SerialManager::stateParsed, this,
        [this](double, const QString& group, const QString& state) { m_router->routeState(group, state); });
    connect(m_serial, &SerialManager::errorParsed, m_router, &ValueRouter::routeError);
    connect(m_serial, &SerialManager::unrecognizedParsed, m_router, &ValueRouter::routeMessage);
    connect(m_serial, &SerialManager::errorOccurred, this, [this](const QString& message) {
        m_connection->showError(m_serial->portName(), message, m_serial->lastError());
    });
}

void Sigvane::setupProject()
{
    m_project = new ProjectFolder(&m_definitions, this);
    connect(&m_definitions, &ActiveDefinitions::projectChanged, this, &Sigvane::onProjectChanged);
    connect(m_project, &ProjectFolder::pathChanged, m_scene, &DesignScene::setProjectFolder);
    connect(m_project, &ProjectFolder::aboutToOpen, this, [this] { setMode(Idle); });
    connect(m_project, &ProjectFolder::opened, this, [this](const QString& dir) {
        m_status->showMessage(tr("Project: %1").arg(dir), kProjectMessageMs);
        setWindowTitle(tr("Sigvane — %1").arg(dir));
    });
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
    if (mode == m_mode) {
        updateStatusLabel(mode);
        return;
    }
    leaveMode(m_mode);
    if (enterMode(mode))
        m_mode = mode;
    m_router->setLive(m_mode != Play && m_mode != Pause);
    updateStatusLabel(m_mode);
    updateStopActionUi();
}

void Sigvane::leaveMode(Mode mode)
{
    if (mode == Design)
        exitDesignMode();
    else if (mode == Play)
        exitPlayMode();
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
    case Record: // there is no recorder to enter it with
        return false;
    case Play:
        enterPlayMode();
        return true;
    case Pause:
        return true;
    }
    return false;
}

void Sigvane::enterDesignMode()
{
    qDebug("Design mode started");
    m_palette->setEnabled(true);
    setCanvasDesignMode(true);
    m_definitions.discardRecording();
}

void Sigvane::exitDesignMode()
{
    qDebug("Design mode ended");
    m_palette->setEnabled(false);
    setCanvasDesignMode(false);
    setExternalTimeEnabled(*m_scene, false);
}

// The first replayed frame brings the trend plots their time; until then they follow the clock.
void Sigvane::enterPlayMode()
{
    qDebug("Play mode started");
    setExternalTimeEnabled(*m_scene, false);
}

void Sigvane::exitPlayMode() { qDebug("Play mode ended"); }

void Sigvane::enterIdleMode()
{
    qDebug("Idle mode started");
    clearData();
    setExternalTimeEnabled(*m_scene, false);
}

void Sigvane::setCanvasDesignMode(bool on)
{
    m_scene->setDesignMode(on);
    const QList<DashboardItem*> items = m_scene->dashboardItems();
    for (DashboardItem* item : items)
        item->setDesignMode(on);
}

void Sigvane::updateStatusLabel(Mode mode)
{
    switch (mode) {
    case Design:
        m_status->showMode(tr("Design Mode"));
        break;
    case Record:
        m_status->showMode(tr("Recording..."));
        break;
    case Play:
        m_status->showMode(tr("Playing..."));
        break;
    case Pause:
        m_status->showMode(tr("Pause..."));
        break;
    case Idle:
        m_status->showMode(tr("Idle"));
        break;
    }
}

// Menus send an empty status tip when they open and close, which would wipe the status bar.
bool Sigvane::event(QEvent* event) { return event->type() == QEvent::StatusTip || QMainWindow::event(event); }

void Sigvane::updateStopActionUi() { m_export->showPause(m_mode == Play); }

void Sigvane::designButton() { setMode(m_mode == Design ? Idle : Design); }

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
    const QList<DashboardItem*> items = m_scene->dashboardItems();
    if (!m_license->isLicensed() && items.size() >= kUnlicensedWidgets) {
        QMessageBox::information(
            this, tr("Limit reached"),
            tr("In the unlicensed version you can add up to %1 widgets.").arg(kUnlicensedWidgets));
        return;
    }
    DashboardWidget* widget = DashboardWidgetFactory::instance().create(typeName);
    if (!widget)
        return;
    auto* item = new DashboardItem(widget);
    const qreal z = items.isEmpty() ? 1.0 : items.first()->zValue() + 1.0;
    m_scene->addItem(item);
    item->resize(QSizeF(kNewWidgetSide, kNewWidgetSide));
    item->setPos(kNewWidgetPosition, kNewWidgetPosition);
    item->setZValue(z);
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

void Sigvane::clearData() { clearPlots(*m_scene); }

double Sigvane::dominantTrendWindowSeconds() const { return ::dominantTrendWindowSeconds(*m_scene); }

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
    const QString path = m_project->definitionsFile();
    if (path.isEmpty()) {
        m_status->showMessage(tr("No definitions to reload: open a project first."), kProjectMessageMs);
        return;
    }
    if (!loadSignalsDef(path))
        return;
    if (!projectDir().isEmpty() && path == m_project->file(QStringLiteral("dashboard_signals.def")))
        setWindowTitle(tr("Sigvane — %1").arg(projectDir()));
    reapplyMappingsToCurrentValues();
    m_status->showMessage(tr("Definitions reloaded: %1").arg(path), kProjectMessageMs);
}

void Sigvane::onProjectChanged()
{
    const QList<StateIndicatorWidget*> indicators = m_scene->widgetsOfType<StateIndicatorWidget>(false);
    for (StateIndicatorWidget* indicator : indicators)
        indicator->refreshGroupDisplayFromParser();
    const QList<DashboardWidget*> widgets = m_scene->widgetsOfType<DashboardWidget>(false);
    for (DashboardWidget* widget : widgets)
        widget->update();
    const QString path = m_project->definitionsFile();
    setWindowTitle(tr("Sigvane — %1").arg(path));
    Q_EMIT signalsDefChanged(path);
}

void Sigvane::startWith(const CommandLine& wanted)
{
    QStringList problems = wanted.problems;
    if (wanted.projectDir) {
        if (!setProjectDir(*wanted.projectDir))
            problems.append(tr("Not a usable project: %1").arg(*wanted.projectDir));
    } else if (wanted.definitionsFile) {
        const QString& path = *wanted.definitionsFile;
        const bool opened = setProjectDir(QFileInfo(path).absolutePath());
        if (!loadSignalsDef(path))
            problems.append(tr("Not a usable definitions file: %1").arg(path));
        else if (!opened)
            problems.append(tr("Not a project, only its definitions were loaded: %1").arg(path));
        ensureProjectSubdirs();
    } else {
        loadLastProjectOrPrompt();
    }
    if (wanted.layoutFile) {
        const QString problem = LayoutFile(this, m_scene).loadFrom(*wanted.layoutFile);
        if (!problem.isEmpty())
            problems.append(tr("%1 %2").arg(problem, *wanted.layoutFile));
    }
    if (wanted.baudRate > 0)
        m_serialControls->setBaudRate(wanted.baudRate);
    if (wanted.portName && !m_serialControls->openPort(*wanted.portName))
        problems.append(tr("Could not open the port %1").arg(*wanted.portName));
    reportProblems(problems);
}

void Sigvane::reportProblems(const QStringList& problems)
{
    if (problems.isEmpty())
        return;
    for (const QString& problem : problems)
        std::fprintf(stderr, "sigvane: %s\n", qPrintable(problem));
    m_status->showNotice(problems.join(QStringLiteral("  ·  ")));
}
