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

// Where the markers of a plot stand in one painting. They have boxes above and below the plot; of very many
// only the newest, and of several in one column of pixels the newest of them.
class TrendMarkerLayout
{
public:
    /// t0 and t1 are the times of the left and the right edge; the metrics are those of the painter's font.
    TrendMarkerLayout(const QList<Marker>& markers, const QRect& plot, qint64 t0, qint64 t1,
                      const QFontMetrics& metrics);

    /// The boxes below the plot.
    QList<QRect> timeBoxes() const;
    /// Draws the later markers over the earlier ones. No box begins above the row topmost.
    void paint(QPainter& painter, int topmost) const;

private:
    struct Line
    {
        int x;
        QColor color;
    };
    struct Boxes
    {
        QString label;
        QRect labelBox; ///< may begin above the topmost row
        QString time;   ///< relative to now
        QRect timeBox;
        QColor color;
    };

    void addBoxes(const Marker& marker, int x, qint64 relativeMs, const QFontMetrics& metrics);

    QRect m_plot;
    QList<Line> m_lines;  ///< at most one per column of pixels
    QList<Boxes> m_boxes; ///< the newest first
};
