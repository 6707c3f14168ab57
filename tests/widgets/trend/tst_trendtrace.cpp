#include "widgets/trend/TrendSeries.h"
#include "widgets/trend/TrendTrace.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>
#include <limits>

namespace {

constexpr double kInf = std::numeric_limits<double>::infinity();
const QRect kPlot(10, 10, 300, 200);

/// Noise around a slow wave with spikes of one sample, gaps and infinities in it; a constant; noise of less
/// than a pixel with steps; bursts.
enum Shape { Noise, Constant, Steps, Bursts };

TrendSeries samplesOf(Shape shape, int samples, qint64 spanMs, quint32 seed)
{
    QRandomGenerator random(seed);
    TrendSeries series;
    for (int i = 0; i < samples; ++i) {
        const double x = double(i) / samples;
        const double noise = random.generateDouble();
        const int kind = random.bounded(400);
        double value = 4.8;
        if (shape == Noise)
            value = std::sin(x * 20.0) + noise * 4.0;
        else if (shape == Steps)
            value = (int(x * 7) % 2) * 5.0 + noise * 0.02;
        else if (shape == Bursts)
            value = int(x * 50) % 3 == 0 ? noise * 15.0 - 7.0 : 1.0;
        if (shape == Noise && kind < 4)
            value = kind == 0 ? 9.0 : kind == 1 ? -9.0 : kind == 2 ? kInf : qQNaN();
        if (shape == Bursts && int(x * 50) % 5 == 4)
            continue;
        series.append({qint64(x * double(spanMs)), value});
    }
    return series;
}

/// The same trace, drawn from every sample to the next.
QList<QLine> everySample(const TrendSeries& series, const TrendAxes& axes, bool steps)
{
    QList<QLine> lines;
    for (qsizetype i = 1; i < series.size(); ++i) {
        const TrendSample& from = series.at(i - 1);
        const TrendSample& to = series.at(i);
        if (std::isnan(from.value) || (!steps && std::isnan(to.value)))
            continue;
        const QPoint start(axes.x(from.tMs), axes.y(from.value));
        const QPoint end(axes.x(to.tMs), std::isnan(to.value) ? start.y() : axes.y(to.value));
        const QPoint corner = steps ? QPoint(end.x(), start.y()) : start;
        lines << QLine(start, corner) << QLine(corner, end);
    }
    return lines;
}

QImage drawn(const TrendTrace& trace, bool antialiased, int ratio = 1)
{
    QImage image(320 * ratio, 220 * ratio, QImage::Format_Grayscale8);
    image.setDevicePixelRatio(ratio);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing, antialiased);
    painter.setPen(QPen(Qt::black, 1.5));
    for (const QLine& line : trace.lines) {
        if (line.p1() != line.p2())
            painter.drawLine(line);
    }
    painter.setRenderHint(QPainter::Antialiasing, false);
    for (const QRectF& area : trace.areas)
        painter.fillRect(area, Qt::black);
    return image;
}

/// The first and the last row that are not white, per column.
QList<QPoint> reach(const QImage& image)
{
    QList<QPoint> ends;
    for (int x = 0; x < image.width(); ++x) {
        QPoint end(-1, -1);
        for (int y = 0; y < image.height(); ++y) {
            if (qGray(image.pixel(x, y)) < 255)
                end = {end.x() < 0 ? y : end.x(), y};
        }
        ends.append(end);
    }
    return ends;
}

/// Whether each dark pixel of one picture has a dark one in the other, at its place or beside it.
bool darkNear(const QImage& image, const QImage& other)
{
    const auto isDark = [](const QImage& picture, int x, int y) { return picture.constScanLine(y)[x] < 128; };
    for (int y = 1; y < image.height() - 1; ++y) {
        for (int x = 1; x < image.width() - 1; ++x) {
            bool near = !isDark(image, x, y);
            for (int i = 0; i < 9 && !near; ++i)
                near = isDark(other, x + i % 3 - 1, y + i / 3 - 1);
            if (!near)
                return false;
        }
    }
    return true;
}

} // namespace

class TestTrendTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksLikeEverySample_data()
    {
        QTest::addColumn<int>("samples");
        QTest::addColumn<Shape>("shape");
        QTest::addColumn<bool>("steps");
        const char* const names[] = {"noise", "constant", "small noise with steps", "bursts"};
        for (const int samples : {100, 290, 3'000, 600'000}) {
            for (const Shape shape : {Noise, Constant, Steps, Bursts}) {
                if (samples > kMostDrawnFine && shape != Noise)
                    continue; // drawing every sample takes long
                QTest::addRow("%d samples, %s, as steps", samples, names[shape]) << samples << shape << true;
                QTest::addRow("%d samples, %s, as lines", samples, names[shape]) << samples << shape << false;
            }
        }
    }

    // Without antialiasing the same pixels. With it the same ends in every column, on a finer device within
    // one of its pixels; shades of grey differ where one picture draws over an edge more often or fills it.
    void looksLikeEverySample()
    {
        QFETCH(int, samples);
        QFETCH(Shape, shape);
        QFETCH(bool, steps);
        const TrendSeries series = samplesOf(shape, samples, 600'000, 42);
        const TrendAxes axes{kPlot, 0, series.last().tMs, {-10.0, 10.0}};
        const TrendTrace trace = steps ? TrendTrace::steps(series, axes) : TrendTrace::segments(series, axes);
        const TrendTrace all{everySample(series, axes, steps), {}};
        QVERIFY(trace.lines.size() + trace.areas.size() <= 3 * kPlot.width());
        QCOMPARE(drawn(trace, false), drawn(all, false));
        QCOMPARE(reach(drawn(trace, true)), reach(drawn(all, true)));
        if (samples > kMostDrawnFine)
            return;
        const QImage fine = drawn(trace, true, 2);
        const QImage fineOfAll = drawn(all, true, 2);
        QVERIFY2(darkNear(fine, fineOfAll), "draws what is not there");
        QVERIFY2(darkNear(fineOfAll, fine), "leaves something out");
    }

    void stepsHoldValueFromBeforeTheWindow()
    {
        const int middle = kAxes.y(5.0);
        QCOMPARE(TrendTrace::steps(before(), kAxes).lines, {QLine(10, middle, 309, middle)});
    }

    void segmentsDrawNothingOfOneSample() { QCOMPARE(TrendTrace::segments(before(), kAxes).lines, {}); }

    void segmentsBeginAtTheEdge()
    {
        TrendSeries series = before();
        series.append({5000, 10.0});
        QCOMPARE(TrendTrace::segments(series, kAxes).lines,
                 {QLine(10, kAxes.y(7.5), kAxes.x(5000), kAxes.y(10.0))});
    }

private:
    static constexpr int kMostDrawnFine = 3'000; ///< samples
    const TrendAxes kAxes{kPlot, 0, 10'000, {0.0, 10.0}};

    /// One sample, older than the window.
    static TrendSeries before()
    {
        TrendSeries series;
        series.append({-5000, 5.0});
        return series;
    }
};

QTEST_MAIN(TestTrendTrace)
#include "tst_trendtrace.moc"
