#include "widgets/decor/LineWidget.h"

#include "definitions/numbers/FileNumbers.h"
#include "widgets/ConfigEditors.h"
#include "widgets/decor/NamedColors.h"

#include <QPainter>

#include <algorithm>
#include <limits>

namespace {

constexpr int kMinimumSide = 20;
constexpr int kMaxOfferedThickness = 20;

constexpr QLatin1String kOrientationKey("orientation");
constexpr QLatin1String kThicknessKey("thickness");
constexpr QLatin1String kColorKey("color");
constexpr QLatin1String kHorizontal("Horizontal");
constexpr QLatin1String kVertical("Vertical");

Qt::Orientation namedOrientation(const QString& name)
{
    return name == kVertical ? Qt::Vertical : Qt::Horizontal;
}

QString orientationName(Qt::Orientation orientation)
{
    return orientation == Qt::Vertical ? kVertical : kHorizontal;
}

} // namespace

LineWidget::LineWidget(QWidget* parent)
    : DashboardWidget(parent)
{
    setMinimumSize(kMinimumSide, kMinimumSide);
}

QString LineWidget::typeName() const { return QStringLiteral("Line"); }

bool LineWidget::usesSignalSelection() const { return false; }

void LineWidget::loadConfig(const QJsonObject& config)
{
    if (config.contains(kOrientationKey))
        m_orientation = namedOrientation(config.value(kOrientationKey).toString());
    m_thickness = jsonInt(config.value(kThicknessKey), 1, std::numeric_limits<int>::max(), m_thickness);
    if (config.contains(kColorKey))
        m_color = namedColor(config.value(kColorKey).toString());
    update();
}

QJsonObject LineWidget::saveConfig() const
{
    return {{kOrientationKey, orientationName(m_orientation)},
            {kThicknessKey, m_thickness},
            {kColorKey, colorName(m_color)}};
}

void LineWidget::buildConfigUI(QFormLayout* form, QWidget* parent)
{
    m_orientationEditor = addEditor(
        form, tr("Orientation:"), newChoice({kHorizontal, kVertical}, orientationName(m_orientation), parent),
        tr("Which way the line runs"));
    m_thicknessEditor =
        addEditor(form, tr("Thickness:"), newIntEditor(m_thickness, 1, kMaxOfferedThickness, parent),
                  tr("How thick the line is, in pixels"));
    m_colorEditor = addEditor(form, tr("Color:"), newChoice(colorNames(), colorName(m_color), parent),
                              tr("The colour of the line"));
}

void LineWidget::applyConfigUI()
{
    if (m_orientationEditor)
        m_orientation = namedOrientation(m_orientationEditor->currentText());
    if (m_thicknessEditor)
        m_thickness = editedValue(m_thicknessEditor, m_thickness);
    if (m_colorEditor)
        m_color = namedColor(m_colorEditor->currentText());
    update();
}

void LineWidget::paintEvent(QPaintEvent*)
{
    // A filled rectangle, as a pen would blur the edges of every odd thickness.
    QPainter painter(this);
    const bool horizontal = m_orientation == Qt::Horizontal;
    const int across = horizontal ? height() : width();
    const int thickness = std::min(m_thickness, 2 * across); // more is out of sight
    const int start = across / 2 - thickness / 2;
    painter.fillRect(horizontal ? QRect(0, start, width(), thickness) : QRect(start, 0, thickness, height()),
                     m_color);
}
