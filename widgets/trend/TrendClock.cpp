#include "widgets/trend/TrendClock.h"

#include "definitions/numbers/FileNumbers.h"

#include <QDateTime>

#include <cstdlib>
#include <utility>

namespace {

constexpr qint64 kSilenceMs = 200;

} // namespace

qint64 TrendClock::wallMs() { return QDateTime::currentMSecsSinceEpoch(); }

bool TrendClock::setExternal(bool on) { return on != std::exchange(m_external, on); }

void TrendClock::setExternalNowMs(qint64 t) { m_externalNowMs = boundedTimeMs(t); }

bool TrendClock::isSilentSince(qint64 lastAppendMs) const
{
    return !m_external && std::abs(wallMs() - lastAppendMs) >= kSilenceMs;
}
