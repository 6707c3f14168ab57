#pragma once

#include "widgets/drawing/ValueExtent.h"

#include <QtGlobal>

#include <array>
#include <deque>

/// One stored point: milliseconds (since the epoch, or of playback time) and a value in display units.
struct TrendSample
{
    qint64 tMs;
    double value;
};

// The samples of one signal, in the order in which they came; the trend plot draws from it. Appending and
// removing at either end take constant time. A pyramid of extents (one per 16 samples, one per 16 of those,
// and so on) answers for any span how far its values reach, in a time that hardly grows with the span. It
// does not sort: where times go backwards, searches still end, at some sample.
class TrendSeries
{
public:
    /// Beyond it the oldest give way: more would take over 200 MB for one signal.
    static constexpr qsizetype kMaxSamples = 10'000'000;

    bool isEmpty() const { return m_samples.empty(); }
    qsizetype size() const { return qsizetype(m_samples.size()); }
    /// The index must be within the size, as for the two after it and for extent().
    const TrendSample& at(qsizetype index) const { return m_samples[std::size_t(index)]; }
    const TrendSample& first() const { return m_samples.front(); }
    const TrendSample& last() const { return m_samples.back(); }

    void append(const TrendSample& sample);
    void removeFirst();
    void removeLast();
    /// Removes the samples at the end that are newer.
    void dropNewerThan(qint64 tMs);
    /// Hints that the samples around an index will be read soon; any index will do.
    void prefetch(qsizetype index) const;

    /// The first sample that is not older than tMs; size() if there is none.
    qsizetype indexAtOrAfter(qint64 tMs) const;
    /// The value of the sample nearest in time, of the older one of two equally near; NaN when empty.
    double valueNear(qint64 tMs) const;
    /// How far the samples from begin to before end reach.
    ValueExtent extent(qsizetype begin, qsizetype end) const;

private:
    static constexpr qint64 kFanOut = 16;
    static constexpr std::size_t kLevels = 4;

    /// Extents of the complete blocks of one size. Blocks are numbered from the first sample ever appended,
    /// so that removing samples in front moves no block.
    struct Level
    {
        qint64 samplesPerBlock = 0;
        qint64 firstBlock = 0;
        std::deque<ValueExtent> blocks;
    };

    static std::array<Level, kLevels> emptyLevels();
    qint64 end() const { return m_firstNumber + size(); }
    ValueExtent blockExtent(std::size_t level, qint64 block) const;
    void completeBlocks();

    std::deque<TrendSample> m_samples;
    qint64 m_firstNumber = 0; ///< how many samples were removed in front so far
    std::array<Level, kLevels> m_levels = emptyLevels();
};
