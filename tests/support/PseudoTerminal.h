#pragma once

#include <QByteArray>
#include <QString>

// The device's end of a pseudo-terminal: what a test writes here arrives at a serial port that was opened by
// portName(). Closing it is pulling the plug.
class PseudoTerminal
{
public:
    PseudoTerminal();
    ~PseudoTerminal();
    PseudoTerminal(const PseudoTerminal&) = delete;
    PseudoTerminal& operator=(const PseudoTerminal&) = delete;

    bool isOpen() const { return m_master >= 0; }
    /// The path that a serial port opens; a new one after reopen().
    QString portName() const { return m_portName; }

    /// The bits per second that the serial port has set; 0 when closed or not one of the usual rates.
    int speed() const;

    /// Writes as much as the terminal takes now (it buffers about 4 KB while nobody reads) and returns how
    /// many bytes that was; −1 on failure. It never blocks.
    qint64 write(const QByteArray& bytes);
    /// The same until all is written, running the event loop in between; false after 30 s.
    bool writeAll(const QByteArray& bytes);
    /// Pulls the plug.
    void close();
    /// A fresh pseudo-terminal in its place, usually under another name.
    bool reopen();

private:
    int m_master = -1;
    QString m_portName;
};
