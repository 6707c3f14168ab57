#include "canvas/ItemGesture.h"

#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"

#include <QApplication>

#include <algorithm>
#include <cmath>

namespace {

/// On the grid and within what the canvas allows.
double snapped(double coordinate)
{
    constexpr int grid = DesignScene::kGridSpacing;
    constexpr double limit = DashboardItem::kMaxPosition;
    return std::clamp(std::round(coordinate / grid) * grid, -limit, limit);
}

} // namespace

ItemGesture::ItemGesture(DashboardItem& item)
    : m_item(item)
{}

ItemGesture::~ItemGesture() { end(); }

void ItemGesture::begin(const QPointF& scenePos)
{
    end();
    const bool onHandle = m_item.resizeHandleRect().contains(m_item.mapFromScene(scenePos));
    m_kind = onHandle ? Kind::Resize : Kind::Drag;
    m_pressPos = scenePos;
    m_startPos = m_item.pos();
    QApplication::setOverrideCursor(onHandle ? Qt::SizeFDiagCursor : Qt::ClosedHandCursor);
}

void ItemGesture::move(const QPointF& scenePos)
{
    if (m_kind == Kind::Drag) {
        dragTo(scenePos);
    } else if (m_kind == Kind::Resize) {
        const QPointF corner = m_item.mapFromScene(scenePos);
        m_item.resize({corner.x(), corner.y()});
    }
}

// An event's position in the item's own coordinates can be of before the item's last move, so that the way is
// counted in the scene's, from the press.
void ItemGesture::dragTo(const QPointF& scenePos)
{
    const QPointF target = m_startPos + (scenePos - m_pressPos);
    m_item.setPos(snapped(target.x()), snapped(target.y()));
}

void ItemGesture::end()
{
    if (isActive())
        QApplication::restoreOverrideCursor();
    m_kind = Kind::None;
}

void ItemGesture::abort()
{
    end();
    if (m_item.scene() && m_item.scene()->mouseGrabberItem() == &m_item)
        m_item.ungrabMouse();
}
