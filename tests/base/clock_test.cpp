// The system's clock. Its pauses run on the real event loop; the long ones are always broken off.

#include "base/clock.h"
#include "base/errors.h"

#include <QEventLoop>
#include <QTimer>

#include <gtest/gtest.h>

#include <optional>
#include <thread>

namespace velarc {

namespace {

using namespace std::chrono_literals;

enum class Ending
{
    Completed,
    Cancelled
};

// A pause and how it ended, turning the event loop until then.
class WatchedPause
{
public:
    WatchedPause(std::chrono::milliseconds duration, std::stop_token stop)
    {
        watch(this, duration, std::move(stop));
    }

    [[nodiscard]] std::optional<Ending> ending() const { return m_ending; }
    [[nodiscard]] std::thread::id thread() const { return m_thread; }

    // None if the pause goes on for longer than any of these tests may take.
    std::optional<Ending> wait()
    {
        if (!m_ending) {
            QTimer::singleShot(10s, &m_loop, &QEventLoop::quit);
            m_loop.exec();
        }
        return m_ending;
    }

private:
    static QCoro::Task<void> watch(
        WatchedPause *self, std::chrono::milliseconds duration, std::stop_token stop)
    {
        Ending ending = Ending::Completed;
        try {
            // The clock is gone before the pause is over.
            QCoro::Task<void> pause = SystemClock().pause(duration, std::move(stop));
            co_await pause;
        } catch (const CancellationError &) {
            ending = Ending::Cancelled;
        }
        self->m_ending = ending;
        self->m_thread = std::this_thread::get_id();
        self->m_loop.quit();
    }

    std::optional<Ending> m_ending;
    std::thread::id m_thread;
    QEventLoop m_loop;
};

} // namespace

TEST(SystemClock, tellsTheTimeOfTheSystem)
{
    const Instant before = std::chrono::system_clock::now();
    const Instant told = SystemClock().now();
    EXPECT_LE(before, told);
    EXPECT_LE(told, std::chrono::system_clock::now());
}

TEST(SystemClock, pauseCompletesWhenItsTimeHasPassed)
{
    const auto start = std::chrono::steady_clock::now();
    WatchedPause pause(20ms, {});
    EXPECT_FALSE(pause.ending());
    EXPECT_EQ(pause.wait(), Ending::Completed);
    // The loop's timers may be a twentieth early.
    EXPECT_GE(std::chrono::steady_clock::now() - start, 18ms);
}

TEST(SystemClock, pauseOfNothingEndsInTheEventLoop)
{
    WatchedPause pause(0ms, {});
    EXPECT_FALSE(pause.ending());
    EXPECT_EQ(pause.wait(), Ending::Completed);
}

TEST(SystemClock, tokenThatWasStoppedBeforeEndsThePauseAtOnce)
{
    std::stop_source source;
    source.request_stop();
    const WatchedPause pause(24h, source.get_token());
    EXPECT_EQ(pause.ending(), Ending::Cancelled);
}

TEST(SystemClock, stopBreaksThePauseFromTheEventLoopAndNeverInsideTheRequest)
{
    std::stop_source source;
    WatchedPause pause(24h, source.get_token());
    source.request_stop();
    EXPECT_FALSE(pause.ending());
    EXPECT_EQ(pause.wait(), Ending::Cancelled);
}

TEST(SystemClock, stopFromTheEventLoopBreaksThePauseInALaterTurn)
{
    std::stop_source source;
    WatchedPause pause(24h, source.get_token());
    bool endedInside = true;
    QTimer::singleShot(0, [&] {
        source.request_stop();
        endedInside = pause.ending().has_value();
    });
    EXPECT_EQ(pause.wait(), Ending::Cancelled);
    EXPECT_FALSE(endedInside);
}

TEST(SystemClock, stopFromAnotherThreadBreaksThePauseOnItsOwn)
{
    std::stop_source source;
    WatchedPause pause(24h, source.get_token());
    std::thread other([&source] { source.request_stop(); });
    EXPECT_EQ(pause.wait(), Ending::Cancelled);
    other.join();
    EXPECT_EQ(pause.thread(), std::this_thread::get_id());
}

TEST(SystemClock, aStopThatMeetsTheEndOfThePauseIsSafe)
{
    for (int round = 0; round < 200; ++round) {
        std::stop_source source;
        WatchedPause pause(0ms, source.get_token());
        std::thread other([&source] { source.request_stop(); });
        pause.wait();
        other.join();
        EXPECT_TRUE(pause.ending());
    }
}

TEST(SystemClock, aStopBehindThePauseChangesNothing)
{
    std::stop_source source;
    WatchedPause pause(0ms, source.get_token());
    EXPECT_EQ(pause.wait(), Ending::Completed);
    source.request_stop();
    EXPECT_EQ(pause.ending(), Ending::Completed);
}

TEST(SystemClock, pausesRunBesideOneAnother)
{
    std::stop_source source;
    WatchedPause longOne(24h, source.get_token());
    WatchedPause shortOne(0ms, {});
    EXPECT_EQ(shortOne.wait(), Ending::Completed);
    EXPECT_FALSE(longOne.ending());
    source.request_stop();
    EXPECT_EQ(longOne.wait(), Ending::Cancelled);
}

} // namespace velarc
