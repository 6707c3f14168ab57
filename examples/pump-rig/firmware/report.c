#include "report.h"

#include <assert.h>
#include <string.h>

static const enum Signal kFast[] = {SIGNAL_SPEED, SIGNAL_DUTY, SIGNAL_I_PHASE, SIGNAL_V_BUS, SIGNAL_TORQUE,
                                    SIGNAL_POWER, SIGNAL_P_IN, SIGNAL_P_OUT,   SIGNAL_FLOW,  SIGNAL_VIB};
static const enum Signal kSlow[] = {SIGNAL_SPEED_SET, SIGNAL_VALVE_POS, SIGNAL_LEVEL, SIGNAL_T_MOTOR,
                                    SIGNAL_T_BEARING, SIGNAL_V_MCU,     SIGNAL_T_LOOP};
enum {
    kFastCount = sizeof kFast / sizeof *kFast,
    kSlowCount = sizeof kSlow / sizeof *kSlow,
    kSlowEvery = 10
};
static_assert(1 + kFastCount + kSlowCount == kSignalCount, "every signal is printed, SEQ on each line");

// Sensor noise as it looks in the raw values: at most so many counts to either side.
static const unsigned char kNoise[kSignalCount] = {
    [SIGNAL_SPEED] = 8, [SIGNAL_DUTY] = 2,    [SIGNAL_I_PHASE] = 6,   [SIGNAL_V_BUS] = 5, [SIGNAL_TORQUE] = 6,
    [SIGNAL_POWER] = 8, [SIGNAL_P_IN] = 6,    [SIGNAL_P_OUT] = 6,     [SIGNAL_FLOW] = 8,  [SIGNAL_VIB] = 12,
    [SIGNAL_LEVEL] = 2, [SIGNAL_T_MOTOR] = 1, [SIGNAL_T_BEARING] = 1, [SIGNAL_V_MCU] = 2, [SIGNAL_T_LOOP] = 9,
};

static char* putPiece(char* out, Piece piece)
{
    memcpy(out, piece.text, piece.length);
    return out + piece.length;
}

// By hand: snprintf would take most of the time of a line.
static char* putNumber(char* out, uint64_t number)
{
    char digits[20];
    int first = sizeof digits;
    do {
        digits[--first] = (char)('0' + number % 10);
        number /= 10;
    } while (number > 0);
    memcpy(out, digits + first, sizeof digits - (size_t)first);
    return out + sizeof digits - first;
}

static char* putTime(char* out, uint64_t timeUs, bool microseconds)
{
    out = putNumber(out, timeUs / 1000000);
    *out++ = '.';
    uint32_t unit = 100000;
    for (int i = 0; i < (microseconds ? 6 : 3); ++i, unit /= 10)
        *out++ = (char)('0' + timeUs / unit % 10);
    return out;
}

static char* putSignals(Report* report, const Pump* pump, const enum Signal* list, int count, char* out)
{
    for (int i = 0; i < count; ++i) {
        const enum Signal signal = list[i];
        const int raw = (int)rawValue(signal, pump->measured[signal]);
        const int noise = (int)randomBelow(&report->noise, 2u * kNoise[signal] + 1) - kNoise[signal];
        out = putPiece(out, kSignalKey[signal]);
        // What stands still is quiet.
        out = putNumber(out, raw > 0 && raw + noise > 0 ? (unsigned)(raw + noise) : 0);
    }
    return out;
}

static char* putEvents(Report* report, Pump* pump, uint64_t timeUs, char* out)
{
    const bool repeat = timeUs >= report->statesDueUs;
    if (repeat)
        report->statesDueUs = timeUs + 1000000;
    for (int group = 0; group < kGroupCount; ++group) {
        if (!repeat && report->printed[group] == pump->state[group])
            continue;
        report->printed[group] = pump->state[group];
        out = putPiece(out, kStatePair[pump->state[group]]);
    }
    if (pump->error != kErrorCount)
        out = putPiece(out, kErrorPair[pump->error]);
    pump->error = kErrorCount;
    return out;
}

static char* putMessage(Pump* pump, char* out)
{
    Message message;
    if (!pumpTakeMessage(pump, &message))
        return out;
    *out++ = ' ';
    return putPiece(out, (Piece){message.text, strlen(message.text)});
}

void reportInit(Report* report, uint64_t seed, bool microseconds)
{
    *report = (Report){.noise = randomFromSeed(~seed), .microseconds = microseconds};
}

void reportRepeatStates(Report* report) { report->statesDueUs = 0; }

char* reportLine(Report* report, Pump* pump, uint64_t timeUs, char* out)
{
    const uint32_t line = report->lines++;
    out = putTime(out, timeUs, report->microseconds);
    out = putPiece(out, kSignalKey[SIGNAL_SEQ]);
    out = putNumber(out, line);

    // What happened comes before the words about it.
    char* const events = out;
    out = putEvents(report, pump, timeUs, out);
    const bool quiet = out == events;
    if (quiet && pump->messageCount > 0 && pump->messages[0].alone) {
        out = putMessage(pump, out);
    } else {
        out = putSignals(report, pump, kFast, kFastCount, out);
        if (line % kSlowEvery == 0)
            out = putSignals(report, pump, kSlow, kSlowCount, out);
        if (pump->messageCount > 0 && !pump->messages[0].alone)
            out = putMessage(pump, out);
    }
    *out++ = '\n';
    return out;
}
