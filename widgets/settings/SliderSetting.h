#pragma once

#include "widgets/settings/IntSetting.h"

#include <QSlider>

/// As QSlider, but horizontal from the start, as a template that makes editors needs it.
class HorizontalSlider : public QSlider
{
public:
    explicit HorizontalSlider(QWidget* parent)
        : QSlider(Qt::Horizontal, parent)
    {}
};

/// A whole number that is set with a slider.
using SliderSetting = BasicIntSetting<HorizontalSlider>;
