#pragma once

#include "widgets/WidgetWithSettings.h"
#include "widgets/decor/NamedColors.h"
#include "widgets/settings/BoolSetting.h"
#include "widgets/settings/ChoiceSetting.h"
#include "widgets/settings/IntSetting.h"
#include "widgets/settings/TextSetting.h"

// A fixed caption on one line, clipped where it is wider than the widget and after 1,000 characters. It shows
// no signal, and takes its text as text: nothing in it is read as markup. In a layout an unknown colour is
// black, an unknown alignment centred.
class TextLabelWidget : public WidgetWithSettings
{
    Q_OBJECT

public:
    explicit TextLabelWidget(QWidget* parent = nullptr);

    void setValue(double) override {}
    QString typeName() const override;
    bool usesSignalSelection() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    static QStringList alignments();
    Qt::Alignment alignment() const;

    TextSetting m_text{settings(), "text", tr("Label"), {tr("Text:"), tr("What the label says")}};
    ChoiceSetting m_color{
        settings(),
        "color",
        kOtherColor,
        {tr("Color:"), tr("The colour of the text"), colorNames(), kOtherColor, textColorNames()}};
    IntSetting m_pointSize{settings(),
                           "point",
                           12,
                           {tr("Size:"), tr("The size of the text, in points"), 6, 72},
                           {.least = 1, .most = 500}};
    BoolSetting m_bold{settings(), "bold", false, {tr("Bold"), tr("Draw the text in bold")}};
    ChoiceSetting m_alignment{
        settings(),
        "align",
        alignments().at(1),
        {tr("Align:"), tr("Where the text stands in the widget"), alignments(), alignments().at(1)}};
};
