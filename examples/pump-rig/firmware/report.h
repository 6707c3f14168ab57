#pragma once

#include "pump.h"

#include <stddef.h>
#include <stdint.h>

// Turns the rig's condition into lines: a time in seconds, a line counter, about ten values, and beside them
// what has just happened. It keeps track of what it has said already and knows nothing of ports.

enum { kMaxLine = 512 };

typedef struct
{
    Random noise;
    uint32_t lines;                  ///< printed so far; the next line's counter
    uint64_t statesDueUs;            ///< when all states are printed again
    enum State printed[kGroupCount]; ///< what the listener knows
    bool microseconds;               ///< six decimals of the time instead of three
} Report;

/// Lines that come faster than one in a millisecond need a finer time.
void reportInit(Report* report, uint64_t seed, bool microseconds);
/// Forget what the listener knows: a new one is there.
void reportRepeatStates(Report* report);
/// Writes one line with its line feed, at most kMaxLine bytes, and returns the end of it. Takes the rig's
/// pending error and message away.
char* reportLine(Report* report, Pump* pump, uint64_t timeUs, char* out);
