#pragma once

#include "widgets/settings/BoolSetting.h"
#include "widgets/settings/DoubleSetting.h"
#include "widgets/settings/IntSetting.h"
#include "widgets/trend/TrendGeometry.h"

#include <QCoreApplication>

// What the user can set on a trend plot, beside its signals and markers. A layout may set any numbers.
class TrendSettings
{
    Q_DECLARE_TR_FUNCTIONS(TrendSettings)

    /// Saved as a boolean but read as a number: a saved layout leaves it alone, and only a 0 turns it off.
    class HoldSetting : public BoolSetting
    {
    public:
        using BoolSetting::BoolSetting;
        void load(const QJsonValue& entry) override;
    };

public:
    explicit TrendSettings(WidgetSettings& all);

    /// What surrounds the plot; not bounded.
    TrendGeometry::Frame frameAsSet() const { return {margin, leftAxis, bottomPad}; }

    IntSetting timeWindowMs;
    BoolSetting autoscale;
    DoubleSetting yMin; ///< the limits without autoscale
    DoubleSetting yMax;
    BoolSetting showGrid;
    IntSetting gridLines; ///< divisions of both axes
    HoldSetting sampleAndHold;
    IntSetting margin; ///< pixels, as the next two
    IntSetting leftAxis;
    IntSetting bottomPad;
};
