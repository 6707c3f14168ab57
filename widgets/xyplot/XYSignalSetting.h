#pragma once

#include "widgets/settings/EditedSetting.h"

#include <QComboBox>

// The name of one of the project's signals, chosen from a list of them. A name that the catalogue lacks is
// offered too, so that OK does not put another signal in its place. What is no text in a layout changes
// nothing.
class XYSignalSetting : public EditedSetting<QString, QComboBox>
{
public:
    XYSignalSetting(WidgetSettings& all, const char* key, const SettingRow& row);

    void load(const QJsonValue& entry) override;

protected:
    QComboBox* newEditor(QWidget* parent) const override;
    QString edited(const QComboBox& editor) const override;
};
