#include "app/WidgetPalette.h"

#include "widgets/DashboardWidgetFactory.h"

#include <QKeyEvent>
#include <QPalette>

namespace {

constexpr int kWidth = 160;
constexpr int kIconSide = 24;
constexpr QColor kSelection(0xcf, 0xe3, 0xf4);

} // namespace

WidgetPalette::WidgetPalette(QWidget* parent)
    : QListWidget(parent)
{
    setFixedWidth(kWidth);
    setIconSize(QSize(kIconSide, kIconSide));
    QPalette colors = palette();
    colors.setColor(QPalette::Highlight, kSelection); // the icons' own blue cannot be seen on the usual one
    colors.setColor(QPalette::HighlightedText, colors.color(QPalette::Text));
    setPalette(colors);
    setAccessibleName(tr("Widget palette"));
    setToolTip(tr("In Design mode, double-click a widget to put it on the dashboard"));
    DashboardWidgetFactory& factory = DashboardWidgetFactory::instance();
    factory.registerBuiltInTypes();
    QList<QString> types = factory.availableTypes();
    types.sort(Qt::CaseInsensitive); // the registry has no order
    for (const QString& type : std::as_const(types))
        addItem(new QListWidgetItem(factory.iconForType(type), type));
    connect(this, &QListWidget::itemDoubleClicked, this, &WidgetPalette::request);
}

void WidgetPalette::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter)
        request(currentItem());
    else
        QListWidget::keyPressEvent(event);
}

void WidgetPalette::request(const QListWidgetItem* item)
{
    if (item)
        Q_EMIT widgetRequested(item->text());
}
