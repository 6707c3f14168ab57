#include "app/toolbars/CompactToolBar.h"

#include <QAction>
#include <QFontMetrics>
#include <QStyle>
#include <QStyleFactory>
#include <QToolButton>

namespace {

constexpr int kIconSide = 24;
constexpr int kFontPoints = 9;
constexpr int kHeightBesideText = 34;

} // namespace

CompactToolBar::CompactToolBar(const QString& title, const QString& objectName, QWidget* parent)
    : QToolBar(title, parent)
{
    setObjectName(objectName);
    setAllowedAreas(Qt::TopToolBarArea);
    setMovable(false);
    setFloatable(false);
    setToolButtonStyle(Qt::ToolButtonTextUnderIcon);
    // Hidden by a stray right click, a toolbar would not be found again.
    toggleViewAction()->setEnabled(false);
    setContextMenuPolicy(Qt::PreventContextMenu);
    QStyle* fusion = QStyleFactory::create(QStringLiteral("Fusion"));
    fusion->setParent(this);
    setStyle(fusion);
    QPalette background = palette();
    background.setColor(QPalette::Window, QColor(QStringLiteral("#eeeeee")));
    setPalette(background);
    setAutoFillBackground(true);
    compact();
}

void CompactToolBar::compact()
{
    setIconSize(QSize(kIconSide, kIconSide));
    QFont small = font();
    small.setPointSize(kFontPoints);
    setFont(small);
    setStyleSheet(QStringLiteral("QToolBar { spacing: 6px; }QToolButton { padding: 2px 4px; margin: 0px; }"));
    const int height = QFontMetrics(small).height() + kHeightBesideText;
    setFixedHeight(height);
    // In a narrow window the toolbar unfolds to a second row, which needs the height.
    const auto* extension = findChild<QToolButton*>(QStringLiteral("qt_toolbar_ext_button"));
    connect(extension, &QToolButton::toggled, this,
            [this, height](bool unfolded) { setMaximumHeight(unfolded ? QWIDGETSIZE_MAX : height); });
}

void CompactToolBar::addSpacer(int width)
{
    auto* spacer = new QWidget(this);
    spacer->setFixedWidth(width);
    addWidget(spacer);
}

void CompactToolBar::addExpandingSpacer()
{
    auto* spacer = new QWidget(this);
    spacer->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Preferred);
    addWidget(spacer);
}

QAction* CompactToolBar::addIconAction(const QString& iconPath, const QString& text, const QString& toolTip)
{
    QAction* action = addAction(QIcon(iconPath), text);
    action->setToolTip(toolTip);
    return action;
}
