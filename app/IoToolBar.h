#pragma once

#include "app/CompactToolBar.h"

class QLabel;
class QSlider;

// The third toolbar: the chosen recording and the position in it. Disabled as long as there is nothing to
// replay with.
class IoToolBar : public CompactToolBar
{
    Q_OBJECT

public:
    explicit IoToolBar(QWidget* parent);

private:
    QLabel* m_fileLabel;
    QSlider* m_position;
    QLabel* m_timeLabel;
};
