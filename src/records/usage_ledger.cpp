#include "records/usage_ledger.h"

#include "actions/action_json.h"
#include "base/locale_text.h"
#include "base/text.h"

#include <algorithm>
#include <cstdlib>

namespace velarc {

namespace {

void addChecked(qint64 &sum, qint64 added)
{
    if (__builtin_add_overflow(sum, added, &sum)) {
        std::abort();
    }
}

ProviderUsageEntry &entryOf(
    QList<ProviderUsageEntry> &entries, AIProvider provider, const QString &modelID)
{
    for (ProviderUsageEntry &entry : entries) {
        if (entry.provider == provider && entry.modelID == modelID) {
            return entry;
        }
    }
    entries.append(ProviderUsageEntry{provider, modelID});
    return entries.last();
}

bool standsBefore(const ProviderUsageEntry &left, const ProviderUsageEntry &right)
{
    const int byLabel = QString::compare(label(left.provider), label(right.provider));
    return byLabel == 0 ? left.modelID < right.modelID : byLabel < 0;
}

ProviderUsageEntry decodeEntry(const Json &value)
{
    const ObjectReader object(value);
    ProviderUsageEntry entry;
    entry.provider = ObjectReader::required(readEnum<AIProvider>(object, "provider"), "provider");
    entry.modelID = ObjectReader::required(object.text("modelID"), "modelID");
    entry.inputTokens = ObjectReader::required(object.integer("inputTokens"), "inputTokens");
    entry.outputTokens = ObjectReader::required(object.integer("outputTokens"), "outputTokens");
    entry.totalTokens = ObjectReader::required(object.integer("totalTokens"), "totalTokens");
    return entry;
}

Json encodeEntry(const ProviderUsageEntry &entry)
{
    Json object = Json::object();
    object["provider"] = jsonFromText(storedSpelling(entry.provider));
    object["modelID"] = jsonFromText(entry.modelID);
    object["inputTokens"] = entry.inputTokens;
    object["outputTokens"] = entry.outputTokens;
    object["totalTokens"] = entry.totalTokens;
    return object;
}

} // namespace

void DailyUsageLedger::record(
    AIProvider provider, const QString &modelID, const TokenUsage &usage, Instant date)
{
    const QString today = localDayKey(date);
    if (dayKey != today) {
        dayKey = today;
        entries.clear();
    }
    if (isBlank(modelID)) {
        return;
    }
    ProviderUsageEntry &entry = entryOf(entries, provider, modelID);
    addChecked(entry.inputTokens, usage.inputTokens);
    addChecked(entry.outputTokens, usage.outputTokens);
    addChecked(entry.totalTokens, usage.totalTokens);
    std::stable_sort(entries.begin(), entries.end(), standsBefore);
}

DailyUsageLedger emptyUsageLedger(Instant date)
{
    return {localDayKey(date), {}};
}

DailyUsageLedger decodeUsageLedger(const Json &value)
{
    const ObjectReader object(value);
    DailyUsageLedger ledger;
    ledger.dayKey = ObjectReader::required(object.text("dayKey"), "dayKey");
    ledger.entries = ObjectReader::required(object.list("entries", decodeEntry), "entries");
    return ledger;
}

Json encodeUsageLedger(const DailyUsageLedger &ledger)
{
    Json entries = Json::array();
    for (const ProviderUsageEntry &entry : ledger.entries) {
        entries.push_back(encodeEntry(entry));
    }
    Json object = Json::object();
    object["dayKey"] = jsonFromText(ledger.dayKey);
    object["entries"] = std::move(entries);
    return object;
}

} // namespace velarc
