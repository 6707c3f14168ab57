#include "catalogue.h"

#define PIECE(literal)                                                                                       \
    {                                                                                                        \
        literal, sizeof(literal) - 1                                                                         \
    }

const Piece kSignalKey[kSignalCount] = {
#define DASHBOARD_SIGNAL(id, name, mapping) PIECE(" " #id "="),
#include "each_definition.h"
};

const Piece kStatePair[kStateCount] = {
#define DASHBOARD_STATE(group, id, label) PIECE(" ST_" #group "=" #id),
#include "each_definition.h"
};

const Piece kErrorPair[kErrorCount] = {
#define DASHBOARD_ERROR(id, code, message) PIECE(" ERR=" #id),
#include "each_definition.h"
};

static const struct
{
    double offset;
    double perUnit;
} kMapping[kMappingCount] = {
#define DASHBOARD_MAPPING(id, offset, scale) {offset, 1.0 / (scale)},
#include "each_definition.h"
};

static const enum Mapping kMappingOf[kSignalCount] = {
#define DASHBOARD_SIGNAL(id, name, mapping) mapping,
#include "each_definition.h"
};

unsigned rawValue(enum Signal signal, double physical)
{
    const enum Mapping mapping = kMappingOf[signal];
    const double raw = (physical - kMapping[mapping].offset) * kMapping[mapping].perUnit + 0.5;
    if (!(raw >= 0.0))
        return 0;
    return raw < 65535.0 ? (unsigned)raw : 65535;
}
