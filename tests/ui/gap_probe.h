#pragma once

// How long the main thread is held at most while a test goes on.

#include "support/cpu_time.h"

#include <QCoreApplication>
#include <QEventLoop>
#include <QQuickWindow>

#include <algorithm>
#include <chrono>

namespace velarc {

// Notes the processor's time that each turn of the event loop takes: on a busy machine the clock on
// the wall would tell of others.
class GapProbe
{
public:
    // Turns the event loop, drawing a frame each time, until it has come to rest.
    void turn(QQuickWindow &window)
    {
        constexpr int kTurns = 12;
        for (int turn = 0; turn < kTurns; ++turn) {
            time([] { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); });
            time([] { QCoreApplication::processEvents(QEventLoop::AllEvents, 0); });
            time([&window] { window.grabWindow(); });
        }
    }

    // What a handler of an event does is one gap.
    template <typename Work> void time(Work work)
    {
        m_longest = std::max(m_longest, cpuTime(work));
    }

    [[nodiscard]] std::chrono::duration<double> longest() const { return m_longest; }

private:
    std::chrono::duration<double> m_longest{};
};

} // namespace velarc
