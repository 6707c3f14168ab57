// Repaints of the widgets that draw much, and of all that draw what a hostile layout or device gives them.
// The trend plot stands beside a painter that draws every sample as steps and beside itself with few samples;
// the hostile ones only have to be quick. Prints "name value" lines; scripts/bench.sh makes a table of them.

#include "app/Appearance.h"
#include "widgets/DashboardWidgetFactory.h"
#include "widgets/trend/TrendPlotWidget.h"

#include <QApplication>
#include <QElapsedTimer>
#include <QImage>
#include <QJsonArray>
#include <QPainter>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QtMath>

#include <algorithm>
#include <array>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <memory>
#include <numeric>
#include <vector>

namespace {

constexpr int kSeries = 6;
constexpr int kWindowMs = 600'000;
constexpr int kManySamples = 600'000;
constexpr int kFewSamples = 20'000;
constexpr int kFrameMs = 16;
constexpr int kFrames = 300;
constexpr int kSlidingRounds = 100'000;
constexpr int kRepaints = 15; // the median counts
constexpr int kSlowRepaints = 3;
constexpr int kHostileRepaints = 3; // the worst counts
constexpr int kHostileCount = 100'000;
constexpr int kPoints = 200'000;
constexpr QSize kPlotSize(1200, 400);
constexpr QSize kHostileSize(1600, 1000); // fills a window

[[noreturn]] void die(const QByteArray& what)
{
    std::fprintf(stderr, "bench_plots: %s\n", what.constData());
    std::exit(1);
}

void print(const QByteArray& name, double value)
{
    std::printf("%s %.9g\n", name.constData(), value);
    std::fflush(stdout);
}

double milliseconds(const std::function<void()>& work)
{
    QElapsedTimer clock;
    clock.start();
    work();
    return double(clock.nsecsElapsed()) / 1e6;
}

double medianMs(int runs, const std::function<void()>& work)
{
    std::vector<double> times(std::size_t(runs), 0.0);
    for (double& time : times)
        time = milliseconds(work);
    std::sort(times.begin(), times.end());
    return times[times.size() / 2];
}

QImage canvas(const QSize& size)
{
    QImage image(size, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    return image;
}

QStringList signalNames(int count)
{
    QStringList names;
    for (int i = 0; i < count; ++i)
        names.append(QStringLiteral("S%1").arg(i));
    return names;
}

const QStringList kNames = signalNames(kSeries);

using Samples = std::array<std::vector<TrendSample>, kSeries>;

/// Waves of several lengths, noise and rare spikes, evenly from after startMs to endMs.
Samples samplesOf(int perSeries, qint64 startMs, qint64 endMs)
{
    auto& random = *QRandomGenerator::global();
    Samples samples;
    for (std::size_t series = 0; series < kSeries; ++series) {
        for (int i = 1; i <= perSeries; ++i) {
            const qint64 tMs = startMs + i * (endMs - startMs) / perSeries;
            const double t = double(tMs) / 1000.0;
            const double spike = random.bounded(10'000) == 0 ? 4.0 : 0.0;
            const double value = double(series) + qSin(t / 50.0 + double(series)) + 0.4 * qSin(t * 2.0) +
                                 0.2 * qSin(t * 60.0) + 0.2 * random.bounded(1.0) + spike;
            samples[series].push_back({tMs, value});
        }
    }
    return samples;
}

void append(TrendPlotWidget& plot, std::size_t series, const TrendSample& sample)
{
    // Half a millisecond more, as the plot cuts off the fraction.
    plot.setValueForSignalAt(kNames[qsizetype(series)], sample.value, (double(sample.tMs) + 0.5) / 1000.0);
}

void prepare(TrendPlotWidget& plot, const Samples& samples)
{
    plot.assignSignals(kNames);
    plot.loadConfig({{QStringLiteral("timeWindowMs"), kWindowMs}});
    plot.setExternalTimeEnabled(true);
    plot.setExternalNowMs(kWindowMs);
    for (std::size_t series = 0; series < kSeries; ++series) {
        for (const TrendSample& sample : samples[series])
            append(plot, series, sample);
    }
}

std::unique_ptr<TrendPlotWidget> plotOf(const Samples& samples)
{
    auto plot = std::make_unique<TrendPlotWidget>();
    plot->setAttribute(Qt::WA_DontShowOnScreen);
    plot->resize(kPlotSize);
    plot->resize(kPlotSize + kPlotSize - plot->plotRect().size());
    plot->show();
    prepare(*plot, samples);
    return plot;
}

/// Pixels with a colour, as most of the traces have one and nothing else.
double colouredPixels(const QImage& image)
{
    int count = 0;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x)
            count += image.pixelColor(x, y).hslSaturation() > 100;
    }
    return count;
}

/// How many colours there are, as far as one cares: 1 or more.
int colours(const QImage& image)
{
    const QColor first = image.pixelColor(0, 0);
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            if (image.pixelColor(x, y) != first)
                return 2;
        }
    }
    return 1;
}

