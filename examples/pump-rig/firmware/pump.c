#include "pump.h"

#include <math.h>
#include <stdarg.h>
#include <stdio.h>
#include <string.h>

static const double kStep = 1.0 / kStepsPerSecond;
static const double kRpm = 0.10471975511965977; // rad/s per rpm
static const double kAmbient = 24.0;            // degrees Celsius

static const double kSpeeds[] = {1800, 2400, 2700, 3000}; // rpm, well away from the resonance
static const double kValvePositions[] = {0.35, 0.5, 0.65, 0.8};

static double clamp(double value, double low, double high)
{
    return value < low ? low : value > high ? high : value;
}

/// Moves a value towards a target as a first-order lag does, with the time constant in seconds.
static void lag(double* value, double target, double seconds)
{
    *value += (target - *value) * kStep / seconds;
}

__attribute__((format(printf, 3, 4))) static void say(Pump* pump, bool alone, const char* format, ...)
{
    if (pump->messageCount == kMessageQueue)
        return;
    Message* message = &pump->messages[pump->messageCount++];
    message->alone = alone;
    va_list arguments;
    va_start(arguments, format);
    vsnprintf(message->text, sizeof message->text, format, arguments);
    va_end(arguments);
}

static void enter(Pump* pump, enum Group group, enum State state)
{
    if (pump->state[group] == state)
        return;
    pump->state[group] = state;
    pump->sinceChange[group] = 0;
}

static bool isDriven(const Pump* pump)
{
    return pump->state[GROUP_PUMP] == STATE_PUMP_STARTING || pump->state[GROUP_PUMP] == STATE_PUMP_RUNNING;
}

// Physics

static void turnMotor(Pump* pump)
{
    const double kInertia = 0.04, kTorquePerAmpere = 0.12, kResistance = 0.05, kMaxTorque = 10.0;
    const double kRamp = 700 * kRpm, kGain = 0.6, kIntegralGain = 1.5, kEfficiency = 0.6;

    if (isDriven(pump)) {
        pump->speedCommand += clamp(pump->speedTarget - pump->speedCommand, -kRamp * kStep, kRamp * kStep);
        const double error = pump->speedCommand - pump->speed;
        // What the supply can still push against the voltage that the motor makes itself.
        const double available =
            (pump->busVoltage - kTorquePerAmpere * pump->speed) / kResistance * kTorquePerAmpere;
        const double highest = clamp(available, 0.0, kMaxTorque);
        const double wanted = kGain * error + pump->integral;
        pump->torque = clamp(wanted, 0.0, highest);
        if (wanted == pump->torque)
            pump->integral += kIntegralGain * error * kStep;
    } else {
        pump->speedCommand = pump->speed;
        pump->integral = 0;
        pump->torque = 0;
    }

    const double hydraulicPower =
        fmax(pump->outletPressure - pump->inletPressure, 0.0) * 1e5 * pump->flow / 60000;
    const double load = hydraulicPower / kEfficiency / fmax(pump->speed, 10.0) + 0.0006 * pump->speed + 0.5;
    pump->speed = fmax(pump->speed + (pump->torque - load) / kInertia * kStep, 0.0);

    pump->current = pump->torque / kTorquePerAmpere + (isDriven(pump) ? 0.4 : 0.0);
    pump->power = pump->torque * pump->speed + kResistance * pump->current * pump->current + 6.0;
    const double voltage = kTorquePerAmpere * pump->speed + kResistance * pump->current;
    pump->duty = isDriven(pump) ? clamp(voltage / pump->busVoltage, 0.0, 1.0) : 0.0;

    const double sag = pump->cause == CAUSE_SUPPLY_SAGS ? fmin(3.0 * pump->sinceCause, 14.0) : 0.0;
    lag(&pump->busVoltage, 48.4 - sag - 0.02 * pump->power / fmax(pump->busVoltage, 20.0), 0.02);
}

