#include "widgets/trend/TrendStore.h"

#include "definitions/numbers/SignalName.h"

#include <cstdlib>
#include <limits>

namespace {

/// A device may print any number of names behind the colon.
constexpr qsizetype kMaxRememberedNames = 1000;

constexpr qint64 kPruneOthersMs = 30;

void keepOneBefore(TrendSeries& series, qint64 cutoffMs)
{
    while (series.size() > 1 && series.at(1).tMs < cutoffMs)
        series.removeFirst();
}

} // namespace

void TrendStore::setAssignment(const QStringList& entries)
{
    m_assigned = QSet<QString>(entries.cbegin(), entries.cend());
    m_accepted.clear();
}

TrendSeries* TrendStore::accept(const QString& name)
{
    if (TrendSeries* known = m_accepted.value(name))
        return known;
    const QString key = canonical(name);
    if (!m_assigned.contains(name) && !m_assigned.contains(key))
        return nullptr;
    if (m_accepted.size() >= kMaxRememberedNames)
        m_accepted.clear();
    TrendSeries* series = &m_series[key];
    m_accepted.insert(name, series);
    return series;
}

const TrendSeries* TrendStore::find(const QString& key) const
{
    const auto found = m_series.find(key);
    return found == m_series.cend() ? nullptr : &found->second;
}

double TrendStore::valueNear(const QString& key, qint64 tMs) const
{
    const TrendSeries* series = find(key);
    return series ? series->valueNear(tMs) : std::numeric_limits<double>::quiet_NaN();
}

void TrendStore::pruneKeepingOne(qint64 cutoffMs)
{
    for (auto& [key, series] : m_series)
        keepOneBefore(series, cutoffMs);
    m_keptOneAt = cutoffMs;
}

// Pruning all of them for every value would cost the square of their number.
void TrendStore::pruneAfterAppend(TrendSeries& series, qint64 cutoffMs)
{
    if (std::abs(cutoffMs - m_keptOneAt) >= kPruneOthersMs)
        pruneKeepingOne(cutoffMs);
    else
        keepOneBefore(series, cutoffMs);
}

void TrendStore::pruneAll(qint64 cutoffMs)
{
    for (auto& [key, series] : m_series) {
        while (!series.isEmpty() && series.first().tMs < cutoffMs)
            series.removeFirst();
    }
}

void TrendStore::trim(qint64 endMs, qint64 windowMs)
{
    for (auto& [key, series] : m_series) {
        series.dropNewerThan(endMs);
        keepOneBefore(series, endMs - windowMs);
    }
}

void TrendStore::clear()
{
    m_accepted.clear();
    m_series.clear();
}
