#pragma once

#include <QSlider>

// A slider for a position in time: a press beside the handle takes the handle there and holds it, as in any
// player, instead of stepping in that direction. A press on the handle moves nothing. A box or a menu that
// opens releases the handle, as it will swallow the real release.
class PositionSlider : public QSlider
{
    Q_OBJECT

public:
    explicit PositionSlider(QWidget* parent);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
};
