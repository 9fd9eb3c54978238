#include "support/app_world.h"

namespace velarc {
namespace {

class UsageRecorderTest : public AppWorld
{
protected:
    UsageRecorder recorder{launch(), store, clock};

    static GenerationResult resultOf(
        const std::optional<QString> &model, const std::optional<TokenUsage> &usage)
    {
        GenerationResult result;
        result.provider = AIProvider::OpenAI;
        result.modelID = model;
        result.usage = usage;
        return result;
    }

    [[nodiscard]] const QList<ProviderUsageEntry> &entries() const
    {
        return viewModel->dailyUsageLedger().entries;
    }
};

TEST_F(UsageRecorderTest, twoRunsOnOneModelAreSummedAndSaved)
{
    recorder.recordUsage(resultOf(u"gpt-5"_s, TokenUsage{1, 2, 9}));
    recorder.recordUsage(resultOf(u" gpt-5 "_s, TokenUsage{10, 20, 90}));
    ASSERT_EQ(entries().size(), 1);
    EXPECT_EQ(entries().first().modelID, u"gpt-5"_s);
    EXPECT_EQ(entries().first().inputTokens, 11);
    EXPECT_EQ(entries().first().outputTokens, 22);
    EXPECT_EQ(entries().first().totalTokens, 99);
    EXPECT_EQ(store->loadUsageLedger(clock->now()), viewModel->dailyUsageLedger());
}

TEST_F(UsageRecorderTest, resultWithoutUsageOrModelCountsNothingAndWritesNothing)
{
    domain->remove(kLedgerKey);
    recorder.recordUsage(resultOf(u"gpt-5"_s, std::nullopt));
    recorder.recordUsage(resultOf(std::nullopt, TokenUsage{1, 1, 2}));
    recorder.recordUsage(resultOf(u"  "_s, TokenUsage{1, 1, 2}));
    EXPECT_TRUE(entries().isEmpty());
    EXPECT_FALSE(domain->holds(kLedgerKey));
}

TEST_F(UsageRecorderTest, recordOnANewDayLeavesThatOneEntryUnderTheNewKey)
{
    recorder.recordUsage(resultOf(u"gpt-5"_s, TokenUsage{1, 1, 2}));
    clock->advance(24h);
    recorder.recordUsage(resultOf(u"gpt-5-mini"_s, TokenUsage{3, 4, 7}));
    EXPECT_EQ(viewModel->dailyUsageLedger().dayKey, u"2026-02-21"_s);
    ASSERT_EQ(entries().size(), 1);
    EXPECT_EQ(entries().first().modelID, u"gpt-5-mini"_s);
}

TEST_F(UsageRecorderTest, resetEmptiesTodaysLedgerAndSavesIt)
{
    recorder.recordUsage(resultOf(u"gpt-5"_s, TokenUsage{1, 1, 2}));
    viewModel->resetUsage();
    EXPECT_TRUE(entries().isEmpty());
    EXPECT_EQ(viewModel->dailyUsageLedger().dayKey, u"2026-02-20"_s);
    EXPECT_TRUE(store->loadUsageLedger(clock->now()).entries.isEmpty());
}

TEST_F(UsageRecorderTest, runOfACloudEngineIsCounted)
{
    keys->keys[AIProvider::Gemini] = "AIza";
    gemini->answer.result.usage = TokenUsage{5, 6, 11};
    gemini->answer.result.modelID = u"gemini-2.5-flash"_s;
    AIAction action = testAction(u"Any"_s);
    action.provider = AIProvider::Gemini;
    viewModel->startRun(action, ExplicitInput{PreparedRunInput{u"x"_s, {}}});
    letRunGoOn();
    ASSERT_EQ(entries().size(), 1);
    EXPECT_EQ(entries().first().provider, AIProvider::Gemini);
    EXPECT_EQ(entries().first().totalTokens, 11);
}

} // namespace
} // namespace velarc