/// What the plot is measured against: a horizontal and a vertical line per sample.
void paintEverySample(const TrendPlotWidget& plot, const Samples& samples, QImage& image)
{
    const QRect area = plot.plotRect();
    const auto [low, high] = plot.currentYRange(plot.currentNowMs() - kWindowMs);
    QPainter painter(&image);
    painter.setRenderHint(QPainter::Antialiasing);
    for (std::size_t series = 0; series < kSeries; ++series) {
        const auto place = [&, low = low, high = high](const TrendSample& sample) {
            return QPoint(area.left() + int(double(sample.tMs) / kWindowMs * (area.width() - 1)),
                          area.bottom() - int((sample.value - low) / (high - low) * area.height()));
        };
        QList<QLine> lines;
        QPoint from = place(samples[series].front());
        for (const TrendSample& sample : samples[series]) {
            const QPoint to = place(sample);
            lines.append(QLine(from, QPoint(to.x(), from.y())));
            lines.append(QLine(QPoint(to.x(), from.y()), to));
            from = to;
        }
        painter.setPen(QPen(TrendPlotWidget::defaultColor(int(series)), 1.5));
        painter.drawLines(lines);
    }
}

void measureTrendRepaint(TrendPlotWidget& plot, const Samples& many)
{
    QImage plain = canvas(plot.size());
    print("trend_every_sample_ms", medianMs(kSlowRepaints, [&] { paintEverySample(plot, many, plain); }));
    QImage image = canvas(plot.size());
    print("trend_steps_ms", medianMs(kRepaints, [&] { plot.render(&image); }));
    // The same pixels, but for the legend and what blends.
    const double share = colouredPixels(image) / colouredPixels(plain);
    if (!(share > 0.9 && share < 1.1))
        die("the trend plot does not show what every sample shows: " + QByteArray::number(share));

    plot.loadConfig({{QStringLiteral("sampleAndHold"), 0}});
    print("trend_segments_ms", medianMs(kRepaints, [&] { plot.render(&image); }));
    if (colouredPixels(image) < 0.9 * colouredPixels(plain))
        die("straight segments are missing");
    plot.loadConfig({{QStringLiteral("sampleAndHold"), 1}});

    const auto few = plotOf(samplesOf(kFewSamples, 0, kWindowMs));
    print("trend_steps_few_samples_ms", medianMs(kRepaints, [&] { few->render(&image); }));
    if (colouredPixels(image) < 0.5 * colouredPixels(plain))
        die("the few samples are missing");
}

/// The window slides by a millisecond per round, in which every series gets a sample and loses one.
void slide(TrendPlotWidget& plot, const Samples& samples, std::size_t begin, std::size_t end)
{
    for (std::size_t round = begin; round < end; ++round) {
        plot.setExternalNowMs(samples.front()[round].tMs);
        for (std::size_t series = 0; series < kSeries; ++series)
            append(plot, series, samples[series][round]);
    }
}

void measureTrendSliding(TrendPlotWidget& plot, const Samples& many)
{
    const std::size_t rounds = kSlidingRounds;
    const int all = kSlidingRounds + kFrames * kFrameMs;
    const Samples next = samplesOf(all, kWindowMs, kWindowMs + all);
    print("trend_append_ns",
          milliseconds([&] { slide(plot, next, 0, rounds); }) * 1e6 / (kSlidingRounds * kSeries));

    QImage image = canvas(plot.size());
    std::vector<double> frames;
    for (std::size_t frame = 0; frame < kFrames; ++frame) {
        const std::size_t begin = rounds + frame * kFrameMs;
        frames.push_back(milliseconds([&] {
            slide(plot, next, begin, begin + kFrameMs);
            plot.render(&image);
        }));
    }
    print("trend_live_frame_mean_ms", std::accumulate(frames.begin(), frames.end(), 0.0) / kFrames);
    print("trend_live_frame_worst_ms", *std::max_element(frames.begin(), frames.end()));
    const TrendSample& oldest = many.back()[std::size_t(all)];
    if (plot.valueAtTime(kNames.back(), oldest.tMs) != oldest.value ||
        plot.valueAtTime(kNames.back(), plot.currentNowMs()) != next.back().back().value)
        die("the sliding plot lost samples");
}

// ---- Hostile layouts, devices and files ----

using Fill = std::function<void(DashboardWidget&)>;

