#include "app/StartUp.h"

#include "app/CommandLine.h"
#include "app/ProjectFolder.h"
#include "app/status/StatusLine.h"
#include "app/toolbars/SerialControls.h"
#include "canvas/LayoutFile.h"

#include <QMainWindow>
#include <QTimer>

#include <cstdio>
#include <optional>
#include <utility>

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
    else if (!m_project->loadLastOrPrompt())
        return; // the program ends
    if (wanted.layoutFile) {
        const QString problem = LayoutFile(m_window, m_scene).loadFrom(*wanted.layoutFile);
        if (!problem.isEmpty())
            problems.append(tr("%1 %2").arg(problem, *wanted.layoutFile));
    }
    if (wanted.record)
        connect(m_serial, &SerialControls::opened, this, &StartUp::recordRequested,
                Qt::ConnectionType(Qt::QueuedConnection | Qt::SingleShotConnection));
    if (wanted.baudRate > 0)
        m_serial->setBaudRate(wanted.baudRate);
    if (wanted.portName && !m_serial->openPort(*wanted.portName))
        problems.append(tr("Could not open the port %1").arg(*wanted.portName));
    for (const QString& problem : std::as_const(problems))
        std::fprintf(stderr, "sigvane: %s\n", qPrintable(problem));
    // Once the window is there, so that a box has something to stand on, and after the recording has begun:
    // the change of mode would wipe the problems from the status bar.
    QTimer::singleShot(0, this, [this, problems, path = wanted.playFile] { finish(problems, path); });
}

void StartUp::finish(const QStringList& problems, const std::optional<QString>& playFile)
{
    if (playFile)
        Q_EMIT playRequested(*playFile);
    if (!problems.isEmpty())
        m_status->showNotice(problems.join(QStringLiteral("  ·  ")));
}
