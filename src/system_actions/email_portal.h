#pragma once

// The desktop's own way to open a prefilled mail, which asks the user for a mail program where it
// has to.

#include "system_actions/compose_parser.h"

#include <QCoroTask>
#include <QDBusConnection>

#include <stop_token>

namespace velarc {

enum class PortalCompose
{
    Opened,
    Cancelled, // by the user, before a mail was open
    NotThere, // nobody offers the portal on the bus
    Failed, // it refused the draft, found no program, or went
};

// Has the portal open `draft`; there is no limit to its length.
//
// Main thread only; never blocks. Waits for the user where the portal asks them something.
//
// Stop: CancellationError, from the event loop; the portal is told to withdraw its question.
[[nodiscard]] QCoro::Task<PortalCompose> composeThroughPortal(
    ComposeDraft draft, QDBusConnection bus, std::stop_token stop);

} // namespace velarc
