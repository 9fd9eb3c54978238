#include "record_cases.h"

#include "records/usage_ledger.h"
#include "support/printers.h"

#include <QByteArray>

#include <csignal>
#include <limits>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// 2026-02-20T15:00:00Z, ten in the morning in New York.
constexpr Instant kNow{1'771'599'600s};

// The system's time zone, for the time of a test.
class UsageLedger : public ::testing::Test
{
protected:
    void setZone(const char *name) { qputenv("TZ", name); }
    void TearDown() override { qputenv("TZ", m_zoneBefore); }

    DailyUsageLedger ledger;

private:
    QByteArray m_zoneBefore = qgetenv("TZ");
};

QStringList modelsOf(const DailyUsageLedger &ledger)
{
    QStringList models;
    for (const ProviderUsageEntry &entry : ledger.entries) {
        models.append(label(entry.provider) + u'/' + entry.modelID);
    }
    return models;
}

DailyUsageLedger storedLedger()
{
    return {u"2026-02-20"_s,
        {{AIProvider::Anthropic, u"claude"_s, 1, 2, 3},
            {AIProvider::OpenAI, u"gpt-5"_s, 4, 5, 99}}};
}

} // namespace

TEST_F(UsageLedger, twoRunsOnOneModelGiveOneEntryWithTheSums)
{
    ledger.record(AIProvider::OpenAI, u"gpt-5"_s, {10, 20, 30}, kNow);
    ledger.record(AIProvider::OpenAI, u"gpt-5"_s, {1, 2, 3}, kNow);
    ASSERT_EQ(ledger.entries.size(), 1);
    EXPECT_EQ(
        ledger.entries.first(), (ProviderUsageEntry{AIProvider::OpenAI, u"gpt-5"_s, 11, 22, 33}));

    ledger.record(AIProvider::OpenAI, u"gpt-5-mini"_s, {1, 1, 1}, kNow);
    EXPECT_EQ(modelsOf(ledger), (QStringList{u"OpenAI/gpt-5"_s, u"OpenAI/gpt-5-mini"_s}));
    EXPECT_EQ(ledger.entries.first().inputTokens, 11);
}

TEST_F(UsageLedger, oneModelNameOfTwoEnginesIsTwoEntries)
{
    ledger.record(AIProvider::OpenAI, u"m"_s, {1, 1, 2}, kNow);
    ledger.record(AIProvider::Gemini, u"m"_s, {1, 1, 2}, kNow);
    EXPECT_EQ(modelsOf(ledger), (QStringList{u"Gemini/m"_s, u"OpenAI/m"_s}));
}

TEST_F(UsageLedger, entriesStandByTheLabelOfTheEngineAndThenByTheModel)
{
    for (const auto &[provider, model] :
        std::initializer_list<std::pair<AIProvider, QString>>{{AIProvider::OpenAI, u"b"_s},
            {AIProvider::Gemini, u"g"_s}, {AIProvider::LocalFallback, u"l"_s},
            {AIProvider::OpenAI, u"a"_s}, {AIProvider::OpenAI, u"B"_s},
            {AIProvider::Anthropic, u"z"_s}, {AIProvider::AppleIntelligence, u"x"_s}}) {
        ledger.record(provider, model, {}, kNow);
    }
    EXPECT_EQ(modelsOf(ledger),
        (QStringList{u"Anthropic/z"_s, u"Apple Intelligence/x"_s, u"Gemini/g"_s,
            u"Local Preview Engine/l"_s, u"OpenAI/B"_s, u"OpenAI/a"_s, u"OpenAI/b"_s}));
}

TEST_F(UsageLedger, storedEntriesOutOfOrderAreSortedByTheNextRecord)
{
    ledger = storedLedger();
    std::swap(ledger.entries[0], ledger.entries[1]);
    ledger.record(AIProvider::Gemini, u"g"_s, {1, 1, 2}, kNow);
    EXPECT_EQ(
        modelsOf(ledger), (QStringList{u"Anthropic/claude"_s, u"Gemini/g"_s, u"OpenAI/gpt-5"_s}));
}

TEST_F(UsageLedger, recordOnANewDayLeavesExactlyThatEntryUnderTheNewKey)
{
    ledger.record(AIProvider::OpenAI, u"gpt-5"_s, {1, 2, 3}, kNow);
    ledger.record(AIProvider::Gemini, u"g"_s, {4, 5, 6}, kNow + 24h);
    EXPECT_EQ(ledger, (DailyUsageLedger{u"2026-02-21"_s, {{AIProvider::Gemini, u"g"_s, 4, 5, 6}}}));
}

TEST_F(UsageLedger, anEarlierDayIsANewDayToo)
{
    ledger.record(AIProvider::OpenAI, u"gpt-5"_s, {1, 2, 3}, kNow);
    ledger.record(AIProvider::OpenAI, u"gpt-5"_s, {4, 5, 6}, kNow - 24h);
    EXPECT_EQ(
        ledger, (DailyUsageLedger{u"2026-02-19"_s, {{AIProvider::OpenAI, u"gpt-5"_s, 4, 5, 6}}}));
}

