#pragma once

#include "widgets/trend/TrendStore.h"

#include <QString>
#include <QStringList>

class TrendClock;

// The way of values into a trend plot and out of it again: gives each value its time, drops repeats, stores
// the rest, and drops what has become too old for the time window. It repaints nothing. Times are in
// milliseconds, as its clock counts them.
class TrendIntake
{
public:
    /// What the user sets.
    struct Rules
    {
        int windowMs = 10'000;     ///< any number
        bool sampleAndHold = true; ///< repeated values with a time of their own are always dropped
    };

    /// The clock must outlive this.
    explicit TrendIntake(const TrendClock& clock);

    /// Count from the next value on; what is stored is not pruned at once.
    void setRules(const Rules& rules) { m_rules = rules; }
    /// As TrendStore.
    void setAssignment(const QStringList& entries) { m_store.setAssignment(entries); }

    // Each of these answers whether the value was stored. It is not when its signal is not taken, or when it
    // differs from the last one by no more than 1e-9.

    /// Stamped with now.
    bool add(const QString& name, double value);
    /// tSec counts while the clock is external (not finite, the value is dropped); live, the stamp is now.
    /// Without sample and hold a repeated value is stored once 50 ms have passed since the last one.
    bool addTimed(const QString& name, double value, double tSec);
    /// With any stamp, whatever the clock says.
    bool addStamped(const QString& name, double value, qint64 tMs);

    /// Drops what is older than the window that ends now, except for the newest such sample of each series.
    void prune();
    /// Drops all that is older than the window that ends at nowMs. Nothing when it is less than 30 ms since
    /// samples were dropped last, be it by these two or because one was stored.
    void pruneAll(qint64 nowMs);
    /// Drops what is newer than endMs, and what is older than the window before it, but for one sample.
    void trim(qint64 endMs);
    void clear();

    const TrendStore& store() const { return m_store; }
    /// The time of the last sample stored; before the first, when this was made.
    qint64 lastAppendMs() const { return m_lastAppendMs; }

private:
    TrendSeries* rewoundSeries(const QString& name, qint64 tMs);
    void append(TrendSeries& series, qint64 tMs, double value, qint64 now);

    const TrendClock& m_clock;
    Rules m_rules;
    TrendStore m_store;
    qint64 m_lastPruneMs = 0;
    qint64 m_lastAppendMs;
};
