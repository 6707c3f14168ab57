#include "canvas/DashboardItem.h"

#include "canvas/DesignScene.h"
#include "canvas/ItemMenu.h"
#include "definitions/numbers/FileNumbers.h"
#include "widgets/DashboardWidget.h"
#include "widgets/DashboardWidgetFactory.h"
#include "widgets/ProjectFolderAware.h"

#include <QDialog>
#include <QGraphicsProxyWidget>
#include <QGraphicsRectItem>
#include <QGraphicsSceneContextMenuEvent>
#include <QGraphicsSceneDragDropEvent>
#include <QGraphicsSceneHoverEvent>
#include <QGraphicsSceneMouseEvent>
#include <QJsonArray>
#include <QPainter>
#include <QTimer>

#include <algorithm>

namespace {

constexpr int kGrid = DesignScene::kGridSpacing;
constexpr int kMaxSide = 16'000;
constexpr double kMaxZ = 1e12; // whole and half steps are exact below
constexpr double kHandleSide = 12.0;

/// Cut to whole units and rounded up to the grid, within what the canvas allows.
int gridSide(double requested, double minimum)
{
    const int side =
        boundedInt(std::max(requested, minimum), 0, kMaxSide, boundedInt(minimum, 0, kMaxSide, 0));
    return (side + kGrid - 1) / kGrid * kGrid;
}

double bounded(const QJsonValue& number, double limit)
{
    return std::clamp(number.toDouble(), -limit, limit);
}

} // namespace

DashboardItem::DashboardItem(DashboardWidget* widget, QGraphicsItem* parent)
    : QGraphicsObject(parent)
    , m_widget(widget)
{
    setFlags(ItemIsMovable | ItemIsSelectable);
    setAcceptHoverEvents(true);
    setFiltersChildEvents(true);
    m_proxy = new QGraphicsProxyWidget(this);
    m_proxy->setWidget(widget);
    m_proxy->setPos(0, 0);
    setupHandle();
    resize(widget->size());
    raiseHandleAboveScene();
    setAcceptDrops(true);
    // A fresh item is in the run state of m_designMode == false: inert, without a handle.
    setDesignMode(false);
}

DashboardItem::~DashboardItem() { noteChange(); }

DashboardWidget* DashboardItem::widget() const { return m_widget; }

void DashboardItem::setupHandle()
{
    m_handle = new QGraphicsRectItem(this);
    m_handle->setBrush(Qt::darkGray);
    m_handle->setPen(QPen(Qt::black));
    m_handle->setCursor(Qt::SizeFDiagCursor);
    m_handle->setZValue(1.0);
    m_handle->setAcceptedMouseButtons(Qt::LeftButton);
    m_handle->setAcceptHoverEvents(true);
    m_handle->setFlag(ItemIgnoresParentOpacity);
}

QSizeF DashboardItem::effectiveMinCanvasSize() const
{
    if (!m_proxy || !m_widget)
        return {80, 60};
    return QSizeF(m_widget->minimumCanvasSize()).expandedTo({20, 20});
}

void DashboardItem::resize(const QSizeF& requested)
{
    const QSizeF minimum = effectiveMinCanvasSize();
    const QSize size(gridSide(requested.width(), minimum.width()),
                     gridSide(requested.height(), minimum.height()));
    prepareGeometryChange();
    m_size = size;
    if (m_widget) {
        // The limits come first: a widget's old minimum would otherwise hold the proxy at the old size.
        m_widget->setMinimumSize(minimum.toSize());
        m_widget->setMaximumSize(QWIDGETSIZE_MAX, QWIDGETSIZE_MAX);
        m_proxy->setGeometry(QRectF(QPointF(0, 0), m_size));
        m_widget->resize(size);
        m_widget->update();
    }
    m_handle->setRect(resizeHandleRect());
    raiseHandleAboveScene();
    update();
}

QRectF DashboardItem::resizeHandleRect() const
{
    return {m_size.width() - kHandleSide, m_size.height() - kHandleSide, kHandleSide, kHandleSide};
}

void DashboardItem::raiseHandleAboveScene()
{
    const auto* designScene = qobject_cast<DesignScene*>(scene());
    if (designScene)
        m_handle->setZValue(designScene->highestZ() - zValue() + 1);
}

