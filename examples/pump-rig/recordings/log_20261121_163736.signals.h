// Water pump test rig: everything the controller prints, declared once for firmware and dashboard.
// One declaration per line. An includer defines the five macros; see firmware/catalogue.h.

// Physical value = offset + raw x scale.
DASHBOARD_MAPPING(MAP_COUNT,     0,      1)         // as counted
DASHBOARD_MAPPING(MAP_SPEED,     0,      0.00025)   // 1000 rpm, raw in quarters of a rpm
DASHBOARD_MAPPING(MAP_PERCENT,   0,      0.1)       // %, per mille
DASHBOARD_MAPPING(MAP_PHASE,     -102.4, 0.05)      // A, 12-bit ADC, zero current at mid-scale (2048)
DASHBOARD_MAPPING(MAP_BUS,       0,      0.015)     // V, 12-bit ADC behind a divider, 61 V full scale
DASHBOARD_MAPPING(MAP_TORQUE,    0,      0.01)      // Nm, estimated from the current
DASHBOARD_MAPPING(MAP_POWER,     0,      0.5)       // W
DASHBOARD_MAPPING(MAP_SUCTION,   -1.5,   0.00122)   // bar, 0.5 to 4.5 V sensor for -1 to 3 bar
DASHBOARD_MAPPING(MAP_DISCHARGE, -1.25,  0.00305)   // bar, 0.5 to 4.5 V sensor for 0 to 10 bar
DASHBOARD_MAPPING(MAP_FLOW,      0,      0.05)      // l/min, pulses per gate time
DASHBOARD_MAPPING(MAP_VIBRATION, 0,      0.01)      // mm/s, root mean square
DASHBOARD_MAPPING(MAP_TEMP,      -50,    0.1)       // degrees Celsius, linearised NTC
DASHBOARD_MAPPING(MAP_MILLIVOLT, 0,      0.001)     // V
DASHBOARD_MAPPING(MAP_TICKS,     0,      0.0625)    // microseconds, 16 MHz timer

// On every line.
DASHBOARD_SIGNAL(SEQ,       "Line counter",        MAP_COUNT)
DASHBOARD_SIGNAL(SPEED,     "Motor speed",         MAP_SPEED)
DASHBOARD_SIGNAL(DUTY,      "Duty cycle",          MAP_PERCENT)
DASHBOARD_SIGNAL(I_PHASE,   "Phase current",       MAP_PHASE)
DASHBOARD_SIGNAL(V_BUS,     "Bus voltage",         MAP_BUS)
DASHBOARD_SIGNAL(TORQUE,    "Shaft torque",        MAP_TORQUE)
DASHBOARD_SIGNAL(POWER,     "Electrical power",    MAP_POWER)
DASHBOARD_SIGNAL(P_IN,      "Inlet pressure",      MAP_SUCTION)
DASHBOARD_SIGNAL(P_OUT,     "Outlet pressure",     MAP_DISCHARGE)
DASHBOARD_SIGNAL(FLOW,      "Flow",                MAP_FLOW)
DASHBOARD_SIGNAL(VIB,       "Vibration",           MAP_VIBRATION)

// On every tenth line.
DASHBOARD_SIGNAL(SPEED_SET, "Speed set-point",     MAP_SPEED)
DASHBOARD_SIGNAL(VALVE_POS, "Valve position",      MAP_PERCENT)
DASHBOARD_SIGNAL(LEVEL,     "Tank level",          MAP_PERCENT)
DASHBOARD_SIGNAL(T_MOTOR,   "Motor temperature",   MAP_TEMP)
DASHBOARD_SIGNAL(T_BEARING, "Bearing temperature", MAP_TEMP)
DASHBOARD_SIGNAL(V_MCU,     "MCU supply",          MAP_MILLIVOLT)
DASHBOARD_SIGNAL(T_LOOP,    "Control loop time",   MAP_TICKS)

DASHBOARD_STATE_GROUP(PUMP, "Pump")
DASHBOARD_STATE(PUMP, OFF,       "Off")
DASHBOARD_STATE(PUMP, STARTING,  "Starting")
DASHBOARD_STATE(PUMP, RUNNING,   "Running")
DASHBOARD_STATE(PUMP, SAFE_STOP, "Safe stop")
DASHBOARD_STATE(PUMP, PAUSED,    "Paused before restart")

DASHBOARD_STATE_GROUP(VALVE, "Discharge valve")
DASHBOARD_STATE(VALVE, SHUT,        "Shut")
DASHBOARD_STATE(VALVE, TRAVEL,      "Moving")
DASHBOARD_STATE(VALVE, IN_POSITION, "In position")
DASHBOARD_STATE(VALVE, FAILED,      "Does not move")

DASHBOARD_STATE_GROUP(SAFETY, "Safety circuit")
DASHBOARD_STATE(SAFETY, CHECK,       "Self-test")
DASHBOARD_STATE(SAFETY, PASS,        "All limits kept")
DASHBOARD_STATE(SAFETY, LOCKOUT,     "Locked out")
DASHBOARD_STATE(SAFETY, PAUSE_RESET, "Waiting for reset")

// 1xx electrical and thermal, 2xx hydraulic, 3xx actuators.
DASHBOARD_ERROR(OVER_TEMP,     101, "Motor above 95 degrees")
DASHBOARD_ERROR(BEARING_HOT,   102, "Bearing above 90 degrees")
DASHBOARD_ERROR(OVER_CURRENT,  110, "Phase current above 95 A")
DASHBOARD_ERROR(UNDER_VOLTAGE, 111, "Bus voltage below 40 V")
DASHBOARD_ERROR(CAVITATION,    201, "Pump cavitates: inlet pressure too low")
DASHBOARD_ERROR(OVER_PRESSURE, 202, "Outlet pressure above 9.5 bar")
DASHBOARD_ERROR(LOW_LEVEL,     203, "Tank level below 10 %")
DASHBOARD_ERROR(VALVE_STUCK,   301, "Discharge valve does not follow its set-point")
