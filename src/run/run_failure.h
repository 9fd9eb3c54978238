#pragma once

// How a run that did not succeed ends: the one handler for every failure and cancellation.

#include "run/run_core.h"

#include <exception>

namespace velarc {

// Shows the failure of a run of `action`, unless the run is stale: then nothing at all. A
// cancellation shows the canvas again instead.
void handleRunError(ActiveRun &run, const AIAction &action, const std::exception_ptr &error);

} // namespace velarc
