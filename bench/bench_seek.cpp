// Jumps and replay in a long recording. Prints "name value" lines; scripts/bench.sh makes a table of them.

#include "playback/recording/SignalPlaybackEngine.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <vector>

namespace {

constexpr int kFrames = 1'000'000;
constexpr int kFramesPerSecond = 1000;
constexpr int kSignals = 50;
constexpr int kValuesPerFrame = 10;
constexpr int kSeeks = 2000;
constexpr int kEvents = 100'000; // half of them errors
constexpr int kTickMs = 50;

[[noreturn]] void die(const char* what)
{
    std::fprintf(stderr, "bench_seek: %s\n", what);
    std::exit(1);
}

void print(const char* name, double value) { std::printf("%s %.9g\n", name, value); }

/// Loads a file of that many lines into the engine.
template <typename LineOf>
void load(SignalPlaybackEngine& engine, int lines, const LineOf& lineOf)
{
    const QTemporaryDir folder;
    QFile file(folder.filePath(QStringLiteral("bench.rec")));
    if (!file.open(QIODevice::WriteOnly))
        die("cannot write a recording");
    for (int i = 0; i < lines; ++i) {
        if (file.write(lineOf(i)) < 0)
            die("cannot write a recording");
    }
    file.close();
    if (!engine.loadFromFile(file.fileName()) || engine.recording()->frameCount() != lines)
        die("cannot load the recording");
}

/// Ten of the fifty signals in turn, with other numbers each time.
QByteArray valueLine(int frame)
{
    QByteArray line = QByteArray::number(double(frame) / kFramesPerSecond, 'f', 6);
    for (int i = 0; i < kValuesPerFrame; ++i) {
        const int number = (frame * kValuesPerFrame + i) % kSignals;
        line += " SIGNAL" + QByteArray::number(number) + '=' + QByteArray::number(frame + i * 0.25);
    }
    return line + '\n';
}

QByteArray eventLine(int number)
{
    return QByteArray::number(number) + (number % 2 ? " ERR=" : " RAW text ") +
           QByteArray::number(number % 100) + '\n';
}

void measureSeeks(SignalPlaybackEngine& engine)
{
    qint64 complete = 0;
    QObject counter;
    QObject::connect(&engine, &SignalPlaybackEngine::signalValuesUpdated, &counter,
                     [&](const QMap<QString, double>& values) { complete += values.size() == kSignals; });
    engine.startPlayback(); // no history is sent while playing
    auto& random = *QRandomGenerator::global();
    const double longest = engine.getMaxTimestamp();
    std::vector<double> times;
    for (int seek = 0; seek < kSeeks; ++seek) {
        const double t = 0.01 * longest + random.bounded(0.99 * longest);
        QElapsedTimer clock;
        clock.start();
        engine.seekToTimestamp(t);
        times.push_back(double(clock.nsecsElapsed()) / 1e3);
    }
    engine.stopPlayback();
    if (complete != kSeeks)
        die("a seek did not send all values");
    std::sort(times.begin(), times.end());
    print("seek_p50_us", times[kSeeks / 2]);
    print("seek_p99_us", times[kSeeks * 99 / 100]);
}

void measureReplay(SignalPlaybackEngine& engine)
{
    qint64 frames = 0;
    bool finished = false;
    QObject counter;
    QObject::connect(&engine, &SignalPlaybackEngine::signalValuesUpdated, &counter, [&] { ++frames; });
    QObject::connect(&engine, &SignalPlaybackEngine::playbackFinished, &counter, [&] { finished = true; });
    engine.resetStartTime();
    engine.setPlaybackRate(100);
    QElapsedTimer clock;
    clock.start();
    while (!finished)
        engine.advance(kTickMs);
    print("replay_ns_per_frame", double(clock.nsecsElapsed()) / double(frames));
    if (frames != kFrames)
        die("the replay lost frames");
}

void measureFlood(SignalPlaybackEngine& engine)
{
    qint64 events = 0;
    QObject counter;
    const auto count = [&] { ++events; };
    QObject::connect(&engine, &SignalPlaybackEngine::errorEvent, &counter, count);
    QObject::connect(&engine, &SignalPlaybackEngine::messageEvent, &counter, count);
    QElapsedTimer clock;
    clock.start();
    engine.seekToTimestamp(2.0 * kEvents);
    print("flood_ms", double(clock.nsecsElapsed()) / 1e6);
    if (events != kEvents)
        die("the seek lost errors or messages");
}

} // namespace

int main(int argc, char* argv[])
{
    const QCoreApplication app(argc, argv);
    SignalPlaybackEngine engine;
    load(engine, kFrames, valueLine);
    measureSeeks(engine);
    measureReplay(engine);
    load(engine, kEvents, eventLine);
    measureFlood(engine);
    return 0;
}
