#include "widgets/trend/TrendSettings.h"

#include "definitions/numbers/FileNumbers.h"

namespace {

constexpr double kEditorLimit = 1e12;
constexpr int kEditorDecimals = 4;

} // namespace

void TrendSettings::HoldSetting::load(const QJsonValue& entry) { set(jsonInt(entry, int(value())) != 0); }

TrendSettings::TrendSettings(WidgetSettings& all)
    : timeWindowMs(all, "timeWindowMs", 10'000,
                   {tr("Time window (ms):"), tr("How much of the past is shown"), 200, 600'000, 100})
    , autoscale(all, "autoscale", true,
                {tr("Autoscale Y:"), tr("Fit the limits to what is seen, with a little room"), true})
    , yMin(
          all, "yMin", -1.0,
          {tr("Y min:"), tr("The value at the lower edge, without autoscale"), kEditorLimit, kEditorDecimals})
    , yMax(
          all, "yMax", 1.0,
          {tr("Y max:"), tr("The value at the upper edge, without autoscale"), kEditorLimit, kEditorDecimals})
    , showGrid(all, "showGrid", true, {tr("Show grid:"), tr("Draw lines at the divisions"), true})
    , gridLines(all, "gridLines", 5,
                {tr("Grid lines:"), tr("Into how many divisions both axes are split"), 2, 12})
    , sampleAndHold(all, "sampleAndHold", true,
                    {tr("Step plot style:"),
                     tr("Hold each value until the next one instead of drawing a line between them"), true})
    , margin(all, "margin", TrendGeometry::Frame().margin)
    , leftAxis(all, "leftAxis", TrendGeometry::Frame().leftAxis)
    , bottomPad(all, "bottomPad", TrendGeometry::Frame().bottomPad)
{}
