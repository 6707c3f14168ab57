#pragma once

#include "app/CompactToolBar.h"

#include <QIcon>

class QCheckBox;
class QDoubleSpinBox;

// The second toolbar: recording, replay and export. What needs a recorder or a recording is disabled.
class ExportToolBar : public CompactToolBar
{
    Q_OBJECT

public:
    explicit ExportToolBar(QWidget* parent);

    QAction* stopAction() const { return m_stop; }
    /// What the Stop action does next: pause a replay, or stop.
    void showPause(bool pause);

private:
    void setupPlayback();
    void setupExport();

    QIcon m_stopIcon;
    QIcon m_pauseIcon;
    QAction* m_record = nullptr;
    QAction* m_stop = nullptr;
    QAction* m_play = nullptr;
    QDoubleSpinBox* m_speed = nullptr;
    QAction* m_exportSignals = nullptr;
    QAction* m_exportEvents = nullptr;
    QCheckBox* m_useRecordingDefinitions = nullptr;
};
