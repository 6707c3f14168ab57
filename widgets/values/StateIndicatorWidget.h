#pragma once

#include "widgets/WidgetWithSettings.h"
#include "widgets/settings/IntSetting.h"

#include <QColor>
#include <QPointer>

class QComboBox;

// The current state of one group of the device: the group's label and below it a lamp whose colour follows
// from the state's name. The router sets the state; values and assigned signals mean nothing to it.
class StateIndicatorWidget : public WidgetWithSettings
{
    Q_OBJECT

public:
    explicit StateIndicatorWidget(QWidget* parent = nullptr);

    QString groupId() const { return m_groupId; }
    /// The caption: the group's label in the catalogue, or its id when the catalogue does not know it.
    QString groupLabel() const { return m_groupLabel; }
    QString stateId() const { return m_stateId; }
    QString stateLabel() const { return m_stateLabel; }

    /// Follows another group, trimmed; no state is shown until the first one comes.
    void setGroupId(const QString& id);
    /// Asks the catalogue again for the caption; to be called when other definitions are loaded.
    void refreshGroupDisplayFromParser();
    /// Shows a state; an empty label stands for the id as given.
    void setStateId(const QString& stateId, const QString& label);
    /// The lamp's colour: by keywords found anywhere in the name, in any letter case.
    QColor colorForState(const QString& stateId) const;

    void setValue(double) override {}
    void setValueForSignal(const QString&, double) override {}
    Events shownEvents() const override { return StateEvent; }
    void showState(const QString& groupId, const QString& stateId, const QString& label) override;
    void definitionsChanged() override;
    QString typeName() const override;
    bool usesSignalSelection() const override;
    void loadConfig(const QJsonObject& config) override;
    QJsonObject saveConfig() const override;
    void buildConfigUI(QFormLayout* form, QWidget* parent) override;
    void applyConfigUI() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString m_groupId;
    QString m_groupLabel;
    QString m_stateId;
    QString m_stateLabel;
    /// The radius of the lamp's corners, in pixels.
    IntSetting m_corner{settings(), "corner", 10};
    QPointer<QComboBox> m_groupEditor;
};
