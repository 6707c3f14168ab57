#include "app/StartUp.h"

#include "app/CommandLine.h"
#include "app/ProjectFolder.h"
#include "app/SerialControls.h"
#include "app/StatusLine.h"
#include "canvas/LayoutFile.h"

#include <QMainWindow>
#include <QTimer>

StartUp::StartUp(ProjectFolder* project, SerialControls* serial, StatusLine* status, QMainWindow* window,
                 DesignScene* scene)
    : QObject(window)
    , m_project(project)
    , m_serial(serial)
    , m_status(status)
    , m_window(window)
    , m_scene(scene)
{}

void StartUp::run(const CommandLine& wanted)
{
    QStringList problems = wanted.problems;
    if (wanted.projectDir || wanted.definitionsFile)
        problems += m_project->openWanted(wanted.projectDir, wanted.definitionsFile);
    else
        m_project->loadLastOrPrompt();
    if (wanted.layoutFile) {
        const QString problem = LayoutFile(m_window, m_scene).loadFrom(*wanted.layoutFile);
        if (!problem.isEmpty())
            problems.append(tr("%1 %2").arg(problem, *wanted.layoutFile));
    }
    // From the event loop, when the window is there and its boxes have something to stand on.
    if (wanted.record)
        connect(m_serial, &SerialControls::opened, this, &StartUp::recordRequested,
                Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    if (wanted.baudRate > 0)
        m_serial->setBaudRate(wanted.baudRate);
    if (wanted.portName && !m_serial->openPort(*wanted.portName))
        problems.append(tr("Could not open the port %1").arg(*wanted.portName));
    m_status->reportProblems(problems);
    const auto play = [this, path = wanted.playFile.value_or(QString())] {
        if (m_window->isVisible() && !path.isEmpty()) // closed when the user wants no project
            Q_EMIT playRequested(path);
    };
    QTimer::singleShot(0, this, play);
}
