#pragma once

// What coroutines share: the stop test, a one-shot wake-up, and the scope that ends a program.

#include <chrono>
#include <coroutine>
#include <cstddef>
#include <memory>
#include <stop_token>

namespace velarc {

// Throws CancellationError if a stop was requested.
void throwIfStopped(const std::stop_token &stop);

// A wait for something that happens once. At most one coroutine waits for it.
//
// Main thread only. fire() resumes the waiting coroutine before it returns, so it is never called
// inside request_stop(). A second fire() does nothing. It must outlive the wait.
class Wakeup
{
public:
    Wakeup() = default;
    Wakeup(const Wakeup &) = delete;
    Wakeup &operator=(const Wakeup &) = delete;

    void fire();

    struct Awaiter
    {
        Wakeup *wakeup;
        [[nodiscard]] bool await_ready() const noexcept { return wakeup->m_fired; }
        void await_suspend(std::coroutine_handle<> waiting) const noexcept
        {
            wakeup->m_waiting = waiting;
        }
        void await_resume() const noexcept {}
    };
    [[nodiscard]] Awaiter operator co_await() noexcept { return Awaiter{this}; }

private:
    std::coroutine_handle<> m_waiting;
    bool m_fired = false;
};

// All tasks of a program that nobody awaits, so that they can be ended before what they use.
//
// Main thread only. Each task enters with the source that stops it and keeps its ticket in its
// frame; the ticket may outlive the scope.
class TaskScope
{
public:
    class Ticket;

    TaskScope();
    ~TaskScope();
    TaskScope(const TaskScope &) = delete;
    TaskScope &operator=(const TaskScope &) = delete;

    [[nodiscard]] Ticket enter(std::stop_source stop);

    // How many tickets are out.
    [[nodiscard]] std::size_t running() const;

    // Stops every task, and those that enter meanwhile, then turns the event loop until none is
    // left or `bound` has passed. Returns whether none is left.
    bool finish(std::chrono::milliseconds bound = std::chrono::seconds(2));

private:
    struct Members;
    std::shared_ptr<Members> m_members;
};

// A task's membership of a scope; it leaves when the ticket goes.
class TaskScope::Ticket
{
public:
    Ticket(Ticket &&other) noexcept = default;
    Ticket &operator=(Ticket &&other) = delete;
    ~Ticket();

private:
    friend class TaskScope;
    Ticket(std::shared_ptr<Members> members, std::size_t number);

    std::shared_ptr<Members> m_members;
    std::size_t m_number = 0;
};

} // namespace velarc
