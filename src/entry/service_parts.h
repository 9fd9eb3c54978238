#pragma once

// What the objects of `velarc-cli serve` stand on.
//
// Main thread only.

#include "entry/bus_client.h"
#include "entry/copying.h"
#include "entry/intent.h"

#include <chrono>
#include <functional>

namespace velarc {

struct ServiceParts
{
    std::function<std::shared_ptr<const LocalStore>()> openStore;
    MakeViewModel makeViewModel;
    FinishCopying finishCopying;
    std::shared_ptr<Clock> clock;
    std::shared_ptr<TaskScope> scope; // every call that takes its time enters it

    // Brings the window to the front, on an action if one is named. Does not wait for it.
    std::function<void(std::optional<QUuid>, ActivationContext)> openWindow;
};

// Knows for how long nobody has asked for anything. The clock must outlive it.
class Activity
{
public:
    // Work that goes on: there is no idleness before all of it has gone. It may outlive this
    // object.
    using Hold = std::shared_ptr<void>;

    explicit Activity(const Clock &clock) : m_clock(clock) { note(); }

    // Somebody asked.
    void note();
    [[nodiscard]] Hold hold();

    // What is left of `patience` before it has been idle for so long; nothing once it has.
    [[nodiscard]] std::chrono::milliseconds left(std::chrono::milliseconds patience) const;

    [[nodiscard]] int calls() const { return m_state->calls; }

private:
    struct State
    {
        Instant latest;
        int calls = 0;
        int held = 0;
    };

    const Clock &m_clock;
    std::shared_ptr<State> m_state = std::make_shared<State>();
};

// The text as it can stand in a message: there it would end at its first zero.
[[nodiscard]] QString busText(QString text);

} // namespace velarc
