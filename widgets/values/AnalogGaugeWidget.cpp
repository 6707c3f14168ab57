#include "widgets/values/AnalogGaugeWidget.h"

#include "definitions/numbers/FileNumbers.h"
#include "widgets/drawing/DeviceScale.h"
#include "widgets/drawing/SizedFont.h"
#include "widgets/values/SignalCaption.h"

#include <QPainter>
#include <QRadialGradient>
#include <QtMath>

#include <algorithm>
#include <cmath>

namespace {

constexpr int kMinimumSide = 120;
constexpr double kDialSize = 200.0; ///< side of the logical square in which the dial is drawn
constexpr double kStartAngle = -135.0;
constexpr double kSweep = 270.0;
constexpr int kTicks = 21;
constexpr int kLabels = 11;
constexpr int kLabelRadius = 60;
constexpr int kMaxFacePixels = 2048; ///< a larger face is drawn directly: its pixmap would take over 16 MB

void enterDial(QPainter& painter, const QPointF& centre, int side)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.translate(centre);
    painter.scale(side / kDialSize, side / kDialSize);
}

} // namespace

AnalogGaugeWidget::AnalogGaugeWidget(QWidget* parent)
    : WidgetWithSettings(parent)
{
    setMinimumSize(kMinimumSide, kMinimumSide);
}

QSize AnalogGaugeWidget::sizeHint() const { return size(); }

void AnalogGaugeWidget::setValue(double value)
{
    // Not std::clamp: the limits may be the wrong way round or NaN.
    m_value = std::isnan(value) ? m_minimum : std::max(m_minimum.value(), std::min(value, m_maximum.value()));
    updateForValue();
}

void AnalogGaugeWidget::setRange(double minimum, double maximum)
{
    m_minimum.set(minimum);
    m_maximum.set(maximum);
    settingsChanged();
}

QString AnalogGaugeWidget::typeName() const { return QStringLiteral("AnalogGauge"); }

QString AnalogGaugeWidget::signalName() const { return m_signal; }

void AnalogGaugeWidget::assignSignal(const QString& name) { m_signal = name; }

void AnalogGaugeWidget::loadConfig(const QJsonObject& config)
{
    const QJsonValue minimum = config.value(m_minimum.key());
    const QJsonValue maximum = config.value(m_maximum.key());
    if (!minimum.isUndefined() && !maximum.isUndefined())
        setRange(jsonInt(minimum, 0), jsonInt(maximum, 0));
    WidgetWithSettings::loadConfig(config);
}

void AnalogGaugeWidget::settingsChanged()
{
    m_faceSide = -1;
    update();
}

void AnalogGaugeWidget::paintEvent(QPaintEvent*)
{
    if (side() <= 0)
        return;
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    drawFace(painter);
    enterDial(painter, QRectF(rect()).center(), side());
    paintNeedle(painter);
    if (!assignedSignalList().isEmpty())
        paintName(painter);
}

void AnalogGaugeWidget::resizeEvent(QResizeEvent* event)
{
    m_faceSide = -1;
    WidgetWithSettings::resizeEvent(event);
    update();
}

int AnalogGaugeWidget::side() const { return std::min(width(), height()); }

double AnalogGaugeWidget::needleAngle() const
{
    const double range = m_maximum - m_minimum;
    const double angle = (m_value - m_minimum) * kSweep / range + kStartAngle;
    // A value from before the last change of the range may lie outside it.
    return range > 0 && std::isfinite(angle) ? std::clamp(angle, kStartAngle, kStartAngle + kSweep)
                                             : kStartAngle;
}

void AnalogGaugeWidget::drawFace(QPainter& painter)
{
    const int side = this->side();
    const QPoint corner((width() - side) / 2, (height() - side) / 2);
    const double scale = deviceScale(painter);
    const int pixels = boundedInt(std::ceil(side * scale), 1, kMaxFacePixels + 1, 1);
    if (pixels > kMaxFacePixels) {
        m_face = QPixmap();
        m_faceSide = -1;
        painter.save();
        enterDial(painter, corner + QPointF(side / 2.0, side / 2.0), side);
        paintDial(painter);
        painter.restore();
        return;
    }
    if (m_faceSide != side || m_face.devicePixelRatio() != scale) {
        m_face = QPixmap(pixels, pixels);
        m_face.setDevicePixelRatio(scale);
        m_face.fill(Qt::transparent);
        m_faceSide = side;
        QPainter facePainter(&m_face);
        enterDial(facePainter, QPointF(side / 2.0, side / 2.0), side);
        paintDial(facePainter);
    }
    painter.drawPixmap(corner, m_face);
}

