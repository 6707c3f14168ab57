#include "app/IoToolBar.h"

#include "app/ClickableLabel.h"
#include "playback/SignalPlaybackEngine.h"

#include <QLabel>
#include <QProxyStyle>
#include <QSlider>

namespace {

/// A click beside the handle takes the handle there, as in any player, instead of a step in that direction.
class PositionSliderStyle : public QProxyStyle
{
public:
    PositionSliderStyle()
        : QProxyStyle(QStringLiteral("Fusion"))
    {}
    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override
    {
        if (hint == SH_Slider_AbsoluteSetButtons)
            return Qt::LeftButton;
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }
};

} // namespace

IoToolBar::IoToolBar(QWidget* parent)
    : CompactToolBar(tr("I/O"), QStringLiteral("tb_io"), parent)
{
    addSpacer(20);
    m_fileLabel = new ClickableLabel(tr("No file selected"), this);
    m_fileLabel->setToolTip(tr("Click to choose the recording to replay"));
    m_fileLabel->setAccessibleName(tr("Recording to replay"));
    addWidget(m_fileLabel);
    addSpacer(20);

    m_position = new QSlider(Qt::Horizontal, this);
    m_position->setRange(0, SignalPlaybackEngine::kPositionSteps);
    m_position->setMinimumWidth(300);
    m_position->setMaximumWidth(500);
    m_position->setToolTip(tr("Position in the recording"));
    m_position->setAccessibleName(tr("Position in the recording"));
    auto* style = new PositionSliderStyle;
    style->setParent(m_position);
    m_position->setStyle(style);
    addWidget(m_position);
    addSpacer(20);

    m_timeLabel = new QLabel(QStringLiteral("0.0"), this);
    m_timeLabel->setToolTip(tr("Position in seconds"));
    m_timeLabel->setAccessibleName(tr("Position in seconds"));
    addWidget(m_timeLabel);
}
