// Writing what the device said: a recording, beside the same lines by a text stream, and its export, beside a
// text stream and beside nothing but the conversion of the numbers. All write the same bytes to files of the
// same folder, which is checked. Prints "name value" lines; scripts/bench.sh makes a table of them.

#include "playback/recording/SignalCsvExport.h"
#include "playback/recording/SignalRecorder.h"
#include "playback/recording/SignalRecording.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QRandomGenerator>
#include <QTemporaryDir>
#include <QTextStream>

#include <algorithm>
#include <charconv>
#include <cstdio>
#include <cstdlib>
#include <functional>
#include <vector>

namespace {

constexpr int kRows = 1'000'000;
constexpr int kSignals = 10;
constexpr int kRuns = 3; // the median counts
constexpr qsizetype kPieceBytes = 65'536;
constexpr qsizetype kRowRoom = 1024;

using Numbers = std::vector<double>; // row after row

[[noreturn]] void die(const char* what)
{
    std::fprintf(stderr, "bench_recorder: %s\n", what);
    std::exit(1);
}

double timeOf(int row) { return row / 1000.0; }

QString keyOf(int signal) { return QStringLiteral("SIGNAL_%1").arg(signal); }

/// Raw counts and physical values in turn.
Numbers someNumbers()
{
    QRandomGenerator random(1);
    Numbers numbers;
    numbers.reserve(std::size_t(kRows) * kSignals);
    for (int row = 0; row < kRows; ++row) {
        for (int signal = 0; signal < kSignals; ++signal)
            numbers.push_back(signal % 2 ? random.bounded(4096) : random.bounded(100.0) - 50.0);
    }
    return numbers;
}

void open(QFile& file)
{
    if (!file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered))
        die("cannot write a file");
}

/// Runs the works in turn, each as often as the others, and prints the median of each.
void measure(const std::vector<std::pair<const char*, std::function<void()>>>& works)
{
    std::vector<std::vector<double>> times(works.size());
    for (int run = 0; run < kRuns; ++run) {
        for (std::size_t i = 0; i < works.size(); ++i) {
            QElapsedTimer clock;
            clock.start();
            works[i].second();
            times[i].push_back(double(clock.nsecsElapsed()) / 1e6);
        }
    }
    for (std::size_t i = 0; i < works.size(); ++i) {
        std::sort(times[i].begin(), times[i].end());
        std::printf("%s %.9g\n", works[i].first, times[i][kRuns / 2]);
    }
    std::fflush(stdout);
}

void mustBeTheSame(const QString& one, const QString& other)
{
    QFile first(one);
    QFile second(other);
    if (!first.open(QIODevice::ReadOnly) || !second.open(QIODevice::ReadOnly) || first.size() < kRows ||
        first.readAll() != second.readAll())
        die("the files differ");
}

// ---- Recording ----

void record(const QString& folder, const std::vector<QMap<QString, double>>& values, QString& path)
{
    SignalRecorder recorder;
    if (!recorder.start(folder, {}, QDateTime(QDate(2024, 1, 31), QTime(14, 22, 5))))
        die("cannot record");
    for (int row = 0; row < kRows; ++row)
        recorder.writeValues(timeOf(row), values[std::size_t(row) % values.size()]);
    recorder.stop();
    if (recorder.lineCount() != kRows)
        die("lines are missing");
    path = recorder.path();
}

void streamTime(QTextStream& stream, double time)
{
    stream.setRealNumberNotation(QTextStream::FixedNotation);
    stream.setRealNumberPrecision(6);
    stream << time;
    stream.setRealNumberNotation(QTextStream::SmartNotation);
    stream.setRealNumberPrecision(12);
}

void recordByTextStream(const QString& path, const std::vector<QMap<QString, double>>& values)
{
    QFile file(path);
    open(file);
    QTextStream stream(&file);
    for (int row = 0; row < kRows; ++row) {
        streamTime(stream, timeOf(row));
        const auto& map = values[std::size_t(row) % values.size()];
        for (auto value = map.cbegin(); value != map.cend(); ++value)
            stream << ' ' << value.key() << '=' << value.value();
        stream << '\n';
    }
}

