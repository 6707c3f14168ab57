#pragma once

#include <QGraphicsView>
#include <QRegion>
#include <QTimer>

// The view of the canvas, without scroll bars: the scene is always as large as what is seen of it. However
// often the widgets change, it repaints at most about 60 times a second.
class DashboardView : public QGraphicsView
{
    Q_OBJECT

public:
    explicit DashboardView(QGraphicsScene* scene, QWidget* parent = nullptr);

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    void collect(const QList<QRectF>& changedRects);
    void repaintCollected();

    QTimer m_frameTimer;
    QRegion m_changed;
};
