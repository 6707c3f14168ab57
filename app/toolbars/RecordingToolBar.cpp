#include "app/toolbars/RecordingToolBar.h"

#include <QAction>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

RecordingToolBar::RecordingToolBar(QWidget* parent)
    : CompactToolBar(tr("Export"), QStringLiteral("tb_export"), parent)
    , m_stopIcon(QStringLiteral(":/icons/stop.png"))
    , m_pauseIcon(QStringLiteral(":/icons/pause.png"))
{
    addSpacer(10);
    setupPlayback();
    addSeparator();
    setupExport();
    addSeparator();
    m_useRecordingDefinitions = new QCheckBox(tr("Use recording’s definitions"), this);
    m_useRecordingDefinitions->setToolTip(
        tr("If checked, playback uses the signal definitions saved with the recording (if available)."));
    addWidget(m_useRecordingDefinitions);
}

void RecordingToolBar::setupPlayback()
{
    m_record = addIconAction(QStringLiteral(":/icons/record.png"), tr("Record"),
                             tr("Record what the device prints (Ctrl+Shift+R)"));
    m_record->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_R);
    m_stop = addIconAction(QStringLiteral(":/icons/stop.png"), tr("Stop"), tr("Stop"));
    m_stop->setShortcut(Qt::CTRL | Qt::Key_Period);
    m_play = addIconAction(QStringLiteral(":/icons/play.png"), tr("Play"),
                           tr("Replay the chosen recording (Ctrl+Shift+P)"));
    m_play->setShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_P);
    auto* label = new QLabel(tr("Speed:"), this);
    addWidget(label);
    m_speed = new QDoubleSpinBox(this);
    m_speed->setRange(0.01, 100.0);
    m_speed->setSingleStep(0.1);
    m_speed->setDecimals(2);
    m_speed->setValue(1.0);
    m_speed->setToolTip(tr("Speed of the replay; 1 is real time"));
    m_speed->setAccessibleName(tr("Replay speed"));
    label->setBuddy(m_speed);
    addWidget(m_speed);
}

void RecordingToolBar::setupExport()
{
    auto* box = new QWidget(this);
    auto* layout = new QHBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    const auto addExport = [this, box, layout](const QString& text, const QString& toolTip) {
        auto* action = new QAction(QIcon(QStringLiteral(":/icons/export.png")), text, this);
        action->setToolTip(toolTip);
        auto* button = new QToolButton(box);
        button->setDefaultAction(action);
        button->setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
        button->setAutoRaise(true);
        button->setIconSize(iconSize());
        layout->addWidget(button);
        return action;
    };
    m_exportSignals = addExport(tr("Signals"), tr("Export the recording's signals as CSV"));
    m_exportEvents = addExport(tr("Events"), tr("Export the recording's states, errors and messages as CSV"));
    addWidget(box);
}

void RecordingToolBar::showPlaying(bool playing)
{
    m_stop->setIcon(playing ? m_pauseIcon : m_stopIcon);
    m_stop->setText(playing ? tr("Pause") : tr("Stop"));
    m_stop->setToolTip(playing ? tr("Pause playback") : tr("Stop"));
    m_play->setEnabled(!playing);
}
