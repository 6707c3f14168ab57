#pragma once

#include "widgets/DashboardWidget.h"

#include <QColor>
#include <QPointer>

class QComboBox;
class QSpinBox;

// A straight rule through the middle of the widget, to part groups of widgets from each other. It shows no
// signal, and leaves the ground on which the rule stands alone.
class LineWidget : public DashboardWidget
{
    Q_OBJECT

public:
    explicit LineWidget(QWidget* parent = nullptr);

    void setValue(double) override {}
    QString typeName() const override;
    bool usesSignalSelection() const override;
    /// An unknown colour is black, an unknown orientation horizontal, a thickness at least 1.
    void loadConfig(const QJsonObject& config) override;
    QJsonObject saveConfig() const override;
    void buildConfigUI(QFormLayout* form, QWidget* parent) override;
    void applyConfigUI() override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    Qt::Orientation m_orientation = Qt::Horizontal;
    int m_thickness = 2; ///< in pixels, at least 1; bounded only when it is drawn
    QColor m_color{120, 120, 120};
    QPointer<QComboBox> m_orientationEditor;
    QPointer<QSpinBox> m_thicknessEditor;
    QPointer<QComboBox> m_colorEditor;
};
