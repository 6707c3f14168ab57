#pragma once

#include "definitions/numbers/FileNumbers.h"
#include "widgets/settings/EditedSetting.h"

#include <QSpinBox>

#include <algorithm>
#include <limits>

/// A row with an editor for whole numbers. The range binds only what the user enters.
struct IntRow
{
    QString label;
    QString toolTip;
    int least = 0;
    int most = 0;
    int step = 1;
};

/// What a whole number from a layout is kept within.
struct IntBounds
{
    int least = std::numeric_limits<int>::min();
    int most = std::numeric_limits<int>::max();
};

// A whole number, edited in a spin box. The fraction of what is loaded is cut off; a number outside the
// editor's range stays until the user changes it.
class IntSetting : public EditedSetting<int, QSpinBox>
{
public:
    IntSetting(WidgetSettings& all, const char* key, int initial, const IntRow& row = {},
               IntBounds loaded = {})
        : EditedSetting(all, key, initial, {row.label, row.toolTip})
        , m_row(row)
        , m_loaded(loaded)
    {}

    void load(const QJsonValue& entry) override
    {
        set(jsonInt(entry, m_loaded.least, m_loaded.most, value()));
    }

protected:
    QSpinBox* newEditor(QWidget* parent) const override
    {
        auto* editor = new QSpinBox(parent);
        editor->setRange(m_row.least, m_row.most);
        editor->setSingleStep(m_row.step);
        editor->setValue(value());
        return editor;
    }
    int edited(const QSpinBox& editor) const override
    {
        const int shown = std::clamp(value(), m_row.least, m_row.most);
        return editor.value() == shown ? value() : editor.value();
    }

private:
    IntRow m_row;
    IntBounds m_loaded;
};
