#include "playback/recording/SignalPlaybackEngine.h"

#include "definitions/numbers/FileNumbers.h"
#include "playback/recording/RecordingReader.h"

#include <QDebug>
#include <QFileInfo>
#include <QScopedValueRollback>

#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

namespace {

constexpr int kTickMs = 50;
constexpr int kSliceMs = 20;
constexpr qint64 kLongestAdvanceMs = 1999;
constexpr qint64 kTickBudgetMs = 40;    ///< of emitting, so that the window stays alive
constexpr double kSmallestScale = 1e-9; // seconds

} // namespace

SignalPlaybackEngine::SignalPlaybackEngine(QObject* parent)
    : QObject(parent)
    , m_recording(std::make_shared<const SignalRecording>())
    , m_values(m_recording.get())
{
    m_timer.setTimerType(Qt::PreciseTimer);
    m_timer.setInterval(kTickMs);
    connect(&m_timer, &QTimer::timeout, this, &SignalPlaybackEngine::scheduleNextFrame);
}

SignalPlaybackEngine::~SignalPlaybackEngine() = default;

// --- Loading -----------------------------------------------------------------------------------------------

SignalPlaybackEngine::FileStamp SignalPlaybackEngine::stampOf(const QString& path)
{
    const QFileInfo info(path);
    return {info.canonicalFilePath(), info.size(), info.lastModified(), info.metadataChangeTime()};
}

bool SignalPlaybackEngine::loadFromFile(const QString& path)
{
    if (m_loading)
        return false;
    m_loadCancelled = false;
    // Before reading: what is written to the file meanwhile makes another file of it.
    const FileStamp file = stampOf(path);
    if (!file.path.isEmpty() && file == m_loadedFile)
        return true;

    m_loading = true;
    auto recording = std::make_shared<const SignalRecording>(readRecording(path));
    m_loading = false;
    m_recording = std::move(recording);
    m_values = RecordingValues(m_recording.get());
    m_loadedFile = hasFrames() ? file : FileStamp();
    m_clock.invalidate(); // loading takes no time of the replay
    ++m_jumps;
    return hasFrames();
}

// What the file holds; nothing when it cannot be read or the load was cancelled.
SignalRecording SignalPlaybackEngine::readRecording(const QString& path)
{
    RecordingReader reader(path);
    if (!reader.open())
        return {};
    for (bool more = true; more && !m_loadCancelled;) {
        more = reader.readSlice(kSliceMs);
        Q_EMIT loadProgressed(reader.progress());
    }
    return m_loadCancelled || reader.hasFailed() ? SignalRecording() : reader.takeRecording();
}

void SignalPlaybackEngine::cancelLoading()
{
    if (m_loading)
        m_loadCancelled = true;
}

// --- Playing -----------------------------------------------------------------------------------------------

void SignalPlaybackEngine::resetStartTime()
{
    ++m_jumps;
    m_index = 0;
    m_position = 0.0;
    m_playTime = 0.0;
    m_clock.invalidate();
    Q_EMIT positionChanged(0);
}

void SignalPlaybackEngine::startPlayback()
{
    const qsizetype count = m_recording->frameCount();
    const double firstStep = count < 2 ? -1.0 : m_recording->timestamp(1) - m_recording->timestamp(0);
    qDebug() << "[Playback] frames:" << count << "maxTimestamp:" << getMaxTimestamp()
             << "playbackRate:" << m_rate << "first dt:" << firstStep;

    // All is set before a listener hears of it: one that stops or jumps has the last word.
    const double position = m_position;
    m_playTime = position;
    m_clock.start();
    m_previousReading = 0;
    m_timer.start();

    const quint64 jumps = m_jumps;
    if (m_index < count && !(m_recording->timestamp(m_index) < position)) {
        const double t = m_recording->timestamp(m_index);
        const QMap<QString, double> values = m_values.at(m_index);
        Q_EMIT signalValuesUpdatedAt(t, values);
    }
    if (m_jumps != jumps)
        return;
    m_clock.start(); // what the listeners took is no time of the replay
    Q_EMIT playbackTimeAdvanced(position);
}

