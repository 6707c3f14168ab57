#pragma once

#include "widgets/settings/WidgetSettings.h"

#include <QFormLayout>
#include <QJsonValue>
#include <QPointer>
#include <QString>

#include <utility>

// What all settings with a value and an editor have in common. A setting reads like its value; the editor
// lives as long as its dialog. Without a label a setting has no row there: only layouts change it.
template <class Value, class Editor>
class EditedSetting : public WidgetSetting
{
public:
    EditedSetting(WidgetSettings& all, const char* key, Value initial, const QString& label = {},
                  const QString& toolTip = {})
        : WidgetSetting(all, key)
        , m_value(std::move(initial))
        , m_label(label)
        , m_toolTip(toolTip)
    {}

    const Value& value() const { return m_value; }
    operator const Value&() const { return m_value; } // NOLINT(google-explicit-constructor)
    void set(Value value) { m_value = std::move(value); }
    /// Null while no dialog is open.
    Editor* editor() const { return m_editor; }

    QJsonValue save() const override { return m_value; }
    void addRow(QFormLayout* form, QWidget* parent) override
    {
        if (m_label.isEmpty())
            return;
        m_editor = newEditor(parent);
        describeEditor(m_editor, m_label, m_toolTip);
        if (const QString beside = labelBeside(); beside.isEmpty())
            form->addRow(m_editor);
        else
            form->addRow(beside, m_editor);
    }
    void takeOver() override
    {
        if (m_editor)
            m_value = edited(*m_editor);
    }

protected:
    const QString& label() const { return m_label; }
    /// The text in the column of labels; empty where the editor carries its label itself.
    virtual QString labelBeside() const { return m_label; }
    /// An editor that shows the value.
    virtual Editor* newEditor(QWidget* parent) const = 0;
    /// What the editor says; the value while that is what the editor shows of it, which may be cut or
    /// rounded.
    virtual Value edited(const Editor& editor) const = 0;

private:
    Value m_value;
    QString m_label;
    QString m_toolTip;
    QPointer<Editor> m_editor;
};
