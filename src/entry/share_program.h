#pragma once

// What velarc-share does for each command: it leaves a record in the store and opens the address
// that makes the window look.
//
// Main thread only.

#include "base/clock.h"
#include "entry/share_command.h"
#include "store/local_store.h"

#include <QByteArray>
#include <QUrl>

#include <cstdio>
#include <functional>

namespace velarc {

enum class ShareExit
{
    Done = 0,
    Failed = 1, // the record could not be left, or the window not be opened
    Usage = 2, // also: a blank text, or no action of that title
};

// The process around the program.
struct ShareSurroundings
{
    // Each call opens the store anew.
    std::function<std::shared_ptr<const LocalStore>()> openStore;
    std::function<bool(const QUrl &)> openUrl; // false if nobody takes it
    std::function<bool()> standardInputIsTerminal;
    std::function<QByteArray()> readStandardInput; // to its end
    std::function<Instant()> now;
    FILE *out = nullptr;
    FILE *err = nullptr;
    QString version;
};

[[nodiscard]] ShareExit performShareCommand(
    const ShareCommand &command, const ShareSurroundings &surroundings);

} // namespace velarc
