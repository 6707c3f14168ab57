#pragma once

#include "definitions/DashboardSignalParser.h"

/// What a signal is called in the project's catalogue; its own name when the catalogue has none.
inline QString displayNameOf(const QString& signalName)
{
    const auto known = gSignalParser ? gSignalParser->findSignalByEnum(signalName) : std::nullopt;
    return known && !known->displayName.isEmpty() ? known->displayName : signalName;
}
