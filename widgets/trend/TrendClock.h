#pragma once

#include <QtGlobal>

// Where a trend plot takes "now" from: live it is the wall clock, in a replay a time that is set from
// outside. The plot and its intake ask it. It has no timer, but knows whether a plot must move on by itself.
// Times are in milliseconds.
class TrendClock
{
public:
    /// Since the epoch.
    static qint64 wallMs();

    bool isExternal() const { return m_external; }
    /// False when it was so already.
    bool setExternal(bool on);
    /// What nowMs() answers while the time is external; kept within ±kMaxTimeMs.
    void setExternalNowMs(qint64 t);
    qint64 nowMs() const { return m_external ? m_externalNowMs : wallMs(); }

    /// Whether the plot has fallen silent: live, with the wall clock 200 ms or more away from the last
    /// sample's time, on either side, as the clock may have been set back since.
    bool isSilentSince(qint64 lastAppendMs) const;

private:
    bool m_external = false;
    qint64 m_externalNowMs = 0;
};
