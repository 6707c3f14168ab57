#pragma once

#include "widgets/settings/WidgetSettings.h"

#include <QFormLayout>
#include <QJsonValue>
#include <QPointer>
#include <QString>

#include <utility>

/// How a setting stands in the configuration dialog. Without a label it does not: only layouts change it.
struct SettingRow
{
    QString label;
    QString toolTip;
};

// What all settings with a value and an editor have in common. A setting reads like its value; the editor
// lives as long as its dialog.
template <class Value, class Editor>
class EditedSetting : public WidgetSetting
{
public:
    EditedSetting(WidgetSettings& all, const char* key, Value initial, SettingRow row = {})
        : WidgetSetting(all, key)
        , m_value(std::move(initial))
        , m_row(std::move(row))
    {}

    const Value& value() const { return m_value; }
    operator const Value&() const { return m_value; } // NOLINT(google-explicit-constructor)
    void set(Value value) { m_value = std::move(value); }
    /// Null while no dialog is open.
    Editor* editor() const { return m_editor; }

    QJsonValue save() const override { return m_value; }
    void addRow(QFormLayout* form, QWidget* parent) override
    {
        if (m_row.label.isEmpty())
            return;
        m_editor = newEditor(parent);
        describeEditor(m_editor, m_row.label, m_row.toolTip);
        if (const QString label = rowLabel(); label.isEmpty())
            form->addRow(m_editor);
        else
            form->addRow(label, m_editor);
    }
    void takeOver() override
    {
        if (m_editor)
            m_value = edited(*m_editor);
    }

protected:
    const QString& label() const { return m_row.label; }
    /// The text in the column of labels; empty where the editor carries its label itself.
    virtual QString rowLabel() const { return m_row.label; }
    /// An editor that shows the value.
    virtual Editor* newEditor(QWidget* parent) const = 0;
    /// What the editor says; the value while that is what the editor shows of it, which may be cut or
    /// rounded.
    virtual Value edited(const Editor& editor) const = 0;

private:
    Value m_value;
    SettingRow m_row;
    QPointer<Editor> m_editor;
};
