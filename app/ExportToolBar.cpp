#include "app/ExportToolBar.h"

#include <QAction>
#include <QCheckBox>
#include <QDoubleSpinBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>

ExportToolBar::ExportToolBar(QWidget* parent)
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
    m_useRecordingDefinitions->setEnabled(false);
    addWidget(m_useRecordingDefinitions);
}

void ExportToolBar::setupPlayback()
{
    m_record = addIconAction(QStringLiteral(":/icons/record.png"), tr("Record"),
                             tr("Record what the device prints"));
    m_record->setEnabled(false);
    m_stop = addIconAction(QStringLiteral(":/icons/stop.png"), tr("Stop"), tr("Stop"));
    m_stop->setShortcut(Qt::CTRL | Qt::Key_Period);
    m_play = addIconAction(QStringLiteral(":/icons/play.png"), tr("Play"), tr("Replay the chosen recording"));
    m_play->setEnabled(false);
    auto* label = new QLabel(tr("Speed:"), this);
    addWidget(label);
    m_speed = new QDoubleSpinBox(this);
    m_speed->setRange(0.01, 100.0);
    m_speed->setSingleStep(0.1);
    m_speed->setDecimals(2);
    m_speed->setValue(1.0);
    m_speed->setToolTip(tr("Speed of the replay; 1 is real time"));
    m_speed->setAccessibleName(tr("Replay speed"));
    m_speed->setEnabled(false);
    label->setBuddy(m_speed);
    addWidget(m_speed);
}

void ExportToolBar::setupExport()
{
    auto* box = new QWidget(this);
    auto* layout = new QHBoxLayout(box);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->setSpacing(4);
    const auto addExport = [this, box, layout](const QString& text, const QString& toolTip) {
        auto* action = new QAction(QIcon(QStringLiteral(":/icons/export.png")), text, this);
        action->setToolTip(toolTip);
        action->setEnabled(false);
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

void ExportToolBar::showPause(bool pause)
{
    m_stop->setIcon(pause ? m_pauseIcon : m_stopIcon);
    m_stop->setText(pause ? tr("Pause") : tr("Stop"));
    m_stop->setToolTip(pause ? tr("Pause playback") : tr("Stop"));
}
