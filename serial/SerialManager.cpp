#include "serial/SerialManager.h"

#include "serial/line/LineParser.h"

#include <QSerialPortInfo>
#include <QVarLengthArray>

namespace {

// The text of a line without its end: decoded, trimmed, and without a byte-order mark.
QString decodedLine(QByteArrayView bytes)
{
    while (!bytes.isEmpty() && (bytes.back() == '\r' || bytes.back() == '\n'))
        bytes.chop(1);
    return QString::fromUtf8(bytes).trimmed();
}

void appendWord(QString& text, QStringView word)
{
    if (!text.isEmpty())
        text.append(QLatin1Char(' '));
    text.append(word);
}

} // namespace

SerialManager::SerialManager(QObject* parent)
    : QObject(parent)
    , m_port(new QSerialPort(this))
{
    connect(m_port, &QSerialPort::readyRead, this, &SerialManager::onReadyRead);
    connect(m_port, &QSerialPort::errorOccurred, this, &SerialManager::onError);
}

SerialManager::~SerialManager() = default;

bool SerialManager::open(const OpenParams& params)
{
    close();
    m_portName = params.portName;
    m_port->setPortName(params.portName);
    m_port->setBaudRate(params.baudRate);
    m_port->setDataBits(params.dataBits);
    m_port->setParity(params.parity);
    m_port->setStopBits(params.stopBits);
    m_port->setFlowControl(params.flowControl);
    m_received.clear();
    m_clockRunning = false;
    m_lost = false;

    m_opening = true; // the port reports the failure too, and one report is enough
    const bool opened = m_port->open(QIODevice::ReadOnly);
    m_opening = false;
    if (!opened) {
        m_lastError = m_port->error();
        Q_EMIT errorOccurred(m_port->errorString());
        return false;
    }
    m_lastError = QSerialPort::NoError;
    m_clock.start();
    m_clockRunning = true;
    return true;
}

void SerialManager::close()
{
    if (m_port->isOpen())
        m_port->close();
}

bool SerialManager::isOpen() const { return m_port->isOpen(); }

QStringList SerialManager::availablePorts() const
{
    QStringList names;
    const QList<QSerialPortInfo> ports = QSerialPortInfo::availablePorts();
    for (const QSerialPortInfo& port : ports)
        names.append(port.portName());
    return names;
}

void SerialManager::refreshPorts() { Q_EMIT portsChanged(availablePorts()); }

void SerialManager::onReadyRead() { receive(m_port->readAll()); }

// Whoever hears of a line may reopen the port, or run an event loop in which more bytes arrive: a line is
// decoded before it is parsed, and the buffer knows where to go on.
void SerialManager::receive(const QByteArray& bytes)
{
    m_received.append(bytes);
    for (QByteArrayView line; m_received.takeLine(line);)
        parseLine(decodedLine(line));
}

void SerialManager::parseLine(const QString& line)
{
    if (line.isEmpty())
        return;
    LineParser parser(line);
    const double timestamp = parser.timestamp() ? *parser.timestamp() : defaultTimestamp();
    Q_EMIT rawLineReceived(timestamp, line);

    QVarLengthArray<LineValues::KeyedNumber, 32> numbers;
    QString freeText;
    LineParser::Token token;
    while (parser.next(token)) {
        switch (token.kind) {
        case LineParser::Kind::Value:
            numbers.append({token.key, token.number});
            break;
        case LineParser::Kind::State:
            Q_EMIT stateParsed(timestamp, token.key.toString(), token.text.toString());
            break;
        case LineParser::Kind::Error:
            Q_EMIT errorParsed(timestamp, token.text.toString());
            break;
        case LineParser::Kind::Text:
            appendWord(freeText, token.text);
            break;
        case LineParser::Kind::Dropped:
            break;
        }
    }
    if (!numbers.isEmpty())
        Q_EMIT lineParsed(timestamp, m_values.toMap({numbers.constData(), std::size_t(numbers.size())}));
    if (!freeText.isEmpty())
        Q_EMIT unrecognizedParsed(timestamp, freeText);
}

double SerialManager::defaultTimestamp() const
{
    return m_clockRunning ? double(m_clock.elapsed()) / 1000.0 : 0.0;
}

void SerialManager::onError(QSerialPort::SerialPortError error)
{
    if (error == QSerialPort::NoError || m_opening)
        return;
    m_lastError = error;
    const bool gone = error == QSerialPort::ResourceError || error == QSerialPort::ReadError;
    const bool firstLoss = gone && !m_lost;
    m_lost = m_lost || gone;
    Q_EMIT errorOccurred(m_port->errorString());
    if (firstLoss && m_lost) // unless a slot has just reopened the port
        Q_EMIT deviceLost();
}
