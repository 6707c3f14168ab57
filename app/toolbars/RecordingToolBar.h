#pragma once

#include "app/toolbars/CompactToolBar.h"

#include <QIcon>

class QCheckBox;
class QDoubleSpinBox;

// The second toolbar: recording, replay and export.
class RecordingToolBar : public CompactToolBar
{
    Q_OBJECT

public:
    explicit RecordingToolBar(QWidget* parent);

    QAction* recordAction() const { return m_record; }
    QAction* stopAction() const { return m_stop; }
    QAction* playAction() const { return m_play; }
    QDoubleSpinBox* speedBox() const { return m_speed; }
    QAction* exportSignalsAction() const { return m_exportSignals; }
    QAction* exportEventsAction() const { return m_exportEvents; }
    QCheckBox* recordingDefinitionsBox() const { return m_useRecordingDefinitions; }

    /// While a replay runs Stop pauses it, and there is nothing to play.
    void showPlaying(bool playing);

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
