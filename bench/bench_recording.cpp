// Loading a long recording and asking it for values, beside a loader that keeps a full map per frame. Prints
// "name value" lines; scripts/bench.sh makes a table of them.

#include "playback/recording/RecordingReader.h"
#include "playback/recording/RecordingValues.h"
#include "support/PlainGrammar.h"

#include <QElapsedTimer>
#include <QFile>
#include <QRandomGenerator>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <malloc.h>
#include <vector>

namespace {

constexpr int kLines = 1'000'000;
constexpr int kPlainLines = 100'000;
constexpr int kSignals = 50;
constexpr int kValuesPerLine = 10;
constexpr int kSliceMs = 20;
constexpr int kJumps = 20'000;

[[noreturn]] void die(const char* what)
{
    std::fprintf(stderr, "bench_recording: %s\n", what);
    std::exit(1);
}

void print(const char* name, double value)
{
    std::printf("%s %.9g\n", name, value);
    std::fflush(stdout);
}

double usedBytes()
{
    const struct mallinfo2 info = mallinfo2();
    return double(info.uordblks) + double(info.hblkhd);
}

/// As the recorder writes it: a device that prints its signals in five kinds of line, a thousand a second.
void writeRecording(const QString& path)
{
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly))
        die("cannot write the recording");
    auto& random = *QRandomGenerator::global();
    for (int line = 0; line < kLines; ++line) {
        QByteArray text = QByteArray::number(line / 1000.0, 'f', 6);
        for (int i = 0; i < kValuesPerLine; ++i) {
            const int signal = (line * kValuesPerLine + i) % kSignals;
            const double value = signal * 100.0 + 40.0 * std::sin(line / 500.0) + random.bounded(1.0);
            text += " SIGNAL_" + QByteArray::number(signal) + '=' + QByteArray::number(value, 'g', 12);
        }
        if (file.write(text + '\n') != text.size() + 1)
            die("cannot write the recording");
    }
}

/// What the recording is measured against: everything that was said so far, kept for every line.
struct PlainFrames
{
    std::vector<double> times;
    std::vector<QMap<QString, double>> values;
    QMap<QString, double> running;

    void state(const QString&, const QString&) {}
    void error(const QString&) {}
    void text(const QString&) {}
    void value(const QString& key, double number) { running[key] = number; }
};

PlainFrames loadPlainly(const QString& path, int lines)
{
    QFile file(path);
    if (!file.open(QIODevice::ReadOnly))
        die("cannot read the recording");
    PlainFrames frames;
    for (int i = 0; i < lines; ++i) {
        const PlainLine line = splitPlainly(QString::fromUtf8(file.readLine()).trimmed());
        readWordsPlainly(line.words, frames);
        frames.times.push_back(line.time.value_or(0.0));
        frames.values.push_back(frames.running);
    }
    return frames;
}

SignalRecording load(const QString& path)
{
    RecordingReader reader(path);
    if (!reader.open())
        die("cannot read the recording");
    double longestSlice = 0.0;
    QElapsedTimer clock;
    for (bool more = true; more;) {
        clock.start();
        more = reader.readSlice(kSliceMs);
        longestSlice = std::max(longestSlice, double(clock.nsecsElapsed()) / 1e6);
    }
    clock.start();
    SignalRecording recording = reader.takeRecording();
    print("load_longest_slice_ms", longestSlice);
    print("load_take_ms", double(clock.nsecsElapsed()) / 1e6);
    return recording;
}

void compare(const SignalRecording& recording, const PlainFrames& frames)
{
    if (recording.frameCount() != kLines)
        die("lines are missing");
    RecordingValues values(&recording);
    for (std::size_t frame = 0; frame < frames.times.size(); ++frame) {
        if (recording.timestamp(qsizetype(frame)) != frames.times[frame] ||
            values.at(qsizetype(frame)) != frames.values[frame])
            die("the loaders disagree");
    }
}

void measureLoading(const QString& path, SignalRecording& recording)
{
    QElapsedTimer clock;
    double before = usedBytes();
    clock.start();
    recording = load(path);
    const double nsPerLine = double(clock.nsecsElapsed()) / kLines;
    print("load_ns_per_line", nsPerLine);
    print("load_bytes_per_frame", (usedBytes() - before) / kLines);

    before = usedBytes();
    clock.start();
    const PlainFrames frames = loadPlainly(path, kPlainLines);
    print("load_plain_ns_per_line", double(clock.nsecsElapsed()) / kPlainLines);
    print("load_plain_bytes_per_frame", (usedBytes() - before) / kPlainLines);
    compare(recording, frames);
}

void measureValues(const SignalRecording& recording)
{
    auto& random = *QRandomGenerator::global();
    RecordingValues values(&recording);
    std::vector<double> jumps;
    QElapsedTimer clock;
    for (int jump = 0; jump < kJumps; ++jump) {
        const qsizetype frame = random.bounded(kLines);
        clock.start();
        values.at(frame);
        jumps.push_back(double(clock.nsecsElapsed()) / 1000.0);
    }
    std::sort(jumps.begin(), jumps.end());
    print("values_jump_p50_us", jumps[jumps.size() / 2]);
    print("values_jump_p99_us", jumps[jumps.size() * 99 / 100]);

    values.at(0);
    clock.start();
    for (qsizetype frame = 1; frame < kLines; ++frame)
        values.at(frame);
    print("values_walk_ns_per_value", double(clock.nsecsElapsed()) / kLines / kValuesPerLine);
}

} // namespace

int main()
{
    const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("long.rec"));
    writeRecording(path);
    SignalRecording recording;
    measureLoading(path, recording);
    measureValues(recording);
    return 0;
}