void SignalPlaybackEngine::stopPlayback() { m_timer.stop(); }

void SignalPlaybackEngine::scheduleNextFrame()
{
    if (!m_clock.isValid()) {
        m_clock.start();
        m_previousReading = 0;
    }
    const qint64 reading = m_clock.elapsed();
    const qint64 elapsed = reading - std::exchange(m_previousReading, reading);
    m_tickBudget.start();
    advance(elapsed);
    m_tickBudget.invalidate();
}

void SignalPlaybackEngine::advance(qint64 elapsedMs)
{
    if (m_loading || m_emitting)
        return;
    if (m_index < m_recording->frameCount()) {
        const double before = m_playTime;
        if (elapsedMs >= 1 && elapsedMs <= kLongestAdvanceMs)
            m_playTime += double(elapsedMs) / 1000.0 * m_rate;
        m_position = m_playTime;

        const bool wasPlaying = isPlaying();
        const quint64 jumps = m_jumps;
        emitDueFrames(before);
        if (m_jumps == jumps)
            Q_EMIT playbackTimeAdvanced(m_playTime);
        if (m_jumps == jumps)
            Q_EMIT positionChanged(positionStep());
        // A listener that jumped or stopped has left something to play, or an end to come to another time.
        if (m_index < m_recording->frameCount() || m_jumps != jumps || (wasPlaying && !isPlaying()))
            return;
    }
    m_timer.stop();
    Q_EMIT playbackFinished();
}

// Ends early when a listener stops, jumps or loads. One that jumps back at every frame would else keep this
// going for ever.
void SignalPlaybackEngine::emitDueFrames(double playTimeBefore)
{
    const QScopedValueRollback emitting(m_emitting, true);
    const std::shared_ptr<const SignalRecording> recording = m_recording;
    const quint64 jumps = m_jumps;
    const bool wasPlaying = isPlaying();
    // "Not after", as a time that is not a number is no reason to wait.
    while (m_index < recording->frameCount() && !(recording->timestamp(m_index) > m_playTime)) {
        emitFrame(*recording, m_index++);
        if (m_jumps != jumps || isPlaying() != wasPlaying)
            return;
        if (m_tickBudget.isValid() && m_tickBudget.hasExpired(kTickBudgetMs)) {
            // More than the listeners can take: the replay slows down to where it is.
            const double reached = recording->timestamp(m_index - 1);
            if (m_index < recording->frameCount())
                m_playTime = m_position = reached > playTimeBefore ? reached : playTimeBefore;
            return;
        }
    }
}

// Stops when a listener jumps: by then all is sent that holds at the new place, and the rest of this frame
// would spoil it.
void SignalPlaybackEngine::emitFrame(const SignalRecording& recording, qsizetype frame)
{
    const quint64 jumps = m_jumps;
    const double t = recording.timestamp(frame);
    {
        // A copy, as listeners may make m_values move on; gone before the next frame, which would have to
        // leave it alone by copying all numbers.
        const QMap<QString, double> values = m_values.at(frame);
        Q_EMIT signalValuesUpdated(values);
        if (m_jumps == jumps)
            Q_EMIT signalValuesUpdatedAt(t, values);
    }
    for (const SignalRecording::State& state : recording.states(frame, frame + 1)) {
        if (m_jumps == jumps)
            Q_EMIT stateEvent(t, recording.stateGroup(state.group), recording.stateName(state.name));
    }
    for (const SignalRecording::Error& error : recording.errors(frame, frame + 1)) {
        if (m_jumps == jumps)
            Q_EMIT errorEvent(t, recording.errorId(error.id));
    }
    for (const SignalRecording::Message& message : recording.messages(frame, frame + 1)) {
        if (m_jumps == jumps)
            Q_EMIT messageEvent(t, message.text);
    }
}

