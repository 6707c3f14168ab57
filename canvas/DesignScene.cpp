#include "canvas/DesignScene.h"

#include "canvas/DashboardItem.h"
#include "definitions/numbers/FileNumbers.h"
#include "widgets/DashboardWidget.h"
#include "widgets/DashboardWidgetFactory.h"
#include "widgets/ProjectFolderAware.h"

#include <QApplication>
#include <QGraphicsSceneContextMenuEvent>
#include <QMenu>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kMaxCoordinate = 2'000'000;
constexpr qreal kReachableMargin = 20.0;
constexpr int kNewWidgetSide = 250;
constexpr int kNewWidgetPosition = 100;

int toCoordinate(qreal value) { return boundedInt(value, -kMaxCoordinate, kMaxCoordinate, 0); }

} // namespace

DesignScene::DesignScene(QObject* parent)
    : QGraphicsScene(parent)
{}

DesignScene::~DesignScene()
{
    // The items tell their scene when they go; let them go while it is still one.
    clear();
}

void DesignScene::setDesignMode(bool on)
{
    m_designMode = on;
    invalidate();
    const QList<DashboardItem*> all = dashboardItems();
    for (DashboardItem* item : all)
        item->setDesignMode(on);
}

void DesignScene::setProjectFolder(const QString& dir)
{
    m_projectFolder = dir;
    const QList<ProjectFolderAware*> all = widgetsOfType<ProjectFolderAware>(false);
    for (ProjectFolderAware* widget : all)
        widget->setProjectFolder(dir);
}

QList<DashboardItem*> DesignScene::dashboardItems() const
{
    QList<DashboardItem*> found;
    const QList<QGraphicsItem*> all = items(Qt::DescendingOrder);
    for (QGraphicsItem* item : all) {
        if (item->parentItem())
            continue;
        if (auto* dashboardItem = dynamic_cast<DashboardItem*>(item))
            found.append(dashboardItem);
    }
    return found;
}

QList<DashboardWidget*> DesignScene::widgets(bool topLevelOnly) const
{
    QList<DashboardWidget*> found;
    const QList<QGraphicsItem*> all = items(Qt::DescendingOrder);
    for (QGraphicsItem* item : all) {
        if (topLevelOnly && item->parentItem())
            continue;
        const auto* dashboardItem = dynamic_cast<DashboardItem*>(item);
        if (dashboardItem && dashboardItem->widget())
            found.append(dashboardItem->widget());
    }
    return found;
}

qreal DesignScene::highestZ() const
{
    if (m_highestZRevision == m_itemsRevision)
        return m_highestZ;
    const QList<DashboardItem*> topmostFirst = dashboardItems();
    m_highestZ = topmostFirst.isEmpty() ? 0.0 : std::max(0.0, topmostFirst.first()->zValue());
    m_highestZRevision = m_itemsRevision;
    return m_highestZ;
}

void DesignScene::bringOutlyingItemsIntoView()
{
    const QRectF canvas = sceneRect();
    const QRectF reachable =
        canvas.adjusted(kReachableMargin, kReachableMargin, -kReachableMargin, -kReachableMargin);
    const auto onGrid = [](qreal coordinate) {
        return toCoordinate(coordinate) / kGridSpacing * kGridSpacing;
    };
    const QList<DashboardItem*> all = dashboardItems();
    for (DashboardItem* item : all) {
        const QRectF frame = item->sceneBoundingRect();
        if (frame.intersects(reachable))
            continue;
        const qreal x = std::clamp(frame.x(), 0.0, std::max(0.0, canvas.right() - frame.width()));
        const qreal y = std::clamp(frame.y(), 0.0, std::max(0.0, canvas.bottom() - frame.height()));
        item->setPos(onGrid(x), onGrid(y));
    }
}

void DesignScene::drawBackground(QPainter* painter, const QRectF& rect)
{
    if (!m_designMode) {
        painter->fillRect(rect, QApplication::palette().window());
        return;
    }
    painter->fillRect(rect, Qt::white);
    painter->setPen(QPen(QColor(220, 220, 220), 1.0));
    const int left = toCoordinate(rect.left());
    const int top = toCoordinate(rect.top());
    const int right = toCoordinate(rect.right());
    const int bottom = toCoordinate(rect.bottom());
    QList<QLine> lines;
    for (int x = left / kGridSpacing * kGridSpacing; x < right; x += kGridSpacing)
        lines.append(QLine(x, top, x, bottom));
    for (int y = top / kGridSpacing * kGridSpacing; y < bottom; y += kGridSpacing)
        lines.append(QLine(left, y, right, y));
    painter->setRenderHint(QPainter::Antialiasing, false); // would smear each line over two pixels
    painter->drawLines(lines);
}

// Without scroll bars, an item of a layout from a larger screen can lie where no mouse gets at it.
void DesignScene::contextMenuEvent(QGraphicsSceneContextMenuEvent* event)
{
    QGraphicsScene::contextMenuEvent(event);
    if (event->isAccepted() || !m_designMode)
        return;
    event->accept();
    QMenu menu;
    menu.addAction(tr("Bring Outlying Widgets into View"), this, &DesignScene::bringOutlyingItemsIntoView);
    menu.exec(event->screenPos());
}

DashboardItem* DesignScene::addNewWidget(const QString& typeName)
{
    DashboardWidget* widget = DashboardWidgetFactory::instance().create(typeName);
    if (!widget)
        return nullptr;
    auto* item = new DashboardItem(widget);
    const QList<DashboardItem*> others = dashboardItems();
    const qreal z = others.isEmpty() ? 1.0 : others.first()->zValue() + 1.0;
    addItem(item);
    item->resize(QSizeF(kNewWidgetSide, kNewWidgetSide));
    item->setPos(kNewWidgetPosition, kNewWidgetPosition);
    item->setZValue(z);
    return item;
}

void DesignScene::showNewDefinitions()
{
    const QList<DashboardWidget*> all = widgets(false);
    for (DashboardWidget* widget : all) {
        widget->definitionsChanged();
        widget->update();
    }
}