void measureRecorder(const QString& folder, const Numbers& numbers)
{
    std::vector<QMap<QString, double>> values(1000);
    for (std::size_t line = 0; line < values.size(); ++line) {
        for (int signal = 0; signal < kSignals; ++signal)
            values[line].insert(keyOf(signal), numbers[line * kSignals + std::size_t(signal)]);
    }
    QString recorded;
    const QString streamed = folder + QStringLiteral("/streamed.rec");
    measure({{"recorder_ms", [&] { record(folder, values, recorded); }},
             {"recorder_text_stream_ms", [&] { recordByTextStream(streamed, values); }}});
    mustBeTheSame(recorded, streamed);
}

// ---- Export ----

SignalRecording recordingOf(const Numbers& numbers)
{
    SignalRecording recording;
    QStringList keys;
    for (int signal = 0; signal < kSignals; ++signal)
        keys.append(keyOf(signal));
    auto number = numbers.begin();
    for (int row = 0; row < kRows; ++row) {
        recording.addFrame(timeOf(row));
        for (const QString& key : keys)
            recording.addValue(key, *number++);
    }
    recording.finish();
    return recording;
}

void exportCsv(const QString& path, const SignalRecording& recording)
{
    QFile file(path);
    open(file);
    const auto columns = csvColumns(recording.keys(), false, nullptr);
    if (writeSignalsCsv(file, recording, columns, 0.0, [](double) { return true; }) != CsvResult::Written)
        die("the export failed");
}

QByteArray header()
{
    QByteArray text("time");
    for (int signal = 0; signal < kSignals; ++signal)
        text += ',' + keyOf(signal).toLatin1();
    return text + '\n';
}

void exportByTextStream(const QString& path, const Numbers& numbers)
{
    QFile file(path);
    open(file);
    QTextStream stream(&file);
    stream << header();
    auto number = numbers.begin();
    for (int row = 0; row < kRows; ++row) {
        streamTime(stream, timeOf(row));
        for (int signal = 0; signal < kSignals; ++signal)
            stream << ',' << *number++;
        stream << '\n';
    }
}

void exportByBareLoop(const QString& path, const Numbers& numbers)
{
    QFile file(path);
    open(file);
    file.write(header());
    std::vector<char> buffer(kPieceBytes + kRowRoom);
    char* const end = buffer.data() + buffer.size();
    char* to = buffer.data();
    auto number = numbers.begin();
    for (int row = 0; row < kRows; ++row) {
        to = std::to_chars(to, end, timeOf(row), std::chars_format::fixed, 6).ptr;
        for (int signal = 0; signal < kSignals; ++signal) {
            *to++ = ',';
            to = std::to_chars(to, end, *number++, std::chars_format::general, 12).ptr;
        }
        *to++ = '\n';
        if (to - buffer.data() >= kPieceBytes || row == kRows - 1) {
            file.write(buffer.data(), to - buffer.data());
            to = buffer.data();
        }
    }
}

void measureExport(const QString& folder, const Numbers& numbers)
{
    const SignalRecording recording = recordingOf(numbers);
    const QString exported = folder + QStringLiteral("/exported.csv");
    const QString streamed = folder + QStringLiteral("/streamed.csv");
    const QString bare = folder + QStringLiteral("/bare.csv");
    measure({{"csv_ms", [&] { exportCsv(exported, recording); }},
             {"csv_text_stream_ms", [&] { exportByTextStream(streamed, numbers); }},
             {"csv_to_chars_ms", [&] { exportByBareLoop(bare, numbers); }}});
    mustBeTheSame(exported, streamed);
    mustBeTheSame(exported, bare);
}

} // namespace

int main(int argc, char** argv)
{
    const QCoreApplication application(argc, argv); // for the recorder's timer
    const QTemporaryDir dir;
    const Numbers numbers = someNumbers();
    measureRecorder(dir.path(), numbers);
    measureExport(dir.path(), numbers);
}
