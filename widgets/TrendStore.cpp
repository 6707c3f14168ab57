#include "widgets/TrendStore.h"

#include "widgets/DashboardWidget.h"

namespace {

/// A device may print any number of names behind the colon.
constexpr qsizetype kMaxRememberedNames = 1000;

void pruneKeepingOne(TrendSeries& series, qint64 cutoffMs)
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

void TrendStore::pruneKeepingOne(qint64 cutoffMs, TrendSeries* lastAppended)
{
    // Most values come with the same time as the one before: only their own series can have changed then.
    if (lastAppended && cutoffMs == m_keptOneAt) {
        ::pruneKeepingOne(*lastAppended, cutoffMs);
        return;
    }
    for (auto& [key, series] : m_series)
        ::pruneKeepingOne(series, cutoffMs);
    m_keptOneAt = cutoffMs;
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
        while (!series.isEmpty() && series.last().tMs > endMs)
            series.removeLast();
        ::pruneKeepingOne(series, endMs - windowMs);
    }
}

void TrendStore::clear()
{
    m_accepted.clear();
    m_series.clear();
}
