#include "widgets/DotCloud.h"

#include "widgets/DeviceScale.h"

#include <QColor>
#include <QImage>
#include <QPainter>
#include <QRect>

#include <algorithm>
#include <array>
#include <cmath>
#include <vector>

// All dots have one colour, so how much of the background still shows through a pixel is all that there is
// to know of it. A dot multiplies that by its own transparency, in whatever order the dots come. As a float
// it stays exact where very many faint dots lie on one another.

namespace {

constexpr int kPhases = 8;           ///< places of a centre between two pixels; a power of two
constexpr double kMaxScale = 4.0;    ///< a larger cloud is scaled up: the work grows with the square
constexpr int kBandPixels = 1 << 22; ///< as much is painted at a time, which keeps the buffers at 32 MB
constexpr int kLanes = 4;            ///< pixels that are worked on as one: short rows are no loops then

/// The pixels of one dot, beginning at an offset from the pixel of its centre.
struct Stamp
{
    QPoint corner;
    int rows = 0;
    int lanes = 0;              ///< a row's length, with pixels of no weight at its end
    std::vector<float> weights; ///< row by row, 0 … 1
};

/// phase: where in its pixel the centre lies, in parts of 1 / kPhases.
Stamp newStamp(QPoint phase, int radius, double scale)
{
    const QPointF centre = QPointF(phase) / kPhases;
    const double reach = radius * scale;
    const QRectF circle(centre - QPointF(reach, reach), centre + QPointF(reach, reach));
    const QRect box = circle.toAlignedRect();

    QImage image(box.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(Qt::white);
    painter.translate(centre - box.topLeft());
    painter.scale(scale, scale); // as all else is: a scaled curve comes out a little different
    painter.drawEllipse(QPointF(), radius, radius);
    painter.end();

    const int lanes = (box.width() + kLanes - 1) / kLanes * kLanes;
    Stamp stamp{box.topLeft(), box.height(), lanes, {}};
    stamp.weights.resize(size_t(lanes) * size_t(box.height()));
    for (int y = 0; y < box.height(); ++y) {
        const auto* line = reinterpret_cast<const QRgb*>(image.constScanLine(y));
        for (int x = 0; x < box.width(); ++x)
            stamp.weights[size_t(y * lanes + x)] = float(qAlpha(line[x])) / 255.0F;
    }
    return stamp;
}

/// Takes from each pixel the share that the dot covers. All are read before one is written, as the compiler
/// cannot know that the two never overlap, and would work on one pixel after the other.
void cover(float* clear, const float* weights, float alpha)
{
    float shares[kLanes];
    for (int i = 0; i < kLanes; ++i)
        shares[i] = clear[i] * (1.0F - alpha * weights[i]);
    std::copy_n(shares, kLanes, clear);
}

/// Where the whole numbers of an axis lie on the device, so that no dot needs to be scaled by itself.
class AxisPlaces
{
public:
    struct Place
    {
        int pixel;
        int phase; ///< 0 … kPhases − 1
    };

    AxisPlaces(int first, int last, double scale, double origin)
        : m_first(first)
    {
        for (int i = first; i <= last; ++i) {
            const int steps = int(std::floor((i * scale + origin) * kPhases + 0.5));
            const int phase = steps & (kPhases - 1);
            m_places.push_back({(steps - phase) / kPhases, phase});
        }
    }

    bool has(int i) const { return size_t(qint64(i) - m_first) < m_places.size(); }
    const Place& at(int i) const { return m_places[size_t(i - m_first)]; }

private:
    int m_first;
    std::vector<Place> m_places;
};

class Cloud
{
public:
    /// origin is where on its pixel the painter's zero lies.
    Cloud(const QRect& area, double scale, QPointF origin, int radius)
        : m_columns(area.left() - radius, area.right() + 1 + radius, scale, origin.x())
        , m_rows(area.top() - radius, area.bottom() + 1 + radius, scale, origin.y())
        , m_scale(scale)
        , m_radius(radius)
        , m_reach(int(std::ceil(radius * scale)) + 1)
    {}

    /// What lies within the box, which is in device pixels.
    QImage paint(const QRect& box, const QColor& colour, const QList<CloudDot>& dots)
    {
        // With room around it for all of a dot that only touches the box: nothing needs to be cut off.
        const QRect centres = box.adjusted(-m_reach, -m_reach, m_reach, m_reach);
        m_box = centres.adjusted(-m_reach, -m_reach, m_reach + kLanes, m_reach);
        m_clear.assign(size_t(m_box.width()) * size_t(m_box.height()), 1.0F);
        for (const CloudDot& dot : dots) {
            if (dot.alpha <= 0 || !m_columns.has(dot.centre.x()) || !m_rows.has(dot.centre.y()))
                continue;
            const AxisPlaces::Place column = m_columns.at(dot.centre.x());
            const AxisPlaces::Place row = m_rows.at(dot.centre.y());
            if (centres.contains(column.pixel, row.pixel))
                add(column, row, float(std::min(dot.alpha, 255)) / 255.0F);
        }
        return coloured(box, colour);
    }

private:
    float* clearAt(int x, int y)
    {
        return m_clear.data() + qsizetype(y - m_box.top()) * m_box.width() + (x - m_box.left());
    }

    void add(const AxisPlaces::Place& column, const AxisPlaces::Place& row, float alpha)
    {
        Stamp& stamp = m_stamps[size_t(row.phase * kPhases + column.phase)];
        if (stamp.rows == 0)
            stamp = newStamp({column.phase, row.phase}, m_radius, m_scale);
        float* clear = clearAt(column.pixel + stamp.corner.x(), row.pixel + stamp.corner.y());
        const float* weights = stamp.weights.data();
        for (int y = 0; y < stamp.rows; ++y, clear += m_box.width(), weights += stamp.lanes) {
            for (int x = 0; x < stamp.lanes; x += kLanes)
                cover(clear + x, weights + x, alpha);
        }
    }

    QImage coloured(const QRect& box, const QColor& colour)
    {
        std::array<QRgb, 256> shades;
        for (int alpha = 0; alpha < 256; ++alpha)
            shades[size_t(alpha)] = qPremultiply(qRgba(colour.red(), colour.green(), colour.blue(), alpha));
        QImage image(box.size(), QImage::Format_ARGB32_Premultiplied);
        for (int y = 0; y < box.height(); ++y) {
            const float* clear = clearAt(box.left(), box.top() + y);
            auto* line = reinterpret_cast<QRgb*>(image.scanLine(y));
            for (int x = 0; x < box.width(); ++x)
                line[x] = shades[size_t((1.0F - clear[x]) * 255.0F + 0.5F)];
        }
        return image;
    }

    AxisPlaces m_columns;
    AxisPlaces m_rows;
    double m_scale;
    int m_radius;
    int m_reach; ///< no dot covers a pixel further than this from that of its centre
    QRect m_box; ///< of m_clear
    std::array<Stamp, kPhases * kPhases> m_stamps; ///< each made when a dot first needs it
    std::vector<float> m_clear;                    ///< the share of the background in each pixel
};

double fraction(double value) { return std::isfinite(value) ? value - std::floor(value) : 0.0; }

} // namespace

void drawDotCloud(QPainter& painter, const QRect& area, const QColor& colour, int radius,
                  const QList<CloudDot>& dots)
{
    const double scale = std::min(deviceScale(painter), kMaxScale);
    const QTransform transform = painter.deviceTransform();
    const QPointF origin(fraction(transform.dx()), fraction(transform.dy()));
    const QRect pixels =
        QRectF(QPointF(area.topLeft()) * scale + origin, QSizeF(area.size()) * scale).toAlignedRect();
    const int bandHeight = std::clamp(kBandPixels / pixels.width(), 1, pixels.height());

    Cloud cloud(area, scale, origin, radius);
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    for (int top = pixels.top(); top <= pixels.bottom(); top += bandHeight) {
        const QRect band = QRect(pixels.left(), top, pixels.width(), bandHeight) & pixels;
        QImage image = cloud.paint(band, colour, dots);
        image.setDevicePixelRatio(scale);
        painter.drawImage((QPointF(band.topLeft()) - origin) / scale, image);
    }
    painter.restore();
}
