#include "widgets/decor/TextLabelWidget.h"

#include "widgets/drawing/SizedFont.h"

#include <QPainter>

namespace {

constexpr int kMostDrawn = 1'000; ///< characters: a text is laid out whole before it is clipped
constexpr int kSideInset = 2;
constexpr int kTopInset = 1;

constexpr QLatin1String kLeft("Left");
constexpr QLatin1String kCenter("Center");
constexpr QLatin1String kRight("Right");

} // namespace

TextLabelWidget::TextLabelWidget(QWidget* parent)
    : WidgetWithSettings(parent)
{
    setMinimumSize(40, 20);
}

QString TextLabelWidget::typeName() const { return QStringLiteral("TextLabel"); }

bool TextLabelWidget::usesSignalSelection() const { return false; }

QStringList TextLabelWidget::alignments() { return {kLeft, kCenter, kRight}; }

Qt::Alignment TextLabelWidget::alignment() const
{
    const QString& name = m_alignment;
    const auto across = name == kLeft ? Qt::AlignLeft : name == kRight ? Qt::AlignRight : Qt::AlignHCenter;
    return across | Qt::AlignVCenter;
}

void TextLabelWidget::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::TextAntialiasing);
    painter.fillRect(rect(), palette().color(QPalette::Window));
    QFont font = sizedFont(this->font(), m_pointSize);
    font.setBold(m_bold);
    painter.setFont(font);
    painter.setPen(namedColor(m_color));
    painter.drawText(rect().adjusted(kSideInset, kTopInset, -kSideInset, -kTopInset),
                     int(alignment()) | Qt::TextSingleLine, m_text.value().left(kMostDrawn));
}
