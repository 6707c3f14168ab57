#include "support/WidgetPicture.h"
#include "widgets/trend/TrendMarkerLayout.h"
#include "widgets/trend/TrendPlotWidget.h"
#include "widgets/trend/TrendTrace.h"

#include <QJsonArray>
#include <QJsonObject>
#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

using namespace TrendGeometry;

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

/// Counts the paintings of a widget.
struct PaintCounter : QObject
{
    int paints = 0;
    explicit PaintCounter(QWidget& widget) { widget.installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override
    {
        paints += event->type() == QEvent::Paint;
        return false;
    }
};

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

class TestTrendPlot : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void answersAsPlainListWould()
    {
        QRandomGenerator random(7);
        TrendSeries series;
        QList<TrendSample> plain;
        qint64 t = 0;
        for (int round = 0; round < 20'000; ++round) {
            const int action = random.bounded(round / 5000 % 2 == 0 ? 20 : 5);
            if (action >= 2 || plain.isEmpty()) {
                const double value = random.bounded(50) == 0 ? qQNaN() : random.generateDouble();
                series.append({t += random.bounded(3), value});
                plain.append(series.last());
            } else if (action == 1) {
                series.removeFirst();
                plain.removeFirst();
            } else {
                series.removeLast();
                plain.removeLast();
            }
            if (round % 40 != 0 || plain.size() < 2)
                continue;
            QCOMPARE(series.size(), plain.size());
            const qsizetype begin = random.bounded(int(plain.size()));
            const qsizetype end = begin + random.bounded(int(plain.size() - begin)) + 1;
            ValueExtent extent;
            for (qsizetype i = begin; i < end; ++i)
                extent.include(plain[i].value);
            QCOMPARE(series.extent(begin, end).low, extent.low);
            QCOMPARE(series.extent(begin, end).high, extent.high);
            const auto older = [&](const TrendSample& sample) { return sample.tMs < plain[begin].tMs; };
            QCOMPARE(series.indexAtOrAfter(plain[begin].tMs),
                     std::count_if(plain.begin(), plain.end(), older));
        }
        QVERIFY(plain.size() > 5000);
    }

    void looksLikeEverySample_data()
    {
        QTest::addColumn<int>("samples");
        for (const int samples : {100, 290, 3'000, 600'000})
            QTest::addRow("%d samples", samples) << samples;
    }

