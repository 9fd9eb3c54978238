#pragma once

// A call over the bus, awaited.

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>

#include <stop_token>

namespace velarc {

// Sends `call` and gives its reply: an error message if none comes within ten seconds, in which the
// bus may start whoever answers.
//
// Main thread only; never blocks.
//
// Stop: CancellationError, from the event loop.
[[nodiscard]] QCoro::Task<QDBusMessage> replyTo(
    QDBusMessage call, QDBusConnection bus, std::stop_token stop);

} // namespace velarc
