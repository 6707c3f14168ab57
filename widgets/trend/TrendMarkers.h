#pragma once

#include <QColor>
#include <QJsonArray>
#include <QList>
#include <QString>

class QRect;

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

// The markers of a trend plot in the order in which they were made, and what a layout says of them. It draws
// nothing (that is TrendMarkerLayout) and does not know where "now" comes from.
class TrendMarkers
{
public:
    static QColor dataMarkerColor();
    static QColor screenMarkerColor();

    /// What stands under "markers" in a layout. Anything but "screen" is a data marker; missing fields are 0
    /// or empty, times are kept within ±kMaxTimeMs.
    static TrendMarkers fromJson(const QJsonArray& array);
    QJsonArray toJson() const;

    const QList<Marker>& list() const { return m_list; }
    /// At column x of a plot whose left and right edge are at the times t0 and t1; without a label. Answers
    /// its index in the list.
    int add(Marker::Kind kind, int x, const QRect& plot, qint64 t0, qint64 t1);
    /// Nothing for an index that no marker has.
    void setLabel(int index, const QString& label);
    void clear() { m_list.clear(); }
    /// Removes the markers of one kind; the others keep their order.
    void clear(Marker::Kind kind);

private:
    QList<Marker> m_list;
};
