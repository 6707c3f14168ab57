#include "port.h"

#include <errno.h>
#include <fcntl.h>
#include <poll.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <termios.h>
#include <unistd.h>

enum {
    kLongestWait = 100,   // ms; how late a signal between two system calls may be noticed
    kSettleTime = 50,     // ms
    kLastLinePatience = 5 // times kLongestWait
};

void portUseStdout(Port* port) { *port = (Port){.fd = STDOUT_FILENO, .readerThere = true}; }

/// Makes the terminal raw and empty for the next reader. Opening and closing its other end once is also what
/// makes the kernel report a hang-up while nobody has it open; a terminal that was never opened looks like a
/// used one.
static bool prepareTerminal(Port* port)
{
    tcflush(port->fd, TCOFLUSH);
    const int reader = open(port->path, O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
    if (reader < 0)
        return false;
    struct termios settings;
    bool ok = tcgetattr(reader, &settings) == 0;
    cfmakeraw(&settings);
    ok = ok && tcsetattr(reader, TCSANOW, &settings) == 0 && tcflush(reader, TCIFLUSH) == 0;
    close(reader);
    return ok;
}

static bool makeLink(const Port* port)
{
    char old[8];
    // A link that an earlier run left is replaced, anything else is not ours.
    if (readlink(port->link, old, sizeof old) > 0)
        unlink(port->link);
    return symlink(port->path, port->link) == 0;
}

bool portOpenTerminal(Port* port, const char* link)
{
    *port = (Port){.fd = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC), .isTerminal = true};
    if (port->fd < 0 || grantpt(port->fd) != 0 || unlockpt(port->fd) != 0 ||
        ptsname_r(port->fd, port->path, sizeof port->path) != 0 || !prepareTerminal(port)) {
        perror("pump-rig: cannot open a pseudo-terminal");
        return false;
    }
    port->link = link;
    if (link && !makeLink(port)) {
        fprintf(stderr, "pump-rig: cannot make the link %s: %s\n", link, strerror(errno));
        port->link = NULL;
        portClose(port);
        return false;
    }
    return true;
}

void portClose(Port* port)
{
    if (port->link)
        unlink(port->link);
    if (port->isTerminal)
        close(port->fd);
}

/// Waits for one of the events and returns what is there. A hang-up always counts.
static int waitFor(const Port* port, short events, int milliseconds)
{
    struct pollfd entry = {.fd = port->fd, .events = events};
    return poll(&entry, 1, milliseconds) > 0 ? entry.revents : 0;
}

static void discardInput(const Port* port)
{
    char bytes[256];
    while (read(port->fd, bytes, sizeof bytes) > 0) {
    }
}

static void readerLeft(Port* port)
{
    port->readerThere = false;
    // A reader that was killed while it held the port for itself leaves it locked for everybody but root.
    if (port->isTerminal && !prepareTerminal(port) && errno == EBUSY && waitFor(port, 0, 0) & POLLHUP)
        fputs("pump-rig: the last reader left the port locked; start pump-rig again\n", stderr);
}

bool portReaderThere(Port* port)
{
    if (!port->isTerminal)
        return port->readerThere;
    const bool there = !(waitFor(port, 0, 0) & POLLHUP);
    if (there && !port->readerThere) {
        // Readers set the port up after opening it, and some of them throw away what has come by then.
        poll(NULL, 0, kSettleTime);
        port->readerThere = !(waitFor(port, 0, 0) & POLLHUP);
    } else if (!there && port->readerThere) {
        readerLeft(port);
    }
    return port->readerThere;
}

void portWait(Port* port, int milliseconds)
{
    if (milliseconds > kLongestWait)
        milliseconds = kLongestWait;
    // While nobody is there, a poll of the terminal would return at once.
    if (!port->isTerminal || !port->readerThere)
        poll(NULL, 0, milliseconds);
    else if (waitFor(port, POLLIN, milliseconds) & POLLIN)
        discardInput(port);
}

/// False when the reader went away instead.
static bool waitForRoom(const Port* port)
{
    const int events = waitFor(port, POLLOUT | POLLIN, kLongestWait);
    if (events & POLLIN)
        discardInput(port);
    return !(events & (POLLHUP | POLLERR));
}

/// Where the line ends of which some bytes are out already.
static size_t endOfLine(const char* lines, size_t sent, size_t size)
{
    if (sent == 0 || lines[sent - 1] == '\n')
        return sent;
    const char* feed = memchr(lines + sent, '\n', size - sent);
    return feed ? (size_t)(feed - lines) + 1 : size;
}

size_t portSend(Port* port, const char* lines, size_t size, const volatile sig_atomic_t* stop)
{
    size_t sent = 0;
    int patience = kLastLinePatience;
    while (sent < size) {
        const ssize_t written = write(port->fd, lines + sent, size - sent);
        bool gone = false;
        if (written >= 0)
            sent += (size_t)written;
        else if (errno == EAGAIN)
            gone = !waitForRoom(port);
        else
            gone = errno != EINTR;
        if (*stop)
            size = endOfLine(lines, sent, size);
        if (gone)
            readerLeft(port);
        if (gone || (*stop && patience-- == 0))
            break;
    }
    return sent;
}
