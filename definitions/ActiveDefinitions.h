#pragma once

#include "definitions/DashboardSignalParser.h"

#include <QObject>

#include <memory>

// Owns the project's catalogue and, during a replay, a recording's own one, and says which of them is
// active: the recording's own when there is one, else the project's. The only place that sets gSignalParser.
// Whoever holds a catalogue pointer across an event-loop turn asks again after changed().
class ActiveDefinitions : public QObject
{
    Q_OBJECT

public:
    explicit ActiveDefinitions(QObject* parent = nullptr);
    ~ActiveDefinitions() override;

    /// The active catalogue; null until a project or a recording's catalogue was given.
    const DashboardSignalParser* active() const;

    /// Makes the catalogue the project's and gSignalParser, and the active one. A recording's own catalogue
    /// is dropped. The old catalogues are destroyed after changed() was emitted. Null is ignored.
    void setProject(std::unique_ptr<DashboardSignalParser> catalogue);
    /// Makes a recording's own catalogue the active one; the project's stays gSignalParser. Null is ignored.
    void setRecording(std::unique_ptr<DashboardSignalParser> catalogue);
    /// Back to the project's catalogue; without a recording's catalogue nothing happens.
    void discardRecording();

Q_SIGNALS:
    /// active() or gSignalParser is another one now; the one before is still alive during this signal.
    void changed();
    /// After changed(), when the project's catalogue is a new one; the one before is still alive.
    void projectChanged();

private:
    std::unique_ptr<DashboardSignalParser> m_project;
    std::unique_ptr<DashboardSignalParser> m_recording;
};
