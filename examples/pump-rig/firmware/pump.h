#pragma once

#include "catalogue.h"
#include "random.h"

#include <stdbool.h>
#include <stdint.h>

// The test rig itself: a motor that turns a pump, the water, the heat, the safety circuit, and the sequence
// that starts it, changes its load, lets something go wrong now and then, stops safely and starts again. It
// advances in steps of a millisecond of its own time and knows neither lines nor ports. The heat is some
// twenty times faster than in a real rig, so that there is something to see.

enum { kStepsPerSecond = 1000, kMessageSize = 64, kMessageQueue = 8 };

/// What goes wrong; the safety circuit only sees what follows from it.
enum Cause {
    CAUSE_NONE,
    CAUSE_SUCTION_BLOCKED,
    CAUSE_COOLING_LOST,
    CAUSE_SUPPLY_SAGS,
    CAUSE_VALVE_STICKS,
    kCauseCount
};

/// A free text for the operator.
typedef struct
{
    char text[kMessageSize];
    bool alone; ///< on a line of its own instead of beside values
} Message;

typedef struct
{
    // What a report reads.
    double measured[kSignalCount]; ///< physical units, without sensor noise; SEQ is not the rig's and stays 0
    enum State state[kGroupCount];
    enum Error error; ///< the error to report; kErrorCount when there is none
    Message messages[kMessageQueue];
    unsigned messageCount;

    // Sequence.
    Random random;
    double sinceChange[kGroupCount]; ///< s
    double untilLoadStep;            ///< s
    unsigned loadSteps;              ///< since the last fault
    unsigned loadStepsToFault;
    unsigned faults;
    enum Cause cause;
    enum Cause lastCause;
    double sinceCause;  ///< s
    double limitBroken; ///< s

    // Motor and supply.
    double speed, speedCommand, speedTarget; ///< rad/s
    double integral, torque;                 ///< Nm
    double current, duty, power, busVoltage; ///< A, 0 to 1, W, V

    // Water.
    double valve, valveTarget, valveOff;  ///< 0 to 1, 0 to 1, s off the target
    double flow;                          ///< l/min
    double inletPressure, outletPressure; ///< bar
    double cavitation, level;             ///< 0 to 1
    double motorTemp, bearingTemp;        ///< degrees Celsius
    double vibration;                     ///< mm/s
} Pump;

/// A cold rig at the moment of power-on.
void pumpInit(Pump* pump, uint64_t seed);
/// One millisecond.
void pumpStep(Pump* pump);
/// Takes the oldest message away; false when there is none.
bool pumpTakeMessage(Pump* pump, Message* message);