static void moveValve(Pump* pump)
{
    const double way = pump->cause == CAUSE_VALVE_STICKS ? 0.0 : 0.25 * kStep;
    pump->valve += clamp(pump->valveTarget - pump->valve, -way, way);

    const bool off = fabs(pump->valveTarget - pump->valve) > 0.005;
    pump->valveOff = off ? pump->valveOff + kStep : 0.0;
    if (pump->valveOff > 4.0)
        enter(pump, GROUP_VALVE, STATE_VALVE_FAILED);
    else if (off)
        enter(pump, GROUP_VALVE, STATE_VALVE_TRAVEL);
    else
        enter(pump, GROUP_VALVE, pump->valveTarget < 0.01 ? STATE_VALVE_SHUT : STATE_VALVE_IN_POSITION);
}

static void moveWater(Pump* pump)
{
    // Pressures in bar are squares of a flow in l/min: the pump loses kInner, the valve takes the rest.
    const double kInner = 2e-4, kSuction = 2e-5, kShutOff = 5.0, kRatedSpeed = 2400 * kRpm;

    const double open = fmax(pump->valve, 0.03);
    const double throttle = 2.1e-4 / (open * open);
    const double relative = pump->speed / kRatedSpeed;
    const double head = kShutOff * relative * relative * (1.0 - 0.35 * pump->cavitation);
    lag(&pump->flow, sqrt(head / (kInner + throttle)), 0.25);
    pump->outletPressure = clamp(0.05 + throttle * pump->flow * pump->flow, 0.0, 12.0);

    const double blocked = pump->cause == CAUSE_SUCTION_BLOCKED ? fmin(pump->sinceCause / 5.0, 1.0) : 0.0;
    const double loss = kSuction * (1.0 + 9.0 * blocked) * pump->flow * pump->flow;
    pump->inletPressure = fmax(0.05 + 0.35 * pump->level - loss, -0.95);
    lag(&pump->cavitation, clamp((-0.5 - pump->inletPressure) / 0.3, 0.0, 1.0), 0.3);
    // The water that is under way in the pipes is missing in the tank.
    lag(&pump->level, 0.78 - 0.0016 * pump->flow, 6.0);
}

static void warmAndShake(Pump* pump)
{
    const double copper = 0.05 * pump->current * pump->current;
    const double iron = 20.0 * pump->speed / 314;
    const double perWatt = pump->cause == CAUSE_COOLING_LOST ? 1.4 : 0.45;
    lag(&pump->motorTemp, kAmbient + perWatt * (copper + iron), 25.0);
    const double bearing = 18.0 * pump->speed / 314 + 0.3 * (pump->motorTemp - kAmbient);
    lag(&pump->bearingTemp, kAmbient + bearing + 8.0 * pump->cavitation, 50.0);

    const double rpm = pump->speed / kRpm;
    const double offResonance = (rpm - 2100) / 80;
    const double mechanical = 0.1 + 1.4 * rpm / 3000 + 2.5 / (1.0 + offResonance * offResonance);
    lag(&pump->vibration, mechanical * fmin(rpm / 300, 1.0) + 9.0 * pump->cavitation, 0.1);
}

static void measure(Pump* pump)
{
    const bool busy = isDriven(pump);
    double* measured = pump->measured;
    measured[SIGNAL_SPEED] = pump->speed / kRpm / 1000;
    measured[SIGNAL_SPEED_SET] = pump->speedTarget / kRpm / 1000;
    measured[SIGNAL_DUTY] = pump->duty * 100;
    measured[SIGNAL_I_PHASE] = pump->current;
    measured[SIGNAL_V_BUS] = pump->busVoltage;
    measured[SIGNAL_TORQUE] = pump->torque;
    measured[SIGNAL_POWER] = pump->power;
    measured[SIGNAL_P_IN] = pump->inletPressure;
    measured[SIGNAL_P_OUT] = pump->outletPressure;
    measured[SIGNAL_FLOW] = pump->flow;
    measured[SIGNAL_VIB] = pump->vibration;
    measured[SIGNAL_VALVE_POS] = pump->valve * 100;
    measured[SIGNAL_LEVEL] = pump->level * 100;
    measured[SIGNAL_T_MOTOR] = pump->motorTemp;
    measured[SIGNAL_T_BEARING] = pump->bearingTemp;
    measured[SIGNAL_V_MCU] = busy ? 3.288 : 3.301;
    measured[SIGNAL_T_LOOP] = busy ? 46.0 : 38.5;
}

