#include "widgets/values/DigitalDisplayWidget.h"

#include "definitions/numbers/FileNumbers.h"
#include "widgets/drawing/SizedFont.h"
#include "widgets/values/SignalCaption.h"

#include <QLabel>
#include <QPainter>
#include <QStyle>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kValuePointSize = 28;
constexpr int kSmallestPointSize = 8;
constexpr int kNamePointSize = 10;
constexpr int kFrameMs = 16;
constexpr int kWritesPerFrame = 16; ///< a new text costs more than all else that a value does
constexpr int kMaxOfferedPlaces = 8;
constexpr int kMaxShownPlaces = 17; ///< a double has no more digits to tell

/// A label that draws a text too wide for it in a smaller font, and elided where even the smallest is too
/// wide: a number without its first digits reads as another number.
class ValueLabel : public QLabel
{
public:
    using QLabel::QLabel;

    // Of no use here, and the text is laid out to answer after every value.
    QSize sizeHint() const override { return {0, fontMetrics().height()}; }
    QSize minimumSizeHint() const override { return sizeHint(); }

protected:
    void paintEvent(QPaintEvent* event) override
    {
        const double needed = widthIn(font());
        if (needed <= width()) {
            QLabel::paintEvent(event);
            return;
        }
        QPainter painter(this);
        QFont smaller = font();
        int pointSize = std::max(kSmallestPointSize, int(kValuePointSize * width() / needed)) + 1;
        do {
            smaller.setPointSize(--pointSize);
        } while (pointSize > kSmallestPointSize && widthIn(smaller) > width());
        painter.setFont(smaller);
        const QString shown = widthIn(smaller) <= width()
                                  ? text()
                                  : painter.fontMetrics().elidedText(text(), Qt::ElideRight, width());
        style()->drawItemText(&painter, rect(), Qt::AlignCenter, palette(), isEnabled(), shown,
                              foregroundRole());
    }

private:
    /// Not rounded down, as a fraction of a pixel too much would be elided with a whole digit.
    double widthIn(const QFont& font) const
    {
        return std::ceil(QFontMetricsF(font, this).horizontalAdvance(text()));
    }
};

} // namespace

DigitalDisplayWidget::DigitalDisplayWidget(QWidget* parent)
    : WidgetWithSettings(parent)
    , m_label(new ValueLabel(QStringLiteral("0"), this))
{
    m_label->setFont(sizedFont(m_label->font(), kValuePointSize));
    m_label->setAlignment(Qt::AlignCenter);
    m_label->setTextFormat(Qt::PlainText);
    // 1e308 has 309 digits: the text must never decide how wide the widget has to be.
    m_label->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Preferred);

    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_label);

    m_frameTimer.setSingleShot(true);
    m_frameTimer.setTimerType(Qt::PreciseTimer);
    m_frameTimer.setInterval(kFrameMs);
    connect(&m_frameTimer, &QTimer::timeout, this, &DigitalDisplayWidget::endFrame);
}

void DigitalDisplayWidget::setValue(double value)
{
    m_value = value;
    if (m_writes < kWritesPerFrame)
        writeLabel();
    else
        m_pending = true;
    if (!m_frameTimer.isActive())
        m_frameTimer.start();
}

void DigitalDisplayWidget::endFrame()
{
    m_writes = 0;
    writePending();
}

void DigitalDisplayWidget::writePending()
{
    if (m_pending)
        writeLabel();
}

void DigitalDisplayWidget::writeLabel()
{
    ++m_writes;
    m_pending = false;
    m_label->setText(QString::number(m_value, 'f', std::clamp(m_decimalPlaces.value(), 0, kMaxShownPlaces)));
}

QString DigitalDisplayWidget::typeName() const { return QStringLiteral("DigitalDisplay"); }

QString DigitalDisplayWidget::signalName() const { return m_signal; }

void DigitalDisplayWidget::assignSignal(const QString& name) { m_signal.set(name); }

// Other decimal places are for the values after.
void DigitalDisplayWidget::settingsAboutToChange() { writePending(); }

void DigitalDisplayWidget::PlacesSetting::load(const QJsonValue& entry) { set(jsonInt(entry, 0)); }

QDoubleSpinBox* DigitalDisplayWidget::PlacesSetting::newEditor(QWidget* parent) const
{
    auto* editor = new QDoubleSpinBox(parent);
    editor->setRange(0, kMaxOfferedPlaces);
    editor->setDecimals(0);
    editor->setValue(value());
    return editor;
}

int DigitalDisplayWidget::PlacesSetting::edited(const QDoubleSpinBox& editor) const
{
    return static_cast<int>(editor.value());
}

void DigitalDisplayWidget::paintEvent(QPaintEvent*)
{
    if (assignedSignalList().isEmpty())
        return;
    const SignalCaption caption = signalCaption(assignedSignalList());
    QPainter painter(this);
    painter.setFont(sizedFont(painter.font(), kNamePointSize));
    painter.setPen(Qt::black);
    painter.drawText(QRect(0, 25, width(), height() + 25), Qt::AlignCenter, caption.description);
    painter.drawText(QRect(0, 35, width(), height() + 35), Qt::AlignCenter, caption.name);
}
