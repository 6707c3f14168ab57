#include "port.h"
#include "pump.h"
#include "report.h"

#include <errno.h>
#include <getopt.h>
#include <signal.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <time.h>

// The program: reads the command line, then lets the rig's time pass and prints it line by line at the wanted
// rate. The rig's time follows from the number of lines alone, so the same options give the same lines.

enum { kBufferSize = 64 * 1024, kReaderPollMs = 10, kFailure = 1, kUsage = 2 };
static const unsigned long long kHighestRate = 1000000;

static const char kHelp[] =
    "Usage: pump-rig [options]\n"
    "A simulated pump test rig. It prints the path of a pseudo-terminal and then, while somebody has that\n"
    "open, reports there like a controller on a serial port.\n"
    "\n"
    "  --rate LINES   lines per second, up to 1000000 (100); 0: as fast as the reader takes them, each one\n"
    "                 a millisecond of the rig's time\n"
    "  --lines N      stop after N lines and end when the reader closes the port (no limit)\n"
    "  --seed N       another course of loads and faults (1)\n"
    "  --link PATH    make a symbolic link to the pseudo-terminal, removed at the end\n"
    "  --stdout       print the lines to standard output instead\n"
    "  --help         this text\n";

typedef struct
{
    unsigned long long rate;
    unsigned long long lines; // 0: no limit
    unsigned long long seed;
    const char* link;
    bool toStdout;
} Options;

typedef struct
{
    Port port;
    Pump pump;
    Report report;
    unsigned long long rate;
    uint64_t made;  // lines so far
    uint64_t steps; // milliseconds that the rig has lived
    // The schedule: so many lines since that moment. It starts afresh with every reader.
    double start;
    uint64_t scheduled;
    // What got out.
    uint64_t lines;
    uint64_t bytes;
    char buffer[kBufferSize];
} Device;

static volatile sig_atomic_t stopRequested;

static void requestStop(int signal)
{
    (void)signal;
    stopRequested = 1;
}

static void catchSignals(void)
{
    // Without SA_RESTART, so that a blocked call returns.
    struct sigaction action = {.sa_handler = requestStop};
    sigaction(SIGINT, &action, NULL);
    sigaction(SIGTERM, &action, NULL);
    sigaction(SIGHUP, &action, NULL);
    action.sa_handler = SIG_IGN;
    sigaction(SIGPIPE, &action, NULL);
}

static double now(void)
{
    struct timespec time;
    clock_gettime(CLOCK_MONOTONIC, &time);
    return (double)time.tv_sec + (double)time.tv_nsec * 1e-9;
}

static bool readNumber(const char* text, unsigned long long highest, unsigned long long* number)
{
    char* end = NULL;
    errno = 0;
    *number = strtoull(text, &end, 10);
    return *text >= '0' && *text <= '9' && *end == '\0' && errno == 0 && *number <= highest;
}

/// True when the program shall run; otherwise *exitCode says how it ends.
static bool readOptions(int argc, char** argv, Options* options, int* exitCode)
{
    static const struct option kOptions[] = {{"rate", required_argument, NULL, 'r'},
                                             {"lines", required_argument, NULL, 'n'},
                                             {"seed", required_argument, NULL, 's'},
                                             {"link", required_argument, NULL, 'l'},
                                             {"stdout", no_argument, NULL, 'o'},
                                             {"help", no_argument, NULL, 'h'},
                                             {NULL, 0, NULL, 0}};
    *options = (Options){.rate = 100, .seed = 1};
    *exitCode = kUsage;
    bool ok = true;
    int option = 0;
    while (ok && (option = getopt_long(argc, argv, "", kOptions, NULL)) != -1) {
        switch (option) {
        case 'r':
            ok = readNumber(optarg, kHighestRate, &options->rate);
            break;
        case 'n':
            ok = readNumber(optarg, UINT64_MAX, &options->lines);
            break;
        case 's':
            ok = readNumber(optarg, UINT64_MAX, &options->seed);
            break;
        case 'l':
            options->link = optarg;
            break;
        case 'o':
            options->toStdout = true;
            break;
        case 'h':
            fputs(kHelp, stdout);
            *exitCode = EXIT_SUCCESS;
            return false;
        default:
            return false;
        }
    }
    if (!ok)
        fprintf(stderr, "pump-rig: not a usable number: %s\n", optarg);
    else if (optind < argc)
        fprintf(stderr, "pump-rig: what is %s? Try --help\n", argv[optind]);
    return ok && optind == argc;
}

