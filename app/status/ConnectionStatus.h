#pragma once

#include <QElapsedTimer>
#include <QLabel>
#include <QSerialPort>
#include <QTimer>

// The permanent field at the right of the status bar: port and state, lines per second, the age of the last
// line and the last error. It never opens a box.
class ConnectionStatus : public QLabel
{
    Q_OBJECT

public:
    explicit ConnectionStatus(QWidget* parent = nullptr);

    void showOpened(const QString& portName, int baudRate);
    void showClosed();
    void showLost(const QString& portName);
    /// A port error; with a hint when the permission is missing.
    void showError(const QString& portName, const QString& message, QSerialPort::SerialPortError error);
    /// Called once per line, so it only counts.
    void countLine();
    /// The lines since the port was opened.
    qint64 lineCount() const { return m_lines; }

private:
    enum class State { Closed, Open, Lost, Failed };
    struct Sample
    {
        qint64 milliseconds; ///< since the port was opened
        qint64 lines;
    };

    void setState(State state);
    void measure();
    double linesPerSecond() const;
    void refresh();
    /// All that is known, with the port called by that name.
    QString statusText(const QString& port) const;
    static QString permissionHint(const QString& portName);

    State m_state = State::Closed;
    QString m_port;
    int m_baudRate = 0;
    QString m_error;
    qint64 m_lines = 0;
    QElapsedTimer m_sinceOpened;
    QList<Sample> m_samples{{0, 0}}; ///< the last two seconds
    QElapsedTimer m_sinceLine;       ///< since the measurement that found the last line
    QTimer m_timer;
};
