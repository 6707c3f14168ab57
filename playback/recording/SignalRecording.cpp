#include "playback/recording/SignalRecording.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace {

// Qt's comparison is a call of its own, which shows when a long recording is loaded.
bool isSame(QStringView left, QStringView right)
{
    return std::equal(left.utf16(), left.utf16() + left.size(), right.utf16(), right.utf16() + right.size());
}

template <typename Event>
std::span<const Event> eventsOfFrames(const std::vector<Event>& events, qsizetype first, qsizetype last)
{
    const auto begin =
        std::ranges::partition_point(events, [first](const Event& event) { return event.frame < first; });
    const auto end =
        std::partition_point(begin, events.end(), [last](const Event& event) { return event.frame < last; });
    return {begin, end};
}

} // namespace

quint32 SignalRecording::Names::numberOf(QStringView text)
{
    if (const auto known = numbers.constFind(text); known != numbers.cend())
        return *known;
    const auto number = quint32(names.size());
    names.append(text.toString());
    numbers.insert(names.constLast(), number);
    return number;
}

void SignalRecording::addFrame(double timestamp)
{
    // A time that is no number is not below any time either, as infinity.
    const double late = std::isnan(timestamp) ? std::numeric_limits<double>::infinity() : timestamp;
    if (m_times.size() % m_spacing.framesPerBlock == 0)
        m_largestUpToBlock.push_back(m_times.empty() ? late : m_largestUpToBlock.back());
    m_largestUpToBlock.back() = std::max(m_largestUpToBlock.back(), late);
    if (timestamp > m_maxTimestamp)
        m_maxTimestamp = timestamp;
    m_times.append(timestamp);
    m_firstValues.append(qsizetype(m_valueKeys.size()));
}

void SignalRecording::addValue(QStringView key, double number)
{
    const quint32 keyNumber = numberOfKey(key);
    m_valueKeys.append(keyNumber);
    m_valueNumbers.append(number);
    m_latestNumbers[keyNumber] = number;
    const std::size_t before = m_snapshots.empty() ? 0 : std::size_t(m_snapshots.back().valueCount);
    if (m_valueKeys.size() - before >= std::max(m_spacing.valuesPerSnapshot, m_latestNumbers.size()))
        takeSnapshot();
}

// Devices print their values in the same order again and again, which saves most of the hashing.
quint32 SignalRecording::numberOfKey(QStringView key)
{
    if (!m_keyAfter.empty()) {
        const quint32 expected = m_keyAfter[m_latestKey];
        if (isSame(m_keys.names.at(qsizetype(expected)), key))
            return m_latestKey = expected;
    }
    const quint32 number = m_keys.numberOf(key);
    if (number == m_keyAfter.size()) {
        m_keyAfter.push_back(0);
        m_latestNumbers.push_back(0.0);
    }
    m_keyAfter[m_latestKey] = number;
    return m_latestKey = number;
}

// As many values as keys pass at least before the next one, so that all snapshots together are no larger than
// the values, even when each value has a key of its own.
void SignalRecording::takeSnapshot()
{
    m_snapshots.push_back({qsizetype(m_valueKeys.size()), m_snapshotNumbers.size()});
    m_snapshotNumbers.insert(m_snapshotNumbers.end(), m_latestNumbers.begin(), m_latestNumbers.end());
}

void SignalRecording::addState(QStringView group, QStringView name)
{
    const State state{frameCount() - 1, m_stateGroups.numberOf(group), m_stateNames.numberOf(name)};
    if (state.group == m_statesOfGroup.size())
        m_statesOfGroup.emplace_back();
    m_statesOfGroup[state.group].push_back(m_states.size());
    m_states.push_back(state);
}

void SignalRecording::addError(QStringView id)
{
    m_errors.push_back({frameCount() - 1, m_errorIds.numberOf(id)});
}

void SignalRecording::addMessage(const QString& text) { m_messages.push_back({frameCount() - 1, text}); }

void SignalRecording::finish()
{
    m_snapshotNumbers.shrink_to_fit();
    m_states.shrink_to_fit();
    m_errors.shrink_to_fit();
    m_messages.shrink_to_fit();
}

qsizetype SignalRecording::leadingFramesBefore(double t) const
{
    const auto block =
        std::ranges::partition_point(m_largestUpToBlock, [t](double largest) { return largest < t; });
    const std::size_t first = std::size_t(block - m_largestUpToBlock.begin()) * m_spacing.framesPerBlock;
    std::size_t frame = std::min(first, m_times.size());
    while (frame < m_times.size() && m_times[frame] < t)
        ++frame;
    return qsizetype(frame);
}

qsizetype SignalRecording::valuesBefore(qsizetype frame) const
{
    return frame < frameCount() ? m_firstValues[std::size_t(frame)] : qsizetype(m_valueKeys.size());
}

SignalRecording::Snapshot SignalRecording::snapshotBefore(qsizetype valueCount) const
{
    const auto next = std::ranges::partition_point(
        m_snapshots, [valueCount](const SnapshotPlace& place) { return place.valueCount <= valueCount; });
    if (next == m_snapshots.begin())
        return {};
    const SnapshotPlace& place = *(next - 1);
    const std::size_t end = next == m_snapshots.end() ? m_snapshotNumbers.size() : next->firstNumber;
    return {place.valueCount,
            std::span(m_snapshotNumbers).subspan(place.firstNumber, end - place.firstNumber)};
}

std::span<const SignalRecording::State> SignalRecording::states(qsizetype first, qsizetype last) const
{
    return eventsOfFrames(m_states, first, last);
}

std::span<const SignalRecording::Error> SignalRecording::errors(qsizetype first, qsizetype last) const
{
    return eventsOfFrames(m_errors, first, last);
}

std::span<const SignalRecording::Message> SignalRecording::messages(qsizetype first, qsizetype last) const
{
    return eventsOfFrames(m_messages, first, last);
}

// Groups are numbered as they appear, so that those that have no state yet come last.
QMap<QString, QString> SignalRecording::latestStates(qsizetype frame) const
{
    QMap<QString, QString> latest;
    const auto isBefore = [this, frame](std::size_t place) { return m_states[place].frame < frame; };
    for (const std::vector<std::size_t>& places : m_statesOfGroup) {
        const auto next = std::ranges::partition_point(places, isBefore);
        if (next == places.begin())
            break;
        const State& state = m_states[*(next - 1)];
        latest.insert(stateGroup(state.group), stateName(state.name));
    }
    return latest;
}
