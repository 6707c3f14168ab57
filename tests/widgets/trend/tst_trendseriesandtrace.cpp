#include "widgets/trend/TrendSeries.h"
#include "widgets/trend/TrendTrace.h"

#include <QPainter>
#include <QRandomGenerator>
#include <QTest>

#include <cmath>

static const QRect kPlot(10, 10, 100, 200);

/// Noise around a wave, with few infinities, gaps and peaks of one sample in it. Other peaks have been
/// removed again at the front and in between.
static TrendSeries samplesOf(int count)
{
    QRandomGenerator random(42);
    TrendSeries series;
    for (int i = -1000; i < count; ++i) {
        const int kind = random.bounded(count / 20 + 20);
        const double wave = std::sin(40.0 * i / count) * 5.0 + random.generateDouble() * 3.0;
        const double odd[] = {9.0, -9.0, qInf(), qQNaN()};
        series.append({i, i < 0 ? 9.5 : kind < 4 ? odd[kind] : wave});
        if (i % 7 == 0) {
            series.append({i, -9.5});
            series.removeLast();
        }
        while (i == 0 && series.size() > 100)
            series.removeFirst();
    }
    while (series.first().tMs < 0)
        series.removeFirst();
    return series;
}

/// The same trace, drawn from every sample to the next.
static TrendTrace everySample(const TrendSeries& series, const TrendAxes& axes, bool steps)
{
    TrendTrace trace;
    for (qsizetype i = 1; i < series.size(); ++i) {
        const TrendSample& from = series.at(i - 1);
        const TrendSample& to = series.at(i);
        if (std::isnan(from.value) || (!steps && std::isnan(to.value)))
            continue;
        const QPoint start(axes.x(from.tMs), axes.y(from.value));
        const QPoint end(axes.x(to.tMs), std::isnan(to.value) ? start.y() : axes.y(to.value));
        const QPoint corner = steps ? QPoint(end.x(), start.y()) : start;
        trace.lines << QLine(start, corner) << QLine(corner, end);
    }
    trace.lines.removeIf([](const QLine& line) { return line.p1() == line.p2(); });
    return trace;
}

static QImage drawn(const TrendTrace& trace)
{
    QImage image(120, 220, QImage::Format_Grayscale8);
    image.fill(Qt::white);
    QPainter painter(&image);
    trace.paint(painter, Qt::black, TrendTrace::kPenWidth);
    return image;
}

class TestTrendSeriesAndTrace : public QObject
{
    Q_OBJECT

private Q_SLOTS:
    void looksLikeEverySample_data()
    {
        QTest::addColumn<int>("samples");
        QTest::addColumn<bool>("steps");
        for (const int samples : {40, 3'000, 600'000}) {
            QTest::addRow("%d samples as steps", samples) << samples << true;
            QTest::addRow("%d samples as lines", samples) << samples << false;
        }
    }

    void looksLikeEverySample()
    {
        QFETCH(int, samples);
        QFETCH(bool, steps);
        const TrendSeries series = samplesOf(samples);
        const TrendAxes axes{kPlot, 0, series.last().tMs, {-10.0, 10.0}};
        const TrendTrace trace = steps ? TrendTrace::steps(series, axes) : TrendTrace::segments(series, axes);
        QVERIFY(trace.lines.size() + trace.areas.size() <= qsizetype(3) * kPlot.width());
        QCOMPARE(drawn(trace), drawn(everySample(series, axes, steps)));
    }

    void stepsHoldValuesFromEdgeToEdge()
    {
        const TrendAxes axes{kPlot, 0, 10'000, {0.0, 10.0}};
        TrendSeries series;
        series.append({-5000, 5.0});
        series.append({5000, 10.0});
        const QPoint before(axes.x(5000), axes.y(5.0));
        const QPoint after(axes.x(5000), axes.y(10.0));
        QCOMPARE(
            TrendTrace::steps(series, axes).lines,
            QList({QLine({10, before.y()}, before), QLine(after, before), QLine(after, {109, after.y()})}));
    }
};

QTEST_MAIN(TestTrendSeriesAndTrace)
#include "tst_trendseriesandtrace.moc"
