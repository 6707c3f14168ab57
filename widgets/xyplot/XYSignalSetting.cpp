#include "widgets/xyplot/XYSignalSetting.h"

#include "definitions/DashboardSignalParser.h"

namespace {

constexpr int kChoiceCharacters = 24;

} // namespace

XYSignalSetting::XYSignalSetting(WidgetSettings& all, const char* key, const SettingRow& row)
    : EditedSetting(all, key, QString(), row)
{}

void XYSignalSetting::load(const QJsonValue& entry) { set(entry.toString(value())); }

QComboBox* XYSignalSetting::newEditor(QWidget* parent) const
{
    QStringList names{value()};
    const QList<DashboardSignal> all = gSignalParser ? gSignalParser->signalList() : QList<DashboardSignal>();
    for (const DashboardSignal& each : all)
        names.append(each.enumName);
    names.removeDuplicates();
    names.sort(Qt::CaseSensitive);
    auto* editor = new QComboBox(parent);
    editor->addItems(names);
    editor->setCurrentText(value());
    // A name of any length must not widen the dialog beyond the screen.
    editor->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    editor->setMinimumContentsLength(kChoiceCharacters);
    return editor;
}

QString XYSignalSetting::edited(const QComboBox& editor) const { return editor.currentText(); }
