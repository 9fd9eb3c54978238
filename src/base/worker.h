#pragma once

// Work off the main thread, awaited.

#include "base/async.h"

#include <QCoroTask>

#include <exception>
#include <functional>
#include <memory>
#include <optional>
#include <type_traits>

class QThreadPool;

namespace velarc {

// Has `task` run on the main thread's event loop. Any thread; without an application it is dropped.
void postToMainThread(std::function<void()> task);

// One thread for one service: runs what it is given one after the other, in order.
//
// Main thread only; the work runs on the worker's thread. The thread is there only while there is
// work.
class SerialWorker
{
public:
    SerialWorker();
    ~SerialWorker(); // lets the running call end, drops the waiting ones
    SerialWorker(const SerialWorker &) = delete;
    SerialWorker &operator=(const SerialWorker &) = delete;

    // Runs `work(stop)` and gives what it returns, or throws what it throws.
    //
    // Stop:     ends the wait with CancellationError at once, from the event loop; work that has
    //           not begun never begins, work that runs goes on unless it asks the token.
    // Lifetime: the work owns what it uses; it may outlive the caller. It holds nothing that must
    //           end on the main thread.
    template <typename Work>
    [[nodiscard]] QCoro::Task<std::invoke_result_t<Work, std::stop_token>> run(
        Work work, std::stop_token stop);

private:
    std::unique_ptr<QThreadPool> m_pool;

    void enqueue(std::function<void()> job);
};

namespace detail {

template <typename Result> struct Offloaded
{
    Wakeup wakeup;
    std::optional<Result> result;
    std::exception_ptr failure;
};

template <typename Result>
QCoro::Task<Result> outcomeOf(std::shared_ptr<Offloaded<Result>> offloaded, std::stop_token stop)
{
    throwIfStopped(stop);
    {
        const std::stop_callback breakOff(
            stop, [offloaded] { postToMainThread([offloaded] { offloaded->wakeup.fire(); }); });
        co_await offloaded->wakeup;
    }
    throwIfStopped(stop);
    if (offloaded->failure) {
        std::rethrow_exception(offloaded->failure);
    }
    co_return std::move(*offloaded->result);
}

} // namespace detail

template <typename Work>
QCoro::Task<std::invoke_result_t<Work, std::stop_token>> SerialWorker::run(
    Work work, std::stop_token stop)
{
    using Result = std::invoke_result_t<Work, std::stop_token>;
    const auto offloaded = std::make_shared<detail::Offloaded<Result>>();
    // std::function asks for copies, work need not be copyable.
    const auto owned = std::make_shared<Work>(std::move(work));
    enqueue([offloaded, owned, stop] {
        if (stop.stop_requested()) {
            return;
        }
        try {
            offloaded->result.emplace((*owned)(stop));
        } catch (...) {
            offloaded->failure = std::current_exception();
        }
        postToMainThread([offloaded] { offloaded->wakeup.fire(); });
    });
    return detail::outcomeOf<Result>(offloaded, std::move(stop));
}

} // namespace velarc
