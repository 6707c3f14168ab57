#include "widgets/DashboardWidgetFactory.h"
#include "widgets/consoles/ErrorConsoleWidget.h"
#include "widgets/consoles/MessagesConsoleWidget.h"
#include "widgets/decor/ImageWidget.h"
#include "widgets/decor/LineWidget.h"
#include "widgets/decor/TextLabelWidget.h"
#include "widgets/trend/TrendPlotWidget.h"
#include "widgets/values/AnalogGaugeWidget.h"
#include "widgets/values/BarGraphWidget.h"
#include "widgets/values/DigitalDisplayWidget.h"
#include "widgets/values/StateIndicatorWidget.h"
#include "widgets/xyplot/XYPlotWidget.h"

// The table of the types that come with the program, apart from the registry, which knows no widget.

namespace {

template <class Widget>
void add(DashboardWidgetFactory& factory, QLatin1String typeName, QLatin1String iconFile)
{
    factory.registerType(
        typeName, [] { return new Widget; }, QIcon(QLatin1String(":/icons/") + iconFile));
}

} // namespace

void DashboardWidgetFactory::registerBuiltInTypes()
{
    // A saved layout finds its types by these names: each is what the widget's typeName() returns.
    add<AnalogGaugeWidget>(*this, QLatin1String("AnalogGauge"), QLatin1String("gauge.png"));
    add<DigitalDisplayWidget>(*this, QLatin1String("DigitalDisplay"), QLatin1String("display.png"));
    add<BarGraphWidget>(*this, QLatin1String("BarGraph"), QLatin1String("bar_chart.png"));
    add<LineWidget>(*this, QLatin1String("Line"), QLatin1String("line.png"));
    add<TextLabelWidget>(*this, QLatin1String("TextLabel"), QLatin1String("text.png"));
    add<TrendPlotWidget>(*this, QLatin1String("TrendPlot"), QLatin1String("line_chart.png"));
    add<StateIndicatorWidget>(*this, QLatin1String("StateIndicator"), QLatin1String("state.png"));
    add<ErrorConsoleWidget>(*this, QLatin1String("ErrorConsole"), QLatin1String("error_console.png"));
    add<MessagesConsoleWidget>(*this, QLatin1String("MessagesConsole"), QLatin1String("message-console.png"));
    add<ImageWidget>(*this, QLatin1String("Image"), QLatin1String("image-icon.png"));
    add<XYPlotWidget>(*this, QLatin1String("XYPlot"), QLatin1String("xy_plot.png"));
}