// Play time by the largest time, which may both be infinite.
int SignalPlaybackEngine::positionStep() const
{
    const double step = m_playTime * kPositionSteps / std::max(getMaxTimestamp(), kSmallestScale);
    return boundedInt(step, 0, kPositionSteps, kPositionSteps);
}

void SignalPlaybackEngine::setPlaybackRate(double rate)
{
    if (std::isfinite(rate) && rate >= 0.0)
        m_rate = rate;
}

// --- Jumping -----------------------------------------------------------------------------------------------

void SignalPlaybackEngine::setHistoryWindow(double seconds)
{
    if (std::isfinite(seconds) && seconds >= 0.0)
        m_historyWindow = seconds;
}

void SignalPlaybackEngine::seekToTimestamp(double t)
{
    // No replay would ever get away from there.
    if (!(t > -std::numeric_limits<double>::infinity()))
        t = 0.0;
    const quint64 jump = ++m_jumps;
    m_index = 0;
    const std::shared_ptr<const SignalRecording> recording = m_recording;
    if (recording->isEmpty())
        return;
    m_index = recording->leadingFramesBefore(t);
    // At least the first frame counts as passed, so that something is shown at the very start.
    const qsizetype passed = std::max<qsizetype>(m_index, 1);

    // Also here a listener that jumps ends the rest, which would come after what holds at its place.
    const QScopedValueRollback emitting(m_emitting, true);
    if (!isPlaying())
        emitHistory(*recording, t);
    if (m_jumps != jump)
        return;
    m_position = t;
    {
        const QMap<QString, double> values = m_values.at(passed - 1);
        Q_EMIT signalValuesUpdated(values);
    }
    if (m_jumps == jump)
        emitStates(*recording, passed);
    if (m_jumps == jump)
        emitErrorsAndMessages(*recording, passed);
}

// The frames of the history window that lead up to the next one to emit.
void SignalPlaybackEngine::emitHistory(const SignalRecording& recording, double t)
{
    const quint64 jump = m_jumps;
    const qsizetype end = m_index;
    Q_EMIT dataReset();
    const double start = std::max(0.0, t - m_historyWindow);
    for (qsizetype frame = recording.leadingFramesBefore(start); frame < end && m_jumps == jump; ++frame) {
        const QMap<QString, double> values = m_values.at(frame);
        Q_EMIT signalValuesUpdatedAt(recording.timestamp(frame), values);
    }
}

void SignalPlaybackEngine::emitStates(const SignalRecording& recording, qsizetype passed)
{
    const quint64 jump = m_jumps;
    const double t = recording.timestamp(passed - 1);
    const QMap<QString, QString> states = recording.latestStates(passed);
    const QStringList known = m_knownStateGroups;
    for (const QString& group : known) {
        if (m_jumps == jump && !states.contains(group))
            Q_EMIT stateEvent(t, group, QString());
    }
    for (auto it = states.cbegin(); it != states.cend() && m_jumps == jump; ++it)
        Q_EMIT stateEvent(t, it.key(), it.value());
}

void SignalPlaybackEngine::emitErrorsAndMessages(const SignalRecording& recording, qsizetype passed)
{
    const quint64 jump = m_jumps;
    Q_EMIT errorReset();
    for (const SignalRecording::Error& error : recording.errors(0, passed)) {
        if (m_jumps != jump)
            return;
        Q_EMIT errorEvent(recording.timestamp(error.frame), recording.errorId(error.id));
    }
    if (m_jumps != jump)
        return;
    Q_EMIT messageReset();
    for (const SignalRecording::Message& message : recording.messages(0, passed)) {
        if (m_jumps != jump)
            return;
        Q_EMIT messageEvent(recording.timestamp(message.frame), message.text);
    }
}
