#pragma once

// The end of an awaited operation, for tests that are no coroutines themselves.

#include <QCoreApplication>
#include <QCoroTask>
#include <QEventLoop>
#include <QTimer>

#include <chrono>
#include <exception>
#include <memory>
#include <optional>
#include <stdexcept>
#include <type_traits>
#include <variant>

namespace velarc {

// What a task came to, filled in by the event loop; the task may be watched while it goes on.
template <typename Result> struct Outcome
{
    using Value = std::conditional_t<std::is_void_v<Result>, std::monostate, Result>;

    std::optional<Value> value;
    std::exception_ptr failure;

    [[nodiscard]] bool isThere() const { return value.has_value() || failure != nullptr; }
};

namespace detail {

template <typename Result>
QCoro::Task<void> noteOutcome(QCoro::Task<Result> task, std::shared_ptr<Outcome<Result>> outcome)
{
    try {
        if constexpr (std::is_void_v<Result>) {
            co_await task;
            outcome->value.emplace();
        } else {
            outcome->value.emplace(co_await task);
        }
    } catch (...) {
        outcome->failure = std::current_exception();
    }
}

} // namespace detail

template <typename Result>
[[nodiscard]] std::shared_ptr<const Outcome<Result>> watch(QCoro::Task<Result> task)
{
    const auto outcome = std::make_shared<Outcome<Result>>();
    detail::noteOutcome(std::move(task), outcome);
    return outcome;
}

// Turns the event loop until the task has ended: gives its result, or throws what it throws.
// Throws std::runtime_error if it has not ended after 30 s.
template <typename Result> Result outcomeOf(std::shared_ptr<const Outcome<Result>> outcome)
{
    QTimer bound;
    bound.setSingleShot(true);
    bound.start(std::chrono::seconds(30));
    while (!outcome->isThere() && bound.isActive()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    if (outcome->failure) {
        std::rethrow_exception(outcome->failure);
    }
    if (!outcome->value) {
        throw std::runtime_error("the task did not end");
    }
    if constexpr (!std::is_void_v<Result>) {
        return *outcome->value;
    }
}

template <typename Result> Result outcomeOf(QCoro::Task<Result> task)
{
    return outcomeOf<Result>(watch(std::move(task)));
}

} // namespace velarc
