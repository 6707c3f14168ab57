// Any bytes as a recording file: what the reader keeps of it, and what can be asked of that, is what a plain
// reader finds that keeps everything of every line. Snapshots and blocks are so small that a few lines have
// several of them.

#include "playback/recording/RecordingReader.h"
#include "playback/recording/RecordingValues.h"
#include "support/PlainGrammar.h"

#include <QFile>
#include <QTemporaryDir>

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <limits>
#include <random>
#include <utility>

namespace {

constexpr int kJumps = 40;
constexpr std::size_t kSampledFrames = 60; // of which the times and the latest states are asked

using Pair = std::pair<QString, QString>;

struct PlainFrame
{
    double timestamp = 0.0;
    QList<std::pair<QString, double>> ownValues;
    QMap<QString, double> values;
    QList<Pair> states;
    QStringList errors;
    QStringList messages;

    void state(const QString& group, const QString& name) { states.append({group, name}); }
    void error(const QString& id) { errors.append(id); }
    void text(const QString&) {}
    void value(const QString& key, double number)
    {
        ownValues.append({key, number});
        values[key] = number;
    }
};

using PlainFrames = std::vector<PlainFrame>;

PlainFrames readPlainly(const QByteArray& bytes)
{
    PlainFrames frames;
    const QList<QByteArray> lines = bytes.split('\n');
    for (const QByteArray& bytesOfLine : lines) {
        const QString text = QString::fromUtf8(bytesOfLine).trimmed();
        if (text.isEmpty() || text.startsWith(QLatin1Char('#')))
            continue;
        const PlainLine line = splitPlainly(text);
        PlainFrame frame;
        frame.timestamp = line.time.value_or(0.0);
        if (!frames.empty())
            frame.values = frames.back().values;
        const bool isRaw = !line.words.isEmpty() && line.words.first() == QLatin1String("RAW");
        if (!isRaw)
            readWordsPlainly(line.words, frame);
        else if (line.words.size() > 1)
            frame.messages.append(line.words.mid(1).join(QLatin1Char(' ')));
        frames.push_back(frame);
    }
    return frames;
}

bool isSame(double a, double b)
{
    return std::isnan(a) ? std::isnan(b) : a == b && std::signbit(a) == std::signbit(b);
}

bool isSame(const QMap<QString, double>& a, const QMap<QString, double>& b)
{
    const auto [endOfA, endOfB] = std::mismatch(
        a.constKeyValueBegin(), a.constKeyValueEnd(), b.constKeyValueBegin(), b.constKeyValueEnd(),
        [](const auto& x, const auto& y) { return x.first == y.first && isSame(x.second, y.second); });
    return endOfA == a.constKeyValueEnd() && endOfB == b.constKeyValueEnd();
}

void check(bool holds, const char* what, qsizetype frame)
{
    if (!holds)
        qFatal("%s at frame %lld", what, static_cast<long long>(frame));
}

void checkOwnValues(const SignalRecording& recording, qsizetype frame, const PlainFrame& plain)
{
    const qsizetype begin = recording.valuesBefore(frame);
    check(recording.valuesBefore(frame + 1) - begin == plain.ownValues.size(), "number of values", frame);
    for (qsizetype i = 0; i < plain.ownValues.size(); ++i) {
        check(recording.keys().at(qsizetype(recording.valueKey(begin + i))) == plain.ownValues[i].first,
              "key", frame);
        check(isSame(recording.valueNumber(begin + i), plain.ownValues[i].second), "number", frame);
    }
}

void checkFrames(const SignalRecording& recording, const PlainFrames& frames)
{
    check(recording.frameCount() == qsizetype(frames.size()), "number of frames", recording.frameCount());
    double largest = 0.0;
    for (qsizetype frame = 0; frame < recording.frameCount(); ++frame) {
        const PlainFrame& plain = frames[std::size_t(frame)];
        check(isSame(recording.timestamp(frame), plain.timestamp), "time", frame);
        checkOwnValues(recording, frame, plain);
        QList<Pair> states;
        for (const SignalRecording::State& state : recording.states(frame, frame + 1))
            states.append({recording.stateGroup(state.group), recording.stateName(state.name)});
        check(states == plain.states, "states", frame);
        QStringList errors;
        for (const SignalRecording::Error& error : recording.errors(frame, frame + 1))
            errors.append(recording.errorId(error.id));
        check(errors == plain.errors, "errors", frame);
        QStringList messages;
        for (const SignalRecording::Message& message : recording.messages(frame, frame + 1))
            messages.append(message.text);
        check(messages == plain.messages, "messages", frame);
        if (plain.timestamp > largest)
            largest = plain.timestamp;
    }
    check(recording.maxTimestamp() == largest, "largest time", recording.frameCount());
}

void checkValues(const SignalRecording& recording, const PlainFrames& frames)
{
    RecordingValues walking(&recording);
    for (qsizetype frame = 0; frame < recording.frameCount(); ++frame)
        check(isSame(walking.at(frame), frames[std::size_t(frame)].values), "values", frame);

    std::minstd_rand random(std::minstd_rand::result_type(frames.size() + 1));
    RecordingValues jumping(&recording);
    QMap<QString, double> kept;
    qsizetype keptFrame = -1;
    qsizetype frame = 0;
    for (int jump = 0; jump < kJumps && !frames.empty(); ++jump) {
        const bool isNear = random() % 3 == 0;
        frame = (isNear ? frame + qsizetype(random() % 4) : qsizetype(random())) % qsizetype(frames.size());
        check(isSame(jumping.at(frame), frames[std::size_t(frame)].values), "values after a jump", frame);
        if (keptFrame >= 0)
            check(isSame(kept, frames[std::size_t(keptFrame)].values), "values that were kept", keptFrame);
        if (random() % 3 == 0) {
            kept = jumping.at(frame);
            keptFrame = frame;
        }
    }
}

void checkLeadingFrames(const SignalRecording& recording, const PlainFrames& frames, double t)
{
    const auto end = std::ranges::find_if_not(frames, [t](const PlainFrame& f) { return f.timestamp < t; });
    check(recording.leadingFramesBefore(t) == end - frames.begin(), "frames before a time",
          end - frames.begin());
}

void checkSeeking(const SignalRecording& recording, const PlainFrames& frames)
{
    constexpr double kInfinity = std::numeric_limits<double>::infinity();
    for (const double t : {0.0, -kInfinity, kInfinity, std::numeric_limits<double>::quiet_NaN()})
        checkLeadingFrames(recording, frames, t);
    const std::size_t step = frames.size() / kSampledFrames + 1;
    QMap<QString, QString> latest;
    for (std::size_t frame = 0; frame < frames.size(); ++frame) {
        if (frame % step == 0) {
            const double t = frames[frame].timestamp;
            for (const double near : {t, std::nextafter(t, -kInfinity), std::nextafter(t, kInfinity)})
                checkLeadingFrames(recording, frames, near);
            check(recording.latestStates(qsizetype(frame)) == latest, "latest states", qsizetype(frame));
        }
        for (const Pair& state : frames[frame].states)
            latest[state.first] = state.second;
    }
    check(recording.latestStates(recording.frameCount()) == latest, "latest states", recording.frameCount());
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const QTemporaryDir dir;
    const QString path = dir.filePath(QStringLiteral("in.rec"));
    const QByteArray bytes(reinterpret_cast<const char*>(data), qsizetype(size));
    QFile file(path);
    if (!file.open(QIODevice::WriteOnly) || file.write(bytes) != bytes.size())
        qFatal("cannot write %s", qPrintable(path));
    file.close();

    RecordingReader reader(path, SignalRecording({.valuesPerSnapshot = 16, .framesPerBlock = 8}));
    if (!reader.open())
        qFatal("cannot read %s", qPrintable(path));
    double progress = 0.0;
    while (reader.readSlice(0)) {
        if (!(reader.progress() >= progress && reader.progress() <= 1.0))
            qFatal("progress went from %g to %g", progress, reader.progress());
        progress = reader.progress();
    }
    const SignalRecording recording = reader.takeRecording();
    const PlainFrames frames = readPlainly(bytes);
    checkFrames(recording, frames);
    checkValues(recording, frames);
    checkSeeking(recording, frames);
    return 0;
}
