#include "playback/ChosenRecording.h"

#include "definitions/ActiveDefinitions.h"
#include "playback/WorkProgress.h"
#include "playback/recording/SignalPlaybackEngine.h"
#include "playback/recording/SignalRecorder.h"

#include <QCheckBox>
#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QLabel>
#include <QMessageBox>
#include <QStandardPaths>

#include <utility>

namespace {

constexpr int kChosenMessageMs = 4000;
constexpr int kTroubleMessageMs = 5000;

/// A tool tip guesses markup, and a path may look like it.
QString plainToolTip(const QString& text)
{
    return Qt::mightBeRichText(text) ? QStringLiteral("<p>%1</p>").arg(text.toHtmlEscaped()) : text;
}

} // namespace

ChosenRecording::ChosenRecording(SignalPlaybackEngine* engine, ActiveDefinitions* definitions,
                                 QLabel* fileLabel, const QCheckBox* useItsDefinitions, QWidget* dialogParent)
    : m_engine(engine)
    , m_definitions(definitions)
    , m_fileLabel(fileLabel)
    , m_useItsDefinitions(useItsDefinitions)
    , m_dialogParent(dialogParent)
{
    connect(useItsDefinitions, &QCheckBox::toggled, this, [this] {
        if (!m_path.isEmpty())
            selectActiveSignalParserFor(m_path);
    });
    connect(definitions, &ActiveDefinitions::changed, this, &ChosenRecording::handOverStateGroups);
    handOverStateGroups();
}

// --- The file ----------------------------------------------------------------------------------------------

void ChosenRecording::choose(const QString& path)
{
    m_path = path;
    updatePlaybackFileDisplay();
}

void ChosenRecording::updatePlaybackFileDisplay()
{
    const QString name = QFileInfo(m_path).fileName();
    m_fileLabel->setText(name.isEmpty() ? tr("No file selected") : name);
    if (!name.isEmpty())
        m_fileLabel->setToolTip(plainToolTip(m_path));
}

QString ChosenRecording::askForFile() const
{
    const QString folder = m_projectFolder.isEmpty()
                               ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation)
                               : QDir(m_projectFolder).filePath(QStringLiteral("recordings"));
    QFileDialog dialog(m_dialogParent, tr("Open Recording"), folder, tr("Recordings (*.rec)"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    return dialog.exec() == QDialog::Accepted ? dialog.selectedFiles().value(0) : QString();
}

bool ChosenRecording::selectPlaybackFile()
{
    if (m_engine->isLoading())
        return false;
    const QString path = askForFile();
    if (path.isEmpty())
        return true;
    choose(path);
    if (loadOrWarn() != Loading::Loaded)
        return false;
    prepareSignalParserForPlaybackFile(m_path);
    return true;
}

bool ChosenRecording::open(const QString& path)
{
    choose(path);
    prepareSignalParserForPlaybackFile(path);
    return loadOrWarn() == Loading::Loaded;
}

void ChosenRecording::showRecorded(const QString& path)
{
    choose(path);
    selectActiveSignalParserFor(path);
    load();
    m_engine->resetStartTime();
}

// --- Loading it --------------------------------------------------------------------------------------------

ChosenRecording::Loading ChosenRecording::reload()
{
    selectActiveSignalParserFor(m_path);
    return loadOrWarn();
}

bool ChosenRecording::ensurePlaybackLoaded()
{
    if (m_engine->hasFrames())
        return true;
    if (m_path.isEmpty())
        return false;
    selectActiveSignalParserFor(m_path);
    if (load() != Loading::Loaded)
        return false;
    m_engine->resetStartTime();
    updatePlaybackFileDisplay();
    return m_engine->hasFrames();
}

std::shared_ptr<const SignalRecording> ChosenRecording::forExport(const QString& boxTitle)
{
    if (m_engine->isLoading()) // what is loaded is not what is chosen
        return nullptr;
    if (ensurePlaybackLoaded())
        return m_engine->recording();
    if (!m_engine->wasLoadCancelled())
        QMessageBox::information(m_dialogParent, boxTitle, tr("No playback data loaded."));
    return nullptr;
}

ChosenRecording::Loading ChosenRecording::loadOrWarn()
{
    const Loading result = load();
    if (result == Loading::Failed)
        QMessageBox::warning(m_dialogParent, tr("Error"), tr("Failed to load playback file"));
    return result;
}

// The window is alive meanwhile: a device may go away, the mode may change, another recording be chosen.
ChosenRecording::Loading ChosenRecording::load()
{
    if (m_engine->isLoading()) {
        if (m_path != m_loadingPath)
            m_engine->cancelLoading(); // the load in progress goes on with what is chosen now
        return Loading::Cancelled;
    }
    Q_EMIT aboutToLoad();
    bool loaded = false;
    do {
        m_loadingPath = m_path;
        loaded = loadFile(m_loadingPath);
    } while (m_loadingPath != m_path);

    // A position in another recording means nothing in this one.
    if (loaded && std::exchange(m_positionPath, m_path) != m_path)
        m_engine->resetStartTime();
    Q_EMIT loadEnded();
    if (loaded)
        return Loading::Loaded;
    return m_engine->wasLoadCancelled() ? Loading::Cancelled : Loading::Failed;
}

bool ChosenRecording::loadFile(const QString& path)
{
    const QString text = tr("Loading %1…").arg(QFileInfo(path).fileName());
    WorkProgress progress(tr("Loading"), text, m_dialogParent);
    const auto onProgress = [this, &progress](double done) {
        if (!progress.update(done))
            m_engine->cancelLoading();
    };
    const auto connection = connect(m_engine, &SignalPlaybackEngine::loadProgressed, this, onProgress);
    const bool loaded = m_engine->loadFromFile(path);
    disconnect(connection);
    return loaded;
}

// --- Its definitions ---------------------------------------------------------------------------------------

void ChosenRecording::prepareSignalParserForPlaybackFile(const QString& path)
{
    m_definitions->discardRecording();
    if (!m_useItsDefinitions->isChecked())
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

void ChosenRecording::selectActiveSignalParserFor(const QString& path)
{
    prepareSignalParserForPlaybackFile(path);
    handOverStateGroups();
    Q_EMIT reapplyRequested();
}

void ChosenRecording::handOverStateGroups()
{
    const DashboardSignalParser* active = m_definitions->active();
    m_engine->setKnownStateGroups(active ? active->stateGroupIds() : QStringList());
}
