#pragma once

// Taking up what another program left: text to run on, or a result to show.

#include "run/action_library.h"
#include "run/run_pipeline.h"

#include <QUrl>

namespace velarc {

struct ShareHandoffParts
{
    AppState &state;
    const LocalStore &store;
    ActionLibrary &library;
    RunPipeline &pipeline;
};

// velarc://share-handoff takes up the pending handoff, once, and runs on it; velarc://share-result
// shows the latest result, each time. Scheme and host in either case; path, query and fragment are
// not read. Any other address, and one without its record, does nothing.
//
// Main thread only.
void handleOpenURL(const QUrl &url, const ShareHandoffParts &parts);

} // namespace velarc
