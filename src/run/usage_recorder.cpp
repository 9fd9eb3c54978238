#include "run/usage_recorder.h"

#include "base/text.h"
#include "run/app_state.h"

#include <utility>

namespace velarc {

UsageRecorder::UsageRecorder(
    AppState &state, std::shared_ptr<const LocalStore> store, std::shared_ptr<const Clock> clock)
    : m_state(state), m_store(std::move(store)), m_clock(std::move(clock))
{
}

void UsageRecorder::recordUsage(const GenerationResult &result)
{
    const QString modelID = trimmed(result.modelID.value_or(QString())).toString();
    if (!result.usage || modelID.isEmpty()) {
        return;
    }
    DailyUsageLedger ledger = m_state.dailyUsageLedger();
    ledger.record(result.provider, modelID, *result.usage, m_clock->now());
    publishAndSave(std::move(ledger));
}

void UsageRecorder::resetUsage()
{
    publishAndSave(emptyUsageLedger(m_clock->now()));
}

void UsageRecorder::settleDay()
{
    DailyUsageLedger today = emptyUsageLedger(m_clock->now());
    if (m_state.dailyUsageLedger().dayKey != today.dayKey) {
        publishAndSave(std::move(today));
    }
}

void UsageRecorder::publishAndSave(DailyUsageLedger ledger)
{
    m_state.setDailyUsageLedger(std::move(ledger));
    m_store->saveUsageLedger(m_state.dailyUsageLedger());
}

} // namespace velarc
