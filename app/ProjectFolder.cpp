#include "app/ProjectFolder.h"

#include "app/ProjectIntroDialog.h"
#include "definitions/ActiveDefinitions.h"
#include "widgets/PlainWarning.h"

#include <QDir>
#include <QFileDialog>
#include <QFileInfo>
#include <QSettings>
#include <QStandardPaths>

#include <memory>

namespace {

constexpr QLatin1String kDefinitionsName("dashboard_signals.def");
constexpr int kMessageMs = 3000;
constexpr QLatin1String kApplication("Sigvane");
constexpr QLatin1String kProjectDirKey("projectDir");
// Two stores on purpose: the prompt's own one forgets its folder at every start, the other one keeps the last
// project that was opened in any way.
constexpr QLatin1String kPromptOrganization("Tavimar");
constexpr QLatin1String kLastOpenedOrganization("YourCompany");

} // namespace

ProjectFolder::ProjectFolder(ActiveDefinitions* definitions, QWidget* dialogParent)
    : QObject(dialogParent)
    , m_definitions(definitions)
    , m_dialogParent(dialogParent)
{}

bool ProjectFolder::isValid(const QString& dir)
{
    return !dir.isEmpty() && QFileInfo::exists(QDir(dir).filePath(kDefinitionsName));
}

QString ProjectFolder::file(const QString& name) const { return QDir(m_path).filePath(name); }

void ProjectFolder::ensureSubdirs() const
{
    if (m_path.isEmpty())
        return;
    for (const char* name : {"recordings", "layouts", "exports"})
        QDir().mkpath(file(QLatin1String(name)));
}

bool ProjectFolder::open(const QString& dir)
{
    if (!isValid(dir))
        return false;
    Q_EMIT aboutToOpen();
    m_path = QDir(dir).absolutePath();
    Q_EMIT pathChanged(m_path);
    QSettings(kLastOpenedOrganization, kApplication).setValue(kProjectDirKey, m_path);
    ensureSubdirs();
    m_definitionsFile = file(kDefinitionsName); // also when it does not load: a reload tries it again
    if (!loadDefinitions(m_definitionsFile))
        return false;
    Q_EMIT statusMessage(tr("Project: %1").arg(m_path), kMessageMs);
    showTitle(m_path);
    return true;
}

bool ProjectFolder::loadDefinitions(const QString& path)
{
    const QString title = tr("Signals Definition");
    if (!QFileInfo(path).isFile()) {
        warnPlainly(m_dialogParent, title, tr("Cannot find signals file:\n%1").arg(path));
        return false;
    }
    auto catalogue = std::make_unique<DashboardSignalParser>(path);
    if (!catalogue->parse()) {
        warnPlainly(m_dialogParent, title, tr("Failed to load:\n%1").arg(path));
        return false;
    }
    m_definitionsFile = QFileInfo(path).absoluteFilePath();
    showTitle(m_definitionsFile);
    m_definitions->setProject(std::move(catalogue));
    return true;
}

bool ProjectFolder::reloadDefinitions()
{
    if (m_definitionsFile.isEmpty()) {
        Q_EMIT statusMessage(tr("No definitions to reload: open a project first."), kMessageMs);
        return false;
    }
    if (!loadDefinitions(m_definitionsFile))
        return false;
    if (!m_path.isEmpty() && m_definitionsFile == file(kDefinitionsName))
        showTitle(m_path);
    Q_EMIT statusMessage(tr("Definitions reloaded: %1").arg(m_definitionsFile), kMessageMs);
    return true;
}

void ProjectFolder::showTitle(const QString& path) { Q_EMIT titleChanged(tr("Sigvane — %1").arg(path)); }

QStringList ProjectFolder::openWanted(const std::optional<QString>& dir,
                                      const std::optional<QString>& definitions)
{
    if (dir)
        return open(*dir) ? QStringList() : QStringList(tr("Not a usable project: %1").arg(*dir));
    if (!definitions)
        return {};
    const bool opened = open(QFileInfo(*definitions).absolutePath());
    const bool loaded = loadDefinitions(*definitions);
    ensureSubdirs();
    if (!loaded)
        return {tr("Not a usable definitions file: %1").arg(*definitions)};
    return opened ? QStringList()
                  : QStringList(tr("Not a project, only its definitions were loaded: %1").arg(*definitions));
}

void ProjectFolder::choose()
{
    const QString dir = pickFolder();
    if (!dir.isEmpty() && !open(dir))
        warnPlainly(m_dialogParent, tr("Invalid Project"),
                    tr("Selected folder does not contain dashboard_signals.def"));
}

bool ProjectFolder::loadLastOrPrompt()
{
    // The stored folder is forgotten before it is read: every start without a project asks again.
    QSettings settings(kPromptOrganization, kApplication);
    settings.remove(kProjectDirKey);
    const QString last = settings.value(kProjectDirKey).toString();
    return (isValid(last) && open(last)) || showIntroAndPrompt();
}

bool ProjectFolder::showIntroAndPrompt()
{
    for (;;) {
        const QString dir = showProjectIntro(m_dialogParent) ? QString() : pickFolder();
        if (dir.isEmpty()) {
            Q_EMIT refused();
            return false;
        }
        if (isValid(dir)) {
            if (open(dir))
                QSettings(kPromptOrganization, kApplication).setValue(kProjectDirKey, dir);
            return true;
        }
        warnPlainly(m_dialogParent, tr("Invalid Project"),
                    tr("Selected folder does not contain dashboard_signals.def"));
    }
}

QString ProjectFolder::pickFolder() const
{
    const QString start =
        m_path.isEmpty() ? QStandardPaths::writableLocation(QStandardPaths::DocumentsLocation) : m_path;
    return QFileDialog::getExistingDirectory(
        m_dialogParent, tr("Select Project Folder (contains dashboard_signals.def)"), start);
}
