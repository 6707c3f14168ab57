#pragma once

#include <QCoreApplication>

class DashboardItem;
class QPoint;

// The context menu of an item that is being designed, and what its entries do: configuring the widget,
// restacking and deleting the item. It runs event loops of its own; that the item lives until they have ended
// is up to the item.
class ItemMenu
{
    Q_DECLARE_TR_FUNCTIONS(ItemMenu)

public:
    /// The item must outlive the menu.
    explicit ItemMenu(DashboardItem& item);

    /// Shows the menu there and does what is chosen, dialogs included, before it returns. Does nothing more
    /// if the item has left its scene or lost its widget meanwhile.
    void exec(const QPoint& screenPos);

private:
    void configureWidget();
    void confirmDelete();

    DashboardItem& m_item;
};
