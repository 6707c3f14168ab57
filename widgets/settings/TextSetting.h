#pragma once

#include "widgets/settings/EditedSetting.h"

#include <QLineEdit>

// A text of any length, edited in a line. What is no text in a layout clears it.
class TextSetting : public EditedSetting<QString, QLineEdit>
{
public:
    using EditedSetting::EditedSetting;

    void load(const QJsonValue& entry) override { set(entry.toString()); }

protected:
    QLineEdit* newEditor(QWidget* parent) const override { return new QLineEdit(value(), parent); }
    QString edited(const QLineEdit& editor) const override { return editor.text(); }
};
