#pragma once

// The tokens of one calendar day, by engine and model. There is no history: another day starts
// empty.
//
// Plain values; any thread. The day is that of the system's time zone at the moment of the call.

#include "base/clock.h"
#include "base/json.h"
#include "records/run_records.h"

#include <QList>
#include <QString>

namespace velarc {

struct ProviderUsageEntry
{
    AIProvider provider = AIProvider::OpenAI;
    QString modelID;
    qint64 inputTokens = 0; // sums of what was reported
    qint64 outputTokens = 0;
    qint64 totalTokens = 0; // of the totals reported, not of input plus output

    friend bool operator==(const ProviderUsageEntry &, const ProviderUsageEntry &) = default;
};

struct DailyUsageLedger
{
    QString dayKey; // "2026-02-20"; two different keys are two different days, earlier or later
    QList<ProviderUsageEntry> entries; // by the engine's label, then by the model

    // Adds `usage` to the entry of that engine and model. Entries of another day than that of
    // `date` go first, even if `modelID` is blank and so nothing is counted.
    //
    // A sum that overflows is a programming error and ends the process.
    void record(AIProvider provider, const QString &modelID, const TokenUsage &usage, Instant date);

    friend bool operator==(const DailyUsageLedger &, const DailyUsageLedger &) = default;
};

// A ledger of the day of `date` without entries.
[[nodiscard]] DailyUsageLedger emptyUsageLedger(Instant date);

// All keys of both records must be there.
//
// Errors: JsonError for a key that is missing, of the wrong type or with an unknown spelling.
[[nodiscard]] DailyUsageLedger decodeUsageLedger(const Json &value);
[[nodiscard]] Json encodeUsageLedger(const DailyUsageLedger &ledger);

} // namespace velarc
