#pragma once

#include <QJsonObject>
#include <QLatin1String>
#include <QList>

class QFormLayout;
class QJsonValue;
class QString;
class QWidget;
class WidgetSetting;

// The settings of one widget, in the order in which they were declared. Each says once what it is; loading,
// saving, the rows of the configuration dialog and taking over what they say follow from that. It repaints
// nothing: WidgetWithSettings tells the widget when something may have changed.
class WidgetSettings
{
public:
    WidgetSettings() = default;
    WidgetSettings(const WidgetSettings&) = delete;
    WidgetSettings& operator=(const WidgetSettings&) = delete;

    /// Called by the setting itself; not owned.
    void add(WidgetSetting* setting) { m_all.append(setting); }
    /// Reads the keys that are there and leaves the other settings alone.
    void load(const QJsonObject& config);
    QJsonObject save() const;
    /// Adds a row for every setting that the dialog offers. The editors belong to parent.
    void addRows(QFormLayout* form, QWidget* parent);
    /// Takes over what the editors say, as far as they still exist.
    void takeOver();

private:
    QList<WidgetSetting*> m_all;
};

// One setting, a member of its widget: it enters itself into the list, which must outlive it.
class WidgetSetting
{
public:
    WidgetSetting(WidgetSettings& all, const char* key);
    virtual ~WidgetSetting() = default;
    WidgetSetting(const WidgetSetting&) = delete;
    WidgetSetting& operator=(const WidgetSetting&) = delete;

    /// What a layout stores it under.
    QLatin1String key() const { return m_key; }
    /// What stands in a layout under its key, of any type. The editor's range does not bind it.
    virtual void load(const QJsonValue& entry) = 0;
    virtual QJsonValue save() const = 0;
    /// Nothing for a setting that only layouts change.
    virtual void addRow(QFormLayout* form, QWidget* parent) = 0;
    /// Nothing without an editor.
    virtual void takeOver() = 0;

private:
    QLatin1String m_key;
};

/// Tells screen readers and the mouse what the editor beside that label is.
void describeEditor(QWidget* editor, const QString& label, const QString& toolTip);