/// The rig's time of a line, in microseconds. Split so that no product overflows within a century.
static uint64_t timeOfLine(const Device* device, uint64_t line)
{
    const uint64_t rate = device->rate > 0 ? device->rate : kStepsPerSecond;
    return line / rate * 1000000 + line % rate * 1000000 / rate;
}

/// How many lines the schedule asks for now.
static uint64_t linesDue(Device* device)
{
    if (device->rate == 0)
        return UINT64_MAX;
    const double rate = (double)device->rate;
    const uint64_t due = (uint64_t)((now() - device->start) * rate) + 1;
    // Behind by more than a quarter of a second: the reader is the slower one, so do not pile up a debt.
    if (due > device->scheduled + device->rate / 4 + 1) {
        device->start = now();
        device->scheduled = 0;
        return 1;
    }
    return due - device->scheduled;
}

static int millisecondsToNextLine(const Device* device)
{
    const double next = device->start + (double)device->scheduled / (double)device->rate;
    const double wait = (next - now()) * 1000;
    return wait < 1 ? 1 : wait > 1000 ? 1000 : (int)wait;
}

static uint64_t countLines(const char* text, size_t size)
{
    uint64_t count = 0;
    for (const char* end = text + size; (text = memchr(text, '\n', (size_t)(end - text))) != NULL; ++text)
        ++count;
    return count;
}

/// Prints up to count lines, as many as the buffer holds.
static void printLines(Device* device, uint64_t count)
{
    char* end = device->buffer;
    uint64_t printed = 0;
    for (; printed < count && end + kMaxLine <= device->buffer + kBufferSize; ++printed) {
        const uint64_t timeUs = timeOfLine(device, device->made++);
        for (; device->steps * (1000000 / kStepsPerSecond) < timeUs; ++device->steps)
            pumpStep(&device->pump);
        end = reportLine(&device->report, &device->pump, timeUs, end);
    }
    device->scheduled += printed;
    const size_t size = (size_t)(end - device->buffer);
    const size_t sent = portSend(&device->port, device->buffer, size, &stopRequested);
    device->bytes += sent;
    device->lines += printed - countLines(device->buffer + sent, size - sent);
}

/// Returns when the limit is reached, on a signal, or when standard output takes no more.
static void run(Device* device, uint64_t limit)
{
    bool listening = false;
    while (!stopRequested && device->made < limit) {
        const bool wasListening = listening;
        listening = portReaderThere(&device->port);
        if (!listening) {
            if (!device->port.isTerminal)
                return;
            portWait(&device->port, kReaderPollMs);
            continue;
        }
        if (!wasListening) {
            device->start = now();
            device->scheduled = 0;
            reportRepeatStates(&device->report);
        }
        const uint64_t due = linesDue(device);
        const uint64_t left = limit - device->made;
        if (due > 0)
            printLines(device, due < left ? due : left);
        else
            portWait(&device->port, millisecondsToNextLine(device));
    }
}

/// Closing the terminal would take away what the reader has not read yet, and nothing tells how much that is.
/// So after the last line wait until the reader closes it; after a signal give it a moment.
static void letReaderFinish(Device* device)
{
    while (!stopRequested && portReaderThere(&device->port) && device->port.isTerminal)
        portWait(&device->port, 100);
    if (portReaderThere(&device->port) && device->port.isTerminal)
        portWait(&device->port, 100);
}

int main(int argc, char** argv)
{
    Options options;
    int exitCode = EXIT_SUCCESS;
    if (!readOptions(argc, argv, &options, &exitCode))
        return exitCode;
    catchSignals();

    static Device device;
    device.rate = options.rate;
    pumpInit(&device.pump, options.seed);
    reportInit(&device.report, options.seed, options.rate > kStepsPerSecond);
    if (options.toStdout) {
        portUseStdout(&device.port);
    } else {
        if (!portOpenTerminal(&device.port, options.link))
            return kFailure;
        puts(device.port.path);
        fflush(stdout);
    }
    run(&device, options.lines > 0 ? options.lines : UINT64_MAX);
    letReaderFinish(&device);
    portClose(&device.port);
    fprintf(stderr, "lines=%llu bytes=%llu\n", (unsigned long long)device.lines,
            (unsigned long long)device.bytes);
    return EXIT_SUCCESS;
}
