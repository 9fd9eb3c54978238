#pragma once

// Time as an interface: what is the moment, and a pause that a stop token breaks.

#include <QCoroTask>

#include <chrono>
#include <stop_token>

namespace velarc {

// A point in absolute time.
using Instant = std::chrono::system_clock::time_point;

// Main thread only.
class Clock
{
public:
    Clock() = default;
    virtual ~Clock() = default;
    Clock(const Clock &) = delete;
    Clock &operator=(const Clock &) = delete;

    [[nodiscard]] virtual Instant now() const = 0;

    // Completes when `duration` has passed.
    //
    // Stop:     a stopped token ends the pause with CancellationError; the caller resumes from the
    //           event loop, never inside request_stop(). A token stopped before the call ends it
    //           at once.
    // Lifetime: the clock need not outlive the pause.
    [[nodiscard]] virtual QCoro::Task<void> pause(
        std::chrono::milliseconds duration, std::stop_token stop) = 0;
};

// The system's wall clock and the event loop's timers.
class SystemClock final : public Clock
{
public:
    [[nodiscard]] Instant now() const override;
    [[nodiscard]] QCoro::Task<void> pause(
        std::chrono::milliseconds duration, std::stop_token stop) override;
};

} // namespace velarc
