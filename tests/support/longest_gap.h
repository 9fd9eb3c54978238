#pragma once

// How long the main thread was held while something ran.

#include <QElapsedTimer>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace velarc {

// The longest time between two turns of a timer that is due every millisecond.
class LongestGap
{
public:
    LongestGap()
    {
        m_sinceTick.start();
        QObject::connect(&m_timer, &QTimer::timeout, &m_timer, [this] { tick(); });
        m_timer.start(std::chrono::milliseconds(1));
    }

    [[nodiscard]] double inMilliseconds()
    {
        tick();
        return static_cast<double>(m_longest) / 1e6;
    }

private:
    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    qint64 m_longest = 0;

    void tick()
    {
        m_longest = std::max(m_longest, m_sinceTick.nsecsElapsed());
        m_sinceTick.restart();
    }
};

} // namespace velarc