TEST_F(UsageLedger, blankModelCountsNothing)
{
    ledger = storedLedger();
    ledger.record(AIProvider::OpenAI, QString(), {1, 2, 3}, kNow);
    ledger.record(AIProvider::OpenAI, u" \n"_s, {1, 2, 3}, kNow);
    EXPECT_EQ(ledger, storedLedger());
}

TEST_F(UsageLedger, blankModelOnANewDayStillClearsTheOldDay)
{
    ledger = storedLedger();
    ledger.record(AIProvider::OpenAI, u" "_s, {1, 2, 3}, kNow + 24h);
    EXPECT_EQ(ledger, (DailyUsageLedger{u"2026-02-21"_s, {}}));
}

TEST_F(UsageLedger, totalThatIsNotInputPlusOutputIsSummedAsReported)
{
    ledger.record(AIProvider::Gemini, u"g"_s, {1, 1, 100}, kNow);
    ledger.record(AIProvider::Gemini, u"g"_s, {1, 1, 0}, kNow);
    EXPECT_EQ(ledger.entries.first(), (ProviderUsageEntry{AIProvider::Gemini, u"g"_s, 2, 2, 100}));
}

TEST_F(UsageLedger, sumsReachTheLargestNumberAndTheSmallest)
{
    constexpr qint64 kMost = std::numeric_limits<qint64>::max();
    constexpr qint64 kLeast = std::numeric_limits<qint64>::min();
    ledger.record(AIProvider::OpenAI, u"m"_s, {kMost - 1, kLeast + 1, 0}, kNow);
    ledger.record(AIProvider::OpenAI, u"m"_s, {1, -1, 0}, kNow);
    EXPECT_EQ(ledger.entries.first().inputTokens, kMost);
    EXPECT_EQ(ledger.entries.first().outputTokens, kLeast);
}

using UsageLedgerDeathTest = UsageLedger;

TEST_F(UsageLedgerDeathTest, sumThatOverflowsEndsTheProcess)
{
    constexpr qint64 kMost = std::numeric_limits<qint64>::max();
    constexpr qint64 kLeast = std::numeric_limits<qint64>::min();
    const auto ends = ::testing::KilledBySignal(SIGABRT);
    ledger.record(AIProvider::OpenAI, u"m"_s, {kMost, kLeast, kMost}, kNow);
    const auto add = [this](const TokenUsage &usage) {
        ledger.record(AIProvider::OpenAI, u"m"_s, usage, kNow);
    };
    EXPECT_EXIT(add({1, 0, 0}), ends, "");
    EXPECT_EXIT(add({0, -1, 0}), ends, "");
    EXPECT_EXIT(add({0, 0, 1}), ends, "");
}

