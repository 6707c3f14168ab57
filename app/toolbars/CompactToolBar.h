#pragma once

#include <QToolBar>

// The look that the window's toolbars share: one flat row at the top that cannot be moved.
class CompactToolBar : public QToolBar
{
    Q_OBJECT

public:
    CompactToolBar(const QString& title, const QString& objectName, QWidget* parent);

protected:
    void addSpacer(int width);
    void addExpandingSpacer();
    /// An action with one of the program's icons.
    QAction* addIconAction(const QString& iconPath, const QString& text, const QString& toolTip);

private:
    void compact();
};
