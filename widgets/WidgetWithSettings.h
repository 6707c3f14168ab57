#pragma once

#include "widgets/DashboardWidget.h"
#include "widgets/settings/WidgetSettings.h"

// The base of the widget types: a widget whose settings are members that enter themselves into settings(),
// one line each (see widgets/settings/). Layout and configuration dialog follow from the list; a type
// overrides what is odd about its own. The assignment is none of them: a layout keeps it beside the settings.
class WidgetWithSettings : public DashboardWidget
{
    Q_OBJECT

public:
    explicit WidgetWithSettings(QWidget* parent = nullptr);

    void loadConfig(const QJsonObject& config) override;
    QJsonObject saveConfig() const override;
    void buildConfigUI(QFormLayout* form, QWidget* parent) override;
    void applyConfigUI() override;

protected:
    WidgetSettings& settings() { return m_list; }
    /// A layout or the dialog is about to set them.
    virtual void settingsAboutToChange() {}
    /// They may be others now; repaints.
    virtual void settingsChanged() { update(); }

private:
    WidgetSettings m_list;
};
