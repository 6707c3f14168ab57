#pragma once

#include "app/ModeSwitch.h"
#include "definitions/ActiveDefinitions.h"

#include <QMainWindow>

class ConnectionStatus;
class CsvExportController;
class DesignAndPortToolBar;
class DesignScene;
class EventRouter;
class LicenseCheck;
class LicenseGate;
class PlaybackController;
class PositionToolBar;
class ProjectFolder;
class QGraphicsScene;
class RecordingController;
class RecordingToolBar;
class SerialControls;
class SerialManager;
class SignalPlaybackEngine;
class SignalRecorder;
class StatusLine;
class ValueRouter;
class WidgetPalette;
struct CommandLine;

// The program's window: toolbars, widget palette, canvas and status bar. It puts the parts together and
// forwards what belongs to it by name; the work is done by them, the modes are changed by ModeSwitch.
class Sigvane : public QMainWindow
{
    Q_OBJECT

public:
    using Mode = ModeSwitch::Mode;
    using enum ModeSwitch::Mode;

    explicit Sigvane(QWidget* parent = nullptr);
    ~Sigvane() override;

    /// The check that is asked from now on, not owned; without one the program counts as unlicensed.
    void setLicenseCheck(LicenseCheck* check);
    /// Opens what the command line names: project or definitions, layout, port. Without a project the user is
    /// asked for one. What cannot be used is reported in the status bar and on standard error.
    void startWith(const CommandLine& wanted);

    Mode mode() const { return m_modes->mode(); }
    DesignScene* scene() const { return m_scene; }
    SerialManager* serial() const { return m_serial; }
    ValueRouter* router() const { return m_router; }
    SignalPlaybackEngine* playbackEngine() const { return m_engine; }
    PlaybackController* playback() const { return m_playback; }
    const SignalRecorder* recorder() const { return m_recorder; }

    bool isValidProjectDir(const QString& dir) const;
    QString projectDir() const;
    QString projFile(const QString& name) const;
    void ensureProjectSubdirs();
    bool setProjectDir(const QString& dir);
    bool loadSignalsDef(const QString& path);
    void loadLastProjectOrPrompt();
    void showProjectIntroAndPrompt();

    void updateSignalValue(const QString& name, double raw);
    void updateSignalValueAt(const QString& name, double raw, double tSec);
    void updateStateValue(const QString& group, const QString& stateId, const QString& label);
    void reapplyMappingsToCurrentValues();
    void clearErrorConsoles();
    /// Empties every trend plot and XY plot; the last values stay known.
    void clearData();
    double dominantTrendWindowSeconds() const;

    static void normalizeZOrder(QGraphicsScene* scene);

    /// Begins a recording in the project. False after a box that says why.
    [[nodiscard]] bool startRecording();
    /// Ends the recording as a whole file; with reloadForPlayback it becomes the chosen one.
    void stopRecording(bool reloadForPlayback);

public Q_SLOTS:
    /// See ModeSwitch::setMode().
    void setMode(Sigvane::Mode mode);
    void designButton();
    void recordButton();
    void playButton();
    void stopButton();
    void exportButton();
    void exportEventsButton();
    void selectPlaybackFile();
    void startPlayback(const QString& path);
    void saveButton();
    void loadButton();
    void saveLayout();
    void loadLayout();
    void chooseProjectDir();
    void reloadDefinitions();
    /// Puts a new widget on the canvas, if the licence allows one more. Unknown names are ignored.
    void addWidget(const QString& typeName);

Q_SIGNALS:
    /// The absolute path of the definitions file that was loaded.
    void signalsDefChanged(const QString& path);

protected:
    bool event(QEvent* event) override;
    void closeEvent(QCloseEvent* event) override;

private:
    // In the order in which the parts come into being; each connects what it makes with what there is.
    void setupCanvas();
    void setupToolBars();
    void setupSerialUi();
    void setupLicense();
    void setupRecorder();
    void setupStatusBar();
    void setupPlayback();
    void setupModes();
    void setupProject();
    void setupMenus();
    void connectSerialSignals();
    void connectActions();

    void onDeviceLost();
    void updateStopActionUi();
    void onProjectChanged();
    QString layoutsDir() const;

    ActiveDefinitions m_definitions;
    DesignScene* m_scene = nullptr;
    ValueRouter* m_router = nullptr;
    EventRouter* m_events = nullptr;
    WidgetPalette* m_palette = nullptr;
    DesignAndPortToolBar* m_designBar = nullptr;
    RecordingToolBar* m_recordingBar = nullptr;
    PositionToolBar* m_positionBar = nullptr;
    StatusLine* m_status = nullptr;
    ConnectionStatus* m_connection = nullptr;
    SerialManager* m_serial = nullptr;
    SerialControls* m_serialControls = nullptr;
    LicenseGate* m_license = nullptr;
    SignalRecorder* m_recorder = nullptr;
    RecordingController* m_recordingController = nullptr;
    SignalPlaybackEngine* m_engine = nullptr;
    PlaybackController* m_playback = nullptr;
    CsvExportController* m_csvExport = nullptr;
    ModeSwitch* m_modes = nullptr;
    ProjectFolder* m_project = nullptr;
};
