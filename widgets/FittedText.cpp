#include "widgets/FittedText.h"

#include "widgets/SizedFont.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kSmallestPointSize = 6;

/// The advance is rounded: one of the width itself may be a fraction of a pixel too wide.
bool fits(const QFont& font, const QString& text, int width)
{
    return QFontMetrics(font).horizontalAdvance(text) < width;
}

} // namespace

QFont fittingFont(const QFont& font, const QStringList& texts, int width)
{
    QFont fitting = font;
    const auto tooWide = [&fitting, width](const QString& text) { return !fits(fitting, text, width); };
    while (fitting.pointSize() > kSmallestPointSize && std::any_of(texts.cbegin(), texts.cend(), tooWide))
        fitting = sizedFont(fitting, fitting.pointSize() - 1);
    return fitting;
}

void drawFittedNumber(QPainter& painter, const QRect& area, Qt::Alignment alignment, double value, int digits)
{
    QString text = QString::number(value, 'g', digits);
    const QFont usual = painter.font();
    const QFont fitting = fittingFont(usual, {text}, area.width());
    while (digits > 1 && !fits(fitting, text, area.width()))
        text = QString::number(value, 'g', --digits);
    if (!fits(fitting, text, area.width()))
        return;
    painter.setFont(fitting);
    painter.drawText(area, int(alignment) | Qt::TextDontClip, text);
    painter.setFont(usual);
}
