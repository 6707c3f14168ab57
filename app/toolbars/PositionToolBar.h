#pragma once

#include "app/toolbars/CompactToolBar.h"

class ClickableLabel;
class QLabel;
class QSlider;

// The third toolbar: the chosen recording and the position in it.
class PositionToolBar : public CompactToolBar
{
    Q_OBJECT

public:
    explicit PositionToolBar(QWidget* parent);

    ClickableLabel* fileLabel() const { return m_fileLabel; }
    QSlider* positionSlider() const { return m_position; }
    QLabel* timeLabel() const { return m_timeLabel; }

private:
    ClickableLabel* m_fileLabel;
    QSlider* m_position;
    QLabel* m_timeLabel;
};
