#pragma once

// What ends a call to another program before that answers.

#include "base/errors.h"

#include <QCoroTask>
#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <stop_token>

namespace velarc {

// Its token is stopped by the caller, by the end of the service, or when the bound has passed.
//
// Main thread only.
class CallEnd
{
public:
    CallEnd(const std::stop_token &stop, const std::stop_token &ending,
        std::chrono::milliseconds bound);
    CallEnd(const CallEnd &) = delete;
    CallEnd &operator=(const CallEnd &) = delete;

    [[nodiscard]] std::stop_token token() const { return m_source.get_token(); }
    [[nodiscard]] bool isByTheBound() const
    {
        return !m_stop.stop_requested() && !m_ending.stop_requested();
    }

private:
    std::stop_source m_source;
    std::stop_callback<std::function<void()>> m_onStop;
    std::stop_callback<std::function<void()>> m_onEnding;
    std::stop_token m_stop;
    std::stop_token m_ending;
    QTimer m_bound;
};

// What `running`, which heeds the token of `end`, gives or throws; `late` if the bound has ended
// it.
template <typename Result, typename Failure>
QCoro::Task<Result> outcomeWithin(
    std::unique_ptr<CallEnd> end, QCoro::Task<Result> running, Failure late)
{
    try {
        co_return co_await running;
    } catch (const CancellationError &) {
        if (!end->isByTheBound()) {
            throw;
        }
    }
    throw late;
}

} // namespace velarc
