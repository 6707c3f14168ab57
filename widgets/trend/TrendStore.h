#pragma once

#include "widgets/trend/TrendSeries.h"

#include <QHash>
#include <QSet>
#include <QString>
#include <QStringList>

#include <unordered_map>

// All the samples of a trend plot: one series per signal, which signals are taken, and how old samples are
// dropped. Times are milliseconds on one axis that the plot chooses; this has no clock of its own.
class TrendStore
{
public:
    /// The assignment entries whose signals are taken from now on; samples that are there stay.
    void setAssignment(const QStringList& entries);
    /// The series of a signal, made when it is missing; null when the signal is not taken. An entry must
    /// equal the whole name or the name's part before the first ":"; letter case counts. Valid until clear().
    TrendSeries* accept(const QString& name);
    /// By series key (the part of a name before its first ":"); null when there is none.
    const TrendSeries* find(const QString& key) const;
    /// The value stored nearest to a time; NaN when there is none.
    double valueNear(const QString& key, qint64 tMs) const;

    /// Removes what is older than cutoffMs, but leaves each series the newest sample of that age, from which
    /// a line leads into the window.
    void pruneKeepingOne(qint64 cutoffMs);
    /// The same for the one series that has grown, at a constant cost; the others follow now and then.
    void pruneAfterAppend(TrendSeries& series, qint64 cutoffMs);
    /// Removes all that is older; a series may become empty.
    void pruneAll(qint64 cutoffMs);
    /// Removes what is newer than endMs, and then what is older than the window, as pruneKeepingOne().
    void trim(qint64 endMs, qint64 windowMs);
    void clear();

private:
    std::unordered_map<QString, TrendSeries> m_series;
    QSet<QString> m_assigned;
    QHash<QString, TrendSeries*> m_accepted; ///< by incoming name
    qint64 m_keptOneAt = 0;                  ///< the cutoff of the last pruneKeepingOne()
};