void DashboardItem::setDesignMode(bool on)
{
    m_designMode = on;
    setFlag(ItemIsMovable, on);
    setAcceptHoverEvents(on);
    setSelected(false); // a selected item would follow another one that is dragged
    if (!on) {
        m_gesture.abort();
        unsetCursor();
    }
    m_handle->setVisible(on);
    raiseHandleAboveScene();
    update();
    if (!m_widget || !m_proxy)
        return;
    if (on) {
        m_widget->setCursor(Qt::OpenHandCursor);
        // What the mouse last touched inside the widget would otherwise decide the cursor over all of it.
        m_proxy->setCursor(Qt::OpenHandCursor);
        m_proxy->clearFocus();
        // It hears no more of the mouse, not even that it leaves.
        QEvent leave(QEvent::Leave);
        QCoreApplication::sendEvent(m_widget, &leave);
    } else {
        m_widget->unsetCursor();
        m_proxy->unsetCursor();
    }
}

void DashboardItem::requestDelete()
{
    if (m_deleteRequested)
        return;
    m_deleteRequested = true;
    if (m_widget) {
        const QList<QDialog*> dialogs = m_widget->findChildren<QDialog*>();
        for (QDialog* dialog : dialogs)
            dialog->close();
        m_widget->setAcceptDrops(false);
        m_widget->clearFocus();
    }
    m_gesture.abort();
    if (scene())
        scene()->removeItem(this);
    if (!m_inMenu)
        destroyLater();
}

void DashboardItem::destroyLater()
{
    QTimer::singleShot(0, this, [this] { delete this; });
}

QJsonObject DashboardItem::toJson() const
{
    if (!m_widget)
        return {};
    return {
        {QStringLiteral("type"), m_widget->typeName()},
        {QStringLiteral("signals"), QJsonArray::fromStringList(m_widget->assignedSignalList())},
        {QStringLiteral("x"), pos().x()},
        {QStringLiteral("y"), pos().y()},
        {QStringLiteral("width"), m_size.width()},
        {QStringLiteral("height"), m_size.height()},
        {QStringLiteral("config"), m_widget->saveConfig()},
        {QStringLiteral("z"), zValue()},
    };
}

DashboardItem* DashboardItem::fromJson(const QJsonObject& record)
{
    const auto field = [&record](const char* key) { return record.value(QLatin1String(key)); };
    DashboardWidget* widget = DashboardWidgetFactory::instance().create(field("type").toString());
    if (!widget)
        return nullptr;
    auto* item = new DashboardItem(widget);
    QStringList names;
    const QJsonArray assigned = field("signals").toArray();
    for (const auto& name : assigned) {
        if (name.isString())
            names.append(name.toString());
    }
    widget->assignSignals(names);
    widget->loadConfig(field("config").toObject());
    item->setPos(bounded(field("x"), kMaxPosition), bounded(field("y"), kMaxPosition));
    item->resize({field("width").toDouble(), field("height").toDouble()});
    item->setZValue(bounded(field("z"), kMaxZ));
    return item;
}

QRectF DashboardItem::boundingRect() const { return {QPointF(0, 0), m_size}; }

void DashboardItem::paint(QPainter* painter, const QStyleOptionGraphicsItem*, QWidget*)
{
    if (!m_designMode)
        return;
    painter->setPen(QPen(Qt::blue, 2.0, Qt::DashLine, Qt::SquareCap, Qt::BevelJoin));
    painter->setBrush(Qt::NoBrush);
    painter->drawRect(boundingRect());
}

QVariant DashboardItem::itemChange(GraphicsItemChange change, const QVariant& value)
{
    switch (change) {
    case ItemSceneChange: // still in the old scene
        noteChange();
        break;
    case ItemSceneHasChanged:
        followWidget();
        noteChange();
        break;
    case ItemZValueHasChanged:
    case ItemParentHasChanged:
        noteChange();
        break;
    default:
        break;
    }
    return QGraphicsObject::itemChange(change, value);
}

void DashboardItem::followWidget()
{
    disconnect(m_assignmentConnection);
    disconnect(m_destroyedConnection);
    auto* designScene = qobject_cast<DesignScene*>(scene());
    if (!designScene || !m_widget)
        return;
    m_assignmentConnection = connect(m_widget, &DashboardWidget::assignmentChanged, designScene,
                                     &DesignScene::noteAssignmentsChanged);
    m_destroyedConnection =
        connect(m_widget, &QObject::destroyed, designScene, &DesignScene::noteItemsChanged);
    if (auto* aware = dynamic_cast<ProjectFolderAware*>(m_widget.data()))
        aware->setProjectFolder(designScene->projectFolder());
}

