#include "intake/documents/sandbox.h"

#include <fcntl.h>
#include <fontconfig/fontconfig.h>
#include <linux/audit.h>
#include <linux/filter.h>
#include <linux/seccomp.h>
#include <sys/prctl.h>
#include <sys/resource.h>
#include <sys/syscall.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstddef>
#include <cstdint>

namespace velarc {

namespace {

constexpr rlim_t kAddressSpaceBytes = rlim_t{1} << 30;

void lower(__rlimit_resource resource, rlim_t soft, rlim_t hard)
{
    rlimit limit = {};
    if (getrlimit(resource, &limit) != 0) {
        return;
    }
    limit.rlim_max = std::min(limit.rlim_max, hard);
    limit.rlim_cur = std::min({limit.rlim_cur, soft, limit.rlim_max});
    setrlimit(resource, &limit);
}

// Landlock by its raw calls and numbers: the C library has no wrappers, and the kernel's headers of
// the build may be older than the kernel that runs.
namespace landlock {

struct Ruleset
{
    std::uint64_t files = 0;
    std::uint64_t net = 0; // since version 4
    std::uint64_t scoped = 0; // since version 6
};

struct __attribute__((packed)) PathRule
{
    std::uint64_t allowed = 0;
    std::int32_t parent = -1;
};

constexpr long kCreateRuleset = 444;
constexpr long kAddRule = 445;
constexpr long kRestrictSelf = 446;
constexpr std::uint32_t kAskVersion = 1;
constexpr int kPathBeneath = 1;

constexpr std::uint64_t kReadFile = 1 << 2;
constexpr std::uint64_t kReadFolder = 1 << 3;
constexpr std::uint64_t kFilesOfVersion1 = (1 << 13) - 1;
constexpr std::uint64_t kTcpBindAndConnect = 3;
constexpr std::uint64_t kSocketsAndSignals = 3;

// Versions 2, 3 and 5 each brought one more kind of access to files.
Ruleset rulesetOf(long version)
{
    Ruleset rules;
    rules.files = kFilesOfVersion1;
    rules.files |= version >= 2 ? 1 << 13 : 0;
    rules.files |= version >= 3 ? 1 << 14 : 0;
    rules.files |= version >= 5 ? 1 << 15 : 0;
    rules.net = version >= 4 ? kTcpBindAndConnect : 0;
    rules.scoped = version >= 6 ? kSocketsAndSignals : 0;
    return rules;
}

// An older kernel refuses a structure that is longer than the one it knows.
std::size_t sizeFor(long version)
{
    if (version >= 6) {
        return sizeof(Ruleset);
    }
    return version >= 4 ? offsetof(Ruleset, scoped) : offsetof(Ruleset, net);
}

void allowReading(int ruleset, const std::string &path)
{
    PathRule rule;
    rule.allowed = kReadFile | kReadFolder;
    rule.parent = open(path.c_str(), O_PATH | O_CLOEXEC);
    if (rule.parent >= 0) {
        syscall(kAddRule, ruleset, kPathBeneath, &rule, 0);
        close(rule.parent);
    }
}

void restrict(const std::vector<std::string> &readable)
{
    const long version = syscall(kCreateRuleset, nullptr, 0, kAskVersion);
    if (version < 1) {
        return;
    }
    const Ruleset rules = rulesetOf(version);
    const int ruleset = static_cast<int>(syscall(kCreateRuleset, &rules, sizeFor(version), 0));
    if (ruleset < 0) {
        return;
    }
    for (const std::string &path : readable) {
        allowReading(ruleset, path);
    }
    syscall(kRestrictSelf, ruleset, 0);
    close(ruleset);
}

} // namespace landlock

#if defined(__x86_64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_X86_64;
#elif defined(__aarch64__)
constexpr std::uint32_t kArchitecture = AUDIT_ARCH_AARCH64;
#else
constexpr std::uint32_t kArchitecture = 0;
#endif

// Sockets of every family and the starting of programs, which Landlock alone does not rule out.
void refuseSocketsAndPrograms()
{
    if (kArchitecture == 0) {
        return;
    }
    constexpr std::uint32_t kNumber = offsetof(seccomp_data, nr);
    constexpr std::uint32_t kArch = offsetof(seccomp_data, arch);
    constexpr std::uint32_t kRefuse = SECCOMP_RET_ERRNO | EACCES;
    std::array filter{
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kArch),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, kArchitecture, 0, 6),
        sock_filter BPF_STMT(BPF_LD | BPF_W | BPF_ABS, kNumber),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_socket, 4, 0),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_execve, 3, 0),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_execveat, 2, 0),
        sock_filter BPF_JUMP(BPF_JMP | BPF_JEQ | BPF_K, SYS_io_uring_setup, 1, 0),
        sock_filter BPF_STMT(BPF_RET | BPF_K, SECCOMP_RET_ALLOW),
        sock_filter BPF_STMT(BPF_RET | BPF_K, kRefuse),
    };
    sock_fprog program{static_cast<unsigned short>(filter.size()), filter.data()};
    prctl(PR_SET_SECCOMP, SECCOMP_MODE_FILTER, &program);
}

void append(std::vector<std::string> &folders, FcStrList *names)
{
    while (const FcChar8 *name = names != nullptr ? FcStrListNext(names) : nullptr) {
        folders.emplace_back(reinterpret_cast<const char *>(name));
    }
    if (names != nullptr) {
        FcStrListDone(names);
    }
}

} // namespace

void limitResources(std::chrono::seconds cpuTime)
{
    const auto seconds = static_cast<rlim_t>(cpuTime.count());
    // Behind the soft limit comes a signal that a library could catch, behind the hard one none.
    lower(RLIMIT_CPU, seconds, seconds + 1);
    lower(RLIMIT_CORE, 0, 0);
#ifndef __SANITIZE_ADDRESS__ // it reserves terabytes
    lower(RLIMIT_AS, kAddressSpaceBytes, kAddressSpaceBytes);
#endif
}

void closeOff(const std::vector<std::string> &readable)
{
    prctl(PR_SET_NO_NEW_PRIVS, 1, 0, 0, 0);
    landlock::restrict(readable);
    refuseSocketsAndPrograms();
}

std::vector<std::string> systemFolders()
{
    return {"/usr", "/etc/fonts"};
}

std::vector<std::string> systemAndFontFolders()
{
    std::vector<std::string> folders = systemFolders();
    FcConfig *config = FcConfigGetCurrent(); // reads the configuration, which may lie elsewhere
    append(folders, FcConfigGetFontDirs(config));
    append(folders, FcConfigGetCacheDirs(config));
    return folders;
}

} // namespace velarc
