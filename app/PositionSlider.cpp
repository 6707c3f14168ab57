#include "app/PositionSlider.h"

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
    if (event->button() == Qt::LeftButton && !handle.contains(pos)) {
        const QRect groove = rectOf(QStyle::SC_SliderGroove);
        setValue(QStyle::sliderValueFromPosition(minimum(), maximum(),
                                                 pos.x() - groove.left() - handle.width() / 2,
                                                 groove.width() - handle.width(), option.upsideDown));
    }
    QSlider::mousePressEvent(event); // finds the handle under the mouse now
}