// Safety circuit

static enum Error brokenLimit(const Pump* pump)
{
    if (pump->motorTemp > 95)
        return ERROR_OVER_TEMP;
    if (pump->bearingTemp > 90)
        return ERROR_BEARING_HOT;
    if (pump->current > 95)
        return ERROR_OVER_CURRENT;
    if (pump->busVoltage < 40)
        return ERROR_UNDER_VOLTAGE;
    if (pump->inletPressure < -0.5 && pump->vibration > 7.1)
        return ERROR_CAVITATION;
    if (pump->outletPressure > 9.5)
        return ERROR_OVER_PRESSURE;
    if (pump->level < 0.1)
        return ERROR_LOW_LEVEL;
    if (pump->state[GROUP_VALVE] == STATE_VALVE_FAILED)
        return ERROR_VALVE_STUCK;
    return kErrorCount;
}

static void watchLimits(Pump* pump)
{
    const enum Error error = isDriven(pump) ? brokenLimit(pump) : kErrorCount;
    pump->limitBroken = error != kErrorCount ? pump->limitBroken + kStep : 0.0;
    if (pump->limitBroken < 0.5)
        return;
    pump->error = error;
    pump->speedTarget = 0;
    pump->faults++;
    enter(pump, GROUP_PUMP, STATE_PUMP_SAFE_STOP);
    enter(pump, GROUP_SAFETY, STATE_SAFETY_LOCKOUT);
    say(pump, true, "Safe stop from %.0f rpm", pump->speed / kRpm);
}

// Sequence

static void setSpeed(Pump* pump, double rpm) { pump->speedTarget = rpm * kRpm; }

static void start(Pump* pump)
{
    pump->valveTarget = 0.6;
    setSpeed(pump, 2400);
    enter(pump, GROUP_PUMP, STATE_PUMP_STARTING);
    say(pump, true, "Pump started, target 2400 rpm");
}

/// The load at which the cause shows; the load then stays until the safety circuit stops the pump.
static void startCause(Pump* pump)
{
    enum Cause cause = CAUSE_SUCTION_BLOCKED; // the first one
    if (pump->faults > 0) {
        do
            cause = (enum Cause)(CAUSE_NONE + 1 + randomBelow(&pump->random, kCauseCount - 1));
        while (cause == pump->lastCause);
    }
    pump->cause = cause;
    pump->lastCause = cause;
    pump->sinceCause = 0;
    if (cause == CAUSE_VALVE_STICKS)
        pump->valveTarget = pump->valveTarget > 0.5 ? 0.35 : 0.8;
    else
        pump->valveTarget = cause == CAUSE_COOLING_LOST ? 0.8 : 0.7;
    setSpeed(pump, cause == CAUSE_COOLING_LOST ? 3000 : 2700);
    say(pump, false, "Load step: %.0f rpm, valve %.0f %%", pump->speedTarget / kRpm, pump->valveTarget * 100);
}

static void stepLoad(Pump* pump)
{
    Random* random = &pump->random;
    // The first three steps after power-on are always the same, a good picture for a newcomer.
    static const double kOpening[] = {0.35, 3000, 0.8};
    double target;
    if (pump->faults == 0 && pump->loadSteps < 3) {
        target = kOpening[pump->loadSteps];
    } else {
        do {
            const double* from = randomBelow(random, 2) ? kSpeeds : kValvePositions;
            target = from[randomBelow(random, 4)];
        } while (target == pump->valveTarget || fabs(target * kRpm - pump->speedTarget) < 1.0);
    }
    pump->loadSteps++;
    pump->untilLoadStep = randomBetween(random, 4.0, 8.0);
    if (target > 1.0) {
        setSpeed(pump, target);
        say(pump, false, "Load step: speed %.0f rpm", target);
    } else {
        pump->valveTarget = target;
        say(pump, false, "Load step: valve %.0f %%", target * 100);
    }
}

