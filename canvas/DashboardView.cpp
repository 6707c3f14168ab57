#include "canvas/DashboardView.h"

#include <QGraphicsScene>

namespace {

constexpr int kFrameMs = 16;
constexpr int kAntialiasingMargin = 2;
// Beyond this many rectangles a region costs more to keep than its bounding rectangle costs to paint.
constexpr int kMaxRects = 64;

} // namespace

DashboardView::DashboardView(QGraphicsScene* scene, QWidget* parent)
    : QGraphicsView(scene, parent)
{
    setRenderHint(QPainter::Antialiasing);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
    setAlignment(Qt::AlignLeft | Qt::AlignTop);
    setFrameShape(QFrame::NoFrame);
    setViewportUpdateMode(QGraphicsView::NoViewportUpdate);
    setAccessibleName(tr("Dashboard"));

    m_frameTimer.setSingleShot(true);
    m_frameTimer.setTimerType(Qt::PreciseTimer);
    m_frameTimer.setInterval(kFrameMs);
    connect(&m_frameTimer, &QTimer::timeout, this, &DashboardView::repaintCollected);
    connect(scene, &QGraphicsScene::changed, this, &DashboardView::collect);
}

void DashboardView::resizeEvent(QResizeEvent* event)
{
    QGraphicsView::resizeEvent(event);
    if (scene())
        scene()->setSceneRect(QRectF(QPointF(0, 0), viewport()->size()));
    viewport()->update();
}

void DashboardView::collect(const QList<QRectF>& changedRects)
{
    const QRect visible = viewport()->rect();
    const QRectF visibleScene = mapToScene(visible).boundingRect();
    const QMargins margin(kAntialiasingMargin, kAntialiasingMargin, kAntialiasingMargin, kAntialiasingMargin);
    for (const QRectF& rect : changedRects) {
        if (!rect.intersects(visibleScene))
            continue;
        const QRect pixels = mapFromScene(rect & visibleScene).boundingRect().marginsAdded(margin);
        m_changed += pixels & visible;
    }
    if (m_changed.rectCount() > kMaxRects)
        m_changed = m_changed.boundingRect();
    if (!m_changed.isEmpty() && !m_frameTimer.isActive())
        m_frameTimer.start();
}

void DashboardView::repaintCollected()
{
    viewport()->update(m_changed);
    m_changed = QRegion();
}
