#pragma once

#include <QColor>
#include <QList>
#include <QRect>
#include <QString>

class QFontMetrics;
class QPainter;
struct Marker;

// Where the markers of a plot stand in one painting: a line and a box above and below the plot for each. Of
// several in one column of pixels only the newest is drawn, and of very many only the newest have boxes.
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
