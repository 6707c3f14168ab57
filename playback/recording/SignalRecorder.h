#pragma once

#include <QByteArray>
#include <QDateTime>
#include <QFile>
#include <QMap>
#include <QObject>
#include <QString>
#include <QStringEncoder>
#include <QTimer>

#include <optional>

// Writes a live run to a recording file, one event per line, with a copy of the definitions beside it. The
// window starts and stops it, SerialManager's signals feed it. It opens no box: what goes wrong while it runs
// is kept for whoever shows it, and never stops the program.
class SignalRecorder : public QObject
{
    Q_OBJECT

public:
    explicit SignalRecorder(QObject* parent = nullptr);
    ~SignalRecorder() override;

    /// Begins log_<yyyyMMdd_HHmmss>.rec in the folder, which is made if need be; a file of that name is
    /// replaced. The definitions are copied beside it, silently without success. False, and nothing recorded,
    /// when already recording, when the folder is empty or when that file cannot be made.
    [[nodiscard]] bool start(const QString& folder, const QString& definitionsFile, const QDateTime& now);
    /// Writes what is left and closes the file. Nothing when not recording.
    void stop();

    /// Why the last start() failed; empty when it did not.
    QString startProblem() const { return m_startProblem; }
    bool isRecording() const { return m_recording; }
    /// The file of the present or the last recording; empty before the first.
    QString path() const { return m_file.fileName(); }
    /// What is in that file, which ends on a whole line; at most a second behind the events unless there is
    /// an error().
    qint64 lineCount() const { return m_lines; }
    qint64 byteCount() const { return m_bytes; }
    /// Why what was recorded is not in the file; empty when all is well. While recording, what waits is tried
    /// again every second.
    QString error() const { return m_error; }
    /// Lines that were given up: too many waited, or the recording ended before the file could grow again.
    qint64 lostLines() const { return m_lostLines; }

public Q_SLOTS:
    // One event each, ignored unless recording. Times in seconds on the device's clock; the first finite one
    // becomes the recording's zero, and an event whose time is not finite gets that of the event before it.
    void writeValues(double t, const QMap<QString, double>& values);
    void writeState(double t, const QString& group, const QString& state);
    void writeError(double t, const QString& id);
    void writeMessage(double t, const QString& text);

private:
    template <typename Fill>
    void writeLine(double t, const Fill& fill);
    void append(QStringView text);
    char* reserve(qsizetype bytes);
    void endAt(const char* end);
    void flush();

    QFile m_file;
    QTimer m_flushTimer;
    QStringEncoder m_toUtf8{QStringConverter::Utf8, QStringConverter::Flag::Stateless};
    QByteArray m_waiting; ///< whole lines that are not in the file yet
    std::optional<double> m_zero;
    double m_time = 0.0; ///< of the last event, since m_zero
    qint64 m_lines = 0;
    qint64 m_bytes = 0;
    qint64 m_lostLines = 0;
    QString m_error;
    QString m_startProblem;
    bool m_recording = false;
};

/// The companion definitions of a recording: <folder>/<name without its last suffix>.signals.h.
QString companionDefinitionsPath(const QString& recordingPath);
