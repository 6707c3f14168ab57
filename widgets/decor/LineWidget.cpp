#include "widgets/decor/LineWidget.h"

#include <QPainter>

#include <algorithm>

namespace {

constexpr int kMinimumSide = 20;

constexpr QLatin1String kHorizontal("Horizontal");
constexpr QLatin1String kVertical("Vertical");

} // namespace

LineWidget::LineWidget(QWidget* parent)
    : WidgetWithSettings(parent)
{
    setMinimumSize(kMinimumSide, kMinimumSide);
}

QString LineWidget::typeName() const { return QStringLiteral("Line"); }

bool LineWidget::usesSignalSelection() const { return false; }

QStringList LineWidget::orientations() { return {kHorizontal, kVertical}; }

bool LineWidget::isVertical() const { return m_orientation.value() == kVertical; }

void LineWidget::paintEvent(QPaintEvent*)
{
    // A filled rectangle, as a pen would blur the edges of every odd thickness.
    QPainter painter(this);
    const bool vertical = isVertical();
    const int across = vertical ? width() : height();
    const int thickness = std::min(m_thickness.value(), 2 * across); // more is out of sight
    const int start = across / 2 - thickness / 2;
    painter.fillRect(vertical ? QRect(start, 0, thickness, height()) : QRect(0, start, width(), thickness),
                     namedColor(m_color));
}
