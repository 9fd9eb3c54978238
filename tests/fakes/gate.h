#pragma once

#include <QCoroTask>

#include <cstddef>
#include <exception>
#include <memory>
#include <stop_token>

namespace velarc {

// A place where coroutines wait until a test lets them on, so that a test steers how long anything
// takes and how it ends.
class Gate
{
public:
    enum class OnStop
    {
        EndsWait,
        Ignored
    };

    Gate();
    ~Gate(); // lets everybody on with CancellationError

    // Ends at once while the gate is open, else when the test says so. A stop ends the wait with
    // CancellationError from the event loop, unless the gate was told to ignore stops.
    [[nodiscard]] QCoro::Task<void> pass(std::stop_token stop);

    void close();
    void open(); // lets everybody on, and everybody who comes later
    void ignoreStops();

    // Lets the one on who has waited longest; with a failure, its wait throws it. False if nobody
    // waits.
    bool letOneOn(std::exception_ptr failure = nullptr);

    [[nodiscard]] std::size_t waiting() const;

    struct Members;

private:
    std::shared_ptr<Members> m_members;
};

} // namespace velarc
