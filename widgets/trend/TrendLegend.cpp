#include "widgets/trend/TrendLegend.h"

#include <QPainter>
#include <QStringList>

#include <algorithm>

namespace {

constexpr int kRowHeight = 16;
constexpr int kTopGap = 6;
constexpr int kSwatchLeft = 6;
constexpr int kSwatchTop = 3;
constexpr int kSwatch = 10;
constexpr int kAreaLeft = 18;
constexpr int kAreaWidth = 322;
constexpr int kTextLeft = 20;
constexpr int kVeilAlpha = 200; ///< the traces behind can be seen but leave the text readable

} // namespace

void TrendLegend::paint(QPainter& painter, const QRect& plot, int bottom, const QList<Row>& rows,
                        QColor background)
{
    clear();
    background.setAlpha(kVeilAlpha);
    const QFontMetrics metrics = painter.fontMetrics();
    const int left = plot.left();
    const int textRoom = plot.right() - left - kTextLeft;
    const qsizetype shown = std::min<qsizetype>(rows.size(), (bottom - plot.top() - kTopGap) / kRowHeight);
    if (shown <= 0)
        return;
    QStringList texts;
    int widest = 0;
    for (qsizetype i = 0; i < shown; ++i) {
        texts.append(metrics.elidedText(rows[i].text, Qt::ElideRight, textRoom));
        widest = std::max(widest, metrics.horizontalAdvance(texts.last()));
    }
    const int top = plot.top() + kTopGap;
    painter.fillRect(left + kAreaLeft, top, widest + 4, int(shown) * kRowHeight + metrics.descent(),
                     background);
    for (qsizetype i = 0; i < shown; ++i) {
        const Row& row = rows[i];
        const int y = top + int(i) * kRowHeight;
        const QRect swatch(left + kSwatchLeft, y + kSwatchTop, kSwatch, kSwatch);
        painter.fillRect(swatch, row.hidden ? QColor(200, 200, 200) : row.color);
        painter.setPen(row.hidden ? QColor(150, 150, 150) : QColor(Qt::black));
        const int textTop = y + 13 - metrics.ascent();
        painter.drawText(left + kTextLeft, textTop + metrics.height() - 1, texts[i]);
        m_areas.append({row.key, swatch | QRect(left + kAreaLeft, textTop, kAreaWidth, metrics.height())});
    }
}

std::optional<QString> TrendLegend::channelAt(const QPoint& pos) const
{
    const auto hit = std::find_if(m_areas.cbegin(), m_areas.cend(),
                                  [&pos](const Area& area) { return area.rect.contains(pos); });
    return hit == m_areas.cend() ? std::nullopt : std::optional(hit->key);
}
