#pragma once

// Counts the tokens of finished runs into today's ledger.

#include "base/clock.h"
#include "run/run_seams.h"
#include "store/local_store.h"

namespace velarc {

class AppState;

// Main thread only. `state` must outlive it, or go with it.
class UsageRecorder final : public UsageRecording
{
public:
    UsageRecorder(AppState &state, std::shared_ptr<const LocalStore> store,
        std::shared_ptr<const Clock> clock);

    // A result without usage or without a model counts nothing.
    void recordUsage(const GenerationResult &result) override;

    // Empties today's ledger.
    void resetUsage();

    // At start: a ledger of another day gives way to an empty one of today.
    void settleDay();

private:
    void publishAndSave(DailyUsageLedger ledger);

    AppState &m_state;
    std::shared_ptr<const LocalStore> m_store;
    std::shared_ptr<const Clock> m_clock;
};

} // namespace velarc
