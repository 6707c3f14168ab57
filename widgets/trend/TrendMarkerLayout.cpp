#include "widgets/trend/TrendMarkerLayout.h"

#include "definitions/numbers/FileNumbers.h"
#include "widgets/trend/TrendGeometry.h"
#include "widgets/trend/TrendMarkers.h"

#include <QFontMetrics>
#include <QPainter>
#include <QSet>

#include <algorithm>
#include <optional>

namespace {

constexpr int kColumnsPerBox = 4;              ///< more boxes than that only cover one another
constexpr qsizetype kMaxLabelCharacters = 200; ///< wider than most plots

/// Where a marker that is in sight stands, and how far from now, in milliseconds.
struct Place
{
    int x;
    qint64 relativeMs;
};

std::optional<Place> placeOf(const Marker& marker, const QRect& plot, qint64 t0, qint64 t1)
{
    const auto window = double(t1 - t0);
    if (marker.kind == Marker::Kind::Data) {
        if (marker.tMs < t0 || marker.tMs > t1)
            return std::nullopt;
        const double fraction = double(marker.tMs - t0) / std::max(window, 1.0);
        return Place{plot.left() + static_cast<int>(fraction * plot.width()), marker.tMs - t1};
    }
    const double fraction = marker.xFrac > 0.0 ? std::min(marker.xFrac, 1.0) : 0.0;
    const int offset = static_cast<int>(fraction * plot.width());
    return Place{plot.left() + offset, (t0 - t1) + wholeMs(double(offset) / plot.width() * window)};
}

QColor colorOf(const Marker& marker)
{
    return marker.kind == Marker::Kind::Data ? TrendMarkers::dataMarkerColor()
                                             : TrendMarkers::screenMarkerColor();
}

void paintBox(QPainter& painter, const QRect& box, int radius, const QColor& fill, const QColor& outline,
              const QColor& textColor, const QString& text)
{
    painter.setPen(outline);
    painter.setBrush(fill);
    painter.drawRoundedRect(box, radius, radius);
    painter.setPen(textColor);
    painter.drawText(box, Qt::AlignCenter | Qt::TextSingleLine, text);
}

} // namespace

TrendMarkerLayout::TrendMarkerLayout(const QList<Marker>& markers, const QRect& plot, qint64 t0, qint64 t1,
                                     const QFontMetrics& metrics)
    : m_plot(plot)
{
    const int mostBoxes = plot.width() / kColumnsPerBox + 1;
    QSet<int> taken; // of two lines at one place the older one is not seen
    for (auto marker = markers.crbegin(); marker != markers.crend(); ++marker) {
        const auto place = placeOf(*marker, plot, t0, t1);
        if (!place || taken.contains(place->x))
            continue;
        if (m_boxes.size() < mostBoxes)
            addBoxes(*marker, place->x, place->relativeMs, metrics);
        taken.insert(place->x);
        m_lines.append({place->x, colorOf(*marker)});
    }
}

void TrendMarkerLayout::addBoxes(const Marker& marker, int x, qint64 relativeMs, const QFontMetrics& metrics)
{
    const QString label = marker.label.isEmpty() ? QStringLiteral("◉")
                                                 : metrics.elidedText(marker.label.left(kMaxLabelCharacters),
                                                                      Qt::ElideRight, m_plot.width() - 12);
    QRect labelBox(0, m_plot.top() - metrics.height() - 8, metrics.horizontalAdvance(label) + 8,
                   metrics.height() + 4);
    labelBox.moveLeft(x - labelBox.width() / 2);
    if (labelBox.left() < m_plot.left())
        labelBox.moveLeft(m_plot.left() + 2);
    if (labelBox.left() + labelBox.width() > m_plot.right())
        labelBox.moveLeft(m_plot.right() - 2 - labelBox.width());

    const QString time = TrendGeometry::secondsLabel(relativeMs);
    QRect timeBox(0, m_plot.bottom() + 2, metrics.horizontalAdvance(time) + 4, metrics.height() + 2);
    timeBox.moveLeft(
        std::max(m_plot.left(), std::min(x - timeBox.width() / 2, m_plot.right() - timeBox.width())));
    m_boxes.append({label, labelBox, time, timeBox, colorOf(marker)});
}

QList<QRect> TrendMarkerLayout::timeBoxes() const
{
    QList<QRect> boxes;
    for (const Boxes& each : m_boxes)
        boxes.append(each.timeBox);
    return boxes;
}

void TrendMarkerLayout::paint(QPainter& painter, int topmost) const
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const Line& line : m_lines) {
        painter.setPen(QPen(line.color, 1, Qt::DashLine));
        painter.drawLine(line.x, m_plot.top(), line.x, m_plot.bottom());
    }
    painter.setRenderHint(QPainter::Antialiasing, true);
    for (auto boxes = m_boxes.crbegin(); boxes != m_boxes.crend(); ++boxes) {
        QRect labelBox = boxes->labelBox;
        labelBox.moveTop(std::max(topmost, labelBox.top()));
        paintBox(painter, labelBox, 6, QColor(255, 240, 220), boxes->color.darker(140),
                 boxes->color.darker(250), boxes->label);
        paintBox(painter, boxes->timeBox, 4, QColor(245, 245, 245), boxes->color, Qt::black, boxes->time);
    }
    painter.restore();
}
