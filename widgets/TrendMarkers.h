#pragma once

#include <QColor>
#include <QJsonArray>
#include <QList>
#include <QRect>
#include <QString>

class QFontMetrics;
class QPainter;

/// A vertical mark that the user put on a trend plot.
struct Marker
{
    enum class Kind {
        Data = 0,  ///< at a moment of the data, with which it scrolls
        Screen = 1 ///< at a place of the plot, under which the data scrolls
    };

    Kind kind = Kind::Screen;
    qint64 tMs = 0;     ///< the time under the mouse when it was made; where a data marker is
    double xFrac = 0.0; ///< 0 is the left edge of the plot, 1 the right one; where a screen marker is
    QString label;      ///< may be empty
};

QColor dataMarkerColor();
QColor screenMarkerColor();

/// What stands under "markers" in a layout. Anything but "screen" is a data marker; missing fields are 0 or
/// empty, times are kept within ±kMaxTimeMs.
QList<Marker> markersFromJson(const QJsonArray& array);
QJsonArray markersToJson(const QList<Marker>& markers);

/// Where paintMarkers() will put the boxes below the plot, in a font of these metrics.
QList<QRect> markerTimeBoxes(const QFontMetrics& metrics, const QList<Marker>& markers, const QRect& plot,
                             qint64 t0, qint64 t1);
/// Draws the markers with their boxes above and below the plot, the later ones over the earlier ones, in the
/// painter's font; t0 and t1 are the times of its left and right edge. Of very many, only the newest have
/// boxes: the others would be hidden by them.
void paintMarkers(QPainter& painter, const QList<Marker>& markers, const QRect& plot, qint64 t0, qint64 t1,
                  int topmost);
