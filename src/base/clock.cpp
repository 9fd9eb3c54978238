#include "base/clock.h"

#include "base/async.h"

#include <QCoroTimer>
#include <QTimer>

namespace velarc {

namespace {

QCoro::Task<void> pauseOnEventLoop(std::chrono::milliseconds duration, std::stop_token stop)
{
    throwIfStopped(stop);
    QTimer timer;
    timer.setSingleShot(true);
    timer.start(duration);
    // Declared behind the timer, so it is gone before the timer is. The stop may come from any
    // thread and must not resume inside the request, so it only lets the timer run out.
    const std::stop_callback breakOff(stop, [&timer] {
        QMetaObject::invokeMethod(
            &timer, [&timer] { timer.start(0); }, Qt::QueuedConnection);
    });
    co_await timer;
    throwIfStopped(stop);
}

} // namespace

Instant SystemClock::now() const
{
    return std::chrono::system_clock::now();
}

QCoro::Task<void> SystemClock::pause(std::chrono::milliseconds duration, std::stop_token stop)
{
    return pauseOnEventLoop(duration, std::move(stop));
}

} // namespace velarc
