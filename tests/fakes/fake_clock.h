#pragma once

#include "base/clock.h"

#include <memory>

namespace velarc {

// A clock that a test moves by hand. Pauses end only by advance() or by a stop.
class FakeClock final : public Clock
{
public:
    // Starts at 2026-02-20T15:00:00Z.
    FakeClock();
    ~FakeClock() override; // ends every pause that still waits, as a stop does

    [[nodiscard]] Instant now() const override;
    [[nodiscard]] QCoro::Task<void> pause(
        std::chrono::milliseconds duration, std::stop_token stop) override;

    // Moves on, ending the pauses that become due in the order of their instants. Whoever waited
    // for one runs inside this call, and its next pause counts from the instant it woke at.
    void advance(std::chrono::milliseconds duration);

    void setNow(Instant instant);

    // How many pauses wait, the stopped ones that have not resumed yet included.
    [[nodiscard]] std::size_t pausesWaiting() const;

private:
    struct Members;
    std::shared_ptr<Members> m_members;
};

// Lets everything that was posted to the event loop run, and what that posts in turn.
void turnEventLoop();

} // namespace velarc
