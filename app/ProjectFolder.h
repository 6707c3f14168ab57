#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

class ActiveDefinitions;
class QWidget;

// The project that is open: its folder, its subfolders, its definitions file, and how the user chooses one.
// It hands the loaded catalogue to ActiveDefinitions and tells the rest by signals.
class ProjectFolder : public QObject
{
    Q_OBJECT

public:
    /// dialogParent is the window above which the boxes appear; nothing is owned.
    ProjectFolder(ActiveDefinitions* definitions, QWidget* dialogParent);

    /// Whether the folder holds something called dashboard_signals.def.
    static bool isValid(const QString& dir);
    /// Absolute path; empty until a project was opened.
    QString path() const { return m_path; }
    /// The path of a file inside the project.
    QString file(const QString& name) const;
    /// The project's definitions file or the one that was loaded since, absolute; empty when there is none.
    QString definitionsFile() const { return m_definitionsFile; }
    /// Makes recordings, layouts and exports inside the project; without a project it makes nothing.
    void ensureSubdirs() const;

    /// Opens a project. False when the folder is none (nothing changes then), or when its definitions cannot
    /// be loaded (the folder is the project's all the same).
    bool open(const QString& dir);
    /// Makes the file the project's definitions. False after a box that says why; the ones before stay
    /// active.
    bool loadDefinitions(const QString& path);
    /// Reads the definitions file again. False, with a box or a message, when there is none or it does not
    /// load.
    bool reloadDefinitions();
    /// Opens what the command line names, where a project counts more than a definitions file. Says what of
    /// it cannot be used, a line each.
    QStringList openWanted(const std::optional<QString>& dir, const std::optional<QString>& definitions);
    /// Lets the user pick a folder and opens it.
    void choose();
    /// The project choice at start-up. False when the user wants none.
    bool loadLastOrPrompt();
    /// The introduction and the folder picker, again and again until a project is chosen or the user gives
    /// up, which is false.
    bool showIntroAndPrompt();

Q_SIGNALS:
    /// A project is about to be opened: whatever belongs to the one before must end now.
    void aboutToOpen();
    /// This folder is the project's now, also when its definitions cannot be loaded.
    void pathChanged(const QString& path);
    void titleChanged(const QString& windowTitle);
    void statusMessage(const QString& text, int milliseconds);
    /// The user does not want any project.
    void refused();

private:
    QString pickFolder() const;
    void showTitle(const QString& path);

    ActiveDefinitions* m_definitions;
    QWidget* m_dialogParent;
    QString m_path;
    QString m_definitionsFile;
};
