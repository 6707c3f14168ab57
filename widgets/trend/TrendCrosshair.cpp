#include "widgets/trend/TrendCrosshair.h"

#include <QPainter>
#include <QRect>

#include <algorithm>

std::optional<int> TrendCrosshair::column(const QRect& plot) const
{
    return m_inside && plot.contains(m_pos) ? std::optional(m_pos.x()) : std::nullopt;
}

void TrendCrosshair::paint(QPainter& painter, const QRect& plot, int x, const QStringList& readings)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    painter.setPen(QPen(QColor(80, 80, 80), 1, Qt::DashLine));
    painter.drawLine(x, plot.top(), x, plot.bottom());
    painter.restore();

    const QFontMetrics metrics = painter.fontMetrics();
    int widest = 0;
    for (const QString& reading : readings)
        widest = std::max(widest, metrics.horizontalAdvance(reading));
    const bool fitsRight = x + widest + 19 <= plot.right();
    const QRect box(fitsRight ? x + 8 : x - widest - 20, plot.top() + 8, widest + 12,
                    int(readings.size()) * metrics.height() + 6);
    painter.setPen(QPen(QColor(120, 120, 120), 1));
    painter.setBrush(QColor(255, 255, 255, 220));
    painter.drawRoundedRect(box, 6, 6);

    painter.setPen(Qt::black);
    int baseline = plot.top() + metrics.ascent() + 12;
    for (const QString& reading : readings) {
        painter.drawText(box.left() + 6, baseline, reading);
        baseline += metrics.height();
    }
}
