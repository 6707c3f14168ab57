#pragma once

#include <stddef.h>

// What the device can print, made by the preprocessor from the file that the dashboard reads: an enumeration
// and a table for each kind of thing. The display names stay with the dashboard and take no flash here.

// clang-format off
enum Mapping {
#define DASHBOARD_MAPPING(id, offset, scale) id,
#include "each_definition.h"
    kMappingCount
};

enum Signal {
#define DASHBOARD_SIGNAL(id, name, mapping) SIGNAL_##id,
#include "each_definition.h"
    kSignalCount
};

enum Group {
#define DASHBOARD_STATE_GROUP(id, label) GROUP_##id,
#include "each_definition.h"
    kGroupCount
};

enum State {
#define DASHBOARD_STATE(group, id, label) STATE_##group##_##id,
#include "each_definition.h"
    kStateCount
};

enum Error {
#define DASHBOARD_ERROR(id, code, message) ERROR_##id,
#include "each_definition.h"
    kErrorCount
};
// clang-format on

/// A piece of a line, ready to be copied.
typedef struct
{
    const char* text;
    size_t length;
} Piece;

extern const Piece kSignalKey[kSignalCount]; ///< " SPEED="
extern const Piece kStatePair[kStateCount];  ///< " ST_PUMP=RUNNING"
extern const Piece kErrorPair[kErrorCount];  ///< " ERR=CAVITATION"

/// The whole number that is printed for a value in physical units: the nearest one from 0 to 65535.
unsigned rawValue(enum Signal signal, double physical);
