#pragma once

#include "playback/recording/ChunkedArray.h"

#include <QHash>
#include <QList>
#include <QMap>
#include <QString>
#include <QStringList>
#include <QStringView>

#include <span>
#include <vector>

// A recording in memory: what each of its lines said, in flat arrays, one frame per line in file order. The
// reader fills it; the replay and the export ask it. The values "as last known" at a frame are not stored:
// RecordingValues rebuilds them from the nearest snapshot. It knows neither files nor definitions.
class SignalRecording
{
public:
    /// One event each; numbers of groups, names and ids are looked up below.
    struct State
    {
        qsizetype frame = 0;
        quint32 group = 0;
        quint32 name = 0;
    };
    struct Error
    {
        qsizetype frame = 0;
        quint32 id = 0;
    };
    struct Message
    {
        qsizetype frame = 0;
        QString text;
    };
    /// What the lines said up to a place in the list of values: one number per key, for the first keys.
    struct Snapshot
    {
        qsizetype valueCount = 0; ///< values before that place
        std::span<const double> numbers;
    };

    /// How far apart what helps to find a frame quickly stands. Answers do not depend on it; small numbers
    /// let small recordings have many of them.
    struct Spacing
    {
        /// Between two snapshots, at least: few enough for a quick walk, many enough for 50 keys to cost
        /// little.
        std::size_t valuesPerSnapshot = 4096;
        /// Frames that are walked to find the first late one among them.
        std::size_t framesPerBlock = 1024;
    };

    SignalRecording() = default;
    /// The numbers are at least 1.
    explicit SignalRecording(const Spacing& spacing)
        : m_spacing(spacing)
    {}

    // --- Filling ---

    /// Begins a new frame; what follows belongs to it. The time may be anything, NaN and infinite included.
    void addFrame(double timestamp);
    void addValue(QStringView key, double number);
    void addState(QStringView group, QStringView name);
    void addError(QStringView id);
    void addMessage(const QString& text);
    /// Gives back the memory that the growing arrays held in reserve.
    void finish();

    // --- Frames ---

    qsizetype frameCount() const { return qsizetype(m_times.size()); }
    bool isEmpty() const { return m_times.empty(); }
    /// Seconds; 0 for a line without a time.
    double timestamp(qsizetype frame) const { return m_times[std::size_t(frame)]; }
    /// The largest time, at least 0; infinite when a line says so, never NaN.
    double maxTimestamp() const { return m_maxTimestamp; }
    /// How many frames stand before the first one whose time is not below t. In 10,000 steps at most,
    /// whatever the times do.
    qsizetype leadingFramesBefore(double t) const;

    // --- Values ---

    /// Keys are numbered in order of first appearance.
    const QStringList& keys() const { return m_keys.names; }
    /// How many values the frames before this one have, that is, where its own begin in the list of values;
    /// frameCount() is allowed.
    qsizetype valuesBefore(qsizetype frame) const;
    quint32 valueKey(qsizetype value) const { return m_valueKeys[std::size_t(value)]; }
    double valueNumber(qsizetype value) const { return m_valueNumbers[std::size_t(value)]; }
    /// The last snapshot at or before that place in the list of values; an empty one stands before all.
    Snapshot snapshotBefore(qsizetype valueCount) const;

    // --- Events, in file order ---

    std::span<const State> states() const { return m_states; }
    std::span<const Error> errors() const { return m_errors; }
    std::span<const Message> messages() const { return m_messages; }
    /// Those of the frames first … last − 1.
    std::span<const State> states(qsizetype first, qsizetype last) const;
    std::span<const Error> errors(qsizetype first, qsizetype last) const;
    std::span<const Message> messages(qsizetype first, qsizetype last) const;
    const QString& stateGroup(quint32 group) const { return m_stateGroups.names[qsizetype(group)]; }
    const QString& stateName(quint32 name) const { return m_stateNames.names[qsizetype(name)]; }
    const QString& errorId(quint32 id) const { return m_errorIds.names[qsizetype(id)]; }
    /// The latest state of every group that has one before that frame.
    QMap<QString, QString> latestStates(qsizetype frame) const;

private:
    // Texts numbered in order of first appearance; the views are of the texts in the list.
    struct Names
    {
        QStringList names;
        QHash<QStringView, quint32> numbers;

        quint32 numberOf(QStringView text);
    };
    // After that many values; its numbers end where those of the next one begin.
    struct SnapshotPlace
    {
        qsizetype valueCount = 0;
        std::size_t firstNumber = 0;
    };

    quint32 numberOfKey(QStringView key);
    void takeSnapshot();

    Spacing m_spacing;
    ChunkedArray<double> m_times;
    ChunkedArray<qsizetype> m_firstValues;  // per frame
    std::vector<double> m_largestUpToBlock; // the largest time of the frames up to the end of each block
    double m_maxTimestamp = 0.0;

    ChunkedArray<quint32> m_valueKeys;
    ChunkedArray<double> m_valueNumbers;
    Names m_keys;
    std::vector<quint32> m_keyAfter;     // per key the one that followed it last
    quint32 m_latestKey = 0;             // of the value that was added last
    std::vector<double> m_latestNumbers; // per key
    std::vector<SnapshotPlace> m_snapshots;
    std::vector<double> m_snapshotNumbers;

    std::vector<State> m_states;
    std::vector<Error> m_errors;
    std::vector<Message> m_messages;
    Names m_stateGroups;
    Names m_stateNames;
    Names m_errorIds;
    std::vector<std::vector<std::size_t>> m_statesOfGroup; // places in m_states
};
