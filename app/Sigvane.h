#pragma once

#include "definitions/ActiveDefinitions.h"

#include <QMainWindow>

#include <optional>

class ConnectionStatus;
class ControlsToolBar;
class CsvExportFlow;
class DesignScene;
class EventRouting;
class ExportToolBar;
class IoToolBar;
class LicenseCheck;
class LicenseStatus;
class PlaybackController;
class ProjectFolder;
class QGraphicsScene;
class RecordingControl;
class SerialControls;
class SerialManager;
class SignalPlaybackEngine;
class SignalRecorder;
class StatusLine;
class ValueRouter;
class WidgetPalette;
struct CommandLine;

// The program's window: toolbars, widget palette and canvas, and the mode that decides whether the user
// arranges the dashboard or watches it. It puts the parts together and forwards; the work is done by them.
class Sigvane : public QMainWindow
{
    Q_OBJECT

public:
    enum Mode { Design = 0, Record = 1, Play = 2, Pause = 3, Idle = 4 };
    Q_ENUM(Mode)

    explicit Sigvane(QWidget* parent = nullptr);
    ~Sigvane() override;

    /// The check that is asked from now on, not owned; without one the program counts as unlicensed.
    void setLicenseCheck(LicenseCheck* check);
    /// Opens what the command line names: project or definitions, layout, port. Without a project the user is
    /// asked for one. What cannot be used is reported in the status bar and on standard error.
    void startWith(const CommandLine& wanted);

    Mode mode() const { return m_mode; }
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
    /// Leaves the mode first and then tries to enter the new one, which may refuse: the old one has been left
    /// by then, and only its number stays. A loading that is under way ends. Asked while another change
    /// is under way (from a box or a loading), it follows when that is done.
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
    void setupToolBars();
    void setupSerialUi();
    void setupCanvas();
    void setupStatusBar();
    void setupRecorder();
    void setupPlayback();
    void setupProject();
    void setupMenus();
    void connectSerialSignals();

    void changeMode(Mode mode);
    void leaveMode(Mode mode);
    [[nodiscard]] bool enterMode(Mode mode);
    void enterDesignMode();
    void exitDesignMode();
    [[nodiscard]] bool enterRecordMode();
    void exitRecordMode();
    void enterPlayMode();
    void exitPlayMode();
    void enterIdleMode();
    void updateStatusLabel(Mode mode);
    void updateStopActionUi();

    void onProjectChanged();
    QString layoutsDir() const;

    ActiveDefinitions m_definitions;
    Mode m_mode = Idle;
    bool m_changingMode = false;
    std::optional<Mode> m_nextMode; ///< asked for during a change
    SerialManager* m_serial = nullptr;
    SerialControls* m_serialControls = nullptr;
    ControlsToolBar* m_controls = nullptr;
    ExportToolBar* m_export = nullptr;
    IoToolBar* m_io = nullptr;
    SignalRecorder* m_recorder = nullptr;
    RecordingControl* m_recording = nullptr;
    SignalPlaybackEngine* m_engine = nullptr;
    PlaybackController* m_playback = nullptr;
    CsvExportFlow* m_csvExport = nullptr;
    WidgetPalette* m_palette = nullptr;
    DesignScene* m_scene = nullptr;
    ValueRouter* m_router = nullptr;
    EventRouting* m_routing = nullptr;
    ProjectFolder* m_project = nullptr;
    ConnectionStatus* m_connection = nullptr;
    LicenseStatus* m_license = nullptr;
    StatusLine* m_status = nullptr;
};
