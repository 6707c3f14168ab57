#include "app/toolbars/SerialControls.h"

#include "app/toolbars/PortComboBox.h"

#include <QComboBox>
#include <QDebug>
#include <QIcon>
#include <QLabel>
#include <QShortcut>
#include <QTimer>
#include <QToolBar>
#include <QToolButton>

namespace {

constexpr int kMessageMs = 4000;

} // namespace

SerialControls::SerialControls(SerialManager* serial, QToolBar* toolBar, QObject* parent)
    : QObject(parent)
    , m_serial(serial)
{
    setupPort(toolBar);
    setupBaud(toolBar);
    setupConnect(toolBar);
    connect(serial, &SerialManager::deviceLost, this, &SerialControls::onDeviceLost);
}

void SerialControls::setupPort(QToolBar* toolBar)
{
    auto* label = new QLabel(tr(" Port: "), toolBar);
    toolBar->addWidget(label);
    m_port = new PortComboBox(toolBar);
    m_port->setObjectName(QStringLiteral("portBox"));
    label->setBuddy(m_port);
    toolBar->addWidget(m_port);
    connect(m_port, &PortComboBox::aboutToPopUp, m_serial, &SerialManager::refreshPorts);
    connect(m_serial, &SerialManager::portsChanged, m_port, &PortComboBox::setPorts);
}

void SerialControls::setupBaud(QToolBar* toolBar)
{
    auto* label = new QLabel(tr(" Baud: "), toolBar);
    toolBar->addWidget(label);
    m_baud = new QComboBox(toolBar);
    m_baud->setObjectName(QStringLiteral("baudBox"));
    m_baud->setEditable(true);
    m_baud->setInsertPolicy(QComboBox::NoInsert);
    m_baud->setCompleter(nullptr); // would turn a typed 1920 into 19200
    m_baud->setToolTip(tr("Baud rate: choose one or type another"));
    m_baud->setAccessibleName(tr("Baud rate"));
    for (const int rate : {115200, 57600, 38400, 19200, 9600})
        m_baud->addItem(QString::number(rate), rate);
    m_baud->setCurrentText(QStringLiteral("115200"));
    label->setBuddy(m_baud);
    toolBar->addWidget(m_baud);
}

void SerialControls::setupConnect(QToolBar* toolBar)
{
    m_connect = new QToolButton(toolBar);
    m_connect->setObjectName(QStringLiteral("connectButton"));
    m_connect->setIcon(QIcon(QStringLiteral(":/icons/connect.png")));
    m_connect->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    m_connect->setAutoRaise(true);
    m_connect->setFocusPolicy(Qt::NoFocus);
    m_connect->setIconSize(toolBar->iconSize());
    m_connect->setToolTip(tr("Open or close the serial port (Ctrl+Shift+K)"));
    showConnected(false);
    toolBar->addWidget(m_connect);
    connect(m_connect, &QToolButton::clicked, this, &SerialControls::connectClicked);
    // Not the button's own: in a narrow window the button is hidden, and its shortcut with it.
    auto* shortcut = new QShortcut(Qt::CTRL | Qt::SHIFT | Qt::Key_K, toolBar);
    connect(shortcut, &QShortcut::activated, this, &SerialControls::connectClicked);
}

void SerialControls::setBaudRate(int baudRate)
{
    m_baud->setEditText(QString::number(baudRate));
    commitBaudRate();
}

bool SerialControls::openPort(const QString& portName)
{
    if (m_serial->isOpen())
        close();
    m_port->setEditText(portName);
    return open();
}

void SerialControls::connectClicked()
{
    qDebug("Connect clicked");
    if (m_serial->isOpen())
        close();
    else
        open();
}

bool SerialControls::open()
{
    SerialManager::OpenParams params;
    params.portName = m_port->currentText().trimmed();
    params.baudRate = commitBaudRate();
    if (!m_serial->open(params)) {
        qDebug("Not open");
        return false;
    }
    ++m_session;
    showConnected(true);
    Q_EMIT opened(params.portName, params.baudRate);
    return true;
}

void SerialControls::close()
{
    m_serial->close();
    showConnected(false);
    Q_EMIT closed();
}

void SerialControls::showConnected(bool connected)
{
    m_connect->setText(connected ? tr("Disconnect") : tr("Connect"));
}

// The port must not be closed while it is reporting the loss.
void SerialControls::onDeviceLost()
{
    QTimer::singleShot(0, this, [this, session = m_session] { closeLostPort(session); });
}

void SerialControls::closeLostPort(int session)
{
    if (session != m_session || !m_serial->isOpen())
        return;
    const QString portName = m_serial->portName();
    close();
    Q_EMIT lost(portName);
}

// An editable box keeps the old item's data until the text becomes an item.
int SerialControls::commitBaudRate()
{
    bool isNumber = false;
    const int rate = m_baud->currentText().trimmed().toInt(&isNumber);
    if (isNumber && rate > 0) {
        if (m_baud->findData(rate) < 0)
            m_baud->addItem(QString::number(rate), rate);
        m_baud->setCurrentIndex(m_baud->findData(rate));
    } else {
        Q_EMIT statusMessage(tr("Not a baud rate: %1").arg(m_baud->currentText()), kMessageMs);
    }
    m_baud->setEditText(m_baud->itemText(m_baud->currentIndex()));
    return m_baud->currentData().toInt();
}
