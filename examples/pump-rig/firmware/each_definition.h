// Includes the definitions once, with every macro that the includer has not defined standing for nothing, and
// takes all five macros away again. Meant to be included many times, so it has no guard.

#ifndef DASHBOARD_MAPPING
#define DASHBOARD_MAPPING(id, offset, scale)
#endif
#ifndef DASHBOARD_SIGNAL
#define DASHBOARD_SIGNAL(id, name, mapping)
#endif
#ifndef DASHBOARD_STATE_GROUP
#define DASHBOARD_STATE_GROUP(id, label)
#endif
#ifndef DASHBOARD_STATE
#define DASHBOARD_STATE(group, id, label)
#endif
#ifndef DASHBOARD_ERROR
#define DASHBOARD_ERROR(id, code, message)
#endif

#include "../dashboard_signals.def"

#undef DASHBOARD_MAPPING
#undef DASHBOARD_SIGNAL
#undef DASHBOARD_STATE_GROUP
#undef DASHBOARD_STATE
#undef DASHBOARD_ERROR
