#pragma once

// What happens once, before the first frame: the stored state becomes the published one.

#include "run/usage_recorder.h"
#include "store/local_store.h"

namespace velarc {

class AppState;

// The steps of the start that ask the engines and the secret store.
class StartUpConnections
{
public:
    virtual ~StartUpConnections() = default;
    virtual void refreshAppleIntelligenceStatus() = 0;
    virtual void migrateLegacyOpenAIKey() = 0;
    virtual void reconcileConnections() = 0;
};

struct StartUpParts
{
    AppState &state;
    const LocalStore &store;
    const Clock &clock;
    StartUpConnections &connections;
    UsageRecorder &usage;
};

// Loads, reconciles and settles everything, in the one order that holds: actions, settings, layout,
// the switch of the paste option, selection, engines, keys, the usage day.
//
// Synchronous, on the main thread, without any network call. No step can stop the start: what the
// store does not tell reads as its default.
void startUp(const StartUpParts &parts);

} // namespace velarc
