#pragma once

#include <QCheckBox>
#include <QComboBox>
#include <QDoubleSpinBox>
#include <QFormLayout>
#include <QSpinBox>
#include <QString>
#include <QStringList>

#include <algorithm>

// The editors of which the widgets make their rows in the configuration dialog. Each belongs to the parent
// that it is given.

/// Adds a row with its label, and tells screen readers and the mouse what the editor is.
template <class Editor>
Editor* addEditor(QFormLayout* form, const QString& label, Editor* editor, const QString& toolTip)
{
    editor->setAccessibleName(label.chopped(label.endsWith(QLatin1Char(':')) ? 1 : 0));
    editor->setToolTip(toolTip);
    form->addRow(label, editor);
    return editor;
}

/// As above for a check box that carries its text itself.
inline QCheckBox* addCheckBox(QFormLayout* form, const QString& text, bool checked, const QString& toolTip,
                              QWidget* parent)
{
    auto* editor = new QCheckBox(text, parent);
    editor->setChecked(checked);
    editor->setAccessibleName(text);
    editor->setToolTip(toolTip);
    form->addRow(editor);
    return editor;
}

inline QSpinBox* newIntEditor(int value, int minimum, int maximum, QWidget* parent)
{
    auto* editor = new QSpinBox(parent);
    editor->setRange(minimum, maximum);
    editor->setValue(value);
    return editor;
}

inline QDoubleSpinBox* newDoubleEditor(double value, double limit, int decimals, QWidget* parent)
{
    auto* editor = new QDoubleSpinBox(parent);
    editor->setDecimals(decimals);
    editor->setRange(-limit, limit);
    editor->setValue(value);
    return editor;
}

inline QComboBox* newChoice(const QStringList& texts, const QString& current, QWidget* parent)
{
    auto* editor = new QComboBox(parent);
    editor->addItems(texts);
    editor->setCurrentText(current);
    return editor;
}

/// What the editor says; the number before while that is what it would show, which may be rounded.
inline double editedValue(const QDoubleSpinBox* editor, double before)
{
    const QString shown = editor->textFromValue(std::clamp(before, editor->minimum(), editor->maximum()));
    return editor->textFromValue(editor->value()) == shown ? before : editor->value();
}

/// As above: a number from a layout may lie outside what the editor offers.
inline int editedValue(const QSpinBox* editor, int before)
{
    const int shown = std::clamp(before, editor->minimum(), editor->maximum());
    return editor->value() == shown ? before : editor->value();
}