static void clearCause(Pump* pump)
{
    static const char* const kRepairs[kCauseCount] = {"Limits reset", "Suction filter cleaned",
                                                      "Cooling fan replaced", "Supply back at 48 V",
                                                      "Valve drive freed"};
    say(pump, true, "%s, restart follows", kRepairs[pump->cause]);
    pump->cause = CAUSE_NONE;
    pump->valveOff = 0;
}

static void runWhileOff(Pump* pump)
{
    const double age = pump->sinceChange[GROUP_PUMP];
    if (age >= 1.0 && pump->state[GROUP_SAFETY] == STATE_SAFETY_CHECK) {
        enter(pump, GROUP_SAFETY, STATE_SAFETY_PASS);
        say(pump, true, "Self-test passed");
        pump->valveTarget = 0.6;
    }
    if (age >= 3.0)
        start(pump);
}

static void runWhileDriven(Pump* pump)
{
    if (pump->state[GROUP_PUMP] == STATE_PUMP_STARTING) {
        if (pump->speed < 0.985 * pump->speedTarget)
            return;
        enter(pump, GROUP_PUMP, STATE_PUMP_RUNNING);
        say(pump, false, "Target speed reached");
        pump->untilLoadStep = 4.0;
        pump->loadSteps = 0;
        pump->loadStepsToFault = pump->faults == 0 ? 3 : 4 + randomBelow(&pump->random, 4);
        return;
    }
    pump->sinceCause += kStep;
    pump->untilLoadStep -= kStep;
    if (pump->cause != CAUSE_NONE || pump->untilLoadStep > 0)
        return;
    if (pump->loadSteps == pump->loadStepsToFault)
        startCause(pump);
    else
        stepLoad(pump);
}

static void runWhilePaused(Pump* pump)
{
    const bool cool = pump->motorTemp < 70;
    if (pump->state[GROUP_SAFETY] == STATE_SAFETY_PAUSE_RESET) {
        if (pump->sinceChange[GROUP_PUMP] > 6.0 && cool)
            enter(pump, GROUP_SAFETY, STATE_SAFETY_CHECK);
    } else if (pump->sinceChange[GROUP_SAFETY] > 1.0) {
        enter(pump, GROUP_SAFETY, STATE_SAFETY_PASS);
        start(pump);
    }
}

static void runSequence(Pump* pump)
{
    for (int group = 0; group < kGroupCount; ++group)
        pump->sinceChange[group] += kStep;
    switch (pump->state[GROUP_PUMP]) {
    case STATE_PUMP_OFF:
        runWhileOff(pump);
        break;
    case STATE_PUMP_SAFE_STOP:
        if (pump->speed > 3.0 || pump->sinceChange[GROUP_PUMP] < 2.0)
            break;
        enter(pump, GROUP_PUMP, STATE_PUMP_PAUSED);
        enter(pump, GROUP_SAFETY, STATE_SAFETY_PAUSE_RESET);
        clearCause(pump);
        break;
    case STATE_PUMP_PAUSED:
        runWhilePaused(pump);
        break;
    default:
        runWhileDriven(pump);
    }
}

void pumpInit(Pump* pump, uint64_t seed)
{
    *pump = (Pump){.error = kErrorCount, .busVoltage = 48.4, .level = 0.78, .random = randomFromSeed(seed)};
    pump->state[GROUP_PUMP] = STATE_PUMP_OFF;
    pump->state[GROUP_VALVE] = STATE_VALVE_SHUT;
    pump->state[GROUP_SAFETY] = STATE_SAFETY_CHECK;
    pump->motorTemp = kAmbient;
    pump->bearingTemp = kAmbient;
    moveWater(pump);
    measure(pump);
}

void pumpStep(Pump* pump)
{
    runSequence(pump);
    turnMotor(pump);
    moveValve(pump);
    moveWater(pump);
    warmAndShake(pump);
    watchLimits(pump);
    measure(pump);
}

bool pumpTakeMessage(Pump* pump, Message* message)
{
    if (pump->messageCount == 0)
        return false;
    *message = pump->messages[0];
    pump->messageCount--;
    memmove(pump->messages, pump->messages + 1, pump->messageCount * sizeof(Message));
    return true;
}
