#pragma once

#include <QColor>
#include <QList>
#include <QRect>
#include <QString>

#include <optional>

class QPainter;

// The legend in the top left corner of a trend plot. It remembers where it was last painted, so that a click
// finds the channel under it.
class TrendLegend
{
public:
    struct Row
    {
        QString key;  ///< what channelAt() answers
        QString text; ///< shortened when it is wider than the plot
        QColor color;
        bool hidden = false; ///< greyed
    };

    /// In the painter's font, over a veil of the background's colour. Rows go on below the plot, where they
    /// can still be clicked, down to the row of pixels before bottom.
    void paint(QPainter& painter, const QRect& plot, int bottom, const QList<Row>& rows, QColor background);
    /// The key of the row at that place.
    std::optional<QString> channelAt(const QPoint& pos) const;
    void clear() { m_areas.clear(); }

private:
    struct Area
    {
        QString key;
        QRect rect;
    };
    QList<Area> m_areas;
};
