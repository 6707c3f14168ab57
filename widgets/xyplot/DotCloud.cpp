#include "widgets/xyplot/DotCloud.h"

#include "widgets/drawing/DeviceScale.h"

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

constexpr int kPhases = 8;                ///< places of a centre between two pixels; a power of two
constexpr double kMaxScale = 4.0;         ///< a larger cloud is scaled up: the work grows with the square
constexpr int kBandPixels = 1 << 17;      ///< as much is painted at a time: the buffers stay in the cache
constexpr int kMinBandHeight = 32;        ///< lower bands would consist of margins
constexpr qint64 kPixelsPerCircle = 2000; ///< a circle takes about as long as so many pixels of a cloud
constexpr int kLanes = 4;                 ///< pixels that are worked on as one: short rows are no loops then

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
        float* weights = stamp.weights.data() + qsizetype(y) * lanes;
        for (int x = 0; x < box.width(); ++x)
            weights[x] = float(qAlpha(line[x])) / 255.0F;
    }
    return stamp;
}

/// Takes from each pixel the share that the dot covers. All are read before one is written, as the compiler
/// cannot know that the two never overlap, and would work on one pixel after the other.
void coverPixels(float* clear, const float* weights, float alpha)
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

    const Place& at(int i) const { return m_places[size_t(i - m_first)]; }

private:
    int m_first;
    std::vector<Place> m_places;
};

bool isVisible(const CloudDot& dot, const QRect& centres)
{
    return dot.alpha > 0 && centres.contains(dot.centre);
}

class Cloud
{
public:
    /// origin is where on its pixel the painter's zero lies.
    Cloud(const QRect& area, double scale, QPointF origin, int radius)
        : m_centres(area.adjusted(-radius, -radius, radius, radius))
        , m_columns(m_centres.left(), m_centres.right(), scale, origin.x())
        , m_rows(m_centres.top(), m_centres.bottom(), scale, origin.y())
        , m_scale(scale)
        , m_radius(radius)
        , m_reach(int(std::ceil(radius * scale)) + 1)
    {}

    /// Draws what lies within the box, which is in device pixels and not empty, as is the painter.
    void paint(QPainter& painter, const QRect& box, const QColor& colour, const QList<CloudDot>& dots)
    {
        const int bandHeight = std::max(kBandPixels / box.width(), kMinBandHeight);
        sortIntoBands(box, bandHeight, dots);
        m_image =
            QImage(box.width(), std::min(bandHeight, box.height()), QImage::Format_ARGB32_Premultiplied);
        for (int i = 0; i < int(m_bands.size()); ++i) {
            if (m_bands[size_t(i)].empty())
                continue;
            const QRect band = QRect(box.left(), box.top() + i * bandHeight, box.width(), bandHeight) & box;
            cover(band, m_bands[size_t(i)]);
            colourImage(band, colour);
            painter.drawImage(band.topLeft(), m_image, QRect(QPoint(), band.size()));
        }
    }

private:
    void sortIntoBands(const QRect& box, int bandHeight, const QList<CloudDot>& dots)
    {
        const int bandCount = (box.height() - 1) / bandHeight + 1;
        m_bands.resize(size_t(bandCount));
        for (std::vector<CloudDot>& band : m_bands)
            band.reserve(2 * size_t(dots.size()) / m_bands.size());
        for (const CloudDot& dot : dots) {
            if (!isVisible(dot, m_centres))
                continue;
            const int y = m_rows.at(dot.centre.y()).pixel - box.top();
            const int last = std::min((y + m_reach) / bandHeight, bandCount - 1);
            for (int i = std::max(y - m_reach, 0) / bandHeight; i <= last; ++i)
                m_bands[size_t(i)].push_back(dot); // a copy: the next ones to be read lie beside it
        }
    }

    float* clearAt(int x, int y)
    {
        return m_clear.data() + qsizetype(y - m_box.top()) * m_box.width() + (x - m_box.left());
    }

    void cover(const QRect& band, const std::vector<CloudDot>& dots)
    {
        // With room around it for all of a dot that only touches the band: nothing needs to be cut off.
        const int room = 2 * m_reach;
        m_box = band.adjusted(-room, -room, room + kLanes, room);
        m_clear.assign(size_t(m_box.width()) * size_t(m_box.height()), 1.0F);
        for (const CloudDot& dot : dots)
            add(m_columns.at(dot.centre.x()), m_rows.at(dot.centre.y()),
                float(std::min(dot.alpha, 255)) / 255.0F);
    }

