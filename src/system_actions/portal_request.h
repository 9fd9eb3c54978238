#pragma once

// Asking the desktop's portal for something that the user may have to decide.
//
// Main thread only; never blocks.
//
// Stop: CancellationError, from the event loop; the portal is told to withdraw its question.

#include <QCoroTask>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QString>
#include <QVariantMap>

#include <stop_token>

namespace velarc {

// Sends `call` and gives its reply, an error message if none comes within ten seconds.
[[nodiscard]] QCoro::Task<QDBusMessage> busReply(
    QDBusMessage call, QDBusConnection bus, std::stop_token stop);

// The version of one of the portal's interfaces; 0 where nobody offers it.
[[nodiscard]] QCoro::Task<unsigned> portalVersion(
    QString interface, QDBusConnection bus, std::stop_token stop);

struct PortalQuestion
{
    QString interface;
    QString method;
    QVariantList arguments; // those before the options
    QVariantMap options;
};

enum class PortalEnding
{
    Done,
    Cancelled, // by the user
    Failed // it refused, or went
};

struct PortalAnswer
{
    PortalEnding ending = PortalEnding::Failed;
    QVariantMap results;
};

// Waits for as long as the user takes.
[[nodiscard]] QCoro::Task<PortalAnswer> askPortal(
    PortalQuestion question, QDBusConnection bus, std::stop_token stop);

} // namespace velarc
