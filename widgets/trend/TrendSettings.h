#pragma once

#include "widgets/trend/TrendGeometry.h"

#include <QCheckBox>
#include <QCoreApplication>
#include <QDoubleSpinBox>
#include <QJsonObject>
#include <QPointer>
#include <QSpinBox>

class QFormLayout;

/// What the user can set on a trend plot, beside its signals and markers.
struct TrendSettings
{
    TrendGeometry::Frame frame; ///< any numbers, from a layout
    int gridLines = 5;          ///< divisions of both axes
    bool showGrid = true;
    int timeWindowMs = 10'000; ///< any number, from a layout
    bool autoscale = true;
    double yMin = -1.0; ///< the limits without autoscale; any two numbers
    double yMax = 1.0;
    bool sampleAndHold = true;

    /// Takes what is there and of the right type, and leaves the rest.
    void load(const QJsonObject& config);
    QJsonObject save() const;
};

// The rows of the configuration dialog for the settings of a trend plot.
class TrendSettingsEditors
{
    Q_DECLARE_TR_FUNCTIONS(TrendSettingsEditors)

public:
    /// The editors belong to the parent.
    void build(const TrendSettings& settings, QFormLayout* form, QWidget* parent);
    /// Takes over what the editors say that still exist.
    void apply(TrendSettings& settings) const;

private:
    QPointer<QSpinBox> m_timeWindow;
    QPointer<QCheckBox> m_autoscale;
    QPointer<QDoubleSpinBox> m_yMin;
    QPointer<QDoubleSpinBox> m_yMax;
    QPointer<QCheckBox> m_showGrid;
    QPointer<QSpinBox> m_gridLines;
    QPointer<QCheckBox> m_sampleAndHold;
};
