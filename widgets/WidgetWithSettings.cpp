#include "widgets/WidgetWithSettings.h"

WidgetWithSettings::WidgetWithSettings(QWidget* parent)
    : DashboardWidget(parent)
{}

void WidgetWithSettings::loadConfig(const QJsonObject& config)
{
    settingsAboutToChange();
    m_settings.load(config);
    settingsChanged();
}

QJsonObject WidgetWithSettings::saveConfig() const { return m_settings.save(); }

void WidgetWithSettings::buildConfigUI(QFormLayout* form, QWidget* parent)
{
    m_settings.addRows(form, parent);
}

void WidgetWithSettings::applyConfigUI()
{
    settingsAboutToChange();
    m_settings.takeOver();
    settingsChanged();
}
