#include "base/uuid.h"
#include "support/app_world.h"

namespace velarc {
namespace {

class ShareHandoffTest : public AppWorld
{
protected:
    AIAction selected = testAction(u"Selected"_s);
    AIAction other = testAction(u"Other"_s);

    ShareHandoffTest()
    {
        launch();
        keys->keys[AIProvider::OpenAI] = "sk";
        selected.provider = AIProvider::OpenAI;
        other.provider = AIProvider::OpenAI;
        viewModel->setActions({selected, other});
        viewModel->setSelectedActionID(selected.id);
    }

    void leaveHandoff(const QString &text, const std::optional<QUuid> &actionID = std::nullopt)
    {
        ShareHandoffRequest request;
        request.inputText = text;
        request.actionID = actionID;
        request.createdAt = clock->now();
        store->savePendingHandoff(request);
    }

    void leaveResult(const QString &output)
    {
        ShareResult result;
        result.actionName = u"Summarize"_s;
        result.output = output;
        result.createdAt = clock->now();
        store->saveLatestResult(result);
    }

    void open(const QString &url) { viewModel->handleOpenURL(QUrl(url)); }
};

TEST_F(ShareHandoffTest, handoffRunsTheNamedActionOnTheTrimmedTextAlone)
{
    viewModel->setQuickAttachments({InputAttachment()});
    leaveHandoff(u" shared \n"_s, other.id);
    open(u"velarc://share-handoff"_s);
    EXPECT_EQ(note(), u"Continued action in host app."_s);
    EXPECT_EQ(viewModel->selectedActionID(), other.id);
    EXPECT_EQ(viewModel->quickInput(), u"shared"_s);
    EXPECT_EQ(viewModel->quickAttachments().size(), 1);
    turnEventLoop();
    EXPECT_EQ(viewModel->statusNote(), std::nullopt) << "the run clears the note as it begins";
    letRunGoOn();
    EXPECT_EQ(openAI->textRequests.first().prompt, u"shared"_s);
    EXPECT_TRUE(openAI->textRequests.first().attachments.isEmpty());
}

TEST_F(ShareHandoffTest, handoffWithoutAnActionRunsTheSelectedOne)
{
    leaveHandoff(u"shared"_s);
    open(u"VELARC://SHARE-HANDOFF"_s);
    EXPECT_EQ(note(), u"Ran selected action in host app."_s);
    EXPECT_EQ(viewModel->selectedActionID(), selected.id);
}

TEST_F(ShareHandoffTest, handoffOfAHiddenOrUnknownActionRunsTheSelectedOne)
{
    AIAction hidden = testAction(u"Hidden"_s);
    hidden.destination = ActionDestination::system(SystemDestinationKind::MailSearchMessages);
    viewModel->setActions({selected, hidden});
    for (const QUuid &id : {hidden.id, newUuid()}) {
        leaveHandoff(u"shared"_s, id);
        open(u"velarc://share-handoff"_s);
        EXPECT_EQ(note(), u"Ran selected action in host app."_s);
    }
}

TEST_F(ShareHandoffTest, handoffIsTakenUpOnce)
{
    leaveHandoff(u"shared"_s);
    open(u"velarc://share-handoff"_s);
    letRunGoOn();
    open(u"velarc://share-handoff"_s);
    letRunGoOn();
    EXPECT_EQ(openAI->textRequests.size(), 1);
    EXPECT_EQ(store->loadPendingHandoff(), std::nullopt);
}

TEST_F(ShareHandoffTest, blankHandoffIsGoneAndSaysSo)
{
    leaveHandoff(u" \n"_s, other.id);
    open(u"velarc://share-handoff"_s);
    EXPECT_EQ(note(), u"Share handoff had no input."_s);
    EXPECT_EQ(store->loadPendingHandoff(), std::nullopt);
    EXPECT_EQ(viewModel->selectedActionID(), selected.id);
}

TEST_F(ShareHandoffTest, handoffWithNothingToRunLeavesItsTextOnTheCanvas)
{
    viewModel->setActions({});
    leaveHandoff(u"shared"_s);
    open(u"velarc://share-handoff"_s);
    EXPECT_EQ(note(), u"Select an action to continue this share handoff."_s);
    EXPECT_EQ(viewModel->quickInput(), u"shared"_s);
    EXPECT_EQ(store->loadPendingHandoff(), std::nullopt);
}

TEST_F(ShareHandoffTest, handoffDuringARunTakesItsPlace)
{
    openAI->answer.gate.close();
    viewModel->startRun(selected, ExplicitInput{PreparedRunInput{u"first"_s, {}}});
    letRunGoOn();
    leaveHandoff(u"shared"_s);
    open(u"velarc://share-handoff"_s);
    letRunGoOn();
    openAI->answer.gate.open();
    turnEventLoop();
    EXPECT_EQ(openAI->textRequests.last().prompt, u"shared"_s);
    EXPECT_EQ(viewModel->quickInput(), u"shared"_s);
}

TEST_F(ShareHandoffTest, resultIsShownEachTimeItIsOpened)
{
    viewModel->setHomeAutomationOptions({false, false});
    leaveResult(u" output "_s);
    for (int time = 0; time < 2; ++time) {
        open(u"velarc://share-result"_s);
        EXPECT_EQ(viewModel->quickInput(), u" output "_s);
        const auto &shown = std::get<EngineResult>(viewModel->engineState());
        EXPECT_EQ(shown.payload, ResultPayload(TextPayload{u" output "_s}));
        EXPECT_EQ(shown.provider, u"Share Extension"_s);
        EXPECT_EQ(viewModel->homePhase(), HomePhase::Output);
        EXPECT_EQ(note(), u"Loaded result from Share Sheet."_s);
        viewModel->returnToInput();
    }
    EXPECT_EQ(viewModel->activeProviderLabel(), u"None"_s);
    EXPECT_TRUE(viewModel->dailyUsageLedger().entries.isEmpty());
}

TEST_F(ShareHandoffTest, shownResultIsWhatTheNextRunTakes)
{
    viewModel->setHomeAutomationOptions({false, false});
    leaveResult(u"output"_s);
    open(u"velarc://share-result"_s);
    viewModel->runSelectedAction();
    letRunGoOn();
    ASSERT_EQ(openAI->textRequests.size(), 1);
    EXPECT_EQ(openAI->textRequests.first().prompt, u"output"_s);
}

TEST_F(ShareHandoffTest, detailsOfAResultNameItsSource)
{
    leaveResult(u"output"_s);
    open(u"velarc://share-result?x#y"_s);
    EXPECT_EQ(viewModel->latestRunDebugInfo(),
        (GenerationDebugInfo{u"Shared from extension."_s, u"output"_s,
            {{u"Provider"_s, u"Share Extension"_s}, {u"Action"_s, u"Summarize"_s},
                {u"Timestamp"_s, u"2026-02-20T15:00:00Z"_s}}}));
}

TEST_F(ShareHandoffTest, blankResultChangesNothing)
{
    viewModel->setQuickInput(u"typed"_s);
    leaveResult(u" \n"_s);
    open(u"velarc://share-result"_s);
    EXPECT_EQ(viewModel->quickInput(), u"typed"_s);
    EXPECT_EQ(viewModel->homePhase(), HomePhase::Input);
}

TEST_F(ShareHandoffTest, addressesThatGoNowhereDoNothing)
{
    leaveHandoff(u"shared"_s);
    leaveResult(u"output"_s);
    for (const auto &url : {u"http://share-handoff"_s, u"velarc:share-handoff"_s, u"velarc://"_s,
             u"velarc://share-handoff.example"_s, u"share-handoff"_s, QString(),
             u"velarc:///share-handoff"_s, u"velarc://\u0001"_s}) {
        open(url);
        EXPECT_EQ(viewModel->statusNote(), std::nullopt) << url.toStdString();
        EXPECT_TRUE(store->loadPendingHandoff().has_value());
    }
}

TEST_F(ShareHandoffTest, brokenRecordStaysUnderItsKeyAndDoesNothing)
{
    storeDocument("velarc.share.pendingHandoff.v1", "{\"inputText\":42}");
    open(u"velarc://share-handoff"_s);
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
    EXPECT_TRUE(domain->holds("velarc.share.pendingHandoff.v1"));
}

} // namespace
} // namespace velarc