/// The slowest repaint of one widget that is filled and gets its configuration then. As many pixels must have
/// a colour when it is filled.
void measureHostile(const char* type, const QByteArray& name, const Fill& fill,
                    const QJsonObject& config = {}, int coloured = 0)
{
    const std::unique_ptr<DashboardWidget> widget(
        DashboardWidgetFactory::instance().create(QLatin1String(type)));
    if (!widget)
        die("no widget type " + QByteArray(type));
    widget->resize(kHostileSize);
    QImage image = canvas(kHostileSize);
    fill(*widget);
    widget->render(&image);
    if (colours(image) < 2 || colouredPixels(image) < coloured)
        die("nothing to repaint for " + name);
    widget->loadConfig(config);
    double worst = 0.0;
    for (int repaint = 0; repaint < kHostileRepaints; ++repaint)
        worst = std::max(worst, milliseconds([&] { widget->render(&image); }));
    print("hostile/" + QByteArray(type) + '/' + name, worst);
}

void measureHostileTrendConfigs(const Fill& fill)
{
    const auto measure = [&](const char* name, const QJsonObject& config) {
        measureHostile("TrendPlot", name, fill, config);
    };
    for (const char* key : {"timeWindowMs", "gridLines", "margin", "leftAxis", "bottomPad"}) {
        for (const double value : {0.0, -5.0, 1e9, -1e9, 2147483648.0})
            measure(QByteArray(key) + '=' + QByteArray::number(value), {{QLatin1String(key), value}});
    }
    for (const auto& [low, high] : {std::pair(3.0, 3.0), {5.0, -5.0}, {-1e308, 1e308}, {1e308, -1e308}}) {
        measure("yMin=" + QByteArray::number(low) + ",yMax=" + QByteArray::number(high),
                {{QStringLiteral("autoscale"), false},
                 {QStringLiteral("yMin"), low},
                 {QStringLiteral("yMax"), high}});
    }
    for (const char* kind : {"screen", "data"}) {
        QJsonArray markers;
        for (int i = 0; i < kHostileCount; ++i)
            markers.append(QJsonObject{{QStringLiteral("kind"), QLatin1String(kind)},
                                       {QStringLiteral("xFrac"), double(i) / kHostileCount},
                                       {QStringLiteral("t"), kWindowMs * double(i) / kHostileCount},
                                       {QStringLiteral("label"), QStringLiteral("marker %1").arg(i)}});
        measure("100000_markers_" + QByteArray(kind), {{QStringLiteral("markers"), markers}});
    }
    const QJsonObject far{{QStringLiteral("kind"), QStringLiteral("screen")},
                          {QStringLiteral("xFrac"), 1e300}};
    measure("xFrac=1e300", {{QStringLiteral("markers"), QJsonArray{far}}});
}

double hostileValue(int number)
{
    const double values[] = {qQNaN(), 1e308, qInf(), 5e-324, -1e308, -qInf(), 1.0};
    return values[std::size_t(number) % std::size(values)];
}

/// Times as a broken clock gives them, by name.
double hostileTime(const QByteArray& kind, int number)
{
    const double seconds = number / 200.0;
    if (kind == "backwards")
        return kWindowMs / 1000.0 - seconds;
    if (kind == "jumps")
        return number % 2 ? seconds : seconds - 50 * 365.25 * 86400;
    return number % 3 == 1 ? qQNaN() : number % 3 == 2 ? (number % 2 ? qInf() : -qInf()) : seconds;
}

void measureHostileTrendData()
{
    for (const int stepStyle : {1, 0}) {
        const QByteArray style = stepStyle ? "_steps" : "_segments";
        const QJsonObject config{{QStringLiteral("sampleAndHold"), stepStyle}};
        const auto measure = [&](const QByteArray& name, const auto& valueOf, const auto& timeOf) {
            const auto fill = [&](DashboardWidget& widget) {
                auto& plot = static_cast<TrendPlotWidget&>(widget);
                prepare(plot, {});
                for (int i = 0; i < kHostileCount; ++i)
                    plot.setValueForSignalAt(kNames[i % kSeries], valueOf(i), timeOf(i));
            };
            measureHostile("TrendPlot", name + style, fill, config);
        };
        const auto steadily = [](int i) { return i / 200.0; };
        measure("extreme_values", hostileValue, steadily);
        for (const char* kind : {"backwards", "jumps", "not_finite"})
            measure("times_" + QByteArray(kind), qSin<int>, [&](int i) { return hostileTime(kind, i); });
    }
}

