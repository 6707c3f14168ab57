#include "widgets/settings/WidgetSettings.h"

#include <QJsonValue>
#include <QWidget>

#include <utility>

void WidgetSettings::load(const QJsonObject& config)
{
    for (WidgetSetting* setting : std::as_const(m_all)) {
        const auto entry = config.constFind(setting->key());
        if (entry != config.constEnd())
            setting->load(*entry);
    }
}

QJsonObject WidgetSettings::save() const
{
    QJsonObject config;
    for (const WidgetSetting* setting : m_all)
        config.insert(setting->key(), setting->save());
    return config;
}

void WidgetSettings::addRows(QFormLayout* form, QWidget* parent)
{
    for (WidgetSetting* setting : std::as_const(m_all))
        setting->addRow(form, parent);
}

void WidgetSettings::takeOver()
{
    for (WidgetSetting* setting : std::as_const(m_all))
        setting->takeOver();
}

WidgetSetting::WidgetSetting(WidgetSettings& all, const char* key)
    : m_key(key)
{
    all.add(this);
}

void describeEditor(QWidget* editor, const QString& label, const QString& toolTip)
{
    editor->setAccessibleName(label.chopped(label.endsWith(QLatin1Char(':')) ? 1 : 0));
    editor->setToolTip(toolTip);
}
