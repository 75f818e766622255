// The frame timer's schedule: ticks on the grid start + k * interval. A late tick
// does not cause a burst of catch-up ticks: the next deadline is the first grid
// point after the moment the tick ran. Pure; the Qt timer re-arms from it.
#pragma once

class KSFrameSchedule {
public:
    void start(double now, double interval)
    {
        m_start = now;
        m_interval = interval;
        m_next = now + interval;
        m_index = 1;
    }
    // True when a tick is due at `now` (within `slack` seconds of its deadline);
    // then the next deadline moves on.
    bool due(double now, double slack = 0.0002)
    {
        if (now + slack < m_next) return false;
        const double elapsed = now - m_start;
        long long k = (long long)(elapsed / m_interval) + 1;
        if (k <= m_index) k = m_index + 1;
        m_index = k;
        m_next = m_start + (double)k * m_interval;
        return true;
    }
    double next() const { return m_next; }
    double interval() const { return m_interval; }

private:
    double m_start = 0, m_interval = 1, m_next = 0;
    long long m_index = 0;
};
