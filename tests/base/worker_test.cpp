#include "base/errors.h"
#include "base/worker.h"
#include "support/wait_until.h"

#include <QThread>

#include <gtest/gtest.h>

#include <atomic>
#include <condition_variable>
#include <mutex>

namespace velarc {
namespace {

using namespace std::chrono_literals;

struct Ended
{
    std::optional<int> value;
    std::exception_ptr failure;
    [[nodiscard]] bool isOver() const { return value || failure; }
};

QCoro::Task<void> keep(QCoro::Task<int> task, std::shared_ptr<Ended> ended)
{
    try {
        ended->value = co_await task;
    } catch (...) {
        ended->failure = std::current_exception();
    }
}

std::shared_ptr<Ended> begin(QCoro::Task<int> task)
{
    const auto ended = std::make_shared<Ended>();
    static_cast<void>(keep(std::move(task), ended));
    return ended;
}

// Holds a thread until the test lets it on.
class Latch
{
public:
    void wait()
    {
        std::unique_lock lock(m_mutex);
        m_opened.wait(lock, [this] { return m_isOpen; });
    }
    void open()
    {
        const std::lock_guard lock(m_mutex);
        m_isOpen = true;
        m_opened.notify_all();
    }

private:
    std::mutex m_mutex;
    std::condition_variable m_opened;
    bool m_isOpen = false;
};

TEST(SerialWorker, worksOnAnotherThreadAndAnswersOnTheMainOne)
{
    SerialWorker worker;
    std::atomic<QThread *> thread = nullptr;
    const auto ended = begin(worker.run(
        [&thread](const std::stop_token &) {
            thread = QThread::currentThread();
            return 42;
        },
        {}));
    EXPECT_FALSE(ended->isOver());
    ASSERT_TRUE(waitUntil([&] { return ended->isOver(); }));
    EXPECT_EQ(ended->value, 42);
    EXPECT_NE(thread.load(), QThread::currentThread());
}

TEST(SerialWorker, givesOnWhatTheWorkThrows)
{
    SerialWorker worker;
    const auto ended = begin(worker.run(
        [](const std::stop_token &) -> int { throw UserFacingError(QStringLiteral("no")); }, {}));
    ASSERT_TRUE(waitUntil([&] { return ended->isOver(); }));
    EXPECT_THROW(std::rethrow_exception(ended->failure), UserFacingError);
}

TEST(SerialWorker, doesOneThingAfterTheOther)
{
    SerialWorker worker;
    std::atomic<int> atOnce = 0;
    std::atomic<int> most = 0;
    QList<std::shared_ptr<Ended>> all;
    for (int number = 0; number < 20; ++number) {
        all.append(begin(worker.run(
            [&atOnce, &most, number](const std::stop_token &) {
                most = std::max(most.load(), ++atOnce);
                --atOnce;
                return number;
            },
            {})));
    }
    ASSERT_TRUE(waitUntil([&] { return all.last()->isOver(); }));
    EXPECT_EQ(most.load(), 1);
    for (int number = 0; number < all.size(); ++number) {
        EXPECT_EQ(all.at(number)->value, number);
    }
}

TEST(SerialWorker, stopEndsTheWaitFromTheEventLoopWhileTheWorkGoesOn)
{
    SerialWorker worker;
    const auto latch = std::make_shared<Latch>();
    std::stop_source stop;
    const auto ended = begin(worker.run(
        [latch](const std::stop_token &) {
            latch->wait();
            return 1;
        },
        stop.get_token()));
    stop.request_stop();
    EXPECT_FALSE(ended->isOver()) << "nothing resumes inside the request";
    ASSERT_TRUE(waitUntil([&] { return ended->isOver(); }));
    EXPECT_THROW(std::rethrow_exception(ended->failure), CancellationError);
    latch->open();
}

TEST(SerialWorker, workThatIsStoppedBeforeItBeginsNeverBegins)
{
    SerialWorker worker;
    const auto latch = std::make_shared<Latch>();
    const auto first = begin(worker.run(
        [latch](const std::stop_token &) {
            latch->wait();
            return 1;
        },
        {}));
    std::atomic<bool> hasBegun = false;
    std::stop_source stop;
    const auto second = begin(worker.run(
        [&hasBegun](const std::stop_token &) {
            hasBegun = true;
            return 2;
        },
        stop.get_token()));
    stop.request_stop();
    latch->open();
    ASSERT_TRUE(waitUntil([&] { return first->isOver() && second->isOver(); }));
    const auto third = begin(worker.run([](const std::stop_token &) { return 3; }, {}));
    ASSERT_TRUE(waitUntil([&] { return third->isOver(); }));
    EXPECT_FALSE(hasBegun.load());
}

} // namespace
} // namespace velarc
