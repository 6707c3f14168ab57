#include "widgets/trend/TrendIntake.h"

#include "definitions/numbers/FileNumbers.h"
#include "widgets/trend/TrendClock.h"

#include <cmath>

namespace {

constexpr double kValueEpsilon = 1e-9;
constexpr qint64 kHoldRepeatMs = 50;
constexpr qint64 kPruneIntervalMs = 30;

bool isRepeat(const TrendSeries& series, double value)
{
    return !series.isEmpty() && std::abs(series.last().value - value) <= kValueEpsilon;
}

} // namespace

TrendIntake::TrendIntake(const TrendClock& clock)
    : m_clock(clock)
    , m_lastAppendMs(clock.nowMs())
{}

bool TrendIntake::add(const QString& name, double value)
{
    const qint64 now = m_clock.nowMs();
    TrendSeries* series = rewoundSeries(name, now);
    if (!series || isRepeat(*series, value))
        return false;
    append(*series, now, value, now);
    return true;
}

bool TrendIntake::addTimed(const QString& name, double value, double tSec)
{
    if (m_clock.isExternal() && !std::isfinite(tSec))
        return false;                   // it has no place on the axis, and must not throw out what has
    const qint64 now = m_clock.nowMs(); // asked once: the clock costs more than all else here
    const qint64 t = m_clock.isExternal() ? wholeMs(tSec * 1000.0) : now;
    TrendSeries* series = rewoundSeries(name, t);
    if (!series)
        return false;
    if (isRepeat(*series, value) && (m_rules.sampleAndHold || t - series->last().tMs < kHoldRepeatMs))
        return false;
    append(*series, t, value, now);
    return true;
}

bool TrendIntake::addStamped(const QString& name, double value, qint64 tMs)
{
    const qint64 t = boundedTimeMs(tMs);
    TrendSeries* series = rewoundSeries(name, t);
    if (!series || isRepeat(*series, value))
        return false;
    append(*series, t, value, m_clock.nowMs());
    return true;
}

// The series for a value of that time; null when the signal is not taken. When time has gone backwards (a
// seek, the clock set back), what is newer belongs to a past that did not happen, and would hide what comes.
TrendSeries* TrendIntake::rewoundSeries(const QString& name, qint64 tMs)
{
    TrendSeries* series = m_store.accept(name);
    if (series)
        series->dropNewerThan(tMs);
    return series;
}

void TrendIntake::append(TrendSeries& series, qint64 tMs, double value, qint64 now)
{
    series.append({tMs, value});
    m_lastAppendMs = tMs;
    m_store.pruneAfterAppend(series, now - m_rules.windowMs);
    m_lastPruneMs = now;
}

void TrendIntake::prune()
{
    const qint64 now = m_clock.nowMs();
    m_store.pruneKeepingOne(now - m_rules.windowMs);
    m_lastPruneMs = now;
}

void TrendIntake::pruneAll(qint64 nowMs)
{
    const qint64 now = boundedTimeMs(nowMs);
    if (now - m_lastPruneMs < kPruneIntervalMs)
        return;
    m_store.pruneAll(now - m_rules.windowMs);
    m_lastPruneMs = now;
}

void TrendIntake::trim(qint64 endMs) { m_store.trim(boundedTimeMs(endMs), m_rules.windowMs); }

void TrendIntake::clear()
{
    m_store.clear();
    m_lastPruneMs = 0;
}
