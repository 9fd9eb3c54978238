#pragma once

// One window where there is no session bus: a lock in the user's runtime folder, and a socket
// beside it that takes what later starts hand over.

#include "entry/window_requests.h"

#include <QLocalServer>
#include <QLockFile>

class QLocalSocket;

namespace velarc {

// What a start of the program asks for.
struct StartRequest
{
    QStringList addresses;
    ActivationContext context;

    friend bool operator==(const StartRequest &, const StartRequest &) = default;
};

enum class HandOver
{
    Done,
    NobodyThere,
    NotAnswered, // somebody is there, but does not take it
};

// Main thread only.
class LocalInstance
{
public:
    explicit LocalInstance(WindowRequests &requests);

    // Whether this process holds the lock from now on. The lock of a process that has gone is
    // broken.
    [[nodiscard]] bool claim();

private:
    void take(QLocalSocket *socket);
    void read(QLocalSocket *socket);

    WindowRequests &m_requests;
    QLockFile m_lock;
    QLocalServer m_server;
};

// Hands a start over to the process that listens on the socket. One that hangs up without an answer
// is leaving, and counts as gone. Any thread, without an application object too.
[[nodiscard]] HandOver handOverLocally(const StartRequest &request);

// Whether a process that lives holds the lock. Any thread.
[[nodiscard]] bool hasLocalWindow();

// The line that goes over the socket. Errors: JsonError.
[[nodiscard]] QByteArray encodeStartRequest(const StartRequest &request);
[[nodiscard]] StartRequest decodeStartRequest(QByteArrayView line);

} // namespace velarc