    void add(const AxisPlaces::Place& column, const AxisPlaces::Place& row, float alpha)
    {
        Stamp& stamp = m_stamps[size_t(row.phase) * kPhases + size_t(column.phase)];
        if (stamp.rows == 0)
            stamp = newStamp({column.phase, row.phase}, m_radius, m_scale);
        float* clear = clearAt(column.pixel + stamp.corner.x(), row.pixel + stamp.corner.y());
        const float* weights = stamp.weights.data();
        for (int y = 0; y < stamp.rows; ++y, clear += m_box.width(), weights += stamp.lanes) {
            for (int x = 0; x < stamp.lanes; x += kLanes)
                coverPixels(clear + x, weights + x, alpha);
        }
    }

    void colourImage(const QRect& band, const QColor& colour)
    {
        std::array<QRgb, 256> shades;
        for (int alpha = 0; alpha < 256; ++alpha)
            shades[size_t(alpha)] = qPremultiply(qRgba(colour.red(), colour.green(), colour.blue(), alpha));
        for (int y = 0; y < band.height(); ++y) {
            const float* clear = clearAt(band.left(), band.top() + y);
            auto* line = reinterpret_cast<QRgb*>(m_image.scanLine(y));
            for (int x = 0; x < band.width(); ++x)
                // NOLINTNEXTLINE(bugprone-incorrect-roundings): it is not negative, and a call would cost
                line[x] = shades[size_t(int((1.0F - clear[x]) * 255.0F + 0.5F))];
        }
    }

    QRect m_centres; ///< where those of the dots lie
    AxisPlaces m_columns;
    AxisPlaces m_rows;
    double m_scale;
    int m_radius;
    int m_reach; ///< no dot covers a pixel further than this from that of its centre
    QRect m_box; ///< of m_clear, in device pixels
    std::array<Stamp, size_t(kPhases) * kPhases> m_stamps; ///< each made when a dot first needs it
    std::vector<std::vector<CloudDot>> m_bands;            ///< the dots that touch each band
    std::vector<float> m_clear; ///< the share of the background in each pixel of a band
    QImage m_image;             ///< the band in colour
};

/// What the dots with a centre in that area touch; not valid when there is none.
QRect boundingBox(const QRect& centres, int radius, const QList<CloudDot>& dots)
{
    QPoint low = centres.bottomRight() + QPoint(1, 1);
    QPoint high = centres.topLeft() - QPoint(1, 1);
    for (const CloudDot& dot : dots) {
        if (isVisible(dot, centres)) {
            low = {std::min(low.x(), dot.centre.x()), std::min(low.y(), dot.centre.y())};
            high = {std::max(high.x(), dot.centre.x()), std::max(high.y(), dot.centre.y())};
        }
    }
    return low.x() > high.x() ? QRect() : QRect(low, high).adjusted(-radius, -radius, radius, radius);
}

void drawCircles(QPainter& painter, const QRect& centres, QColor colour, int radius,
                 const QList<CloudDot>& dots)
{
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    for (const CloudDot& dot : dots) {
        if (isVisible(dot, centres)) {
            colour.setAlpha(std::min(dot.alpha, 255));
            painter.setBrush(colour);
            painter.drawEllipse(dot.centre, radius, radius);
        }
    }
}

double fraction(double value) { return std::isfinite(value) ? value - std::floor(value) : 0.0; }

} // namespace

void drawDotCloud(QPainter& painter, const QRect& area, const QColor& colour, int radius,
                  const QList<CloudDot>& dots)
{
    const QRect centres = area.adjusted(-radius, -radius, radius, radius);
    const QRect touched = boundingBox(centres, radius, dots) & area;
    if (touched.isEmpty())
        return;
    const double scale = std::min(deviceScale(painter), kMaxScale);
    const QTransform transform = painter.deviceTransform();
    const QPointF origin(fraction(transform.dx()), fraction(transform.dy()));
    const QRect pixels =
        QRectF(QPointF(touched.topLeft()) * scale + origin, QSizeF(touched.size()) * scale).toAlignedRect();

    painter.save();
    if (dots.size() * kPixelsPerCircle < qint64(pixels.width()) * pixels.height()) {
        painter.setClipRect(area, Qt::IntersectClip);
        drawCircles(painter, centres, colour, radius, dots);
    } else {
        painter.setRenderHint(QPainter::SmoothPixmapTransform);
        painter.translate(-origin / scale);
        painter.scale(1.0 / scale, 1.0 / scale);
        Cloud(touched, scale, origin, radius).paint(painter, pixels, colour, dots);
    }
    painter.restore();
}
