#pragma once

// Waiting for what comes over a socket, without sleeping.

#include <QCoreApplication>
#include <QEventLoop>
#include <QTimer>

#include <chrono>

namespace velarc {

// Turns the event loop until `holds()` or the bound has passed. Returns whether it holds.
template <typename Predicate>
[[nodiscard]] bool waitUntil(
    Predicate holds, std::chrono::milliseconds bound = std::chrono::seconds(10))
{
    QTimer deadline;
    deadline.setSingleShot(true);
    deadline.start(bound);
    while (!holds() && deadline.isActive()) {
        QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
    }
    return holds();
}

} // namespace velarc
