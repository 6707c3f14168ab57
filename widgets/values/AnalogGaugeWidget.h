#pragma once

#include "widgets/WidgetWithSettings.h"
#include "widgets/settings/DoubleSetting.h"

#include <QPixmap>

class QPainter;

// One signal as a needle on a round dial with a scale of 270°. The face of the dial is kept as a pixmap at
// the resolution of the device; a new value redraws only needle and cap over it. The signal that
// signalName() tells is a field of its own; what is delivered follows the list of the base class.
class AnalogGaugeWidget : public WidgetWithSettings
{
    Q_OBJECT

public:
    explicit AnalogGaugeWidget(QWidget* parent = nullptr);

    double value() const { return m_value; }
    double minimum() const { return m_minimum; }
    double maximum() const { return m_maximum; }

    /// The current size: the dial takes what it is given.
    QSize sizeHint() const override;
    /// Kept within the limits; NaN rests at the minimum.
    void setValue(double value) override;
    /// Any two numbers; without minimum < maximum, or without a finite distance, the needle rests at the
    /// lower end. The value is fitted to the limits by the next setValue(); until then the needle points at
    /// the nearer end.
    void setRange(double minimum, double maximum);
    QString typeName() const override;
    QString signalName() const override;
    void assignSignal(const QString& name) override;
    /// Takes the limits only together, and as whole numbers; what is no number is 0.
    void loadConfig(const QJsonObject& config) override;

protected:
    void settingsChanged() override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    /// An end of the scale, which is loaded only together with the other one.
    class LimitSetting : public DoubleSetting
    {
    public:
        using DoubleSetting::DoubleSetting;
        void load(const QJsonValue&) override {}
    };

    int side() const;
    double needleAngle() const;
    void drawFace(QPainter& painter);
    void paintDial(QPainter& painter) const;
    void paintTicks(QPainter& painter) const;
    void paintLabels(QPainter& painter) const;
    void paintNeedle(QPainter& painter) const;
    void paintName(QPainter& painter) const;

    double m_value = 0.0;
    LimitSetting m_minimum{
        settings(), "min", 0.0, {tr("Min Value:"), tr("The value at the lower end of the scale"), 1e9, 1}};
    LimitSetting m_maximum{
        settings(), "max", 100.0, {tr("Max Value:"), tr("The value at the upper end of the scale"), 1e9, 1}};
    QPixmap m_face;
    int m_faceSide = -1; ///< logical side for which m_face was drawn; −1 when it must be redrawn
    QString m_signal;
};
