#include "widgets/AxisNumber.h"

#include "widgets/SizedFont.h"

#include <QFontMetrics>
#include <QPainter>

#include <algorithm>

namespace {

constexpr int kSmallestPointSize = 6;
constexpr int kDigits = 6;

} // namespace

QString axisNumber(double value) { return QString::number(value, 'g', kDigits); }

QFont fittingFont(const QFont& font, const QStringList& texts, int width)
{
    QFont fitting = font;
    const auto tooWide = [&fitting, width](const QString& text) {
        return QFontMetrics(fitting).horizontalAdvance(text) > width;
    };
    while (fitting.pointSize() > kSmallestPointSize && std::any_of(texts.cbegin(), texts.cend(), tooWide))
        fitting = sizedFont(fitting, fitting.pointSize() - 1);
    return fitting;
}

void drawAxisNumber(QPainter& painter, const QRect& box, const QString& text)
{
    const int width = painter.fontMetrics().horizontalAdvance(text);
    painter.drawText(QRect(std::max(1, box.right() + 1 - width), box.top(), width, box.height()),
                     Qt::AlignLeft | Qt::AlignVCenter | Qt::TextDontClip, text);
}
