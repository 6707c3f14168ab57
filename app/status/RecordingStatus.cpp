#include "app/status/RecordingStatus.h"

#include "definitions/numbers/FileNumbers.h"
#include "playback/recording/SignalRecorder.h"

#include <QLocale>
#include <QStringList>

#include <climits>

namespace {

constexpr int kRefreshMs = 500;
constexpr int kTextWidth = 480; // pixels

int plural(qint64 count) { return boundedInt(double(count), 0, INT_MAX, INT_MAX); }

} // namespace

RecordingStatus::RecordingStatus(const SignalRecorder* recorder, QWidget* parent)
    : QLabel(parent)
    , m_recorder(recorder)
{
    setTextFormat(Qt::PlainText);
    setContentsMargins(8, 0, 8, 0);
    setAccessibleName(tr("Recording"));
    m_timer.setInterval(kRefreshMs);
    connect(&m_timer, &QTimer::timeout, this, &RecordingStatus::refresh);
    hide();
}

void RecordingStatus::refresh()
{
    if (m_recorder->isRecording())
        m_timer.start();
    else
        m_timer.stop();
    const bool trouble = !m_recorder->error().isEmpty() || m_recorder->lostLines() > 0;
    const QString style = trouble ? QStringLiteral("color: #b3261e;") : QString();
    if (style != styleSheet())
        setStyleSheet(style);
    const QString text = statusText();
    setText(fontMetrics().elidedText(text, Qt::ElideRight, kTextWidth));
    setToolTip(text + QLatin1Char('\n') + m_recorder->path());
    setVisible(!m_recorder->path().isEmpty());
}

QString RecordingStatus::statusText() const
{
    const SignalRecorder& recorder = *m_recorder;
    QStringList parts(recorder.isRecording() ? tr("● Recording") : tr("Recorded"));
    parts.append(tr("%Ln line(s)", nullptr, plural(recorder.lineCount())));
    parts.append(QLocale().formattedDataSize(recorder.byteCount(), 1, QLocale::DataSizeSIFormat));
    if (recorder.lostLines() > 0)
        parts.append(tr("%Ln line(s) lost", nullptr, plural(recorder.lostLines())));
    if (!recorder.error().isEmpty())
        parts.append(tr("does not grow: %1").arg(recorder.error()));
    return parts.join(QStringLiteral(" · "));
}
