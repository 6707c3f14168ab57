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

    void setState(State state);
    void measure();
    void refresh();
    QString openText() const;
    static QString permissionHint(const QString& portName);

    State m_state = State::Closed;
    QString m_port;
    int m_baudRate = 0;
    QString m_error;
    qint64 m_lines = 0;
    qint64 m_linesAtMeasure = 0;
    double m_linesPerSecond = 0.0;
    QElapsedTimer m_sinceMeasure;
    QElapsedTimer m_sinceLine;
    QTimer m_timer;
};
