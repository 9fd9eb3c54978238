// What a document could do to the helper that reads it, were the helper its own.

#include "intake/documents/sandbox.h"
#include "support/wait_until.h"

#include <QFile>
#include <QProcess>
#include <QTemporaryDir>
#include <QTimer>

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cerrno>
#include <optional>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

constexpr long kLandlockCreateRuleset = 444;
constexpr int kAskVersion = 1;

bool kernelHasLandlock()
{
    return ::syscall(kLandlockCreateRuleset, nullptr, 0, kAskVersion) >= 1;
}

// The error of `deed` (0 for none) in a process of its own that has closed itself off.
template <typename Deed> int errorBehindTheFence(const std::string &readable, Deed deed)
{
    const std::vector<std::string> folders{"/usr", readable};
    const pid_t child = ::fork();
    if (child == 0) {
        closeOff(folders);
        ::_exit(deed() < 0 ? errno : 0);
    }
    int status = 0;
    EXPECT_EQ(::waitpid(child, &status, 0), child);
    EXPECT_TRUE(WIFEXITED(status));
    return WEXITSTATUS(status);
}

class Fence : public ::testing::Test
{
protected:
    QTemporaryDir inside;
    QTemporaryDir outside;
    std::string readable = QFile::encodeName(inside.path()).toStdString();
    std::string within = made(inside);
    std::string without = made(outside);

    static std::string made(const QTemporaryDir &folder)
    {
        QFile file(folder.filePath(u"file"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write("content");
        return QFile::encodeName(file.fileName()).toStdString();
    }

    template <typename Deed> int errorOf(Deed deed) const
    {
        return errorBehindTheFence(readable, deed);
    }
};

class FenceAroundFiles : public Fence
{
protected:
    void SetUp() override
    {
        if (!kernelHasLandlock()) {
            GTEST_SKIP() << "this kernel has no Landlock: files are not fenced off";
        }
    }
};

TEST_F(FenceAroundFiles, fileOutsideCannotBeReadAndOneInsideCan)
{
    EXPECT_EQ(errorOf([&] { return ::open(within.c_str(), O_RDONLY); }), 0);
    EXPECT_EQ(errorOf([&] { return ::open(without.c_str(), O_RDONLY); }), EACCES);
    EXPECT_EQ(errorOf([&] { return ::open("/etc/passwd", O_RDONLY); }), EACCES);
    EXPECT_EQ(errorOf([&] { return ::open("/proc/self/environ", O_RDONLY); }), EACCES);
}

TEST_F(FenceAroundFiles, linkInsideLeadsToNoFileOutside)
{
    const std::string link = readable + "/link";
    ASSERT_EQ(::symlink(without.c_str(), link.c_str()), 0);
    EXPECT_EQ(errorOf([&] { return ::open(link.c_str(), O_RDONLY); }), EACCES);
}

TEST_F(FenceAroundFiles, nothingCanBeWrittenMadeOrRemovedAnywhere)
{
    for (const std::string &file : {within, without}) {
        EXPECT_EQ(errorOf([&] { return ::open(file.c_str(), O_WRONLY); }), EACCES);
        EXPECT_EQ(errorOf([&] { return ::open(file.c_str(), O_RDWR); }), EACCES);
        EXPECT_EQ(errorOf([&] { return ::unlink(file.c_str()); }), EACCES);
        const std::string fresh = file + ".new";
        EXPECT_EQ(errorOf([&] { return ::open(fresh.c_str(), O_WRONLY | O_CREAT, 0600); }), EACCES);
        EXPECT_EQ(errorOf([&] { return ::mkdir(fresh.c_str(), 0700); }), EACCES);
        EXPECT_EQ(errorOf([&] { return ::symlink("/", fresh.c_str()); }), EACCES);
        EXPECT_EQ(errorOf([&] { return ::mkfifo(fresh.c_str(), 0600); }), EACCES);
    }
}

TEST_F(Fence, noSocketOfAnyKindCanBeHad)
{
    for (const int family : {AF_INET, AF_INET6, AF_UNIX, AF_NETLINK}) {
        for (const int type : {SOCK_STREAM, SOCK_DGRAM}) {
            EXPECT_EQ(errorOf([&] { return ::socket(family, type, 0); }), EACCES);
        }
    }
}

TEST_F(Fence, noProgramCanBeStarted)
{
    const auto start = [] {
        const char *const arguments[]{"/bin/true", nullptr};
        return ::execv(arguments[0], const_cast<char *const *>(arguments));
    };
    EXPECT_EQ(errorOf(start), EACCES);
}

QString contentOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? QString::fromUtf8(file.readAll()) : QString();
}

class HelperAtWork : public ::testing::TestWithParam<const char *>
{
protected:
    QProcess helper;

    // Waits until the helper waits for its document, which it does behind its fence.
    [[nodiscard]] QString about(const QString &what, const QString &telling)
    {
        if (helper.state() == QProcess::NotRunning) {
            helper.start(
                QStringLiteral(VELARC_DOCUMENTS), QString::fromLatin1(GetParam()).split(u' '));
            EXPECT_TRUE(helper.waitForStarted());
        }
        const QString path = u"/proc/%1/%2"_s.arg(helper.processId()).arg(what);
        QTimer looks; // nothing tells when another process changes
        looks.start(std::chrono::milliseconds(2));
        EXPECT_TRUE(waitUntil([&] { return contentOf(path).contains(telling); }));
        return contentOf(path);
    }

    void TearDown() override
    {
        helper.closeWriteChannel();
        EXPECT_TRUE(helper.waitForFinished());
    }
};

INSTANTIATE_TEST_SUITE_P(Sandbox, HelperAtWork,
    ::testing::Values("pdf-text", "svg-png --width 8 --height 8", "text-pdf --title T"),
    [](const auto &conversion) {
        const std::string words = conversion.param;
        return words.substr(0, 3);
    });

TEST_P(HelperAtWork, readsItsDocumentBehindTheFence)
{
    const QString status = about(u"status"_s, u"Seccomp:\t2"_s);
    EXPECT_TRUE(status.contains(u"NoNewPrivs:\t1"_s));
}

TEST_P(HelperAtWork, limitsItsTimeItsMemoryAndItsRemains)
{
    static_cast<void>(about(u"status"_s, u"Seccomp:\t2"_s));
    const QString limits = about(u"limits"_s, u"Max cpu time"_s).simplified();
    const QString time = QByteArray(GetParam()).startsWith("svg") ? u"30 31"_s : u"120 121"_s;
    EXPECT_TRUE(limits.contains(u"Max cpu time "_s + time)) << limits.toStdString();
    EXPECT_TRUE(limits.contains(u"Max core file size 0 0"_s));
#ifndef __SANITIZE_ADDRESS__
    EXPECT_TRUE(limits.contains(u"Max address space 1073741824 1073741824"_s));
#endif
}

} // namespace
} // namespace velarc
