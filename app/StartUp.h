#pragma once

#include <QObject>
#include <QString>
#include <QStringList>

#include <optional>

class DesignScene;
class ProjectFolder;
class QMainWindow;
class SerialControls;
class StatusLine;
struct CommandLine;

// Does what the command line asks for when the program starts: project, layout, port; and asks the window for
// a recording or a replay. What cannot be done it says in the status bar and on standard error.
class StartUp : public QObject
{
    Q_OBJECT

public:
    /// Nothing is owned.
    StartUp(ProjectFolder* project, SerialControls* serial, StatusLine* status, QMainWindow* window,
            DesignScene* scene);

    void run(const CommandLine& wanted);

Q_SIGNALS:
    /// The port is open, perhaps later by hand. From the event loop, as the next one.
    void recordRequested();
    void playRequested(const QString& path);

private:
    void finish(const QStringList& problems, const std::optional<QString>& playFile);

    ProjectFolder* m_project;
    SerialControls* m_serial;
    StatusLine* m_status;
    QMainWindow* m_window;
    DesignScene* m_scene;
};
