#pragma once

#include "widgets/trend/TrendMarkers.h"

#include <QObject>
#include <QPoint>

#include <functional>

class QWidget;

// What opens over a trend plot to change its markers: the menu that deletes them and the editor of a label.
// The plot says which and where, and hears when the markers have changed. It knows no samples and no
// gestures.
class TrendMarkerPopups : public QObject
{
    Q_OBJECT

public:
    /// Both must outlive this. The plot may stand on a canvas.
    TrendMarkerPopups(TrendMarkers& markers, QWidget& plot);

    // For a place on the screen, from the handler of a mouse press: they open when the press has been dealt
    // with.
    void openMenuAfterPress(const QPoint& globalPos);
    void editLabelAfterPress(int index, const QPoint& globalPos);

    /// At once; nothing for an index that no marker has.
    void editLabel(int index, const QPoint& globalPos);

Q_SIGNALS:
    void markersChanged();

private:
    void afterPress(const std::function<void()>& open);
    void openMenu(const QPoint& globalPos);
    void clear(Marker::Kind kind);

    TrendMarkers& m_markers;
    QWidget& m_plot;
};
