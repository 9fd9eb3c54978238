#include "ui_world.h"

#include "support/wait_until.h"

namespace velarc {

namespace {

class MoreSheetTest : public UiWorld
{
protected:
    void open()
    {
        openWindow();
        viewModel->setIsMoreSheetPresented(true);
        settle();
    }

    // Presses an entry and gives the sheet its time to close.
    void go(const QString &entry)
    {
        click(entry);
        EXPECT_FALSE(viewModel->isMoreSheetPresented());
        clock->advance(199ms);
        settle();
        EXPECT_FALSE(anySheet());
        clock->advance(1ms);
        settle();
    }

    [[nodiscard]] bool anySheet() const
    {
        return viewModel->isActionLibraryPresented() || viewModel->isEngineRoomPresented()
            || viewModel->isUsagePresented() || viewModel->isStudioPresented();
    }

    [[nodiscard]] bool isChecked(const QString &name)
    {
        return QAccessible::queryAccessibleInterface(itemCalled(name))->state().checked;
    }
};

TEST_F(MoreSheetTest, leadsToTheLibraryOnceItHasClosed)
{
    open();
    go(u"Manage Actions"_s);
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
}

TEST_F(MoreSheetTest, leadsToTheEngineRoomOnceItHasClosed)
{
    open();
    go(u"Engine Room"_s);
    EXPECT_TRUE(viewModel->isEngineRoomPresented());
}

TEST_F(MoreSheetTest, leadsToTheUsageOnceItHasClosed)
{
    open();
    go(u"Usage"_s);
    EXPECT_TRUE(viewModel->isUsagePresented());
}

TEST_F(MoreSheetTest, leadsToANewActionOnceItHasClosed)
{
    open();
    go(u"New Action"_s);
    EXPECT_TRUE(viewModel->isStudioPresented());
    EXPECT_EQ(viewModel->studioDraft().name, u"New Action"_s);
}

TEST_F(MoreSheetTest, aSecondPressWhileItClosesGoesNowhere)
{
    open();
    screens->more()->openUsage();
    screens->more()->newAction();
    EXPECT_EQ(clock->pausesWaiting(), 1U);
    clock->advance(200ms);
    settle();
    EXPECT_TRUE(viewModel->isUsagePresented());
    EXPECT_FALSE(viewModel->isStudioPresented());
}

TEST_F(MoreSheetTest, doneClosesItAndGoesNowhere)
{
    open();
    click(u"Done"_s);
    EXPECT_FALSE(viewModel->isMoreSheetPresented());
    EXPECT_EQ(clock->pausesWaiting(), 0U);
}

TEST_F(MoreSheetTest, anOptionIsTurnedOverAndKept)
{
    open();
    const bool was = viewModel->homeAutomationOptions().autoCopyResult;
    EXPECT_EQ(isChecked(u"Auto-copy Result"_s), was);
    click(u"Auto-copy Result"_s);
    EXPECT_EQ(viewModel->homeAutomationOptions().autoCopyResult, !was);
    EXPECT_EQ(isChecked(u"Auto-copy Result"_s), !was);
    EXPECT_EQ(store->loadAutomationOptions().autoCopyResult, !was);
    const bool paste = viewModel->homeAutomationOptions().autoRunOnPaste;
    click(u"Auto-run on Paste"_s);
    EXPECT_EQ(store->loadAutomationOptions().autoRunOnPaste, !paste);
    EXPECT_TRUE(viewModel->isMoreSheetPresented());
}

TEST_F(MoreSheetTest, theRunExperienceIsTurnedOverAndKept)
{
    open();
    const bool was = viewModel->newRunExperienceEnabled();
    click(u"New Run Experience"_s);
    EXPECT_EQ(viewModel->newRunExperienceEnabled(), !was);
    EXPECT_EQ(isChecked(u"New Run Experience"_s), !was);
    EXPECT_EQ(store->loadNewRunExperienceEnabled(), !was);
}

TEST_F(MoreSheetTest, theKeyboardWalksThroughIt)
{
    open();
    press(Qt::Key_Return);
    clock->advance(200ms);
    settle();
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
}

class UsageSheetTest : public UiWorld
{
protected:
    void openWith(const QList<ProviderUsageEntry> &entries)
    {
        openWindow();
        DailyUsageLedger ledger = viewModel->dailyUsageLedger();
        ledger.entries = entries;
        viewModel->setDailyUsageLedger(ledger);
        viewModel->setIsUsagePresented(true);
        settle();
    }
};

TEST_F(UsageSheetTest, withoutEntriesTheTilesShowNothingAndTheTextStandsInTheirPlace)
{
    openWith({});
    EXPECT_EQ(screens->usage()->input(), u"0"_s);
    EXPECT_EQ(screens->usage()->output(), u"0"_s);
    EXPECT_EQ(screens->usage()->total(), u"0"_s);
    EXPECT_TRUE(shows(u"0"_s));
    EXPECT_TRUE(shows(u"No usage yet today."_s));
    EXPECT_TRUE(
        shows(u"Run an action with OpenAI, Gemini, or Anthropic to start tracking token usage."_s));
}

TEST_F(UsageSheetTest, theResetButtonStaysEnabledWhenThereIsNothingToReset)
{
    openWith({});
    ASSERT_TRUE(itemCalled(u"Reset Today Usage"_s)->isEnabled());
    click(u"Reset Today Usage"_s);
    EXPECT_TRUE(itemCalled(u"Reset Today Usage"_s)->isEnabled());
    EXPECT_TRUE(viewModel->isUsagePresented());
}

TEST_F(UsageSheetTest, showsEachModelWithItsFiguresWithoutGrouping)
{
    openWith({{AIProvider::Anthropic, u"claude"_s, 1200000, 30, 1200030},
        {AIProvider::OpenAI, u"gpt-5"_s, 100, 50, 151}});
    EXPECT_TRUE(shows(u"1200100"_s));
    EXPECT_TRUE(shows(u"80"_s));
    EXPECT_TRUE(shows(u"1200181"_s));
    EXPECT_TRUE(shows(u"1200030 tokens"_s));
    EXPECT_TRUE(shows(u"In 1200000 \u2022 Out 30"_s));
    EXPECT_TRUE(shows(u"Anthropic"_s));
    EXPECT_TRUE(shows(u"gpt-5"_s));
    EXPECT_FALSE(shows(u"No usage yet today."_s));
}

TEST_F(UsageSheetTest, resetEmptiesItAtOnceAndTheSheetStays)
{
    openWith({{AIProvider::OpenAI, u"gpt-5"_s, 100, 50, 150}});
    click(u"Reset Today Usage"_s);
    EXPECT_TRUE(viewModel->dailyUsageLedger().entries.isEmpty());
    EXPECT_TRUE(shows(u"No usage yet today."_s));
    EXPECT_TRUE(viewModel->isUsagePresented());
}

TEST_F(UsageSheetTest, aLedgerFromBeforeMidnightStillShowsItsFigures)
{
    openWith({{AIProvider::OpenAI, u"gpt-5"_s, 100, 50, 150}});
    clock->setNow(clock->now() + std::chrono::hours(24));
    viewModel->setIsUsagePresented(false);
    EXPECT_TRUE(waitUntil([this] { return !shows(u"Usage"_s); }));
    viewModel->setIsUsagePresented(true);
    settle();
    EXPECT_TRUE(shows(u"150 tokens"_s));
}

TEST(UsageFigures, aSumBeyondTheLargestNumberShowsAsThat)
{
    DailyUsageLedger ledger;
    constexpr qint64 kMost = std::numeric_limits<qint64>::max();
    ledger.entries = {
        {AIProvider::OpenAI, u"a"_s, kMost, 1, kMost}, {AIProvider::OpenAI, u"b"_s, 1, 2, 5}};
    const UsageFigures figures = usageFigures(ledger);
    EXPECT_EQ(figures.input, QString::number(kMost));
    EXPECT_EQ(figures.output, u"3"_s);
}

TEST_F(UsageSheetTest, readsAndResetsTheUsageOfThreeRuns)
{
    openWindow();
    viewModel->setProviderSettings([this] {
        ProviderSettings settings = viewModel->providerSettings();
        settings.defaultProvider = AIProvider::OpenAI;
        return settings;
    }());
    keys->keys[AIProvider::OpenAI] = "key";
    openAI->answer.result.usage = TokenUsage{10, 5, 15};
    openAI->answer.result.modelID = u"gpt-5"_s;
    AIAction action = viewModel->actions().at(0);
    action.provider = AIProvider::OpenAI;
    for (int run = 0; run < 3; ++run) {
        viewModel->setQuickInput(u"The harbour ferry was late."_s);
        viewModel->startRun(action, SmartInput());
        letRunGoOn();
    }
    viewModel->setIsUsagePresented(true);
    settle();
    EXPECT_TRUE(shows(u"45 tokens"_s));
    EXPECT_TRUE(shows(u"In 30 \u2022 Out 15"_s));
    click(u"Reset Today Usage"_s);
    EXPECT_TRUE(shows(u"No usage yet today."_s));
    EXPECT_TRUE(store->loadUsageLedger(clock->now()).entries.isEmpty());
}

} // namespace

} // namespace velarc
