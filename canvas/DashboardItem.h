#pragma once

#include "canvas/ItemGesture.h"

#include <QGraphicsObject>
#include <QJsonObject>
#include <QPointer>

class DashboardWidget;
class QGraphicsProxyWidget;
class QGraphicsRectItem;

// One widget on the canvas, embedded through a proxy that owns it. In design mode the item takes the mouse:
// it can be dragged on the grid, resized by its corner, restacked, configured and deleted. Otherwise it is
// inert and the widget gets every event itself.
class DashboardItem : public QGraphicsObject
{
    Q_OBJECT

public:
    /// How far from the scene's origin an item may lie in x and in y, in scene units.
    static constexpr double kMaxPosition = 1'000'000.0;

    /// Takes the widget over, which must not be null.
    explicit DashboardItem(DashboardWidget* widget, QGraphicsItem* parent = nullptr);
    ~DashboardItem() override;

    /// Null once the widget is gone.
    DashboardWidget* widget() const;

    /// Sets the size in scene units: each side at least the effective minimum, at most 16,000 and rounded up
    /// to a multiple of 10; NaN gives the minimum.
    void resize(const QSizeF& requested);
    QSizeF effectiveMinCanvasSize() const;
    /// The square in the bottom right corner that resizes, in item coordinates.
    QRectF resizeHandleRect() const;
    /// Keeps the handle's z value above all others of the scene. It orders the handle among the item's own
    /// children only: where another item covers it, that item gets the mouse.
    void raiseHandleAboveScene();
    void setDesignMode(bool on);
    /// Takes the item off the canvas at once; it, its proxy and its widget are destroyed from the event loop,
    /// and not before its own handlers have returned.
    void requestDelete();

    QJsonObject toJson() const;
    /// A new item, owned by the caller; null when the record's type is unknown. Numbers that are missing or
    /// of another type are 0, positions are kept within kMaxPosition.
    [[nodiscard]] static DashboardItem* fromJson(const QJsonObject& record);

    QRectF boundingRect() const override;
    void paint(QPainter* painter, const QStyleOptionGraphicsItem* option, QWidget* target) override;

protected:
    QVariant itemChange(GraphicsItemChange change, const QVariant& value) override;
    bool sceneEvent(QEvent* event) override;
    bool sceneEventFilter(QGraphicsItem* watched, QEvent* event) override;
    void dragMoveEvent(QGraphicsSceneDragDropEvent* event) override;
    void hoverMoveEvent(QGraphicsSceneHoverEvent* event) override;
    void mousePressEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseMoveEvent(QGraphicsSceneMouseEvent* event) override;
    void mouseReleaseEvent(QGraphicsSceneMouseEvent* event) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent* event) override;

private:
    void setupHandle();
    void followWidget();
    void noteChange() const;
    void destroyLater();

    QPointer<QGraphicsProxyWidget> m_proxy; ///< null, as the widget, once the widget is gone
    QGraphicsRectItem* m_handle = nullptr;
    bool m_designMode = false;
    bool m_deleteRequested = false;
    bool m_inMenu = false;
    ItemGesture m_gesture{*this};
    QSizeF m_size{-1, -1};
    QPointer<DashboardWidget> m_widget;
    QMetaObject::Connection m_assignmentConnection;
    QMetaObject::Connection m_destroyedConnection;
};
