#include "base/errors.h"
#include "intake/file_reading.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <array>
#include <csignal>
#include <thread>

namespace velarc {
namespace {

// Stands for a file whose length is told once and whose end comes later.
class Pipe
{
public:
    Pipe() { EXPECT_EQ(::pipe2(m_ends.data(), O_CLOEXEC), 0); }
    ~Pipe()
    {
        closeReading();
        closeWriting();
    }
    Pipe(const Pipe &) = delete;
    Pipe &operator=(const Pipe &) = delete;

    [[nodiscard]] int reading() const { return m_ends[0]; }
    [[nodiscard]] int writing() const { return m_ends[1]; }
    void closeReading() { close(m_ends[0]); }
    void closeWriting() { close(m_ends[1]); }

private:
    std::array<int, 2> m_ends{-1, -1};

    static void close(int &end)
    {
        if (end >= 0) {
            ::close(end);
            end = -1;
        }
    }
};

std::optional<QByteArray> readAfterwards(const QByteArray &content, qint64 expected, qint64 growth)
{
    Pipe pipe;
    EXPECT_EQ(::write(pipe.writing(), content.constData(), static_cast<size_t>(content.size())),
        content.size());
    pipe.closeWriting();
    return readToEnd(pipe.reading(), expected, growth, {});
}

TEST(FileReading, fileOfTheToldLengthIsReadWhole)
{
    EXPECT_EQ(readAfterwards("told", 4, 0), "told");
    EXPECT_EQ(readAfterwards("", 0, 0), "");
}

TEST(FileReading, fileThatShrankMeanwhileGivesWhatIsThere)
{
    EXPECT_EQ(readAfterwards("half", 8, 0), "half");
}

TEST(FileReading, fileThatGrewMeanwhileIsReadToItsNewEnd)
{
    EXPECT_EQ(readAfterwards("told and more", 4, 9), "told and more");
    EXPECT_EQ(readAfterwards("told and more", 0, 13), "told and more");
}

TEST(FileReading, fileThatOutgrowsTheBoundIsRefused)
{
    EXPECT_FALSE(readAfterwards("told and more", 4, 8));
}

TEST(FileReading, fileThatNeverEndsIsRefusedOnceItOutgrowsTheBound)
{
    std::signal(SIGPIPE, SIG_IGN);
    Pipe pipe;
    std::thread writer([&pipe] {
        const std::array<char, 65536> zeros{};
        while (::write(pipe.writing(), zeros.data(), zeros.size()) > 0) {}
    });
    EXPECT_FALSE(readToEnd(pipe.reading(), 10, 20'000'000, {}));
    pipe.closeReading();
    writer.join();
}

TEST(FileReading, largeFileIsReadInPiecesWithoutLoss)
{
    std::signal(SIGPIPE, SIG_IGN);
    QByteArray content(11'000'000, Qt::Uninitialized);
    for (qsizetype at = 0; at < content.size(); ++at) {
        content[at] = static_cast<char>(at % 251);
    }
    Pipe pipe;
    std::thread writer([&] {
        for (qsizetype at = 0; at < content.size();) {
            const ssize_t written = ::write(
                pipe.writing(), content.constData() + at, static_cast<size_t>(content.size() - at));
            if (written <= 0) {
                break;
            }
            at += written;
        }
        pipe.closeWriting();
    });
    const auto read = readToEnd(pipe.reading(), 3, 20'000'000, {});
    writer.join();
    EXPECT_TRUE(read == content);
}

TEST(FileReading, stopEndsTheReading)
{
    Pipe pipe;
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW((void)readToEnd(pipe.reading(), 10, 10, stop.get_token()), CancellationError);
}

TEST(FileReading, fileWhoseLengthIsNotToldIsReadToItsEnd)
{
    // The kernel tells 0 for it.
    const auto version = readRegularFile("/proc/version", {});
    ASSERT_TRUE(version);
    EXPECT_TRUE(version->startsWith("Linux"));
}

} // namespace
} // namespace velarc
