#include "support/PseudoTerminal.h"

#include <QCoreApplication>
#include <QDeadlineTimer>

#include <cerrno>
#include <cstdlib>
#include <fcntl.h>
#include <termios.h>
#include <unistd.h>

PseudoTerminal::PseudoTerminal() { reopen(); }

PseudoTerminal::~PseudoTerminal() { close(); }

int PseudoTerminal::speed() const
{
    termios settings{};
    if (::tcgetattr(m_master, &settings) != 0)
        return 0;
    switch (::cfgetospeed(&settings)) {
    case B9600:
        return 9600;
    case B57600:
        return 57600;
    case B115200:
        return 115200;
    default:
        return 0;
    }
}

qint64 PseudoTerminal::write(const QByteArray& bytes)
{
    const ssize_t written = ::write(m_master, bytes.constData(), size_t(bytes.size()));
    if (written < 0)
        return errno == EAGAIN || errno == EINTR ? 0 : -1;
    return written;
}

bool PseudoTerminal::writeAll(const QByteArray& bytes)
{
    const QDeadlineTimer deadline(30'000);
    qint64 done = 0;
    while (done < bytes.size()) {
        const qint64 written = write(bytes.mid(done, 65'536));
        if (written < 0 || deadline.hasExpired())
            return false;
        done += written;
        QCoreApplication::processEvents();
    }
    return true;
}

void PseudoTerminal::close()
{
    if (m_master >= 0)
        ::close(m_master);
    m_master = -1;
}

bool PseudoTerminal::reopen()
{
    close();
    m_master = ::posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (m_master < 0 || ::grantpt(m_master) != 0 || ::unlockpt(m_master) != 0)
        return false;
    termios settings{};
    if (::tcgetattr(m_master, &settings) == 0) {
        ::cfmakeraw(&settings);
        ::tcsetattr(m_master, TCSANOW, &settings);
    }
    m_portName = QString::fromLocal8Bit(::ptsname(m_master));
    return true;
}
