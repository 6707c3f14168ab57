#pragma once

#include "canvas/DashboardItem.h"
#include "canvas/DashboardView.h"
#include "canvas/DesignScene.h"
#include "widgets/DashboardWidgetFactory.h"

#include <QContextMenuEvent>
#include <QCoreApplication>
#include <QTest>
#include <QWheelEvent>

// A canvas in a shown view, and the mouse over it: every event goes to the view's viewport, as a user's
// would.
struct Canvas
{
    DesignScene scene;
    DashboardView view{&scene};

    Canvas()
    {
        DashboardWidgetFactory::instance().registerBuiltInTypes();
        view.resize(800, 600);
        view.show();
    }

    DashboardItem* add(const char* type, const QRectF& frame)
    {
        auto* item = new DashboardItem(DashboardWidgetFactory::instance().create(QLatin1String(type)));
        scene.addItem(item);
        item->setPos(frame.topLeft());
        item->resize(frame.size());
        return item;
    }

    void setDesignMode(bool on)
    {
        scene.setDesignMode(on);
        QCoreApplication::processEvents();
    }

    QPoint at(const QPointF& scenePos) const { return view.mapFromScene(scenePos); }

    void press(const QPointF& pos) { QTest::mousePress(view.viewport(), Qt::LeftButton, {}, at(pos)); }
    void move(const QPointF& pos, Qt::MouseButtons buttons = Qt::LeftButton)
    {
        QMouseEvent event(QEvent::MouseMove, at(pos), view.viewport()->mapToGlobal(at(pos)), Qt::NoButton,
                          buttons, {});
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
    void release(const QPointF& pos) { QTest::mouseRelease(view.viewport(), Qt::LeftButton, {}, at(pos)); }
    void drag(const QPointF& from, const QPointF& to)
    {
        press(from);
        move(to);
        release(to);
    }
    void wheel(const QPointF& pos, int delta)
    {
        QWheelEvent event(at(pos), view.viewport()->mapToGlobal(at(pos)), {}, QPoint(0, delta), Qt::NoButton,
                          {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
    void contextMenu(const QPointF& pos)
    {
        QContextMenuEvent event(QContextMenuEvent::Mouse, at(pos), view.viewport()->mapToGlobal(at(pos)));
        QCoreApplication::sendEvent(view.viewport(), &event);
    }
};
