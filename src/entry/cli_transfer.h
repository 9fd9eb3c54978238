#pragma once

// What velarc-cli does with files of actions.

#include "entry/cli_programs.h"

namespace velarc {

[[nodiscard]] CliExit exportActions(
    const ExportCommand &command, const CliSurroundings &surroundings);

// Through the window where one is open, so that neither loses what the other changes; else through
// the store.
[[nodiscard]] QCoro::Task<CliExit> importActions(
    ImportCommand command, CliSurroundings surroundings, std::stop_token stop);

} // namespace velarc
