#pragma once

#include "widgets/WidgetWithSettings.h"
#include "widgets/settings/TextSetting.h"

#include <QDoubleSpinBox>
#include <QTimer>

class QLabel;

// The latest value of one signal in large digits, the signal's name in small text beneath. The signal that
// signalName() tells is a field of its own; what is delivered follows the list of the base class.
class DigitalDisplayWidget : public WidgetWithSettings
{
    Q_OBJECT

public:
    explicit DigitalDisplayWidget(QWidget* parent = nullptr);

    /// Shown in fixed-point notation; NaN and infinities as text. What is too wide is drawn smaller, and
    /// elided where it would be too small to read. In a flood the label gets the newest value at the frame's
    /// end.
    void setValue(double value) override;
    QString typeName() const override;
    QString signalName() const override;
    void assignSignal(const QString& name) override;

protected:
    void settingsAboutToChange() override;
    void paintEvent(QPaintEvent* event) override;

private:
    /// OK takes the number that the editor shows: more places than it offers become the most that it offers.
    class PlacesSetting : public EditedSetting<int, QDoubleSpinBox>
    {
    public:
        using EditedSetting::EditedSetting;
        void load(const QJsonValue& entry) override;

    protected:
        QDoubleSpinBox* newEditor(QWidget* parent) const override;
        int edited(const QDoubleSpinBox& editor) const override;
    };

    void writeLabel();
    void writePending();
    void endFrame();

    QLabel* m_label;
    double m_value = 0.0;
    QTimer m_frameTimer;
    int m_writes = 0;       ///< of the label in this frame
    bool m_pending = false; ///< m_value is not in the label yet
    TextSetting m_signal{settings(), "signal", QString()};
    /// As loaded; bounded only when a value is formatted.
    PlacesSetting m_decimalPlaces{
        settings(),
        "decimalPlaces",
        1,
        {tr("Decimal Places:"), tr("Digits after the decimal point, from the next value on")}};
};