void measureHostileXyPlots()
{
    const auto measure = [](const QByteArray& name, const auto& valueOf, const QJsonObject& config) {
        const auto fill = [&](DashboardWidget& widget) {
            widget.loadConfig({{QStringLiteral("xSignal"), QStringLiteral("X")},
                               {QStringLiteral("ySignal"), QStringLiteral("Y")},
                               {QStringLiteral("maxPoints"), kPoints}});
            for (int i = 0; i < kPoints; ++i) {
                widget.setValueForSignalAt(QStringLiteral("X"), valueOf(i), i * 0.04);
                widget.setValueForSignalAt(QStringLiteral("Y"), valueOf(i + 2), i * 0.04 + 0.03);
            }
        };
        measureHostile("XYPlot", name, fill, config);
    };
    const auto circles = [](int i) { return qSin(i * 0.7) * i; };
    for (const double value : {double(kPoints), 0.0, -1.0, 2147483648.0})
        measure("maxPoints=" + QByteArray::number(value), circles, {{QStringLiteral("maxPoints"), value}});
    measure("extreme_values", hostileValue, {});
    measure("limits_1e308", circles,
            {{QStringLiteral("autoScaleX"), false},
             {QStringLiteral("xMin"), 1e308},
             {QStringLiteral("xMax"), -1e308}});
}

void measureHostileOthers()
{
    for (const char* key : {"barSpacing", "margin"}) {
        for (const double value : {1e9, -1e9})
            measureHostile("BarGraph", QByteArray(key) + '=' + QByteArray::number(value),
                           [](DashboardWidget& widget) { widget.assignSignals(kNames); },
                           {{QLatin1String(key), value}});
    }
    for (const char* type : {"BarGraph", "TrendPlot"}) {
        measureHostile(type, "100000_signals", [](DashboardWidget& widget) {
            const QStringList names = signalNames(kHostileCount);
            widget.assignSignals(names);
            for (qsizetype i = 0; i < names.size(); i += 100)
                widget.setValueForSignal(names[i], 50.0);
        });
    }
    const auto nothing = [](DashboardWidget&) {};
    measureHostile("TextLabel", "point=100000", nothing, {{QStringLiteral("point"), 100'000}});
    measureHostile("TextLabel", "text_of_a_megabyte", nothing,
                   {{QStringLiteral("text"), QString(1'000'000, QLatin1Char('x'))}});
    measureHostile("Line", "thickness=2^31", nothing, {{QStringLiteral("thickness"), 2147483648.0}});
}

void measureHostilePictures()
{
    const QTemporaryDir dir;
    const auto write = [&](const char* name, const QSize& size, QImage::Format format) {
        QImage image(size, format);
        image.setColorTable({qRgb(200, 30, 30), qRgb(30, 30, 200)});
        image.fill(0);
        for (int y = 0; y < size.height(); y += 2)
            image.scanLine(y)[image.bytesPerLine() / 2] = 1;
        QString path = dir.filePath(QLatin1String(name));
        if (!image.save(path))
            die("cannot write a picture");
        return path;
    };
    const auto measure = [](const QByteArray& name, const QString& path, int mode, int coloured) {
        const auto load = [&](DashboardWidget& widget) {
            widget.loadConfig({{QStringLiteral("path"), path}, {QStringLiteral("mode"), mode}});
        };
        measureHostile("Image", name, load, {}, coloured);
    };
    // About the largest that Qt loads, which allows for 128 MB of 4 bytes per pixel.
    const QString large = write("large.png", {5700, 5700}, QImage::Format_Indexed8);
    const QByteArrayList modes{"contain", "cover", "stretch", "actual"};
    for (int mode = 0; mode < modes.size(); ++mode)
        measure("5700x5700_" + modes[mode], large, mode, 200'000);
    measure("1x30000_cover", write("narrow.png", {1, 30'000}, QImage::Format_Indexed8), 1, 200'000);
    // Too large; what is seen is the placeholder.
    measure("8000x8000", write("larger.png", {8000, 8000}, QImage::Format_Indexed8), 0, 0);
    measure("30000x30000_1_bit", write("largest.png", {30'000, 30'000}, QImage::Format_Mono), 0, 0);
}

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QApplication application(argc, argv);
    applyAppearance();
    DashboardWidgetFactory::instance().registerBuiltInTypes();
    {
        const Samples many = samplesOf(kManySamples, 0, kWindowMs);
        const auto plot = plotOf(many);
        measureTrendRepaint(*plot, many);
        measureTrendSliding(*plot, many);
    }
    const Samples some = samplesOf(kHostileCount, 0, kWindowMs);
    measureHostileTrendConfigs(
        [&](DashboardWidget& widget) { prepare(static_cast<TrendPlotWidget&>(widget), some); });
    measureHostileTrendData();
    measureHostileXyPlots();
    measureHostileOthers();
    measureHostilePictures();
}
