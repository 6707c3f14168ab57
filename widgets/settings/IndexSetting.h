#pragma once

#include "definitions/numbers/FileNumbers.h"
#include "widgets/settings/EditedSetting.h"

#include <QComboBox>
#include <QStringList>

/// A row with a list of texts.
struct IndexRow
{
    QString label;
    QString toolTip;
    QStringList texts;
};

// One of several texts, stored as its number in the list. A number beyond the list stays as it was loaded,
// and nothing is selected in the dialog.
class IndexSetting : public EditedSetting<int, QComboBox>
{
public:
    IndexSetting(WidgetSettings& all, const char* key, int initial, const IndexRow& row)
        : EditedSetting(all, key, initial, row.label, row.toolTip)
        , m_texts(row.texts)
    {}

    void load(const QJsonValue& entry) override { set(jsonInt(entry, value())); }

protected:
    QComboBox* newEditor(QWidget* parent) const override
    {
        auto* editor = new QComboBox(parent);
        editor->addItems(m_texts);
        editor->setCurrentIndex(value());
        return editor;
    }
    int edited(const QComboBox& editor) const override
    {
        return editor.currentIndex() < 0 ? value() : editor.currentIndex();
    }

private:
    QStringList m_texts;
};
