// From the port's bytes to the events of a line, beside the same work with nothing around it (limit) and done
// in the most straightforward way (plain). Compare items_per_second, which are lines; parse_plain.py parses
// the same lines.

#include "serial/SerialManager.h"
#include "support/PlainGrammar.h"

#include <algorithm>
#include <array>
#include <benchmark/benchmark.h>
#include <charconv>
#include <cstring>

namespace {

constexpr int kLines = 10'000;
constexpr qsizetype kReadSize = 4096;
constexpr int kMaxValues = 16;

// The same formula as in parse_plain.py.
QByteArray deviceOutput(int valuesPerLine)
{
    QByteArray bytes;
    for (int i = 0; i < kLines; ++i) {
        bytes += QByteArray::number(i / 1000.0, 'f', 3);
        for (int k = 0; k < valuesPerLine; ++k)
            bytes += " SIGNAL_" + QByteArray::number(k) + '=' +
                     QByteArray::number((i * 7 + k * 131) % 100'000 / 100.0, 'f', 2);
        bytes += "\r\n";
    }
    return bytes;
}

const QByteArray& outputFor(const benchmark::State& state)
{
    static const QByteArray one = deviceOutput(1);
    static const QByteArray ten = deviceOutput(10);
    return state.range(0) == 1 ? one : ten;
}

template <typename Take>
void inReads(const QByteArray& bytes, Take take)
{
    for (qsizetype begin = 0; begin < bytes.size(); begin += kReadSize)
        take(QByteArray(bytes.constData() + begin, std::min(kReadSize, bytes.size() - begin)));
}

void countLines(benchmark::State& state, qint64 lines)
{
    if (lines != qint64(state.iterations()) * kLines)
        state.SkipWithError("lines were lost");
    state.SetItemsProcessed(lines);
}

// What a listener does at least with each event.
struct Counter
{
    qint64 lines = 0;
    qint64 others = 0;
    double sum = 0.0;

    void raw(double, const QString&) { ++others; }
    void state(double, const QString&, const QString&) { ++others; }
    void error(double, const QString&) { ++others; }
    void text(double, const QString&) { ++others; }
    void values(double time, const QMap<QString, double>& values)
    {
        ++lines;
        sum += time + values.first();
    }
};

/// Numbers of one line into an array; returns how many.
int parseBarely(const char* at, const char* end, std::array<double, kMaxValues>& numbers)
{
    int count = 0;
    at = std::from_chars(at, end, numbers[0]).ptr;
    while (count + 1 < kMaxValues) {
        const void* equalSign = std::memchr(at, '=', std::size_t(end - at));
        if (!equalSign)
            break;
        at = std::from_chars(static_cast<const char*>(equalSign) + 1, end, numbers[++count]).ptr;
    }
    return count;
}

void limit(benchmark::State& state)
{
    const QByteArray& bytes = outputFor(state);
    std::array<double, kMaxValues> numbers{};
    qint64 lines = 0;
    for ([[maybe_unused]] auto _ : state) {
        const char* at = bytes.constData();
        const char* const end = at + bytes.size();
        while (const void* found = std::memchr(at, '\n', std::size_t(end - at))) {
            const auto* lineFeed = static_cast<const char*>(found);
            benchmark::DoNotOptimize(parseBarely(at, lineFeed, numbers));
            benchmark::DoNotOptimize(numbers);
            at = lineFeed + 1;
            ++lines;
        }
    }
    countLines(state, lines);
}

void sigvane(benchmark::State& state)
{
    const QByteArray& bytes = outputFor(state);
    SerialManager manager;
    Counter counter;
    QObject::connect(&manager, &SerialManager::rawLineReceived, &manager,
                     [&](double time, const QString& line) { counter.raw(time, line); });
    QObject::connect(
        &manager, &SerialManager::stateParsed, &manager,
        [&](double time, const QString& group, const QString& name) { counter.state(time, group, name); });
    QObject::connect(&manager, &SerialManager::errorParsed, &manager,
                     [&](double time, const QString& id) { counter.error(time, id); });
    QObject::connect(&manager, &SerialManager::lineParsed, &manager,
                     [&](double time, const QMap<QString, double>& values) { counter.values(time, values); });
    QObject::connect(&manager, &SerialManager::unrecognizedParsed, &manager,
                     [&](double time, const QString& text) { counter.text(time, text); });
    for ([[maybe_unused]] auto _ : state)
        inReads(bytes, [&](const QByteArray& read) { manager.receive(read); });
    benchmark::DoNotOptimize(counter.sum);
    countLines(state, counter.lines);
}

// Direct calls instead of signals, which favours it a little.
void plain(benchmark::State& state)
{
    const QByteArray& bytes = outputFor(state);
    Counter counter;
    QByteArray buffer;
    for ([[maybe_unused]] auto _ : state) {
        inReads(bytes, [&](const QByteArray& read) {
            buffer += read;
            const qsizetype end = buffer.lastIndexOf('\n') + 1;
            parseStreamPlainly(buffer.left(end), 0.0, counter);
            buffer.remove(0, end);
        });
    }
    benchmark::DoNotOptimize(counter.sum);
    countLines(state, counter.lines);
}

} // namespace

// The macro makes what clazy warns of. clazy:excludeall=non-pod-global-static
BENCHMARK(limit)->ArgName("values")->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK(sigvane)->ArgName("values")->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK(plain)->ArgName("values")->Arg(1)->Arg(10)->Unit(benchmark::kMillisecond);
BENCHMARK_MAIN();
