#pragma once

#include <QElapsedTimer>
#include <QObject>
#include <QTimer>

#include <algorithm>

/// The longest time for which the event loop did not come round.
class LoopWatch : public QObject
{
public:
    LoopWatch()
    {
        m_timer.setTimerType(Qt::PreciseTimer);
        connect(&m_timer, &QTimer::timeout, this, &LoopWatch::tick);
        m_timer.start(kTickMs);
        m_clock.start();
    }
    double longestBlockMs() const { return m_longest; }

private:
    static constexpr int kTickMs = 2;
    void tick()
    {
        m_longest = std::max(m_longest, double(m_clock.nsecsElapsed()) / 1e6 - kTickMs);
        m_clock.start();
    }

    QTimer m_timer;
    QElapsedTimer m_clock;
    double m_longest = 0.0;
};
