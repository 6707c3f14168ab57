#pragma once

#include <QGraphicsScene>
#include <QList>
#include <QString>

class DashboardItem;
class DashboardWidget;

// The canvas: a scene of dashboard items with a grid behind them while the dashboard is being designed.
// It answers questions about its items and counts the changes that matter to whoever keeps an index of them.
// It passes the project's folder on to the widgets that need it, and knows nothing of modes or values.
class DesignScene : public QGraphicsScene
{
    Q_OBJECT

public:
    /// What positions and sizes snap to, in scene units.
    static constexpr int kGridSpacing = 10;

    explicit DesignScene(QObject* parent = nullptr);
    ~DesignScene() override;

    /// Whether the grid is shown and the items can be arranged; those that come later are switched by whoever
    /// adds them.
    bool isDesignMode() const { return m_designMode; }
    void setDesignMode(bool on);

    /// The absolute path of the project's folder; empty while there is none.
    QString projectFolder() const { return m_projectFolder; }
    /// Tells every widget in the scene that needs the folder; items that come later ask for it.
    void setProjectFolder(const QString& dir);

    /// The top-level dashboard items, topmost first.
    QList<DashboardItem*> dashboardItems() const;
    /// The highest z value among the top-level dashboard items, at least 0.
    qreal highestZ() const;

    /// Adds a widget of that type in front of all others; null for an unknown type.
    DashboardItem* addNewWidget(const QString& typeName);
    /// Lets every widget show what the project's new catalogue says.
    void showNewDefinitions();

    /// Counts up whenever a dashboard item was added, removed or restacked.
    quint64 itemsRevision() const { return m_itemsRevision; }
    /// Counts up whenever a widget's assigned signals may have changed.
    quint64 assignmentsRevision() const { return m_assignmentsRevision; }
    void noteItemsChanged() { ++m_itemsRevision; }
    void noteAssignmentsChanged() { ++m_assignmentsRevision; }

    /// Moves every item that shows less than a corner of itself inside the scene rectangle back into it.
    void bringOutlyingItemsIntoView();

    /// Every widget in the scene, topmost first; with topLevelOnly the nested ones are left out.
    QList<DashboardWidget*> widgets(bool topLevelOnly) const;
    /// Those of class T.
    template <class T>
    QList<T*> widgetsOfType(bool topLevelOnly) const;

protected:
    void drawBackground(QPainter* painter, const QRectF& rect) override;
    void contextMenuEvent(QGraphicsSceneContextMenuEvent* event) override;

private:
    bool m_designMode = false;
    QString m_projectFolder;
    quint64 m_itemsRevision = 1;
    quint64 m_assignmentsRevision = 1;
    mutable quint64 m_highestZRevision = 0;
    mutable qreal m_highestZ = 0.0;
};

template <class T>
QList<T*> DesignScene::widgetsOfType(bool topLevelOnly) const
{
    QList<T*> found;
    const QList<DashboardWidget*> all = widgets(topLevelOnly);
    for (DashboardWidget* widget : all) {
        if (auto* wanted = dynamic_cast<T*>(widget))
            found.append(wanted);
    }
    return found;
}
