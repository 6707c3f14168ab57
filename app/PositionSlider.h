#pragma once

#include <QSlider>

// A slider for a position in time: a press beside the handle takes the handle there and holds it, as in any
// player, instead of stepping in that direction. A press on the handle moves nothing.
class PositionSlider : public QSlider
{
    Q_OBJECT

public:
    explicit PositionSlider(QWidget* parent);

protected:
    void mousePressEvent(QMouseEvent* event) override;
};
