// A repaint of an XY plot with a full ring, beside the same dots as one circle each.

#include "widgets/xyplot/XYPlotWidget.h"

#include <QApplication>
#include <QImage>
#include <QPainter>
#include <QRandomGenerator>

#include <benchmark/benchmark.h>

namespace {

constexpr QSize kSize(600, 400);
constexpr QRgb kDotColour = qRgb(40, 140, 160);

QList<QPointF> randomPoints(qint64 count)
{
    QRandomGenerator random(1);
    QList<QPointF> points;
    for (qint64 i = 0; i < count; ++i)
        points.append({random.generateDouble(), random.generateDouble()});
    return points;
}

// A picture without dots is no result.
bool isBlank(const QImage& image) { return qRed(image.pixel(image.width() / 2, image.height() / 2)) > 200; }

void xyplot(benchmark::State& state)
{
    XYPlotWidget plot;
    plot.resize(kSize);
    plot.loadConfig({{QStringLiteral("maxPoints"), int(state.range(0))}});
    const QList<QPointF> points = randomPoints(state.range(0));
    for (const QPointF& point : points)
        plot.pushPoint(point);
    QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
    for ([[maybe_unused]] auto _ : state)
        plot.render(&image);
    if (plot.points().size() != state.range(0) || isBlank(image))
        state.SkipWithError("dots are missing");
}

void ellipses(benchmark::State& state)
{
    const QRect area = [] {
        XYPlotWidget plot;
        plot.resize(kSize);
        return plot.plotRect();
    }();
    const QList<QPointF> points = randomPoints(state.range(0));
    QImage image(kSize, QImage::Format_ARGB32_Premultiplied);
    for ([[maybe_unused]] auto _ : state) {
        image.fill(Qt::white);
        QPainter painter(&image);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(Qt::NoPen);
        QColor colour(kDotColour);
        for (qsizetype i = 0; i < points.size(); ++i) {
            colour.setAlpha(int(255 * i / (points.size() - 1)));
            painter.setBrush(colour);
            const QPoint centre(area.left() + int(points.at(i).x() * area.width()),
                                area.bottom() - int(points.at(i).y() * area.height()));
            painter.drawEllipse(centre, 1, 1);
        }
    }
    if (isBlank(image))
        state.SkipWithError("dots are missing");
}

} // namespace

// The macro makes what clazy warns of. clazy:excludeall=non-pod-global-static
BENCHMARK(xyplot)->ArgName("dots")->Arg(200'000)->Unit(benchmark::kMillisecond);
BENCHMARK(ellipses)->ArgName("dots")->Arg(200'000)->Unit(benchmark::kMillisecond);

int main(int argc, char** argv)
{
    if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM"))
        qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    if (benchmark::ReportUnrecognizedArguments(argc, argv))
        return 1;
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
}
