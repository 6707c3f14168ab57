#include "playback/recording/SignalCsvExport.h"

#include "playback/recording/NumberText.h"
#include "playback/recording/SignalRecording.h"

#include <QHash>
#include <QIODevice>

#include <algorithm>
#include <limits>
#include <optional>

namespace {

constexpr qsizetype kPieceBytes = 64LL * 1024;
constexpr qint64 kNumbersPerLook = 100'000; // some 10 ms; a clock would cost more than the numbers

// ---- Rows ----

/// Hands rows to the device in pieces and asks now and then whether to go on.
class RowWriter
{
public:
    RowWriter(QIODevice& device, const KeepGoing& keepGoing)
        : m_device(device)
        , m_keepGoing(keepGoing)
    {}

    /// What is appended here is the present row.
    QByteArray& text() { return m_text; }
    /// False when there shall be no further row; result() knows why. Numbers is the work that the row took.
    [[nodiscard]] bool endRow(qint64 numbers, double done)
    {
        m_text.append('\n');
        if (m_text.size() >= kPieceBytes && !handOver())
            return false;
        m_numbers += numbers;
        if (m_numbers < kNumbersPerLook)
            return true;
        m_numbers = 0;
        if (m_keepGoing && !m_keepGoing(done))
            m_result = CsvResult::Cancelled;
        return m_result == CsvResult::Written;
    }
    /// Hands over the last rows.
    CsvResult finish()
    {
        handOver();
        return m_result;
    }
    CsvResult result() const { return m_result; }

private:
    bool handOver()
    {
        if (m_device.write(m_text) != m_text.size())
            m_result = CsvResult::WriteFailed;
        m_text.truncate(0);
        return m_result == CsvResult::Written;
    }

    QIODevice& m_device;
    const KeepGoing& m_keepGoing;
    QByteArray m_text;
    qint64 m_numbers = 0;
    CsvResult m_result = CsvResult::Written;
};

// ---- Signals ----

/// The columns' values as last known, frame after frame.
class ColumnValues
{
public:
    ColumnValues(const SignalRecording& recording, const std::vector<CsvColumn>& columns)
        : m_recording(recording)
        , m_columns(columns)
        , m_held(std::size_t(recording.keys().size()) + 1, std::numeric_limits<double>::quiet_NaN())
    {
        QHash<QString, std::size_t> numbers;
        for (const QString& key : recording.keys())
            numbers.insert(key, std::size_t(numbers.size()));
        for (const CsvColumn& column : columns)
            m_keys.push_back(numbers.value(column.key, m_held.size() - 1)); // the last one stays NaN
    }

    /// Takes over what the frames up to and including this one say.
    void advance(qsizetype frame)
    {
        for (const qsizetype end = m_recording.valuesBefore(frame + 1); m_value < end; ++m_value)
            m_held[m_recording.valueKey(m_value)] = m_recording.valueNumber(m_value);
    }

    void appendRow(QByteArray& text, double time) const
    {
        const qsizetype begin = text.size();
        text.resize(begin + kMaxTimeTextBytes + qsizetype(m_columns.size()) * (kMaxNumberTextBytes + 1));
        char* to = writeTimeText(text.data() + begin, time);
        for (std::size_t i = 0; i < m_columns.size(); ++i) {
            const CsvColumn& column = m_columns[i];
            const double value = m_held[m_keys[i]];
            *to++ = ',';
            to = writeNumberText(to, column.mapping ? column.mapping->physical(value) : value);
        }
        text.truncate(to - text.constData());
    }
    qint64 rowNumbers() const { return qint64(m_columns.size()) + 1; }

private:
    const SignalRecording& m_recording;
    const std::vector<CsvColumn>& m_columns;
    std::vector<double> m_held; ///< by the recording's key numbers
    std::vector<std::size_t> m_keys;
    qsizetype m_value = 0; ///< the next in the recording's list of values
};

void appendHeader(RowWriter& rows, const std::vector<CsvColumn>& columns)
{
    rows.text().append("time");
    for (const CsvColumn& column : columns)
        rows.text().append(',').append(column.title.toUtf8());
    rows.text().append('\n');
}

CsvResult writeFrames(RowWriter& rows, const SignalRecording& recording, ColumnValues& values)
{
    const qsizetype frames = recording.frameCount();
    for (qsizetype frame = 0; frame < frames; ++frame) {
        values.advance(frame);
        values.appendRow(rows.text(), recording.timestamp(frame));
        if (!rows.endRow(values.rowNumbers(), double(frame) / double(frames)))
            return rows.result();
    }
    return rows.finish();
}

/// How many rows it takes to reach every frame, step by step as the rows will; nothing when that never ends.
/// A first time that is NaN or above all others reaches every frame at once.
std::optional<qint64> sampleRows(const SignalRecording& recording, double step)
{
    if (recording.isEmpty())
        return 0;
    double t = recording.timestamp(0);
    double last = t;
    for (qsizetype frame = 1; frame < recording.frameCount(); ++frame)
        last = std::max(last, recording.timestamp(frame)); // which passes over NaN
    qint64 rows = 1;
    for (; last > t; ++rows) {
        const double next = t + step;
        if (next == t || rows == kMaxCsvRows)
            return std::nullopt;
        t = next;
    }
    return rows;
}

CsvResult writeSamples(RowWriter& rows, const SignalRecording& recording, ColumnValues& values, double step,
                       qint64 rowCount)
{
    qsizetype frame = 0;
    double t = rowCount > 0 ? recording.timestamp(0) : 0.0;
    for (qint64 row = 0; row < rowCount; ++row, t += step) {
        const qsizetype first = frame;
        for (; frame < recording.frameCount() && !(recording.timestamp(frame) > t); ++frame)
            values.advance(frame);
        values.appendRow(rows.text(), t);
        if (!rows.endRow(values.rowNumbers() + frame - first, double(row) / double(rowCount)))
            return rows.result();
    }
    return rows.finish();
}

// ---- Events ----

QByteArray quoted(const QString& text) { return '"' + text.toUtf8().replace('"', "\"\"") + '"'; }

QByteArray stateRow(const QString& group, const QString& name, const DashboardSignalParser* definitions)
{
    const QString display = definitions ? definitions->stateLabel(group, name) : name;
    return ",STATE," + quoted(group) + ',' + quoted(name) + ',' + quoted(display);
}

QByteArray errorRow(const QString& id, const DashboardSignalParser* definitions)
{
    return ",ERROR," + quoted(id) + ",," + quoted(definitions ? definitions->errorText(id) : id);
}

/// What follows the time in a row, made once for all events that say the same.
class EventRows
{
public:
    EventRows(const SignalRecording& recording, const DashboardSignalParser* definitions)
    {
        for (const SignalRecording::State& state : recording.states()) {
            QByteArray& row = m_states[stateId(state)];
            if (row.isEmpty())
                row =
                    stateRow(recording.stateGroup(state.group), recording.stateName(state.name), definitions);
        }
        for (const SignalRecording::Error& error : recording.errors()) {
            QByteArray& row = m_errors[error.id];
            if (row.isEmpty())
                row = errorRow(recording.errorId(error.id), definitions);
        }
    }

