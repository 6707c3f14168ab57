#pragma once

#include "serial/line/LineBuffer.h"
#include "serial/line/LineValues.h"

#include <QByteArray>
#include <QElapsedTimer>
#include <QList>
#include <QMap>
#include <QObject>
#include <QSerialPort>
#include <QString>
#include <QStringList>

// Owns the serial port: opens and closes it, cuts what arrives into lines and tells what each line says. The
// window connects to it and the recorder listens. It knows no definitions, never opens or closes the port by
// itself, and decides nothing about an error but to report it.
class SerialManager : public QObject
{
    Q_OBJECT

public:
    struct OpenParams
    {
        QString portName; ///< a name as in availablePorts(), or a path
        int baudRate = 115200;
        QSerialPort::DataBits dataBits = QSerialPort::Data8;
        QSerialPort::Parity parity = QSerialPort::NoParity;
        QSerialPort::StopBits stopBits = QSerialPort::OneStop;
        QSerialPort::FlowControl flowControl = QSerialPort::NoFlowControl;
    };

    explicit SerialManager(QObject* parent = nullptr);
    ~SerialManager() override;

    /// Opens the port for reading, closing it first when it is open; drops an unfinished line and restarts
    /// the clock. On failure reports errorOccurred() once and the port stays closed.
    [[nodiscard]] bool open(const OpenParams& params);
    /// Closes the port if it is open. Bytes that were read before stay: complete lines are still parsed.
    void close();

    bool isOpen() const;
    /// The name or path given to the last open(); empty before.
    QString portName() const { return m_portName; }
    /// Why the last open() failed, or what went wrong since; NoError after an open() that succeeded.
    QSerialPort::SerialPortError lastError() const { return m_lastError; }
    /// The ports that the system knows; other devices (pseudo-terminals, links) are opened by path.
    QStringList availablePorts() const;

    /// Takes bytes as if the port had just delivered them: parses every line that they end and keeps the
    /// rest.
    void receive(const QByteArray& bytes);
    /// Emits what the line says, in the order of the signals below. An empty line says nothing. The time of a
    /// line that names none is that since the last successful open(), 0 before the first one.
    void parseLine(const QString& line);

public Q_SLOTS:
    /// Emits portsChanged().
    void refreshPorts();

Q_SIGNALS:
    /// The system's text, once for a failed open() and each time an open port reports an error.
    void errorOccurred(const QString& message);
    /// The device went away; once per open(), after its errorOccurred(). The port stays open and may report
    /// errors without end until it is closed, best from the event loop.
    void deviceLost();
    void portsChanged(const QList<QString>& ports);

    // The events of one line; timestamps are in seconds.

    /// Every line that is not empty, as it came.
    void rawLineReceived(double timestamp, const QString& line);
    /// Every state pair and every error pair, in the order in which they stand in the line.
    void stateParsed(double timestamp, const QString& groupId, const QString& stateName);
    void errorParsed(double timestamp, const QString& errorIdOrCode);
    /// All values of a line that has at least one, by key.
    void lineParsed(double timestamp, const QMap<QString, double>& values);
    /// The free text of a line that has some, joined by single spaces.
    void unrecognizedParsed(double timestamp, const QString& text);

private:
    void onReadyRead();
    void onError(QSerialPort::SerialPortError error);
    double defaultTimestamp() const;

    QSerialPort* m_port;
    LineBuffer m_received;
    QElapsedTimer m_clock; // since the last successful open
    bool m_clockRunning = false;

    LineValues m_values;
    QString m_portName;
    bool m_opening = false;
    bool m_lost = false; // deviceLost() was emitted since the last open
    QSerialPort::SerialPortError m_lastError = QSerialPort::NoError;
};
