#include "app/ConnectionStatus.h"

#include <QFileInfo>
#include <QLocale>
#include <QSerialPortInfo>

namespace {

constexpr int kMeasureMs = 500;

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
    m_linesAtMeasure = 0;
    m_linesPerSecond = 0.0;
    m_sinceLine.invalidate();
    m_sinceMeasure.start();
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
    if (state == State::Open)
        m_timer.start();
    else
        m_timer.stop();
    const bool trouble = state == State::Lost || state == State::Failed;
    setStyleSheet(trouble ? QStringLiteral("color: #b3261e;") : QString());
    refresh();
}

void ConnectionStatus::countLine()
{
    ++m_lines;
    m_sinceLine.start();
}

void ConnectionStatus::measure()
{
    const qint64 elapsedMs = m_sinceMeasure.restart();
    if (elapsedMs > 0)
        m_linesPerSecond = double(m_lines - m_linesAtMeasure) * 1000.0 / double(elapsedMs);
    m_linesAtMeasure = m_lines;
    refresh();
}

void ConnectionStatus::refresh()
{
    switch (m_state) {
    case State::Closed:
        setText(tr("Not connected"));
        break;
    case State::Open:
        setText(openText());
        break;
    case State::Lost:
        setText(tr("%1: the device is gone").arg(m_port));
        break;
    case State::Failed:
        setText(m_port.isEmpty() ? tr("No port chosen: %1").arg(m_error) : tr("%1: %2").arg(m_port, m_error));
        break;
    }
    setToolTip(text());
}

QString ConnectionStatus::openText() const
{
    QString text = tr("%1 open at %2 baud").arg(m_port).arg(m_baudRate);
    text += tr(" · %1 lines/s").arg(QLocale().toString(m_linesPerSecond, 'f', 0));
    text += m_sinceLine.isValid()
                ? tr(" · last line %1 s ago").arg(double(m_sinceLine.elapsed()) / 1000.0, 0, 'f', 1)
                : tr(" · no line yet");
    if (!m_error.isEmpty())
        text += tr(" · %1").arg(m_error);
    return text;
}

// Serial devices belong to a group on Linux ("dialout", "uucp"): name the very one.
QString ConnectionStatus::permissionHint(const QString& portName)
{
    const QString group = QFileInfo(QSerialPortInfo(portName).systemLocation()).group();
    if (group.isEmpty() || group == QLatin1String("root"))
        return tr(" (you may not open this device)");
    return tr(" (join the group “%1”, then log in again)").arg(group);
}
