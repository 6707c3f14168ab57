#include "widgets/TrendMarkers.h"

#include "widgets/FileNumbers.h"
#include "widgets/TrendGeometry.h"

#include <QFontMetrics>
#include <QJsonObject>
#include <QPainter>
#include <QSet>

#include <algorithm>
#include <optional>

namespace {

constexpr QLatin1String kKindKey("kind");
constexpr QLatin1String kTimeKey("t");
constexpr QLatin1String kFractionKey("xFrac");
constexpr QLatin1String kLabelKey("label");
constexpr QLatin1String kScreen("screen");
constexpr QLatin1String kData("data");

constexpr int kMaxBoxes = 200;
constexpr int kMaxLabelCharacters = 200;

/// A marker that is in sight: where, and the time that is written below it, relative to now.
struct Placed
{
    const Marker* marker;
    int x;
    qint64 relativeMs;
};

std::optional<Placed> placed(const Marker& marker, const QRect& plot, qint64 t0, qint64 t1)
{
    const auto window = double(t1 - t0);
    if (marker.kind == Marker::Kind::Data) {
        if (marker.tMs < t0 || marker.tMs > t1)
            return std::nullopt;
        const double fraction = double(marker.tMs - t0) / std::max(window, 1.0);
        return Placed{&marker, plot.left() + static_cast<int>(fraction * plot.width()), marker.tMs - t1};
    }
    const double fraction = marker.xFrac > 0.0 ? std::min(marker.xFrac, 1.0) : 0.0;
    const int offset = static_cast<int>(fraction * plot.width());
    return Placed{&marker, plot.left() + offset, (t0 - t1) + wholeMs(double(offset) / plot.width() * window)};
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

void paintLabelBox(QPainter& painter, const Placed& mark, const QColor& color, const QRect& plot, int topmost)
{
    const QFontMetrics metrics = painter.fontMetrics();
    const QString& label = mark.marker->label;
    const QString text = label.isEmpty() ? QStringLiteral("◉") : label.left(kMaxLabelCharacters);
    const int width = metrics.horizontalAdvance(text) + 8;
    int left = mark.x - width / 2;
    if (left < plot.left())
        left = plot.left() + 2;
    if (left + width > plot.right())
        left = plot.right() - 2 - width;
    const int top = std::max(topmost, plot.top() - metrics.height() - 8);
    paintBox(painter, QRect(left, top, width, metrics.height() + 4), 6, QColor(255, 240, 220),
             color.darker(140), color.darker(250), text);
}

QRect timeBox(const QFontMetrics& metrics, const Placed& mark, const QRect& plot)
{
    const int width = metrics.horizontalAdvance(TrendGeometry::secondsLabel(mark.relativeMs)) + 4;
    const int left = std::max(plot.left(), std::min(mark.x - width / 2, plot.right() - width));
    return {left, plot.bottom() + 2, width, metrics.height() + 2};
}

/// The newest markers that are in sight, the newest first.
QList<Placed> newestPlaced(const QList<Marker>& markers, const QRect& plot, qint64 t0, qint64 t1)
{
    QList<Placed> newest;
    for (auto marker = markers.crbegin(); marker != markers.crend() && newest.size() < kMaxBoxes; ++marker) {
        if (const auto mark = placed(*marker, plot, t0, t1))
            newest.append(*mark);
    }
    return newest;
}

/// One marker per column of pixels, as of two lines at one place the older one is not seen.
QList<Placed> topmostPlaced(const QList<Marker>& markers, const QRect& plot, qint64 t0, qint64 t1)
{
    QList<Placed> topmost;
    QSet<int> taken;
    for (auto marker = markers.crbegin(); marker != markers.crend(); ++marker) {
        const auto mark = placed(*marker, plot, t0, t1);
        if (!mark || taken.contains(mark->x))
            continue;
        taken.insert(mark->x);
        topmost.append(*mark);
    }
    return topmost;
}

QColor colorOf(const Placed& mark)
{
    return mark.marker->kind == Marker::Kind::Data ? dataMarkerColor() : screenMarkerColor();
}

} // namespace

QColor dataMarkerColor() { return {200, 80, 0}; }

QColor screenMarkerColor() { return {20, 120, 200}; }

QList<Marker> markersFromJson(const QJsonArray& array)
{
    QList<Marker> markers;
    markers.reserve(array.size());
    for (const auto& element : array) {
        if (!element.isObject())
            continue;
        const QJsonObject object = element.toObject();
        const bool screen = object.value(kKindKey).toString() == kScreen;
        markers.append({screen ? Marker::Kind::Screen : Marker::Kind::Data,
                        wholeMs(object.value(kTimeKey).toDouble()), object.value(kFractionKey).toDouble(),
                        object.value(kLabelKey).toString()});
    }
    return markers;
}

QJsonArray markersToJson(const QList<Marker>& markers)
{
    QJsonArray array;
    for (const Marker& marker : markers) {
        array.append(QJsonObject{{kKindKey, marker.kind == Marker::Kind::Screen ? kScreen : kData},
                                 {kTimeKey, double(marker.tMs)},
                                 {kFractionKey, marker.xFrac},
                                 {kLabelKey, marker.label}});
    }
    return array;
}

QList<QRect> markerTimeBoxes(const QFontMetrics& metrics, const QList<Marker>& markers, const QRect& plot,
                             qint64 t0, qint64 t1)
{
    QList<QRect> boxes;
    const QList<Placed> marks = newestPlaced(markers, plot, t0, t1);
    for (const Placed& mark : marks)
        boxes.append(timeBox(metrics, mark, plot));
    return boxes;
}

void paintMarkers(QPainter& painter, const QList<Marker>& markers, const QRect& plot, qint64 t0, qint64 t1,
                  int topmost)
{
    painter.save();
    painter.setRenderHint(QPainter::Antialiasing, false);
    const QList<Placed> lines = topmostPlaced(markers, plot, t0, t1);
    for (const Placed& mark : lines) {
        painter.setPen(QPen(colorOf(mark), 1, Qt::DashLine));
        painter.drawLine(mark.x, plot.top(), mark.x, plot.bottom());
    }
    painter.setRenderHint(QPainter::Antialiasing, true);
    const QList<Placed> boxes = newestPlaced(markers, plot, t0, t1);
    for (auto mark = boxes.crbegin(); mark != boxes.crend(); ++mark) {
        paintLabelBox(painter, *mark, colorOf(*mark), plot, topmost);
        paintBox(painter, timeBox(painter.fontMetrics(), *mark, plot), 4, QColor(245, 245, 245),
                 colorOf(*mark), Qt::black, TrendGeometry::secondsLabel(mark->relativeMs));
    }
    painter.restore();
}
