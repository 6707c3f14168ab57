#include "widgets/trend/TrendSettings.h"

#include "definitions/numbers/FileNumbers.h"
#include "widgets/ConfigEditors.h"

namespace {

constexpr int kMinTimeWindowMs = 200;
constexpr int kMaxTimeWindowMs = 600'000;
constexpr int kTimeWindowStepMs = 100;
constexpr int kMinGridLines = 2;
constexpr int kMaxGridLines = 12;
constexpr double kEditorLimit = 1e12;
constexpr int kEditorDecimals = 4;

constexpr QLatin1String kMarginKey("margin");
constexpr QLatin1String kTimeWindowKey("timeWindowMs");
constexpr QLatin1String kAutoscaleKey("autoscale");
constexpr QLatin1String kYMinKey("yMin");
constexpr QLatin1String kYMaxKey("yMax");
constexpr QLatin1String kShowGridKey("showGrid");
constexpr QLatin1String kGridLinesKey("gridLines");
constexpr QLatin1String kLeftAxisKey("leftAxis");
constexpr QLatin1String kBottomPadKey("bottomPad");
constexpr QLatin1String kSampleAndHoldKey("sampleAndHold");

QCheckBox* newCheckBox(bool checked, QWidget* parent)
{
    auto* editor = new QCheckBox(parent);
    editor->setChecked(checked);
    return editor;
}

} // namespace

void TrendSettings::load(const QJsonObject& config)
{
    timeWindowMs = jsonInt(config.value(kTimeWindowKey), timeWindowMs);
    frame.margin = jsonInt(config.value(kMarginKey), frame.margin);
    autoscale = config.value(kAutoscaleKey).toBool(autoscale);
    yMin = config.value(kYMinKey).toDouble(yMin);
    yMax = config.value(kYMaxKey).toDouble(yMax);
    showGrid = config.value(kShowGridKey).toBool(showGrid);
    gridLines = jsonInt(config.value(kGridLinesKey), gridLines);
    frame.leftAxis = jsonInt(config.value(kLeftAxisKey), frame.leftAxis);
    frame.bottomPad = jsonInt(config.value(kBottomPadKey), frame.bottomPad);
    // Read as a number although it is saved as a boolean: a saved layout leaves the setting alone, and only a
    // 0 turns it off.
    sampleAndHold = jsonInt(config.value(kSampleAndHoldKey), int(sampleAndHold)) != 0;
}

QJsonObject TrendSettings::save() const
{
    return {
        {kMarginKey, frame.margin},
        {kTimeWindowKey, timeWindowMs},
        {kAutoscaleKey, autoscale},
        {kYMinKey, yMin},
        {kYMaxKey, yMax},
        {kShowGridKey, showGrid},
        {kGridLinesKey, gridLines},
        {kLeftAxisKey, frame.leftAxis},
        {kBottomPadKey, frame.bottomPad},
        {kSampleAndHoldKey, sampleAndHold},
    };
}

void TrendSettingsEditors::build(const TrendSettings& settings, QFormLayout* form, QWidget* parent)
{
    m_timeWindow = addEditor(form, tr("Time window (ms):"),
                             newIntEditor(settings.timeWindowMs, kMinTimeWindowMs, kMaxTimeWindowMs, parent),
                             tr("How much of the past is shown"));
    m_timeWindow->setSingleStep(kTimeWindowStepMs);
    m_autoscale = addEditor(form, tr("Autoscale Y:"), newCheckBox(settings.autoscale, parent),
                            tr("Fit the limits to what is seen, with a little room"));
    m_yMin =
        addEditor(form, tr("Y min:"), newDoubleEditor(settings.yMin, kEditorLimit, kEditorDecimals, parent),
                  tr("The value at the lower edge, without autoscale"));
    m_yMax =
        addEditor(form, tr("Y max:"), newDoubleEditor(settings.yMax, kEditorLimit, kEditorDecimals, parent),
                  tr("The value at the upper edge, without autoscale"));
    for (QDoubleSpinBox* editor : {m_yMin.data(), m_yMax.data()}) {
        editor->setDisabled(settings.autoscale);
        QObject::connect(m_autoscale, &QCheckBox::toggled, editor, &QWidget::setDisabled);
    }
    m_showGrid = addEditor(form, tr("Show grid:"), newCheckBox(settings.showGrid, parent),
                           tr("Draw lines at the divisions"));
    m_gridLines = addEditor(form, tr("Grid lines:"),
                            newIntEditor(settings.gridLines, kMinGridLines, kMaxGridLines, parent),
                            tr("Into how many divisions both axes are split"));
    m_sampleAndHold =
        addEditor(form, tr("Step plot style:"), newCheckBox(settings.sampleAndHold, parent),
                  tr("Hold each value until the next one instead of drawing a line between them"));
}

void TrendSettingsEditors::apply(TrendSettings& settings) const
{
    if (m_timeWindow)
        settings.timeWindowMs = editedValue(m_timeWindow, settings.timeWindowMs);
    if (m_autoscale)
        settings.autoscale = m_autoscale->isChecked();
    if (m_yMin)
        settings.yMin = editedValue(m_yMin, settings.yMin);
    if (m_yMax)
        settings.yMax = editedValue(m_yMax, settings.yMax);
    if (m_showGrid)
        settings.showGrid = m_showGrid->isChecked();
    if (m_gridLines)
        settings.gridLines = editedValue(m_gridLines, settings.gridLines);
    if (m_sampleAndHold)
        settings.sampleAndHold = m_sampleAndHold->isChecked();
}
