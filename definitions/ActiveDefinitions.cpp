#include "definitions/ActiveDefinitions.h"

ActiveDefinitions::ActiveDefinitions(QObject* parent)
    : QObject(parent)
{}

ActiveDefinitions::~ActiveDefinitions()
{
    if (gSignalParser == m_project.get())
        gSignalParser = nullptr;
}

const DashboardSignalParser* ActiveDefinitions::active() const
{
    return m_recording ? m_recording.get() : m_project.get();
}

void ActiveDefinitions::setProject(std::unique_ptr<DashboardSignalParser> catalogue)
{
    if (!catalogue)
        return;
    m_project.swap(catalogue); // the old ones live to the end of this function
    const std::unique_ptr<DashboardSignalParser> oldRecording = std::move(m_recording);
    gSignalParser = m_project.get();
    Q_EMIT changed();
    Q_EMIT projectChanged();
}

void ActiveDefinitions::setRecording(std::unique_ptr<DashboardSignalParser> catalogue)
{
    if (!catalogue)
        return;
    m_recording.swap(catalogue);
    Q_EMIT changed();
}

void ActiveDefinitions::discardRecording()
{
    if (!m_recording)
        return;
    const std::unique_ptr<DashboardSignalParser> old = std::move(m_recording);
    Q_EMIT changed();
}