void AnalogGaugeWidget::paintDial(QPainter& painter) const
{
    QRadialGradient bezel(0, 0, 95);
    bezel.setColorAt(0, QColor(80, 80, 80));
    bezel.setColorAt(0.95, QColor(40, 40, 40));
    bezel.setColorAt(1, QColor(150, 150, 150));
    painter.setPen(Qt::NoPen);
    painter.setBrush(bezel);
    painter.drawEllipse(QRectF(-95, -95, 190, 190));

    QRadialGradient plate(0, -15, 120);
    plate.setColorAt(0, QColor(230, 235, 240));
    plate.setColorAt(0.8, QColor(200, 210, 220));
    plate.setColorAt(1, QColor(180, 190, 200));
    painter.setBrush(plate);
    painter.drawEllipse(QRectF(-90, -90, 180, 180));

    paintTicks(painter);
    paintLabels(painter);

    const QRectF hub(-12, -12, 24, 24);
    painter.setPen(QPen(QColor(100, 100, 100), 1.0));
    painter.setBrush(Qt::lightGray);
    painter.drawEllipse(hub);
    painter.setPen(QPen(QColor(60, 60, 60), 2.0));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(hub);
}

void AnalogGaugeWidget::paintTicks(QPainter& painter) const
{
    for (int i = 0; i < kTicks; ++i) {
        const bool major = i % 2 == 0;
        painter.save();
        painter.rotate(kStartAngle + kSweep / (kTicks - 1) * i);
        painter.setPen(major ? QPen(Qt::black, 2.0) : QPen(Qt::darkGray, 1.0));
        painter.drawLine(QPointF(0, major ? -78 : -82), QPointF(0, -88));
        painter.restore();
    }
}

void AnalogGaugeWidget::paintLabels(QPainter& painter) const
{
    const double range = m_maximum - m_minimum;
    const int decimals = range > 20 ? 0 : range > 2 ? 1 : 2;
    const int pointSize = range > 20 ? 12 : range > 2 ? 10 : 8;
    painter.setFont(sizedFont(font(), pointSize));
    painter.setPen(Qt::black);
    for (int i = 0; i < kLabels; ++i) {
        double value = m_minimum + i * range / (kLabels - 1);
        if (std::abs(value) <= 1e-12)
            value = 0;
        const double theta = qDegreesToRadians(kStartAngle + kSweep / (kLabels - 1) * i - 90);
        const QPoint centre(static_cast<int>(kLabelRadius * std::cos(theta)),
                            static_cast<int>(kLabelRadius * std::sin(theta)));
        // A number with its ends clipped off reads as another number.
        painter.drawText(QRect(centre - QPoint(20, 12), QSize(40, 24)), Qt::AlignCenter | Qt::TextDontClip,
                         QString::number(value, 'f', decimals));
    }
}

void AnalogGaugeWidget::paintNeedle(QPainter& painter) const
{
    painter.save();
    painter.rotate(needleAngle());
    painter.setPen(QPen(QColor(0, 0, 0, 80), 3.0));
    painter.drawLine(QPointF(1, 1), QPointF(1, -69));
    painter.setPen(QPen(Qt::red, 3.0));
    painter.drawLine(QPointF(0, 0), QPointF(0, -70));
    painter.restore();

    QRadialGradient cap(0, -2, 6);
    cap.setColorAt(0, QColor(60, 60, 60));
    cap.setColorAt(1, QColor(20, 20, 20));
    painter.setPen(QPen(Qt::black, 2.0));
    painter.setBrush(cap);
    painter.drawEllipse(QRectF(-5, -5, 10, 10));
}

void AnalogGaugeWidget::paintName(QPainter& painter) const
{
    // Below the dial: seen where the widget is higher than it is wide.
    const SignalCaption caption = signalCaption(assignedSignalList());
    painter.setFont(sizedFont(painter.font(), 10));
    painter.setPen(Qt::black);
    painter.drawText(QRect(-(width() / 2), 105, width(), 20), Qt::AlignCenter, caption.description);
    painter.drawText(QRect(-(width() / 2), 115, width(), 30), Qt::AlignCenter, caption.name);
}
