#pragma once

#include "definitions/DashboardSignalParser.h"

/// What a signal is called in the project's catalogue; its own name when the catalogue has none.
inline QString displayNameOf(const QString& signalName)
{
    return gSignalParser ? gSignalParser->displayName(signalName) : signalName;
}
