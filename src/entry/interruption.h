#pragma once

// Ctrl+C, and the other signals by which a terminal or a session asks a program to end.

#include <QByteArray>
#include <QSocketNotifier>

#include <memory>
#include <optional>
#include <stop_token>

namespace velarc {

// While it lives, the first SIGINT, SIGTERM or SIGHUP stops the token instead of the process; the
// next one of the same kind ends the process as ever. A signal that the parent had ignored stays
// ignored.
//
// Main thread only, over an application object; at most one at a time. The token is stopped from
// the event loop.
class Interruption
{
public:
    Interruption();
    ~Interruption();
    Interruption(const Interruption &) = delete;
    Interruption &operator=(const Interruption &) = delete;

    [[nodiscard]] std::stop_token token() const { return m_stop.get_token(); }

    // The signal that came, once one has.
    [[nodiscard]] std::optional<int> signal();

    // Everything up to the end of the descriptor, waited for here. What cannot be read any more
    // counts as its end. Throws CancellationError if a signal comes first.
    [[nodiscard]] QByteArray readToEnd(int descriptor);

private:
    void takeSignal();

    int m_pipe = -1; // where the handler tells of a signal
    std::unique_ptr<QSocketNotifier> m_notifier;
    std::optional<int> m_signal;
    std::stop_source m_stop;
};

} // namespace velarc
