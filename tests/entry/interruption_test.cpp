#include "base/errors.h"
#include "entry/interruption.h"
#include "support/wait_until.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <thread>

namespace velarc {
namespace {

struct Pipe
{
    std::array<int, 2> ends{-1, -1};

    Pipe() { EXPECT_EQ(::pipe(ends.data()), 0); }
    ~Pipe()
    {
        ::close(ends[0]);
        closeWriter();
    }
    void closeWriter()
    {
        if (ends[1] >= 0) {
            ::close(std::exchange(ends[1], -1));
        }
    }
};

TEST(Interruption, signalStopsTheTokenFromTheEventLoop)
{
    Interruption interruption;
    ASSERT_EQ(::raise(SIGINT), 0);
    EXPECT_FALSE(interruption.token().stop_requested());
    EXPECT_TRUE(waitUntil([&] { return interruption.token().stop_requested(); }));
    EXPECT_EQ(interruption.signal(), SIGINT);
}

TEST(Interruption, requestToEndIsAnInterruptionToo)
{
    Interruption interruption;
    ASSERT_EQ(::raise(SIGTERM), 0);
    EXPECT_EQ(interruption.signal(), SIGTERM);
}

TEST(Interruption, secondSignalEndsTheProcess)
{
    EXPECT_EXIT(
        {
            Interruption interruption;
            ::raise(SIGINT);
            ::raise(SIGINT);
            ::_exit(0);
        },
        ::testing::KilledBySignal(SIGINT), "");
}

TEST(Interruption, signalThatTheParentIgnoredStaysIgnored)
{
    const auto before = std::signal(SIGHUP, SIG_IGN);
    {
        Interruption interruption;
        ASSERT_EQ(::raise(SIGHUP), 0);
        EXPECT_EQ(interruption.signal(), std::nullopt);
    }
    EXPECT_EQ(std::signal(SIGHUP, before), SIG_IGN);
}

TEST(Interruption, signalsEndTheProcessAgainAfterwards)
{
    {
        const Interruption interruption;
    }
    EXPECT_EXIT(::raise(SIGINT), ::testing::KilledBySignal(SIGINT), "");
}

TEST(Interruption, inputIsReadToItsEnd)
{
    Interruption interruption;
    Pipe pipe;
    const QByteArray text(1'000'000, 'x'); // more than a pipe holds
    std::thread writer([&] {
        EXPECT_EQ(::write(pipe.ends[1], text.constData(), static_cast<std::size_t>(text.size())),
            text.size());
        pipe.closeWriter();
    });
    EXPECT_EQ(interruption.readToEnd(pipe.ends[0]), text);
    writer.join();
}

TEST(Interruption, signalBreaksOffTheReadingOfInputThatDoesNotEnd)
{
    Interruption interruption;
    Pipe pipe;
    ASSERT_EQ(::write(pipe.ends[1], "half", 4), 4);
    ASSERT_EQ(::raise(SIGINT), 0);
    EXPECT_THROW(static_cast<void>(interruption.readToEnd(pipe.ends[0])), CancellationError);
    EXPECT_EQ(interruption.signal(), SIGINT);
}

TEST(Interruption, inputThatCannotBeReadIsEmpty)
{
    Interruption interruption;
    const int folder = ::open("/", O_RDONLY);
    EXPECT_EQ(interruption.readToEnd(folder), QByteArray());
    ::close(folder);
}

} // namespace
} // namespace velarc
