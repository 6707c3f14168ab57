#pragma once

#include "serial/SerialManager.h"

#include <QObject>

class PortComboBox;
class QComboBox;
class QToolBar;
class QToolButton;

// The port, baud and Connect controls of a toolbar, and what they do to the serial manager. It also closes a
// port whose device went away, once and from the event loop.
class SerialControls : public QObject
{
    Q_OBJECT

public:
    /// Adds its controls to the toolbar, which owns them. The manager is not owned.
    SerialControls(SerialManager* serial, QToolBar* toolBar, QObject* parent = nullptr);

    /// Chooses a rate as if the user had typed it; what is no positive rate is said and changes nothing.
    void setBaudRate(int baudRate);
    /// Opens that port as if the user had typed it. False when it could not be opened.
    bool openPort(const QString& portName);

Q_SIGNALS:
    void opened(const QString& portName, int baudRate);
    void closed();
    /// The device went away; the port is closed already.
    void lost(const QString& portName);
    void statusMessage(const QString& text, int milliseconds);

private:
    void setupPort(QToolBar* toolBar);
    void setupBaud(QToolBar* toolBar);
    void setupConnect(QToolBar* toolBar);
    void connectClicked();
    bool open();
    void close();
    void showConnected(bool connected);
    void onDeviceLost();
    void closeLostPort(int session);
    int commitBaudRate();

    SerialManager* m_serial;
    PortComboBox* m_port = nullptr;
    QComboBox* m_baud = nullptr;
    QToolButton* m_connect = nullptr;
    int m_session = 0; ///< counts opened ports, so that a late report does not close the next one
};