TEST_F(UsageLedger, dayIsThatOfTheSystemsTimeZone)
{
    constexpr Instant kAlmostMidnightUtc{1'771'631'999s}; // 2026-02-20T23:59:59Z
    const auto dayIn = [this](const char *zone, Instant instant) {
        setZone(zone);
        return emptyUsageLedger(instant).dayKey;
    };
    EXPECT_EQ(dayIn("UTC", kAlmostMidnightUtc), u"2026-02-20"_s);
    EXPECT_EQ(dayIn("UTC", kAlmostMidnightUtc + 1s), u"2026-02-21"_s);
    EXPECT_EQ(dayIn("Asia/Tokyo", kAlmostMidnightUtc), u"2026-02-21"_s);
    EXPECT_EQ(dayIn("America/New_York", kAlmostMidnightUtc + 1s), u"2026-02-20"_s);
    EXPECT_EQ(dayIn("Pacific/Kiritimati", kNow), u"2026-02-21"_s);
    EXPECT_EQ(dayIn("Asia/Kathmandu", Instant{1'771'611'300s}), u"2026-02-21"_s);
    EXPECT_EQ(dayIn("Asia/Kathmandu", Instant{1'771'611'299s}), u"2026-02-20"_s);
}

TEST_F(UsageLedger, dayTurnsAtLocalMidnightOnTheDaysThatClocksAreChanged)
{
    // March 8, 2026 begins five hours behind UTC and ends four hours behind it.
    setZone("America/New_York");
    EXPECT_EQ(emptyUsageLedger(Instant{1'772'945'999s}).dayKey, u"2026-03-07"_s);
    EXPECT_EQ(emptyUsageLedger(Instant{1'772'946'000s}).dayKey, u"2026-03-08"_s);
    EXPECT_EQ(emptyUsageLedger(Instant{1'773'028'799s}).dayKey, u"2026-03-08"_s);
    EXPECT_EQ(emptyUsageLedger(Instant{1'773'028'800s}).dayKey, u"2026-03-09"_s);
    // October 25, 2026 lasts 25 hours in Berlin.
    setZone("Europe/Berlin");
    EXPECT_EQ(emptyUsageLedger(Instant{1'792'879'199s}).dayKey, u"2026-10-24"_s);
    EXPECT_EQ(emptyUsageLedger(Instant{1'792'879'200s}).dayKey, u"2026-10-25"_s);
    EXPECT_EQ(emptyUsageLedger(Instant{1'792'969'199s}).dayKey, u"2026-10-25"_s);
    EXPECT_EQ(emptyUsageLedger(Instant{1'792'969'200s}).dayKey, u"2026-10-26"_s);
}

TEST_F(UsageLedger, travellingWestCanBringAnEarlierDayBack)
{
    setZone("Asia/Tokyo");
    ledger.record(AIProvider::OpenAI, u"m"_s, {1, 1, 2}, kNow);
    EXPECT_EQ(ledger.dayKey, u"2026-02-21"_s);
    setZone("America/New_York");
    ledger.record(AIProvider::OpenAI, u"m"_s, {5, 5, 10}, kNow + 1h);
    EXPECT_EQ(
        ledger, (DailyUsageLedger{u"2026-02-20"_s, {{AIProvider::OpenAI, u"m"_s, 5, 5, 10}}}));
}

TEST_F(UsageLedger, emptyLedgerHasTheDayAndNoEntries)
{
    EXPECT_EQ(emptyUsageLedger(kNow), (DailyUsageLedger{u"2026-02-20"_s, {}}));
}

TEST_F(UsageLedger, writesItsKeysInOrder)
{
    EXPECT_EQ(writeJson(encodeUsageLedger(storedLedger())),
        R"({"dayKey":"2026-02-20","entries":[)"
        R"({"provider":"anthropic","modelID":"claude","inputTokens":1,"outputTokens":2,)"
        R"("totalTokens":3},)"
        R"({"provider":"openAI","modelID":"gpt-5","inputTokens":4,"outputTokens":5,)"
        R"("totalTokens":99}]})");
}

TEST_F(UsageLedger, whatIsWrittenIsReadBack)
{
    EXPECT_EQ(decodeUsageLedger(encodeUsageLedger(storedLedger())), storedLedger());
    EXPECT_EQ(decodeUsageLedger(encodeUsageLedger({})), DailyUsageLedger());
}

TEST_F(UsageLedger, unknownKeysAreIgnoredAndWholeNumbersMayHaveAPoint)
{
    expectRead<DailyUsageLedger>(decodeUsageLedger,
        {
            {"unknown keys",
                R"({"entries":[{"provider":"openAI","modelID":"m","inputTokens":1,"cost":9,)"
                R"("outputTokens":2,"totalTokens":3}],"dayKey":"d","version":2})",
                {u"d"_s, {{AIProvider::OpenAI, u"m"_s, 1, 2, 3}}}},
            {"points",
                R"({"dayKey":"d","entries":[{"provider":"useDefault","modelID":"",)"
                R"("inputTokens":1.0,"outputTokens":-2.0,"totalTokens":3e2}]})",
                {u"d"_s, {{AIProvider::UseDefault, QString(), 1, -2, 300}}}},
        });
}

TEST_F(UsageLedger, missingKeyOfTheLedgerIsRefused)
{
    expectRefused(decodeUsageLedger,
        {
            {"nothing", "{}"},
            {"no day", R"({"entries":[]})"},
            {"no entries", R"({"dayKey":"d"})"},
            {"null day", R"({"dayKey":null,"entries":[]})"},
            {"null entries", R"({"dayKey":"d","entries":null})"},
        });
}

TEST_F(UsageLedger, missingKeyOfAnEntryIsRefused)
{
    const Json whole = encodeUsageLedger(storedLedger());
    for (const auto &member : whole["entries"][1].items()) {
        SCOPED_TRACE(member.key());
        Json without = whole;
        without["entries"][1].erase(member.key());
        EXPECT_THROW((void)decodeUsageLedger(without), JsonError);
        Json null = whole;
        null["entries"][1][member.key()] = nullptr;
        EXPECT_THROW((void)decodeUsageLedger(null), JsonError);
    }
}

TEST_F(UsageLedger, wrongTypeOrUnknownSpellingIsRefused)
{
    const Json whole = encodeUsageLedger(storedLedger());
    struct Replaced
    {
        const char *key;
        Json value;
    };
    for (const auto &[key, value] : std::initializer_list<Replaced>{{"provider", "mistral"},
             {"provider", "Anthropic"}, {"provider", 1}, {"modelID", 5}, {"inputTokens", 1.5},
             {"inputTokens", true}, {"outputTokens", "2"}, {"totalTokens", 1e300}}) {
        SCOPED_TRACE(std::string(key) + " " + value.dump());
        Json changed = whole;
        changed["entries"][0][key] = value;
        EXPECT_THROW((void)decodeUsageLedger(changed), JsonError);
    }
    expectRefused(decodeUsageLedger,
        {
            {"no object", "[]"},
            {"number as day", R"({"dayKey":20260220,"entries":[]})"},
            {"object as entries", R"({"dayKey":"d","entries":{}})"},
            {"number as entry", R"({"dayKey":"d","entries":[1]})"},
        });
}

} // namespace velarc
