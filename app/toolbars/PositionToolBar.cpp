#include "app/toolbars/PositionToolBar.h"

#include "app/toolbars/ClickableLabel.h"
#include "app/toolbars/PositionSlider.h"
#include "playback/recording/SignalPlaybackEngine.h"

#include <QLabel>

PositionToolBar::PositionToolBar(QWidget* parent)
    : CompactToolBar(tr("I/O"), QStringLiteral("tb_io"), parent)
{
    addSpacer(20);
    m_fileLabel = new ClickableLabel(tr("No file selected"), this);
    m_fileLabel->setToolTip(tr("Click to choose the recording to replay"));
    m_fileLabel->setAccessibleName(tr("Recording to replay"));
    addWidget(m_fileLabel);
    addSpacer(20);

    m_position = new PositionSlider(this);
    m_position->setRange(0, SignalPlaybackEngine::kPositionSteps);
    m_position->setMinimumWidth(300);
    m_position->setMaximumWidth(500);
    m_position->setToolTip(tr("Position in the recording"));
    m_position->setAccessibleName(tr("Position in the recording"));
    addWidget(m_position);
    addSpacer(20);

    m_timeLabel = new QLabel(QStringLiteral("0.0"), this);
    m_timeLabel->setToolTip(tr("Position in seconds"));
    m_timeLabel->setAccessibleName(tr("Position in seconds"));
    addWidget(m_timeLabel);
}
