#include "canvas/ItemMenu.h"

#include "canvas/DashboardItem.h"
#include "canvas/StackingOrder.h"
#include "widgets/DashboardWidget.h"
#include "widgets/DashboardWidgetConfigDialog.h"

#include <QMenu>
#include <QMessageBox>

#include <utility>

ItemMenu::ItemMenu(DashboardItem& item)
    : m_item(item)
{}

void ItemMenu::exec(const QPoint& screenPos)
{
    QMenu menu;
    const QAction* configure = menu.addAction(tr("Configure Widget..."));
    const std::pair<const QAction*, StackingMove> moves[] = {
        {menu.addAction(tr("Bring to Front")), StackingMove::BringToFront},
        {menu.addAction(tr("Send to Back")), StackingMove::SendToBack},
        {menu.addAction(tr("Bring Forward")), StackingMove::BringForward},
        {menu.addAction(tr("Send Backward")), StackingMove::SendBackward},
    };
    menu.addSeparator();
    const QAction* remove = menu.addAction(tr("Delete"));

    const QAction* chosen = menu.exec(screenPos);
    if (!chosen || !m_item.scene() || !m_item.widget())
        return;
    if (chosen == configure)
        configureWidget();
    else if (chosen == remove)
        confirmDelete();
    for (const auto& [action, move] : moves) {
        if (action != chosen)
            continue;
        m_item.setZValue(stackedZ(m_item, move));
        m_item.raiseHandleAboveScene();
        m_item.update();
    }
}

void ItemMenu::configureWidget()
{
    DashboardWidgetConfigDialog dialog(m_item.widget());
    dialog.exec();
}

void ItemMenu::confirmDelete()
{
    const auto answer = QMessageBox::question(nullptr, tr("Delete Widget"),
                                              tr("Are you sure you want to delete this widget?"),
                                              QMessageBox::Yes | QMessageBox::No);
    if (answer == QMessageBox::Yes)
        m_item.requestDelete();
}
