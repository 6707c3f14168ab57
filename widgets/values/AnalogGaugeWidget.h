#pragma once

#include "widgets/DashboardWidget.h"

#include <QPixmap>
#include <QPointer>

class QDoubleSpinBox;
class QPainter;

// One signal as a needle on a round dial with a scale of 270°. The face of the dial is kept as a pixmap at
// the resolution of the device; a new value redraws only needle and cap over it. The signal that
// signalName() tells is a field of its own; what is delivered follows the list of the base class.
class AnalogGaugeWidget : public DashboardWidget
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
    void loadConfig(const QJsonObject& config) override;
    QJsonObject saveConfig() const override;
    void buildConfigUI(QFormLayout* form, QWidget* parent) override;
    void applyConfigUI() override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int side() const;
    double needleAngle() const;
    void drawFace(QPainter& painter);
    void paintDial(QPainter& painter) const;
    void paintTicks(QPainter& painter) const;
    void paintLabels(QPainter& painter) const;
    void paintNeedle(QPainter& painter) const;
    void paintName(QPainter& painter) const;

    double m_value = 0.0;
    double m_minimum = 0.0;
    double m_maximum = 100.0;
    QPixmap m_face;
    int m_faceSide = -1; ///< logical side for which m_face was drawn; −1 when it must be redrawn
    QString m_signal;
    QPointer<QDoubleSpinBox> m_minimumEditor;
    QPointer<QDoubleSpinBox> m_maximumEditor;
};
