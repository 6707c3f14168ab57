#include "widgets/drawing/NumberStyle.h"

#include "widgets/drawing/SizedFont.h"

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

bool allFit(const QFont& font, const QStringList& texts, int width)
{
    return std::all_of(texts.cbegin(), texts.cend(),
                       [&](const QString& text) { return fits(font, text, width); });
}

QStringList textsOf(const NumberStyle& style, const QList<double>& values)
{
    QStringList texts;
    for (const double value : values)
        texts.append(style.text(value));
    return texts;
}

qsizetype countOfDifferent(QStringList texts)
{
    texts.removeDuplicates();
    return texts.size();
}

} // namespace

QFont fittingFont(const QFont& font, const QStringList& texts, int width)
{
    QFont fitting = font;
    while (fitting.pointSize() > kSmallestPointSize && !allFit(fitting, texts, width))
        fitting = sizedFont(fitting, fitting.pointSize() - 1);
    return fitting;
}

NumberStyle NumberStyle::fitting(const QFont& font, const QList<double>& values, int digits, int width)
{
    NumberStyle style{font, digits};
    const QStringList full = textsOf(style, values);
    style.font = fittingFont(font, full, width);
    if (allFit(style.font, full, width))
        return style;
    style.shortExponent = true;
    while (style.digits > 1 && !allFit(style.font, textsOf(style, values), width)) {
        NumberStyle rounder = style;
        --rounder.digits;
        if (countOfDifferent(textsOf(rounder, values)) < countOfDifferent(full))
            break;
        style = rounder;
    }
    return style;
}

QString NumberStyle::text(double value) const
{
    QString text = QString::number(value, 'g', digits);
    if (shortExponent) {
        text.replace(QLatin1String("e+0"), QLatin1String("e"));
        text.replace(QLatin1String("e+"), QLatin1String("e"));
        text.replace(QLatin1String("e-0"), QLatin1String("e-"));
    }
    return text;
}

void NumberStyle::draw(QPainter& painter, const QRect& area, Qt::Alignment alignment, double value) const
{
    const QString number = text(value);
    const bool tooWide = !fits(font, number, area.width());
    if (tooWide && !alignment.testFlag(Qt::AlignRight))
        return;
    if (tooWide)
        alignment = Qt::AlignLeft | (alignment & Qt::AlignVertical_Mask);
    const QFont usual = painter.font();
    painter.setFont(font);
    painter.drawText(area, int(alignment) | Qt::TextSingleLine | Qt::TextDontClip, number);
    painter.setFont(usual);
}