void DashboardItem::noteChange() const
{
    if (auto* designScene = qobject_cast<DesignScene*>(scene()))
        designScene->noteItemsChanged();
}

// The proxy lies over the whole item, so that in design mode the item must take what the proxy would get.
bool DashboardItem::sceneEventFilter(QGraphicsItem* watched, QEvent* event)
{
    if (!m_designMode)
        return false;
    switch (event->type()) {
    case QEvent::GraphicsSceneMousePress:
    case QEvent::GraphicsSceneMouseDoubleClick:
        event->ignore(); // the scene offers it to the next item below, which is this one
        return true;
    case QEvent::GraphicsSceneContextMenu: {
        auto* menuEvent = static_cast<QGraphicsSceneContextMenuEvent*>(event);
        menuEvent->setPos(mapFromItem(watched, menuEvent->pos()));
        contextMenuEvent(menuEvent);
        return true;
    }
    case QEvent::GraphicsSceneHoverEnter:
    case QEvent::GraphicsSceneHoverMove: {
        auto* hoverEvent = static_cast<QGraphicsSceneHoverEvent*>(event);
        hoverEvent->setPos(mapFromItem(watched, hoverEvent->pos()));
        hoverMoveEvent(hoverEvent);
        return true;
    }
    case QEvent::GraphicsSceneWheel:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
    case QEvent::ShortcutOverride:
    case QEvent::InputMethod:
    case QEvent::FocusIn:
        return true;
    default:
        return false;
    }
}

// What the widget does not want stops here, so that it does not fall through to a widget below. Refusing only
// the moves keeps the item the drag's target and lets the pointer say no.
void DashboardItem::dragMoveEvent(QGraphicsSceneDragDropEvent* event) { event->ignore(); }

void DashboardItem::hoverMoveEvent(QGraphicsSceneHoverEvent* event)
{
    if (!m_designMode)
        unsetCursor();
    else if (resizeHandleRect().contains(event->pos()))
        setCursor(Qt::SizeFDiagCursor);
    else
        setCursor(Qt::OpenHandCursor);
}

void DashboardItem::mousePressEvent(QGraphicsSceneMouseEvent* event)
{
    if (!m_designMode || event->button() != Qt::LeftButton) {
        QGraphicsObject::mousePressEvent(event);
        return;
    }
    m_gesture.begin(event->scenePos());
    event->accept();
}

// In design mode never left to the base class, which would itself move the item, off the grid, for a left
// button that went down elsewhere.
void DashboardItem::mouseMoveEvent(QGraphicsSceneMouseEvent* event)
{
    if (!m_designMode)
        QGraphicsObject::mouseMoveEvent(event);
    else if (m_gesture.isActive())
        m_gesture.move(event->scenePos());
    else
        event->ignore();
}

void DashboardItem::mouseReleaseEvent(QGraphicsSceneMouseEvent* event)
{
    if (!m_designMode) {
        QGraphicsObject::mouseReleaseEvent(event);
        return;
    }
    if (event->button() == Qt::LeftButton)
        m_gesture.end();
    event->accept();
}

// A box or menu that opens during a drag swallows the release; the scene takes the mouse back all the same.
bool DashboardItem::sceneEvent(QEvent* event)
{
    if (event->type() == QEvent::UngrabMouse)
        m_gesture.end();
    return QGraphicsObject::sceneEvent(event);
}

void DashboardItem::contextMenuEvent(QGraphicsSceneContextMenuEvent* event)
{
    if (!m_designMode || !m_widget) {
        QGraphicsObject::contextMenuEvent(event);
        return;
    }
    event->accept();
    m_gesture.abort(); // the menu takes the mouse
    if (m_inMenu)
        return;
    // Menu and dialogs run their own event loops; whoever deletes the item from there must wait for the end.
    m_inMenu = true;
    ItemMenu(*this).exec(event->screenPos());
    m_inMenu = false;
    if (m_deleteRequested)
        destroyLater();
}
