// Core files and the programs that would read another's memory.

#include "entry/process_hardening.h"

#include <gtest/gtest.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdlib>

namespace velarc {
namespace {

// How a child ends that crashes after `prepare`, with core files as large as they may get.
int statusOfCrashAfter(void (*prepare)())
{
    const pid_t child = fork();
    if (child == 0) {
        rlimit cores{};
        getrlimit(RLIMIT_CORE, &cores);
        cores.rlim_cur = cores.rlim_max;
        setrlimit(RLIMIT_CORE, &cores);
        prepare();
        std::signal(SIGABRT, SIG_DFL);
        std::abort();
    }
    int status = 0;
    waitpid(child, &status, 0);
    return status;
}

// What the process of a child says of itself.
bool holdsInChild(bool (*question)())
{
    const pid_t child = fork();
    if (child == 0) {
        keepMemoryPrivate();
        _exit(question() ? 0 : 1);
    }
    int status = 0;
    waitpid(child, &status, 0);
    return WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

TEST(ProcessHardening, crashLeavesNoCore)
{
    const int status = statusOfCrashAfter(&keepMemoryPrivate);
    ASSERT_TRUE(WIFSIGNALED(status));
    EXPECT_EQ(WTERMSIG(status), SIGABRT);
    EXPECT_FALSE(WCOREDUMP(status));
}

TEST(ProcessHardening, limitForCoreFilesIsZeroForProgramsThatAreStarted)
{
    EXPECT_TRUE(holdsInChild([] {
        rlimit cores{};
        return getrlimit(RLIMIT_CORE, &cores) == 0 && cores.rlim_cur == 0;
    }));
}

TEST(ProcessHardening, otherProgramsCannotReadTheMemory)
{
    EXPECT_TRUE(holdsInChild([] { return prctl(PR_GET_DUMPABLE, 0, 0, 0, 0) == 0; }));
}

} // namespace
} // namespace velarc