    // Without antialiasing the same pixels. With it the same ends in every column, on a finer device within
    // one of its pixels; shades of grey differ where one picture draws over an edge more often or fills it.
    void looksLikeEverySample()
    {
        QFETCH(int, samples);
        for (int i = 0; i < 8; ++i) {
            const bool steps = i % 2 == 0;
            const auto shape = Shape(i / 2);
            if (samples > 3'000 && shape != Noise)
                break; // drawing every sample takes long
            const TrendSeries series = samplesOf(shape, samples, 600'000, 42);
            const TrendAxes axes{kPlot, 0, series.last().tMs, {-10.0, 10.0}};
            const TrendTrace trace =
                steps ? TrendTrace::steps(series, axes) : TrendTrace::segments(series, axes);
            const TrendTrace all{everySample(series, axes, steps), {}};
            QVERIFY(trace.lines.size() + trace.areas.size() <= 3 * kPlot.width());
            QCOMPARE(drawn(trace, false), drawn(all, false));
            QCOMPARE(reach(drawn(trace, true)), reach(drawn(all, true)));
            if (samples > 3'000)
                continue;
            const QImage fine = drawn(trace, true, 2);
            const QImage fineOfAll = drawn(all, true, 2);
            QVERIFY(darkNear(fine, fineOfAll) && darkNear(fineOfAll, fine));
        }
    }

    void drawsHeldValueAndOpenEnds()
    {
        TrendSeries series;
        series.append({-5000, 5.0});
        const TrendAxes axes{kPlot, 0, 10'000, {0.0, 10.0}};
        const int middle = axes.y(5.0);
        QCOMPARE(TrendTrace::steps(series, axes).lines, {QLine(10, middle, 309, middle)});
        QVERIFY(TrendTrace::columns(series, {kPlot, -6000, 10'000, {0.0, 10.0}}).lines.isEmpty());
        QCOMPARE(TrendTrace::segments(series, axes).lines, {});
        series.append({5000, 10.0});
        QCOMPARE(TrendTrace::segments(series, axes).lines,
                 {QLine(10, axes.y(7.5), axes.x(5000), axes.y(10.0))});
        QCOMPARE(TrendTrace::columns(series, axes).lines, {QLine(axes.x(5000), 9, axes.x(5000), 9)});
    }

    void placesTimesAndTicks()
    {
        QCOMPARE(plotRect({220, 140}, {}), QRect(46, 30, 168, 84));
        QVERIFY(plotRect({52, 140}, {}).isEmpty());
        const QRect plot(100, 0, 101, 50);
        QCOMPARE(xForTime(plot, 1000, 2000, 1499), 149);
        QCOMPARE(xForTime(plot, 1000, 2000, 0), 100);
        QCOMPARE(timeForX(plot, 1000, 2000, 150), 1500);
        QCOMPARE(timeForX(plot, 1000, 2000, 50), 1000);
        QCOMPARE(tickLabel(0.25, 10'000), "-7.500s");
        QList<double> values;
        for (const ValueTick& tick : valueTicks(-1.0, 1.0, 4))
            values.append(tick.value);
        QCOMPARE(values, QList({0.5, -0.5}));
    }

    void followsTheRulesOfTheLayout()
    {
        TrendPlotWidget plot;
        plot.assignSignals({"A"});
        plot.loadConfig({{"timeWindowMs", 1000}, {"sampleAndHold", 0}});
        plot.setExternalTimeEnabled(true);
        for (const int ms : {0, 40, 60, 2000}) {
            plot.setExternalNowMs(ms);
            plot.setValueForSignalAt("A", 1.0, ms / 1000.0);
        }
        QCOMPARE(plot.series("A")->size(), 2);
        QCOMPARE(plot.series("A")->first().tMs, 60); // repeated, and the newest before the window
    }

    void prunesAndTrimsItsSamples()
    {
        TrendPlotWidget plot;
        fill(plot); // whole seconds from 0 to 19, and the window is 10 s wide
        plot.setExternalNowMs(15'000);
        plot.pruneOld();
        QCOMPARE(plot.series("A")->first().tMs, 4000); // the newest before the window stays
        plot.pruneOld(15'030);
        QCOMPARE(plot.series("A")->first().tMs, 6000); // and here it goes
        plot.trimToWindowEndingAt(12'500);
        QCOMPARE(plot.series("A")->last().tMs, 12'000);
        QCOMPARE(plot.valueAtTime("A", 8'400), 8.0);
    }

    void scalesToWhatIsSeen()
    {
        using Row = std::tuple<QList<double>, double, double>;
        for (const auto& [values, min, max] :
             {Row{{}, -1.0, 1.0}, Row{{3.0}, 2.0, 4.0}, Row{{0.0, 10.0, qQNaN(), kInf}, -1.0, 11.0},
              Row{{-1e308, 1e308}, -4.8e307, 4.8e307}, Row{{1e17}, 1e17 - 1e8, 1e17 + 1e8}}) {
            TrendPlotWidget plot;
            plot.assignSignals({"A"});
            plot.setExternalTimeEnabled(true);
            plot.setExternalNowMs(10'000);
            plot.setValueForSignalAt("A", 777.0, -1.0); // held, but out of sight
            for (int i = 0; i < values.size(); ++i)
                plot.setValueForSignalAt("A", values[i], i);
            QCOMPARE(plot.currentYRange(0), std::pair(min, max));
        }
    }

    void readsValuesAtTime()
    {
        TrendPlotWidget plot;
        fill(plot);
        plot.assignSignals({"A", "B", "Silent"});
        plot.setExternalNowMs(30'000);
        plot.setValueForSignalAt("B", 0.5, 30.0);
        QCOMPARE(plot.readingsAt(30'000, 30'000), QStringList({"t = 0.000 s", "A: 19", "B: 0.5"}));
        QCOMPARE(plot.readingsAt(20'000, 30'000).first(), "t = 10.000 s");
    }

    void repaintsWhenItHasTo()
    {
        TrendPlotWidget plot;
        plot.addSample("A", 1.0, 0, true); // not assigned
        plot.assignSignals({"A"});
        const qint64 now = TrendPlotWidget::nowMs();
        plot.addSample("A", 1.0, now - 60'000, false);
        plot.addSample("A", 2.0, now - 50'000, false);
        plot.show();
        QVERIFY(QTest::qWaitForWindowExposed(&plot));
        QTRY_COMPARE(plot.series("A")->size(), 1); // silent, it goes on by itself
        plot.setExternalTimeEnabled(true);
        plot.setExternalNowMs(1000);
        QCoreApplication::processEvents();
        PaintCounter counter(plot);
        plot.beginBulkLoad();
        plot.setValueForSignalAt("A", 3.0, 1.0);
        plot.idleTick();
        QCoreApplication::processEvents();
        QCOMPARE(counter.paints, 0);
        plot.endBulkLoad();
        QCoreApplication::processEvents();
        QCOMPARE(counter.paints, 1);
    }

    void drawsWhatIsThere()
    {
        TrendPlotWidget plot;
        plot.resize(352, 250);
        plot.assignSignals({"A", "B"});
        plot.setExternalTimeEnabled(true);
        plot.setExternalNowMs(10'000);
        plot.loadConfig({{"autoscale", false},
                         {"yMin", -10},
                         {"yMax", 10},
                         {"showGrid", false},
                         {"markers", QJsonArray{QJsonObject{{"kind", "screen"}, {"xFrac", 0.75}},
                                                QJsonObject{{"kind", "data"}, {"t", 6000}}}}});
        for (const int second : {4, 8}) {
            plot.setValueForSignalAt("A", second == 4 ? 5.0 : -5.0, second);
            plot.setValueForSignalAt("B", -7.5, second);
        }
        const QRect area = plot.plotRect();
        const auto at = [&](double second, double value) {
            const QRgb pixel = picture(plot).pixel(area.left() + int(second / 10 * (area.width() - 1)),
                                                   area.bottom() - int((value + 10) / 20 * area.height()));
            return qRed(pixel) < 150 || qBlue(pixel) < 150;
        };
        const auto hasColor = [&](const QColor& color) {
            const QImage image = picture(plot);
            for (int x = area.left(); x < area.right(); ++x) {
                for (int y = area.center().y() + 5; y < area.bottom(); ++y) {
                    if (image.pixelColor(x, y) == color)
                        return x;
                }
            }
            return -1;
        };
        QVERIFY(at(6.5, 5.0)); // held
        QVERIFY(!at(6.5, -2.0));
        QVERIFY(at(8.0, -2.0)); // the step
        QVERIFY(at(9.5, -5.0)); // held until now
        QVERIFY(at(0.1, 0.0));  // the line at zero
        QCOMPARE(hasColor(TrendMarkers::screenMarkerColor()), area.left() + area.width() * 3 / 4);
        QCOMPARE(hasColor(TrendMarkers::dataMarkerColor()), area.left() + area.width() * 6 / 10);
        QVERIFY(at(5.0, -7.5));
        QTest::mouseClick(&plot, Qt::LeftButton, Qt::AltModifier, area.topLeft() + QPoint(10, 30));
        QVERIFY(!at(5.0, -7.5)); // B is hidden
        plot.loadConfig({{"sampleAndHold", 0}});
        QVERIFY(at(6.0, 0.01) && !at(6.5, 5.0));
        plot.setExternalNowMs(16'100);
        QCOMPARE(hasColor(TrendMarkers::dataMarkerColor()), -1);
    }

    void layersMarkersAndLegend()
    {
        QList<Marker> markers;
        for (int i = 0; i < 30; ++i)
            markers.append({Marker::Kind::Screen, 0, i / 30.0, "x"});
        const QFontMetrics metrics((QFont()));
        QCOMPARE(TrendMarkerLayout(markers, kPlot, 0, 1000, metrics).timeBoxes().size(), 30);
        markers.fill(markers.first());
        QCOMPARE(TrendMarkerLayout(markers, kPlot, 0, 1000, metrics).timeBoxes().size(), 1);
        QImage image(320, 220, QImage::Format_RGB32);
        QPainter painter(&image);
        TrendLegend legend;
        const QRect low(10, 100, 300, 20);
        legend.paint(painter, low, 220, {{"A", "Pump", Qt::red}, {"B", "Fan", Qt::blue}}, Qt::white);
        QCOMPARE(legend.channelAt({30, 130}).value_or(QString()), "B"); // below the plot
        QVERIFY(!legend.channelAt({30, 150}));
    }

    void followsTheClockOnlyLive()
    {
        TrendPlotWidget plot;
        fill(plot);
        plot.setExternalTimeEnabled(false);
        const qint64 before = TrendPlotWidget::nowMs();
        plot.setValueForSignalAt("A", -1.0, 5.0);
        QVERIFY(plot.series("A")->last().tMs >= before);
        QVERIFY(plot.currentNowMs() >= before);
        plot.addSample("A", 2.0, before + 3'600'000, false);
        plot.setValueForSignal("A", 3.0); // as if the clock had been set back by an hour
        QCOMPARE(plot.series("A")->last().value, 3.0);
        QVERIFY(plot.series("A")->last().tMs <= TrendPlotWidget::nowMs());
    }

private:
    /// A value per second, 20 of them, each its time.
    static void fill(TrendPlotWidget& plot)
    {
        plot.clearData();
        plot.assignSignals({"A"});
        plot.setExternalTimeEnabled(true);
        plot.setExternalNowMs(0);
        for (int i = 0; i < 20; ++i)
            plot.setValueForSignalAt("A", i, i);
    }
};

QTEST_MAIN(TestTrendPlot)
#include "tst_trendplot.moc"
