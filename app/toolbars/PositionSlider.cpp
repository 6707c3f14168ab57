#include "app/toolbars/PositionSlider.h"

#include <QMouseEvent>
#include <QStyleOptionSlider>

PositionSlider::PositionSlider(QWidget* parent)
    : QSlider(Qt::Horizontal, parent)
{}

void PositionSlider::mousePressEvent(QMouseEvent* event)
{
    QStyleOptionSlider option;
    initStyleOption(&option);
    const auto rectOf = [this, &option](QStyle::SubControl control) {
        return style()->subControlRect(QStyle::CC_Slider, &option, control, this);
    };
    const QRect handle = rectOf(QStyle::SC_SliderHandle);
    const QPoint pos = event->position().toPoint();
    if (event->buttons() == Qt::LeftButton && !handle.contains(pos)) {
        const QRect groove = rectOf(QStyle::SC_SliderGroove);
        setValue(QStyle::sliderValueFromPosition(minimum(), maximum(),
                                                 pos.x() - groove.left() - handle.width() / 2,
                                                 groove.width() - handle.width(), option.upsideDown));
    }
    QSlider::mousePressEvent(event); // finds the handle under the mouse now
}

// A handle that was released for the user stays where it is, though the button is still down.
void PositionSlider::mouseMoveEvent(QMouseEvent* event)
{
    if (isSliderDown())
        QSlider::mouseMoveEvent(event);
}

void PositionSlider::focusOutEvent(QFocusEvent* event)
{
    setSliderDown(false);
    QSlider::focusOutEvent(event);
}

void PositionSlider::showEvent(QShowEvent* event)
{
    window()->installEventFilter(this); // only windows hear that they are blocked
    QSlider::showEvent(event);
}

bool PositionSlider::eventFilter(QObject* watched, QEvent* event)
{
    if (event->type() == QEvent::WindowBlocked)
        setSliderDown(false);
    return QSlider::eventFilter(watched, event);
}