    QByteArray row(const SignalRecording::State& state) const { return m_states.value(stateId(state)); }
    QByteArray row(const SignalRecording::Error& error) const { return m_errors.value(error.id); }
    QByteArray row(const SignalRecording::Message& message) const
    {
        return ",MESSAGE,," + quoted(message.text) + ',';
    }

private:
    static quint64 stateId(const SignalRecording::State& state)
    {
        return quint64(state.group) << 32U | state.name;
    }

    QHash<quint64, QByteArray> m_states;
    QHash<quint32, QByteArray> m_errors;
};

} // namespace

std::vector<CsvColumn> csvColumns(const QStringList& keys, bool applyMappings,
                                  const DashboardSignalParser* definitions)
{
    std::vector<CsvColumn> columns;
    for (const QString& key : keys) {
        CsvColumn column{key, key, std::nullopt};
        if (applyMappings && definitions) {
            column.title = definitions->displayName(key) + QLatin1String("(mapped)");
            column.mapping = definitions->mappingOfSignal(key);
        }
        columns.push_back(column);
    }
    return columns;
}

CsvResult writeSignalsCsv(QIODevice& device, const SignalRecording& recording,
                          const std::vector<CsvColumn>& columns, double sampleHz, const KeepGoing& keepGoing)
{
    const bool sampled = sampleHz > 0.0;
    const double step = 1.0 / sampleHz;
    const std::optional<qint64> rowCount = sampled ? sampleRows(recording, step) : 0;
    if (!rowCount)
        return CsvResult::Endless;
    RowWriter rows(device, keepGoing);
    ColumnValues values(recording, columns);
    appendHeader(rows, columns);
    return sampled ? writeSamples(rows, recording, values, step, *rowCount)
                   : writeFrames(rows, recording, values);
}

CsvResult writeEventsCsv(QIODevice& device, const SignalRecording& recording,
                         const DashboardSignalParser* definitions, const KeepGoing& keepGoing)
{
    const EventRows texts(recording, definitions);
    const auto states = recording.states();
    const auto errors = recording.errors();
    const auto messages = recording.messages();
    const qsizetype frames = recording.frameCount();
    const auto frameOf = [frames](const auto& events, std::size_t next) {
        return next < events.size() ? events[next].frame : frames;
    };
    std::size_t state = 0;
    std::size_t error = 0;
    std::size_t message = 0;
    char time[kMaxTimeTextBytes];
    RowWriter rows(device, keepGoing);
    rows.text().append("time,type,key,value,display\n");
    for (;;) {
        const qsizetype stateFrame = frameOf(states, state);
        const qsizetype errorFrame = frameOf(errors, error);
        const qsizetype frame = std::min({stateFrame, errorFrame, frameOf(messages, message)});
        if (frame == frames)
            return rows.finish();
        rows.text().append(time, writeTimeText(time, recording.timestamp(frame)) - time);
        if (stateFrame == frame)
            rows.text().append(texts.row(states[state++]));
        else if (errorFrame == frame)
            rows.text().append(texts.row(errors[error++]));
        else
            rows.text().append(texts.row(messages[message++]));
        if (!rows.endRow(1, double(frame) / double(frames)))
            return rows.result();
    }
}
