#pragma once

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <QEventLoop>

#include <chrono>

namespace velarc {

// Turns the event loop until `holds()`, for as long as a slow machine may need. Returns what it
// says last.
template <typename Condition>
[[nodiscard]] bool waitUntil(
    Condition holds, std::chrono::milliseconds bound = std::chrono::seconds(20))
{
    const QDeadlineTimer deadline(bound);
    while (!holds() && !deadline.hasExpired()) {
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    }
    return holds();
}

} // namespace velarc
