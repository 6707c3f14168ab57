#pragma once

#include "widgets/WidgetWithSettings.h"
#include "widgets/decor/NamedColors.h"
#include "widgets/settings/ChoiceSetting.h"
#include "widgets/settings/IntSetting.h"

// A straight rule through the middle of the widget, to part groups of widgets from each other. It shows no
// signal, and leaves the ground on which the rule stands alone. In a layout an unknown colour is black, an
// unknown orientation horizontal.
class LineWidget : public WidgetWithSettings
{
    Q_OBJECT

public:
    explicit LineWidget(QWidget* parent = nullptr);

    void setValue(double) override {}
    QString typeName() const override;
    bool usesSignalSelection() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    static QStringList orientations();
    bool isVertical() const;

    ChoiceSetting m_orientation{
        settings(),
        "orientation",
        orientations().constFirst(),
        {tr("Orientation:"), tr("Which way the line runs"), orientations(), orientations().constFirst()}};
    /// In pixels; bounded only when it is drawn.
    IntSetting m_thickness{settings(),
                           "thickness",
                           2,
                           {tr("Thickness:"), tr("How thick the line is, in pixels"), 1, 20},
                           {.least = 1}};
    ChoiceSetting m_color{settings(),
                          "color",
                          QStringLiteral("Gray"),
                          {tr("Color:"), tr("The colour of the line"), colorNames(), kOtherColor}};
};
