#pragma once

#include "widgets/settings/EditedSetting.h"

#include <QComboBox>
#include <QStringList>

/// A row with a list, and the names of which one can be chosen.
struct ChoiceRow
{
    QString label;
    QString toolTip;
    QStringList known;           ///< what a layout may say
    QString otherwise;           ///< stands for any other name
    QStringList offered = known; ///< what the dialog lists
};

// One of several names, which letter case tells apart; stored by name. With one that is not offered nothing
// is selected in the dialog, so that OK keeps it.
class ChoiceSetting : public EditedSetting<QString, QComboBox>
{
public:
    ChoiceSetting(WidgetSettings& all, const char* key, const QString& initial, const ChoiceRow& row)
        : EditedSetting(all, key, initial, {row.label, row.toolTip})
        , m_row(row)
    {}

    void load(const QJsonValue& entry) override
    {
        const QString name = entry.toString();
        set(m_row.known.contains(name) ? name : m_row.otherwise);
    }

protected:
    QComboBox* newEditor(QWidget* parent) const override
    {
        auto* editor = new QComboBox(parent);
        editor->addItems(m_row.offered);
        editor->setCurrentIndex(editor->findText(value()));
        return editor;
    }
    QString edited(const QComboBox& editor) const override
    {
        return editor.currentIndex() < 0 ? value() : editor.currentText();
    }

private:
    ChoiceRow m_row;
};
