#include "playback/recording/SignalRecorder.h"

#include "playback/recording/NumberText.h"

#include <QDir>
#include <QFileInfo>

#include <chrono>

namespace {

using namespace std::chrono_literals;

constexpr auto kFlushInterval = 1s; // what a crash may cost
constexpr qsizetype kFlushBytes = 64LL * 1024;
constexpr qsizetype kUsualLineBytes = 4LL * 1024;
constexpr qsizetype kMaxWaitingBytes = 16LL * 1024 * 1024;

} // namespace

SignalRecorder::SignalRecorder(QObject* parent)
    : QObject(parent)
{
    m_flushTimer.setTimerType(Qt::PreciseTimer);
    m_flushTimer.setInterval(kFlushInterval);
    connect(&m_flushTimer, &QTimer::timeout, this, &SignalRecorder::flush);
}

SignalRecorder::~SignalRecorder() { stop(); }

bool SignalRecorder::start(const QString& folder, const QString& definitionsFile, const QDateTime& now)
{
    m_startProblem = m_recording        ? tr("A recording is running.")
                     : folder.isEmpty() ? tr("There is no project to record in.")
                                        : QString();
    if (!m_startProblem.isEmpty())
        return false;
    QDir().mkpath(folder);
    const QString path = QDir(folder).filePath(now.toString(QStringLiteral("'log_'yyyyMMdd_HHmmss'.rec'")));
    const QFileInfo existing(path);
    if (existing.exists() && !existing.isFile()) { // a pipe would keep the window waiting for a reader
        m_startProblem = tr("Not a regular file: %1").arg(path);
        return false;
    }
    const QString previous = m_file.fileName();
    m_file.setFileName(path);
    if (!m_file.open(QIODevice::WriteOnly | QIODevice::Truncate | QIODevice::Unbuffered)) {
        m_startProblem = tr("%1: %2").arg(path, m_file.errorString());
        m_file.setFileName(previous);
        return false;
    }
    const QString copy = companionDefinitionsPath(path);
    QFile::remove(copy);
    if (QFileInfo(definitionsFile).isFile())
        QFile::copy(definitionsFile, copy);

    m_zero.reset();
    m_time = 0.0;
    m_lines = m_bytes = m_lostLines = 0;
    m_error.clear();
    m_recording = true;
    m_flushTimer.start();
    return true;
}

void SignalRecorder::stop()
{
    if (!m_recording)
        return;
    m_recording = false;
    m_flushTimer.stop();
    flush();
    m_lostLines += m_waiting.count('\n');
    m_waiting.clear();
    m_file.close();
}

void SignalRecorder::writeValues(double t, const QMap<QString, double>& values)
{
    writeLine(t, [&] {
        for (auto value = values.cbegin(); value != values.cend(); ++value) {
            char* to = reserve(2 + m_toUtf8.requiredSpace(value.key().size()) + kMaxNumberTextBytes);
            *to++ = ' ';
            to = m_toUtf8.appendToBuffer(to, value.key());
            *to++ = '=';
            endAt(writeNumberText(to, value.value()));
        }
    });
}

void SignalRecorder::writeState(double t, const QString& group, const QString& state)
{
    writeLine(t, [&] {
        m_waiting.append(" ST_");
        append(group);
        m_waiting.append('=');
        append(state);
    });
}

void SignalRecorder::writeError(double t, const QString& id)
{
    writeLine(t, [&] {
        m_waiting.append(" ERR=");
        append(id);
    });
}

void SignalRecorder::writeMessage(double t, const QString& text)
{
    writeLine(t, [&] {
        m_waiting.append(" RAW ");
        append(text);
    });
}

template <typename Fill>
void SignalRecorder::writeLine(double t, const Fill& fill)
{
    if (!m_recording)
        return;
    if (!m_zero && std::isfinite(t))
        m_zero = t;
    const double time = t - m_zero.value_or(0.0);
    if (std::isfinite(time))
        m_time = time;

    const qsizetype begin = m_waiting.size();
    endAt(writeTimeText(reserve(kMaxTimeTextBytes), m_time));
    fill();
    m_waiting.append('\n');
    // As long as the file takes nothing, only the timer tries: a line must not cost a system call.
    if (m_error.isEmpty()) {
        if (m_waiting.size() >= kFlushBytes)
            flush();
    } else if (m_waiting.size() > kMaxWaitingBytes) {
        m_waiting.truncate(begin);
        ++m_lostLines;
    }
}

void SignalRecorder::append(QStringView text)
{
    endAt(m_toUtf8.appendToBuffer(reserve(m_toUtf8.requiredSpace(text.size())), text));
}

char* SignalRecorder::reserve(qsizetype bytes)
{
    const qsizetype begin = m_waiting.size();
    m_waiting.resize(begin + bytes);
    return m_waiting.data() + begin;
}

void SignalRecorder::endAt(const char* end) { m_waiting.truncate(end - m_waiting.constData()); }

void SignalRecorder::flush()
{
    qsizetype written = 0;
    while (written < m_waiting.size()) { // a full disk takes a part, and only the rest is told why
        const qint64 taken = m_file.write(m_waiting.constData() + written, m_waiting.size() - written);
        if (taken <= 0)
            break;
        written += taken;
    }
    if (written < m_waiting.size()) {
        m_error = m_file.errorString();
        const qsizetype whole = QByteArrayView(m_waiting).first(written).lastIndexOf('\n') + 1;
        if (m_file.resize(m_bytes + whole))
            written = whole;
        else // the rest of the line follows later, and the failed attempt has moved the place to write to
            m_file.seek(m_bytes + written);
    } else {
        m_error = QFile::exists(path()) ? QString() : tr("The file is no longer in its place.");
    }
    m_lines += QByteArrayView(m_waiting).first(written).count('\n');
    m_bytes += written;
    m_waiting.remove(0, written);
    if (m_waiting.isEmpty()) { // gives back what a long wait has taken
        m_waiting.clear();
        m_waiting.reserve(kFlushBytes + kUsualLineBytes);
    }
}

QString companionDefinitionsPath(const QString& recordingPath)
{
    const QFileInfo recording(recordingPath);
    return QDir(recording.path()).filePath(recording.completeBaseName() + QStringLiteral(".signals.h"));
}
