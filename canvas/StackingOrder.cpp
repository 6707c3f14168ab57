#include "canvas/StackingOrder.h"

#include "canvas/DashboardItem.h"
#include "canvas/DesignScene.h"

#include <algorithm>

namespace {

/// The top-level dashboard items in ascending stacking order.
QList<DashboardItem*> stack(const DesignScene& scene)
{
    QList<DashboardItem*> items = scene.dashboardItems();
    std::reverse(items.begin(), items.end());
    return items;
}

/// The z values in use, ascending, each once.
QList<qreal> layers(const DesignScene& scene)
{
    QList<qreal> values;
    const QList<DashboardItem*> items = stack(scene);
    for (const DashboardItem* item : items) {
        if (values.isEmpty() || values.last() != item->zValue())
            values.append(item->zValue());
    }
    return values;
}

} // namespace

qreal stackedZ(const DashboardItem& item, StackingMove move)
{
    const qreal z = item.zValue();
    const auto* scene = qobject_cast<DesignScene*>(item.scene());
    if (!scene)
        return z;
    const QList<qreal> values = layers(*scene);
    const qsizetype index = values.indexOf(z);
    if (index < 0)
        return z;
    switch (move) {
    case StackingMove::BringToFront:
        return values.last() + 1;
    case StackingMove::SendToBack:
        return values.first() - 1;
    case StackingMove::BringForward:
        return index + 1 < values.size() ? values[index + 1] + 0.5 : z;
    case StackingMove::SendBackward:
        return index > 0 ? values[index - 1] - 0.5 : z;
    }
    return z;
}

void normalizeZOrder(QGraphicsScene* scene)
{
    const auto* designScene = qobject_cast<DesignScene*>(scene);
    if (!designScene)
        return;
    const QList<DashboardItem*> items = stack(*designScene);
    for (qsizetype i = 0; i < items.size(); ++i)
        items[i]->setZValue(qreal(i));
    for (DashboardItem* item : items)
        item->raiseHandleAboveScene();
}
