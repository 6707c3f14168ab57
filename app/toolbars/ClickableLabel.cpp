#include "app/toolbars/ClickableLabel.h"

#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QStyleOptionFocusRect>

namespace {

constexpr int kMaxWidth = 260; // pixels; a long name must not push its neighbours out of the toolbar

} // namespace

ClickableLabel::ClickableLabel(const QString& text, QWidget* parent)
    : QLabel(text, parent)
{
    setTextFormat(Qt::PlainText);
    setCursor(Qt::PointingHandCursor);
    setFocusPolicy(Qt::StrongFocus);
    setForegroundRole(QPalette::Link);
    setMargin(3); // for the focus frame
    setMaximumWidth(kMaxWidth);
}

void ClickableLabel::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton && rect().contains(event->position().toPoint()))
        Q_EMIT clicked();
    else
        QLabel::mouseReleaseEvent(event);
}

void ClickableLabel::keyPressEvent(QKeyEvent* event)
{
    if (event->key() == Qt::Key_Return || event->key() == Qt::Key_Enter || event->key() == Qt::Key_Space)
        Q_EMIT clicked();
    else
        QLabel::keyPressEvent(event);
}

void ClickableLabel::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const QRect inside = contentsRect().marginsRemoved({margin(), margin(), margin(), margin()});
    style()->drawItemText(&painter, inside, Qt::AlignLeft | Qt::AlignVCenter, palette(), isEnabled(),
                          fontMetrics().elidedText(text(), Qt::ElideMiddle, inside.width()),
                          foregroundRole());
    if (!hasFocus())
        return;
    QStyleOptionFocusRect option;
    option.initFrom(this);
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
}
