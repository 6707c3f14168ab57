#include "widgets/trend/TrendSeries.h"

#include <algorithm>
#include <cmath>
#include <limits>

std::array<TrendSeries::Level, TrendSeries::kLevels> TrendSeries::emptyLevels()
{
    std::array<Level, kLevels> levels;
    qint64 samples = 1;
    for (Level& level : levels)
        level.samplesPerBlock = samples *= kFanOut;
    return levels;
}

void TrendSeries::append(const TrendSample& sample)
{
    m_samples.push_back(sample);
    completeBlocks();
    if (size() > kMaxSamples)
        removeFirst();
}

void TrendSeries::completeBlocks()
{
    for (std::size_t i = 0; i < kLevels && end() % m_levels[i].samplesPerBlock == 0; ++i) {
        Level& level = m_levels[i];
        const qint64 block = end() / level.samplesPerBlock - 1;
        if (block * level.samplesPerBlock < m_firstNumber)
            break; // samples at its beginning are gone, and so for the larger blocks
        if (level.blocks.empty())
            level.firstBlock = block;
        level.blocks.push_back(blockExtent(i, block));
    }
}

ValueExtent TrendSeries::blockExtent(std::size_t level, qint64 block) const
{
    ValueExtent extent;
    for (qint64 part = block * kFanOut; part < (block + 1) * kFanOut; ++part) {
        if (level == 0)
            extent.include(m_samples[std::size_t(part - m_firstNumber)].value);
        else
            extent.include(m_levels[level - 1].blocks[std::size_t(part - m_levels[level - 1].firstBlock)]);
    }
    return extent;
}

void TrendSeries::removeFirst()
{
    m_samples.pop_front();
    ++m_firstNumber;
    for (Level& level : m_levels) {
        if (!level.blocks.empty() && level.firstBlock * level.samplesPerBlock < m_firstNumber) {
            level.blocks.pop_front();
            ++level.firstBlock;
        }
    }
}

void TrendSeries::removeLast()
{
    m_samples.pop_back();
    for (Level& level : m_levels) {
        const qint64 blockEnd = (level.firstBlock + qint64(level.blocks.size())) * level.samplesPerBlock;
        if (!level.blocks.empty() && blockEnd > end())
            level.blocks.pop_back();
    }
}

void TrendSeries::dropNewerThan(qint64 tMs)
{
    while (!isEmpty() && last().tMs > tMs)
        removeLast();
}

void TrendSeries::prefetch(qsizetype index) const
{
#if defined(__GNUC__)
    constexpr qsizetype kPerCacheLine = 64 / sizeof(TrendSample);
    const qsizetype end = std::min<qsizetype>(size(), index + kFanOut);
    for (qsizetype i = std::max<qsizetype>(0, index - kFanOut); i < end; i += kPerCacheLine)
        __builtin_prefetch(&at(i));
#else
    Q_UNUSED(index)
#endif
}

qsizetype TrendSeries::indexAtOrAfter(qint64 tMs) const
{
    const auto found = std::partition_point(m_samples.cbegin(), m_samples.cend(),
                                            [tMs](const TrendSample& sample) { return sample.tMs < tMs; });
    return found - m_samples.cbegin();
}

double TrendSeries::valueNear(qint64 tMs) const
{
    if (isEmpty())
        return std::numeric_limits<double>::quiet_NaN();
    const qsizetype after = indexAtOrAfter(tMs + 1);
    const TrendSample& older = at(std::max<qsizetype>(after - 1, 0));
    const TrendSample& newer = at(std::min(after, size() - 1));
    return std::abs(newer.tMs - tMs) < std::abs(tMs - older.tMs) ? newer.value : older.value;
}

ValueExtent TrendSeries::extent(qsizetype begin, qsizetype end) const
{
    ValueExtent sum;
    qint64 from = m_firstNumber + begin;
    qint64 to = m_firstNumber + end;
    while (from < to && from % kFanOut != 0)
        sum.include(m_samples[std::size_t(from++ - m_firstNumber)].value);
    while (from < to && to % kFanOut != 0)
        sum.include(m_samples[std::size_t(--to - m_firstNumber)].value);
    // What is left are whole blocks, at every level.
    for (std::size_t i = 0; i < kLevels && from < to; ++i) {
        const Level& level = m_levels[i];
        const bool largest = i + 1 == kLevels;
        from /= kFanOut;
        to /= kFanOut;
        while (from < to && (largest || from % kFanOut != 0))
            sum.include(level.blocks[std::size_t(from++ - level.firstBlock)]);
        while (from < to && to % kFanOut != 0)
            sum.include(level.blocks[std::size_t(--to - level.firstBlock)]);
    }
    return sum;
}
