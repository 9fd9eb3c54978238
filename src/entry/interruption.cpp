#include "entry/interruption.h"

#include "base/errors.h"

#include <fcntl.h>
#include <poll.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <csignal>

namespace velarc {

namespace {

constexpr std::array kSignals{SIGINT, SIGTERM, SIGHUP};
constexpr std::size_t kChunk = 64 * 1024;

// The handler's end of the pipe. A handler can know nothing but what is global.
volatile std::sig_atomic_t pipeOfHandler = -1;

extern "C" void tellOfSignal(int number)
{
    const int savedError = errno;
    const auto byte = static_cast<unsigned char>(number);
    // A full pipe holds a signal already.
    static_cast<void>(::write(pipeOfHandler, &byte, 1) == 1);
    errno = savedError;
}

void installHandler(int number)
{
    struct sigaction standing = {};
    if (sigaction(number, nullptr, &standing) != 0 || standing.sa_handler == SIG_IGN) {
        return;
    }
    struct sigaction handler = {};
    handler.sa_handler = &tellOfSignal;
    handler.sa_flags = static_cast<int>(SA_RESETHAND | SA_RESTART);
    sigaction(number, &handler, nullptr);
}

void removeHandler(int number)
{
    struct sigaction standing = {};
    if (sigaction(number, nullptr, &standing) == 0 && standing.sa_handler == &tellOfSignal) {
        std::signal(number, SIG_DFL);
    }
}

} // namespace

Interruption::Interruption()
{
    int ends[2]{-1, -1};
    if (pipe2(ends, O_CLOEXEC | O_NONBLOCK) != 0) {
        return; // the signals end the process as ever
    }
    m_pipe = ends[0];
    pipeOfHandler = ends[1];
    m_notifier = std::make_unique<QSocketNotifier>(m_pipe, QSocketNotifier::Read);
    QObject::connect(m_notifier.get(), &QSocketNotifier::activated, [this] { takeSignal(); });
    for (const int number : kSignals) {
        installHandler(number);
    }
}

Interruption::~Interruption()
{
    if (m_pipe < 0) {
        return;
    }
    for (const int number : kSignals) {
        removeHandler(number);
    }
    m_notifier.reset();
    ::close(std::exchange(m_pipe, -1));
    ::close(pipeOfHandler);
    pipeOfHandler = -1;
}

void Interruption::takeSignal()
{
    unsigned char byte = 0;
    if (m_pipe >= 0 && ::read(m_pipe, &byte, 1) == 1) {
        m_signal = byte;
        m_stop.request_stop();
    }
}

std::optional<int> Interruption::signal()
{
    takeSignal();
    return m_signal;
}

QByteArray Interruption::readToEnd(int descriptor)
{
    QByteArray bytes;
    std::array<char, kChunk> chunk{};
    for (;;) {
        pollfd ends[2]{{descriptor, POLLIN, 0}, {m_pipe, POLLIN, 0}};
        if (poll(ends, 2, -1) < 0 && errno != EINTR) {
            return bytes;
        }
        if (signal()) {
            throw CancellationError();
        }
        if (ends[0].revents == 0) {
            continue;
        }
        const ssize_t count = ::read(descriptor, chunk.data(), chunk.size());
        if (count > 0) {
            bytes.append(chunk.data(), count);
        } else if (count == 0 || (errno != EAGAIN && errno != EINTR)) {
            return bytes;
        }
    }
}

} // namespace velarc
