#include "intake/child_process.h"

#include <QFile>

#include <fcntl.h>
#include <poll.h>
#include <spawn.h>
#include <sys/socket.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <vector>

namespace velarc {

namespace {

constexpr std::size_t kChunk = 64 * 1024;

// The child's complaint is one sentence; more of it is not kept.
constexpr qsizetype kComplaintLimit = 4096;

// A pair of connected sockets, ours first. A socket can be written to without a signal when the
// other side has gone, which a pipe cannot.
bool makePair(int (&ends)[2])
{
    return socketpair(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC, 0, ends) == 0
        && fcntl(ends[0], F_SETFL, O_NONBLOCK) == 0;
}

} // namespace

void ChildProcess::Descriptor::reset(int descriptor)
{
    close();
    m_descriptor = descriptor;
}

void ChildProcess::Descriptor::close()
{
    if (m_descriptor >= 0) {
        ::close(m_descriptor);
        m_descriptor = -1;
    }
}

ChildProcess::ChildProcess(const QString &program, const QStringList &arguments)
{
    int theirs[3]{-1, -1, -1};
    Descriptor *const ours[3]{&m_input, &m_outputEnd, &m_complaintEnd};
    bool isReady = true;
    for (int stream = 0; stream < 3 && isReady; ++stream) {
        int ends[2]{-1, -1};
        isReady = makePair(ends);
        ours[stream]->reset(ends[0]);
        theirs[stream] = ends[1];
    }
    if (isReady) {
        start(program, arguments, theirs);
    }
    for (const int end : theirs) {
        if (end >= 0) {
            ::close(end);
        }
    }
}

void ChildProcess::start(
    const QString &program, const QStringList &arguments, const int (&theirs)[3])
{
    const QByteArray path = QFile::encodeName(program);
    std::vector<QByteArray> words{path};
    for (const QString &argument : arguments) {
        words.push_back(argument.toUtf8());
    }
    std::vector<char *> argv;
    for (QByteArray &word : words) {
        argv.push_back(word.data());
    }
    argv.push_back(nullptr);

    posix_spawn_file_actions_t actions;
    posix_spawn_file_actions_init(&actions);
    for (int stream = 0; stream < 3; ++stream) {
        posix_spawn_file_actions_adddup2(&actions, theirs[stream], stream);
    }
    if (posix_spawn(&m_process, path.constData(), &actions, nullptr, argv.data(), environ) != 0) {
        m_process = -1;
    }
    posix_spawn_file_actions_destroy(&actions);
}

ChildProcess::~ChildProcess()
{
    kill();
    static_cast<void>(waitForSuccess());
}

void ChildProcess::kill()
{
    const std::lock_guard lock(m_processMutex);
    if (m_process > 0) {
        ::kill(m_process, SIGKILL);
    }
}

bool ChildProcess::waitForSuccess()
{
    if (m_process <= 0) {
        return false;
    }
    // The number stays the child's until it is collected, which happens under the lock only.
    siginfo_t info{};
    while (waitid(P_PID, static_cast<id_t>(m_process), &info, WEXITED | WNOWAIT) != 0
        && errno == EINTR) {}
    const std::lock_guard lock(m_processMutex);
    int status = 0;
    const bool isCollected = waitpid(m_process, &status, 0) == m_process;
    m_process = -1;
    return isCollected && WIFEXITED(status) && WEXITSTATUS(status) == 0;
}

void ChildProcess::feed(const QByteArray &input)
{
    while (m_fed < input.size()) {
        const auto left = static_cast<std::size_t>(input.size() - m_fed);
        const ssize_t sent =
            ::send(m_input.get(), input.constData() + m_fed, std::min(left, kChunk), MSG_NOSIGNAL);
        if (sent < 0 && (errno == EAGAIN || errno == EINTR)) {
            return;
        }
        if (sent <= 0) {
            break; // the child wants no more
        }
        m_fed += sent;
    }
    m_input.close();
}

void ChildProcess::drain(Descriptor &source, QByteArray &into)
{
    char buffer[kChunk];
    const ssize_t count = ::read(source.get(), buffer, sizeof buffer);
    if (count > 0) {
        into.append(buffer, count);
    } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
        source.close();
    }
}

bool ChildProcess::converse(
    const QByteArray &input, std::chrono::milliseconds time, qsizetype outputLimit)
{
    const auto deadline = std::chrono::steady_clock::now() + time;
    while (m_outputEnd.get() >= 0 || m_complaintEnd.get() >= 0) {
        const auto left = std::chrono::ceil<std::chrono::milliseconds>(
            deadline - std::chrono::steady_clock::now());
        // A descriptor of -1 is passed over.
        pollfd ends[3]{{m_input.get(), POLLOUT, 0}, {m_outputEnd.get(), POLLIN, 0},
            {m_complaintEnd.get(), POLLIN, 0}};
        if (left.count() <= 0 || poll(ends, 3, static_cast<int>(left.count())) == 0) {
            return false;
        }
        if (ends[0].revents != 0) {
            feed(input);
        }
        if (ends[1].revents != 0) {
            drain(m_outputEnd, m_output);
        }
        if (ends[2].revents != 0) {
            drain(m_complaintEnd, m_complaint);
            m_complaint.truncate(kComplaintLimit);
        }
        if (m_output.size() > outputLimit) {
            m_output.truncate(outputLimit);
            return false;
        }
    }
    return true;
}

} // namespace velarc
