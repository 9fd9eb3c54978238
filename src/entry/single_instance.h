#pragma once

// One window a session: the first start has it, the later ones hand over what they were started
// for.

#include "entry/bus_service.h"
#include "entry/local_instance.h"

#include <memory>

namespace velarc {

// Hands a start over to the window that runs, over the session bus or, without one, over the
// socket.
//
// Any thread, without an application object too: a second start need not load one.
[[nodiscard]] HandOver handOver(const StartRequest &request);

// What becomes of a start.
enum class Standing
{
    HasTheWindow,
    HandedOver,
    NotAnswered, // somebody has the window, but does not take it
};

// Main thread only, over an application object.
class SingleInstance
{
public:
    explicit SingleInstance(WindowHandlers handlers);
    ~SingleInstance();

    // Whether this process has the window from now on. Of several that ask at once one has.
    [[nodiscard]] bool claim();

    // Claims the window or hands the start over to the one that has it. One that has it but does
    // not listen is only starting, or just leaving: both are over in a moment, so both are tried
    // again, for `patience` at most.
    [[nodiscard]] Standing claimOrHandOver(
        const StartRequest &request, std::chrono::milliseconds patience);

    [[nodiscard]] WindowRequests &requests() { return m_requests; }

private:
    WindowRequests m_requests;
    std::unique_ptr<BusService> m_bus;
    std::unique_ptr<LocalInstance> m_local;
};

} // namespace velarc
