#pragma once

#include "widgets/settings/EditedSetting.h"

#include <QDoubleSpinBox>

#include <algorithm>

/// What an entry that is no number does when a layout is loaded.
enum class WrongType {
    KeepsValue, ///< nothing
    Clears      ///< it counts as 0
};

/// A row with an editor for any number within ±limit.
struct DoubleRow
{
    QString label;
    QString toolTip;
    double limit = 0.0;
    int decimals = 0;
};

// A number, edited in a spin box with decimals. One that the editor can show only rounded or cut stays until
// the user changes it.
class DoubleSetting : public EditedSetting<double, QDoubleSpinBox>
{
public:
    DoubleSetting(WidgetSettings& all, const char* key, double initial, const DoubleRow& row = {},
                  WrongType wrongType = WrongType::KeepsValue)
        : EditedSetting(all, key, initial, {row.label, row.toolTip})
        , m_limit(row.limit)
        , m_decimals(row.decimals)
        , m_wrongType(wrongType)
    {}

    void load(const QJsonValue& entry) override
    {
        set(entry.toDouble(m_wrongType == WrongType::Clears ? 0.0 : value()));
    }

protected:
    QDoubleSpinBox* newEditor(QWidget* parent) const override
    {
        auto* editor = new QDoubleSpinBox(parent);
        editor->setDecimals(m_decimals);
        editor->setRange(-m_limit, m_limit);
        editor->setValue(value());
        return editor;
    }
    double edited(const QDoubleSpinBox& editor) const override
    {
        const double shown = std::clamp(value(), editor.minimum(), editor.maximum());
        return editor.textFromValue(editor.value()) == editor.textFromValue(shown) ? value() : editor.value();
    }

private:
    double m_limit;
    int m_decimals;
    WrongType m_wrongType;
};
