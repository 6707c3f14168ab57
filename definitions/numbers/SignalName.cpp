#include "definitions/numbers/SignalName.h"

QString canonical(const QString& entry) { return entry.section(QLatin1Char(':'), 0, 0).trimmed(); }
