#pragma once

#include <signal.h>
#include <stdbool.h>
#include <stddef.h>

// Where the lines go: a pseudo-terminal that a reader opens like a serial port, or standard output. Nothing
// is printed while nobody has the terminal open, and a slow reader makes the sender wait: no line is ever
// dropped in between. It does not know what a line means.

typedef struct
{
    int fd;
    bool isTerminal;
    bool readerThere;
    char path[64];    ///< what a reader opens
    const char* link; ///< a symbolic link to path; null for none
} Port;

/// Standard output, for pipes and files.
void portUseStdout(Port* port);
/// A new pseudo-terminal in raw mode, with a link to it unless that is null. False after a message on
/// standard error.
bool portOpenTerminal(Port* port, const char* link);
/// Removes the link. Closing the terminal throws away what the reader has not read yet.
void portClose(Port* port);

/// Looks whether somebody listens: to standard output until it takes no more.
bool portReaderThere(Port* port);
/// Sleeps for the given time, less when the reader goes away or a signal arrives. Throws away what the reader
/// sends.
void portWait(Port* port, int milliseconds);
/// Writes whole lines and returns how many bytes of them got out. It is less than size when the reader went
/// away, or when *stop became true; then at least the line that had been begun is finished, if the reader
/// takes it.
size_t portSend(Port* port, const char* lines, size_t size, const volatile sig_atomic_t* stop);
