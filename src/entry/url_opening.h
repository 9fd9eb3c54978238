#pragma once

// Opening one of the window's addresses from another process.

#include "entry/bus_client.h"

#include <QUrl>

namespace velarc {

// Hands the address to the window: over the session bus, which starts one where none runs; else by
// starting the window program that lies beside the running one; else by the desktop's own ways of
// opening addresses, which from inside a sandbox is its portal. Whether somebody took it.
//
// Blocks for up to 25 seconds. Any thread, over an application object.
[[nodiscard]] bool openInDesktop(const QUrl &url, const ActivationContext &context);

} // namespace velarc
