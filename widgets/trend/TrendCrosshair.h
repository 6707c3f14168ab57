#pragma once

#include <QPoint>
#include <QStringList>

#include <optional>

class QPainter;
class QRect;

// The line under the mouse on a trend plot, with the values there in a box beside it. It knows where the
// mouse is, as far as it is told, but not what the values are.
class TrendCrosshair
{
public:
    /// Whether the mouse is over the widget. Where it is there only moveTo() says.
    void setInside(bool inside) { m_inside = inside; }
    void moveTo(const QPoint& pos) { m_pos = pos; }
    /// The column of pixels in which the crosshair stands; nothing while the mouse is not over the plot.
    std::optional<int> column(const QRect& plot) const;

    /// Draws the line down the plot at x and the box with the readings, in the painter's font: right of the
    /// line, or left of it where the box would leave the plot.
    static void paint(QPainter& painter, const QRect& plot, int x, const QStringList& readings);

private:
    bool m_inside = false;
    QPoint m_pos;
};
