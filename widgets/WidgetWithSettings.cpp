#include "widgets/WidgetWithSettings.h"

WidgetWithSettings::WidgetWithSettings(QWidget* parent)
    : DashboardWidget(parent)
{}

void WidgetWithSettings::loadConfig(const QJsonObject& config)
{
    settingsAboutToChange();
    m_list.load(config);
    settingsChanged();
}

QJsonObject WidgetWithSettings::saveConfig() const { return m_list.save(); }

void WidgetWithSettings::buildConfigUI(QFormLayout* form, QWidget* parent) { m_list.addRows(form, parent); }

void WidgetWithSettings::applyConfigUI()
{
    settingsAboutToChange();
    m_list.takeOver();
    settingsChanged();
}
