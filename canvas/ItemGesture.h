#pragma once

#include <QPointF>
#include <QtGlobal>

class DashboardItem;

// Dragging or resizing an item with the left mouse button, on the grid, with a cursor of its own meanwhile.
// The item says when the button goes down and up, where the mouse is in between and when it is lost. The
// gesture knows nothing of modes, of other buttons or of the item's menu.
class ItemGesture
{
public:
    /// The item must outlive the gesture.
    explicit ItemGesture(DashboardItem& item);
    ~ItemGesture();
    Q_DISABLE_COPY_MOVE(ItemGesture)

    bool isActive() const { return m_kind != Kind::None; }
    /// Resizes from now on if the press is on the item's handle, drags otherwise; positions are in scene
    /// coordinates. One that is still active starts anew.
    void begin(const QPointF& scenePos);
    /// Moves or resizes the item for the mouse being there, if active.
    void move(const QPointF& scenePos);
    /// Leaves the item as it is now and gives the cursor back; harmless when nothing is active.
    void end();
    /// Ends it before the button is released: the item lets the mouse go and hears no more of this press.
    void abort();

private:
    enum class Kind { None, Drag, Resize };

    void dragTo(const QPointF& scenePos);

    DashboardItem& m_item;
    Kind m_kind = Kind::None;
    QPointF m_pressPos; ///< of the mouse, in scene coordinates
    QPointF m_startPos; ///< of the item, when the button went down
};
