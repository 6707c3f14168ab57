#include "app/status/ConnectionStatus.h"

#include <QFileInfo>
#include <QLocale>
#include <QStringList>

#include <algorithm>

namespace {

constexpr int kMeasureMs = 500;
constexpr int kSamples = 5;     // two seconds: one window of half a second would jump for a slow device
constexpr int kPortWidth = 200; // pixels
constexpr int kTextWidth = 640;

} // namespace

ConnectionStatus::ConnectionStatus(QWidget* parent)
    : QLabel(parent)
{
    setTextFormat(Qt::PlainText);
    setContentsMargins(8, 0, 8, 0);
    setAccessibleName(tr("Connection"));
    m_timer.setInterval(kMeasureMs);
    connect(&m_timer, &QTimer::timeout, this, &ConnectionStatus::measure);
    setState(State::Closed);
}

void ConnectionStatus::showOpened(const QString& portName, int baudRate)
{
    m_port = portName;
    m_baudRate = baudRate;
    m_error.clear();
    m_lines = 0;
    m_samples = {{0, 0}};
    m_sinceLine.invalidate();
    m_sinceOpened.start();
    setState(State::Open);
}

void ConnectionStatus::showClosed() { setState(State::Closed); }

void ConnectionStatus::showLost(const QString& portName)
{
    m_port = portName;
    setState(State::Lost);
}

void ConnectionStatus::showError(const QString& portName, const QString& message,
                                 QSerialPort::SerialPortError error)
{
    m_error = message;
    if (error == QSerialPort::PermissionError)
        m_error += permissionHint(portName);
    if (m_state == State::Open) {
        refresh();
        return;
    }
    m_port = portName;
    setState(State::Failed);
}

void ConnectionStatus::setState(State state)
{
    m_state = state;
    // A device that is gone still has a last line, whose age counts on.
    if (state == State::Open || state == State::Lost)
        m_timer.start();
    else
        m_timer.stop();
    const bool trouble = state == State::Lost || state == State::Failed;
    setStyleSheet(trouble ? QStringLiteral("color: #b3261e;") : QString());
    refresh();
}

// The clock is not asked here: in a flood that would cost more than counting.
void ConnectionStatus::countLine() { ++m_lines; }

void ConnectionStatus::measure()
{
    if (m_lines != m_samples.last().lines)
        m_sinceLine.start();
    m_samples.append({m_sinceOpened.elapsed(), m_lines});
    if (m_samples.size() > kSamples)
        m_samples.removeFirst();
    refresh();
}

double ConnectionStatus::linesPerSecond() const
{
    if (m_samples.size() < 2)
        return 0.0;
    const qint64 milliseconds =
        std::max<qint64>(1, m_samples.last().milliseconds - m_samples.first().milliseconds);
    return double(m_samples.last().lines - m_samples.first().lines) * 1000.0 / double(milliseconds);
}

void ConnectionStatus::refresh()
{
    setToolTip(statusText(m_port));
    // By-id links are longer than the status bar: then the file name says enough.
    const QString name =
        fontMetrics().horizontalAdvance(m_port) > kPortWidth ? QFileInfo(m_port).fileName() : m_port;
    const QString port = fontMetrics().elidedText(name, Qt::ElideMiddle, kPortWidth);
    setText(fontMetrics().elidedText(statusText(port), Qt::ElideRight, kTextWidth));
}

QString ConnectionStatus::statusText(const QString& port) const
{
    QStringList parts;
    switch (m_state) {
    case State::Closed:
        parts.append(port.isEmpty() ? tr("Not connected") : tr("%1 not connected").arg(port));
        break;
    case State::Open: {
        parts.append(tr("%1 open at %2 baud").arg(port, QString::number(m_baudRate)));
        const double rate = linesPerSecond();
        parts.append(tr("%1 lines/s").arg(QLocale().toString(rate, 'f', rate < 10.0 ? 1 : 0)));
        break;
    }
    case State::Lost:
        parts.append(tr("%1: the device is gone").arg(port));
        break;
    case State::Failed:
        parts.append(port.isEmpty() ? tr("No port chosen") : tr("%1 not open").arg(port));
        break;
    }
    if (m_state == State::Open || m_state == State::Lost) {
        const double ageSeconds = double(m_sinceLine.isValid() ? m_sinceLine.elapsed() : 0) / 1000.0;
        parts.append(m_sinceLine.isValid() ? tr("last line %1 s ago").arg(ageSeconds, 0, 'f', 1)
                                           : tr("no line yet"));
    }
    if (!m_error.isEmpty())
        parts.append(m_error);
    return parts.join(QStringLiteral(" · "));
}

QString ConnectionStatus::permissionHint(const QString& portName)
{
    // A name that is no path means a device in /dev, also one that is not listed.
    const bool isPath = portName.startsWith(QLatin1Char('/')) || portName.startsWith(QLatin1Char('.'));
    const QFileInfo device(isPath ? portName : QStringLiteral("/dev/") + portName);
    // A port that another program has locked reports a missing permission, too.
    if (device.isReadable())
        return tr(" (another program uses it?)");
    // Serial devices belong to a group on Linux ("dialout", "uucp"): name the very one.
    const QString group = device.group();
    if (group.isEmpty() || group == QLatin1String("root"))
        return tr(" (you may not open this device)");
    return tr(" (join the group “%1”, then log in again)").arg(group);
}
