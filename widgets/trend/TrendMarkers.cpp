#include "widgets/trend/TrendMarkers.h"

#include "definitions/numbers/FileNumbers.h"
#include "widgets/trend/TrendGeometry.h"

#include <QJsonObject>

namespace {

constexpr QLatin1String kKindKey("kind");
constexpr QLatin1String kTimeKey("t");
constexpr QLatin1String kFractionKey("xFrac");
constexpr QLatin1String kLabelKey("label");
constexpr QLatin1String kScreen("screen");
constexpr QLatin1String kData("data");

} // namespace

QColor TrendMarkers::dataMarkerColor() { return {200, 80, 0}; }

QColor TrendMarkers::screenMarkerColor() { return {20, 120, 200}; }

TrendMarkers TrendMarkers::fromJson(const QJsonArray& array)
{
    TrendMarkers markers;
    markers.m_list.reserve(array.size());
    for (const auto& element : array) {
        if (!element.isObject())
            continue;
        const QJsonObject object = element.toObject();
        const bool screen = object.value(kKindKey).toString() == kScreen;
        markers.m_list.append({screen ? Marker::Kind::Screen : Marker::Kind::Data,
                               wholeMs(object.value(kTimeKey).toDouble()),
                               object.value(kFractionKey).toDouble(), object.value(kLabelKey).toString()});
    }
    return markers;
}

QJsonArray TrendMarkers::toJson() const
{
    QJsonArray array;
    for (const Marker& marker : m_list) {
        array.append(QJsonObject{{kKindKey, marker.kind == Marker::Kind::Screen ? kScreen : kData},
                                 {kTimeKey, double(marker.tMs)},
                                 {kFractionKey, marker.xFrac},
                                 {kLabelKey, marker.label}});
    }
    return array;
}

int TrendMarkers::add(Marker::Kind kind, int x, const QRect& plot, qint64 t0, qint64 t1)
{
    m_list.append(
        {kind, TrendGeometry::timeForX(plot, t0, t1, x), double(x - plot.left()) / plot.width(), QString()});
    return int(m_list.size()) - 1;
}

void TrendMarkers::setLabel(int index, const QString& label)
{
    if (index >= 0 && index < m_list.size())
        m_list[index].label = label;
}

void TrendMarkers::clear(Marker::Kind kind)
{
    m_list.removeIf([kind](const Marker& marker) { return marker.kind == kind; });
}
