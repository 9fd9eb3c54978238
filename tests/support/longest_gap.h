#pragma once

// How long the main thread was held while something ran.

#include <QElapsedTimer>
#include <QFile>
#include <QTimer>

#include <algorithm>
#include <chrono>

namespace velarc {

// The longest time between two turns of a timer that is due every millisecond, less the time in
// which the thread was ready and waited for a processor that other programs had.
class LongestGap
{
public:
    LongestGap()
    {
        // Where the kernel keeps no such account, nothing is taken off.
        static_cast<void>(m_account.open(QIODevice::ReadOnly | QIODevice::Unbuffered));
        m_waited = waitedForProcessor();
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
    QFile m_account{QStringLiteral("/proc/thread-self/schedstat")};
    QTimer m_timer;
    QElapsedTimer m_sinceTick;
    qint64 m_waited = 0;
    qint64 m_longest = 0;

    // In nanoseconds, since the thread began.
    qint64 waitedForProcessor()
    {
        return m_account.seek(0) ? m_account.read(64).split(' ').value(1).toLongLong() : 0;
    }

    void tick()
    {
        const qint64 gap = m_sinceTick.nsecsElapsed();
        const qint64 waited = waitedForProcessor();
        m_longest = std::max(m_longest, gap - (waited - m_waited));
        m_waited = waited;
        m_sinceTick.restart();
    }
};

} // namespace velarc
