#include "app/IoToolBar.h"

#include <QLabel>
#include <QSlider>

namespace {

constexpr int kSliderMaxSteps = 1000;

} // namespace

IoToolBar::IoToolBar(QWidget* parent)
    : CompactToolBar(tr("I/O"), QStringLiteral("tb_io"), parent)
{
    addSpacer(20);
    m_fileLabel = new QLabel(tr("No file selected"), this);
    m_fileLabel->setTextFormat(Qt::PlainText);
    m_fileLabel->setCursor(Qt::PointingHandCursor);
    m_fileLabel->setToolTip(tr("The recording to replay"));
    m_fileLabel->setEnabled(false);
    addWidget(m_fileLabel);
    addSpacer(20);

    m_position = new QSlider(Qt::Horizontal, this);
    m_position->setRange(0, kSliderMaxSteps);
    m_position->setMinimumWidth(300);
    m_position->setMaximumWidth(500);
    m_position->setToolTip(tr("Position in the recording"));
    m_position->setAccessibleName(tr("Position in the recording"));
    m_position->setEnabled(false);
    addWidget(m_position);
    addSpacer(20);

    m_timeLabel = new QLabel(QStringLiteral("0.0"), this);
    m_timeLabel->setToolTip(tr("Position in seconds"));
    m_timeLabel->setEnabled(false);
    addWidget(m_timeLabel);
}
