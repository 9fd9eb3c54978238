#include "base/async.h"
#include "base/clock.h"
#include "base/errors.h"
#include "fakes/fake_clock.h"

#include <QCoroTask>
#include <QTimer>

#include <gtest/gtest.h>

#include <memory>
#include <optional>

namespace velarc {

namespace {

using namespace std::chrono_literals;

// Only a broken scope takes this long.
constexpr auto kLongEnough = 10s;

QCoro::Task<void> countWhenFired(std::shared_ptr<Wakeup> wakeup, int *count)
{
    co_await *wakeup;
    ++*count;
}

// A task of a scope that ends in the event loop once it is stopped.
QCoro::Task<void> runUntilStopped(TaskScope *scope, Clock *clock)
{
    std::stop_source source;
    const TaskScope::Ticket ticket = scope->enter(source);
    try {
        co_await clock->pause(24h, source.get_token());
    } catch (const CancellationError &) {
        // What it was waiting for.
    }
}

// A task that goes on when it is stopped, until it is woken.
QCoro::Task<void> runUntilWoken(TaskScope *scope, std::shared_ptr<Wakeup> wakeup)
{
    const TaskScope::Ticket ticket = scope->enter(std::stop_source());
    co_await *wakeup;
}

} // namespace

TEST(ThrowIfStopped, throwsForAStopOnly)
{
    std::stop_source source;
    EXPECT_NO_THROW(throwIfStopped({}));
    EXPECT_NO_THROW(throwIfStopped(source.get_token()));
    source.request_stop();
    EXPECT_THROW(throwIfStopped(source.get_token()), CancellationError);
}

TEST(Wakeup, resumesWhoeverWaitsBeforeFireReturns)
{
    const auto wakeup = std::make_shared<Wakeup>();
    int count = 0;
    countWhenFired(wakeup, &count);
    EXPECT_EQ(count, 0);
    wakeup->fire();
    EXPECT_EQ(count, 1);
}

TEST(Wakeup, secondFireDoesNothing)
{
    const auto wakeup = std::make_shared<Wakeup>();
    int count = 0;
    countWhenFired(wakeup, &count);
    wakeup->fire();
    wakeup->fire();
    EXPECT_EQ(count, 1);
}

TEST(Wakeup, thatFiredAlreadyIsNotWaitedFor)
{
    const auto wakeup = std::make_shared<Wakeup>();
    wakeup->fire();
    int count = 0;
    countWhenFired(wakeup, &count);
    EXPECT_EQ(count, 1);
}

TEST(Wakeup, mayBeDestroyedByWhomItWakes)
{
    auto wakeup = std::make_shared<Wakeup>();
    Wakeup *plain = wakeup.get();
    int count = 0;
    countWhenFired(std::move(wakeup), &count);
    plain->fire();
    EXPECT_EQ(count, 1);
}

TEST(TaskScope, withoutTasksIsFinishedAtOnce)
{
    TaskScope scope;
    EXPECT_EQ(scope.running(), 0U);
    EXPECT_TRUE(scope.finish(0ms));
}

TEST(TaskScope, countsTheTicketsThatAreOut)
{
    TaskScope scope;
    std::optional<TaskScope::Ticket> first = scope.enter(std::stop_source());
    std::optional<TaskScope::Ticket> second = scope.enter(std::stop_source());
    EXPECT_EQ(scope.running(), 2U);
    const TaskScope::Ticket moved = *std::move(first);
    first.reset();
    EXPECT_EQ(scope.running(), 2U);
    second.reset();
    EXPECT_EQ(scope.running(), 1U);
}

TEST(TaskScope, finishStopsEveryTaskAndWaitsForAll)
{
    TaskScope scope;
    FakeClock clock;
    runUntilStopped(&scope, &clock);
    runUntilStopped(&scope, &clock);
    runUntilStopped(&scope, &clock);
    ASSERT_EQ(scope.running(), 3U);
    EXPECT_TRUE(scope.finish(kLongEnough));
    EXPECT_EQ(scope.running(), 0U);
    EXPECT_EQ(clock.pausesWaiting(), 0U);
}

TEST(TaskScope, aTaskThatIgnoresItsStopLetsFinishReturnAtTheBound)
{
    TaskScope scope;
    FakeClock clock;
    const auto wakeup = std::make_shared<Wakeup>();
    runUntilWoken(&scope, wakeup);
    runUntilStopped(&scope, &clock);
    EXPECT_FALSE(scope.finish(1ms));
    EXPECT_EQ(scope.running(), 1U);
    wakeup->fire();
    EXPECT_TRUE(scope.finish(1ms));
}

TEST(TaskScope, finishWaitsForATaskThatTakesItsTime)
{
    TaskScope scope;
    const auto wakeup = std::make_shared<Wakeup>();
    runUntilWoken(&scope, wakeup);
    QTimer::singleShot(0, [wakeup] { wakeup->fire(); });
    EXPECT_TRUE(scope.finish(kLongEnough));
}

TEST(TaskScope, aTaskThatEntersWhileItFinishesIsStoppedToo)
{
    TaskScope scope;
    FakeClock clock;
    runUntilStopped(&scope, &clock);
    const auto wakeup = std::make_shared<Wakeup>();
    runUntilWoken(&scope, wakeup);
    QTimer::singleShot(0, [&scope, &clock, wakeup] {
        runUntilStopped(&scope, &clock);
        wakeup->fire();
    });
    EXPECT_TRUE(scope.finish(kLongEnough));
}

TEST(TaskScope, ticketsMayOutliveTheScope)
{
    auto scope = std::make_unique<TaskScope>();
    std::optional<TaskScope::Ticket> ticket = scope->enter(std::stop_source());
    const auto wakeup = std::make_shared<Wakeup>();
    runUntilWoken(scope.get(), wakeup);
    EXPECT_FALSE(scope->finish(1ms));
    scope.reset();
    ticket.reset();
    wakeup->fire();
}

} // namespace velarc
