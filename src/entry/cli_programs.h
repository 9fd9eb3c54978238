#pragma once

// What velarc-cli does for each command.
//
// Standard output gets the answer and nothing else; everything said about a failure goes to
// standard error. Texts are written as UTF-8, and an answer ends in one line feed.

#include "entry/bus_client.h"
#include "entry/cli_command.h"
#include "entry/copying.h"
#include "entry/intent.h"

#include <QByteArray>

#include <cstdio>
#include <functional>

namespace velarc {

// Hands an exported file to the window that is open, if one is.
using ImportInWindow = std::function<ImportReply(const QByteArray &)>;

// Answers the bus until nobody asks any more; false if there is no bus, or another process serves.
using Serve = std::function<QCoro::Task<bool>(std::stop_token)>;

enum class CliExit
{
    Done = 0,
    RunFailed = 1,
    Usage = 2, // also: no action of that title
    Refused = 3,
    ClosedPipe = 141, // nobody reads the answer any more; as if the signal had ended the program
};

// The process around the program.
struct CliSurroundings
{
    std::function<std::shared_ptr<const LocalStore>()> openStore;
    MakeViewModel makeViewModel;
    std::function<bool()> standardInputIsTerminal;
    std::function<QByteArray()> readStandardInput; // to its end; CancellationError
    FinishCopying finishCopying;
    Serve serve;
    ImportInWindow importInWindow; // on a thread of its own
    FILE *out = nullptr;
    FILE *err = nullptr;
    QString version;

    // Whether whoever started the program wants to be told of a closed pipe in words: it had the
    // signal ignored.
    bool isClosedPipeTold = true;
};

// Main thread. Stop: ends everything that waits with CancellationError.
[[nodiscard]] QCoro::Task<CliExit> performCliCommand(
    CliCommand command, CliSurroundings surroundings, std::stop_token stop);

} // namespace velarc
