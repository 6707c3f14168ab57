#pragma once

#include "widgets/settings/EditedSetting.h"

#include <QCheckBox>

/// A row with a check box, whose label stands in the box itself or, with labelBeside, in the form's column of
/// labels.
struct BoolRow
{
    QString label;
    QString toolTip;
    bool labelBeside = false;
};

// Yes or no. What is no boolean in a layout changes nothing.
class BoolSetting : public EditedSetting<bool, QCheckBox>
{
public:
    BoolSetting(WidgetSettings& all, const char* key, bool initial, const BoolRow& row = {})
        : EditedSetting(all, key, initial, {row.label, row.toolTip})
        , m_labelBeside(row.labelBeside)
    {}

    void load(const QJsonValue& entry) override { set(entry.toBool(value())); }

protected:
    QString rowLabel() const override { return m_labelBeside ? label() : QString(); }
    QCheckBox* newEditor(QWidget* parent) const override
    {
        auto* editor = new QCheckBox(m_labelBeside ? QString() : label(), parent);
        editor->setChecked(value());
        return editor;
    }
    bool edited(const QCheckBox& editor) const override { return editor.isChecked(); }

private:
    bool m_labelBeside;
};
