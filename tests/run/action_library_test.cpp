#include "base/uuid.h"
#include "support/app_world.h"

namespace velarc {
namespace {

class ActionLibraryTest : public AppWorld
{
protected:
    ActionLibraryTest() { launch(); }
    ~ActionLibraryTest() override { scope->finish(); }

    ActionLibrary &library() { return viewModel->library(); }

    // Opens the editor on a new action, changes the draft and saves it.
    template <typename Change> AIAction savedDraft(Change change)
    {
        library().newAction();
        AIAction draft = viewModel->studioDraft();
        change(draft);
        viewModel->setStudioDraft(draft);
        library().saveStudioDraft();
        return viewModel->actions().last();
    }

    void keepOnly(const QList<AIAction> &actions)
    {
        viewModel->setActions(actions);
        store->saveActions(actions);
    }

    [[nodiscard]] QList<AIAction> storedActions() { return store->loadActions(); }
};

TEST_F(ActionLibraryTest, selectingSavesNotesAsRecentAndMarksTheHint)
{
    const QUuid id = actionNamed(u"Git Ideas"_s).id;
    library().selectAction(id);
    EXPECT_EQ(viewModel->selectedActionID(), id);
    EXPECT_EQ(viewModel->recentActionIDs(), QList<QUuid>{id});
    EXPECT_TRUE(viewModel->homeHintState().hasSeenChangeActionHint);
    const HomeLayoutState layout = store->loadHomeLayout();
    EXPECT_EQ(layout.selectedActionID, id);
    EXPECT_EQ(layout.recentActionIDs, QList<QUuid>{id});
    EXPECT_TRUE(layout.hintState.hasSeenChangeActionHint);
}

TEST_F(ActionLibraryTest, selectingTheMostRecentOneAgainLeavesTheListButWritesIt)
{
    const QUuid id = actionNamed(u"Git Ideas"_s).id;
    library().selectAction(id);
    domain->remove(kLayoutKey);
    library().selectAction(id);
    EXPECT_EQ(viewModel->recentActionIDs(), QList<QUuid>{id});
    EXPECT_EQ(store->loadHomeLayout().recentActionIDs, QList<QUuid>{id});
}

TEST_F(ActionLibraryTest, hintThatIsMarkedIsNotWrittenAgain)
{
    library().openMoreSheet();
    domain->remove(kLayoutKey);
    library().openMoreSheet();
    EXPECT_TRUE(viewModel->isMoreSheetPresented());
    EXPECT_FALSE(domain->holds(kLayoutKey));
}

TEST_F(ActionLibraryTest, openingTheLibraryMarksTheHintOfChangingTheAction)
{
    library().openActionLibrary();
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
    EXPECT_TRUE(store->loadHomeLayout().hintState.hasSeenChangeActionHint);
}

TEST_F(ActionLibraryTest, nineSelectionsLeaveEightRecentOnesTheFirstOneGone)
{
    QList<QUuid> ids;
    for (const AIAction &action : viewModel->actions().first(9)) {
        ids.prepend(action.id);
        library().selectAction(action.id);
    }
    EXPECT_EQ(viewModel->recentActionIDs(), ids.first(8));
    EXPECT_EQ(store->loadHomeLayout().recentActionIDs, ids.first(8));
}

TEST_F(ActionLibraryTest, sectionThatIsOpenAlreadyIsNotWritten)
{
    domain->remove(kLayoutKey);
    library().setEngineRoomSection(EngineRoomSection::Connections);
    EXPECT_FALSE(domain->holds(kLayoutKey));
    library().setEngineRoomSection(EngineRoomSection::DefaultEngine);
    EXPECT_EQ(store->loadHomeLayout().lastEngineRoomSection, EngineRoomSection::DefaultEngine);
}

TEST_F(ActionLibraryTest, pinnedActionsStandInDisplayOrderAndRecentOnesInTheirOwn)
{
    QStringList pinned;
    for (const AIAction &action : library().pinnedActions()) {
        pinned.append(action.name);
    }
    EXPECT_EQ(pinned,
        (QStringList{u"One-Sentence Summary"_s, u"Brainstorming Ideas"_s, u"Tell Me a Joke"_s,
            u"Extract Invoice Info"_s}));
    library().selectAction(actionNamed(u"Git Ideas"_s).id);
    library().selectAction(actionNamed(u"Tell Me a Joke"_s).id);
    EXPECT_EQ(library().recentActions().first().name, u"Tell Me a Joke"_s);
    EXPECT_EQ(library().recentActions().size(), 2);
}

TEST_F(ActionLibraryTest, newActionOpensABlankDraftBehindAllOthersAndTwiceWithTheSameOrder)
{
    library().newAction();
    EXPECT_TRUE(viewModel->isStudioPresented());
    EXPECT_EQ(viewModel->studioDraft().sortOrder, 230);
    EXPECT_EQ(library().editingActionID(), std::nullopt);
    library().newAction();
    EXPECT_EQ(viewModel->studioDraft().sortOrder, 230);
    EXPECT_EQ(viewModel->actions().size(), 22);
}

TEST_F(ActionLibraryTest, editedActionIsReplacedInItsPlace)
{
    const AIAction original = viewModel->actions().at(3);
    library().editAction(original);
    EXPECT_EQ(viewModel->studioDraft(), original);
    EXPECT_EQ(library().editingActionID(), original.id);
    AIAction draft = viewModel->studioDraft();
    draft.name = u" Git Thoughts "_s;
    viewModel->setStudioDraft(draft);
    library().saveStudioDraft();
    EXPECT_EQ(viewModel->actions().at(3).name, u"Git Thoughts"_s);
    EXPECT_EQ(viewModel->studioDraft().name, u"Git Thoughts"_s);
    EXPECT_EQ(viewModel->actions().size(), 22);
    EXPECT_EQ(storedActions(), viewModel->actions());
    EXPECT_FALSE(viewModel->isStudioPresented());
    EXPECT_EQ(library().editingActionID(), std::nullopt);
}

TEST_F(ActionLibraryTest, cancelledEditChangesNothingAndKeepsTheDraft)
{
    library().editAction(viewModel->actions().first());
    const AIAction draft = viewModel->studioDraft();
    library().cancelStudio();
    EXPECT_FALSE(viewModel->isStudioPresented());
    EXPECT_EQ(library().editingActionID(), std::nullopt);
    EXPECT_EQ(viewModel->studioDraft(), draft);
}

TEST_F(ActionLibraryTest, draftOfSpacesSavesUnderTheFallbackNameAndPrompt)
{
    const AIAction saved = savedDraft([](AIAction &draft) {
        draft.name = u"   "_s;
        draft.systemPrompt = u" \n"_s;
    });
    EXPECT_EQ(saved.name, u"Untitled Action"_s);
    EXPECT_EQ(saved.systemPrompt, uR"(You are a helpful assistant.\n\n{User_Input})"_s);
}

TEST_F(ActionLibraryTest, draftKeepsItsPromptAsTyped)
{
    EXPECT_EQ(savedDraft([](AIAction &draft) { draft.systemPrompt = u"  hi  "_s; }).systemPrompt,
        u"  hi  "_s);
}

TEST_F(ActionLibraryTest, imageDraftOnAnEngineWithoutImagesSavesAsText)
{
    EXPECT_EQ(savedDraft([](AIAction &draft) {
        draft.provider = AIProvider::Anthropic;
        draft.outputFormat = OutputFormat::Image;
    }).outputFormat,
        OutputFormat::Text);
    EXPECT_EQ(savedDraft([](AIAction &draft) {
        draft.provider = AIProvider::OpenAI;
        draft.outputFormat = OutputFormat::Image;
    }).outputFormat,
        OutputFormat::Image);
}

TEST_F(ActionLibraryTest, modelIsKeptOnlyWhereTheEngineHasModels)
{
    const auto modelOn = [this](AIProvider provider, const QString &model) {
        return savedDraft([&](AIAction &draft) {
            draft.provider = provider;
            draft.modelOverrideID = model;
        }).modelOverrideID;
    };
    EXPECT_EQ(modelOn(AIProvider::AppleIntelligence, u"gpt-5"_s), std::nullopt);
    EXPECT_EQ(modelOn(AIProvider::OpenAI, u"  gpt-5  "_s), u"gpt-5"_s);
    EXPECT_EQ(modelOn(AIProvider::Gemini, u"   "_s), std::nullopt);
}

TEST_F(ActionLibraryTest, draftOfAnActionThatWasDeletedMeanwhileIsAppendedUnderItsOldId)
{
    const AIAction original = viewModel->actions().at(3);
    library().editAction(original);
    library().deleteAction(original);
    library().saveStudioDraft();
    EXPECT_EQ(viewModel->actions().last().id, original.id);
}

TEST_F(ActionLibraryTest, savingSelectsOnlyWhereNothingWasSelected)
{
    const auto selected = viewModel->selectedActionID();
    savedDraft([](AIAction &) {});
    EXPECT_EQ(viewModel->selectedActionID(), selected);

    viewModel->setSelectedActionID(std::nullopt);
    const AIAction saved = savedDraft([](AIAction &) {});
    EXPECT_EQ(viewModel->selectedActionID(), saved.id);
    EXPECT_EQ(store->loadHomeLayout().selectedActionID, saved.id);
}

TEST_F(ActionLibraryTest, duplicateIsAnUnpinnedCopyAtTheEndAndChangesNothingElse)
{
    const auto selected = viewModel->selectedActionID();
    const AIAction source = actionNamed(u"Tell Me a Joke"_s);
    library().duplicateAction(source);
    const AIAction copy = viewModel->actions().last();
    EXPECT_EQ(copy.name, u"Tell Me a Joke Copy"_s);
    EXPECT_NE(copy.id, source.id);
    EXPECT_FALSE(copy.isPinned);
    EXPECT_EQ(copy.sortOrder, 230);
    EXPECT_EQ(viewModel->selectedActionID(), selected);
    EXPECT_TRUE(viewModel->recentActionIDs().isEmpty());
    EXPECT_FALSE(viewModel->isStudioPresented());
    library().duplicateAction(source);
    EXPECT_EQ(viewModel->actions().last().name, u"Tell Me a Joke Copy"_s);
    library().duplicateAction(copy);
    EXPECT_EQ(viewModel->actions().last().name, u"Tell Me a Joke Copy Copy"_s);
    EXPECT_EQ(storedActions(), viewModel->actions());
}

TEST_F(ActionLibraryTest, deletingTheSelectedActionSelectsTheFirstPinnedOne)
{
    const AIAction git = actionNamed(u"Git Ideas"_s);
    library().selectAction(git.id);
    library().deleteAction(git);
    const QUuid expected = actionNamed(u"One-Sentence Summary"_s).id;
    EXPECT_EQ(viewModel->selectedActionID(), expected);
    EXPECT_EQ(store->loadHomeLayout().selectedActionID, expected);
    EXPECT_TRUE(viewModel->recentActionIDs().isEmpty());
    EXPECT_TRUE(store->loadHomeLayout().recentActionIDs.isEmpty());
    EXPECT_EQ(storedActions().size(), 21);
}

TEST_F(ActionLibraryTest, deletingAnotherActionLeavesTheSelection)
{
    const auto selected = viewModel->selectedActionID();
    library().deleteAction(actionNamed(u"Git Ideas"_s));
    EXPECT_EQ(viewModel->selectedActionID(), selected);
}

TEST_F(ActionLibraryTest, deletingTheLastActionLeavesNoSelectionAndAnEmptyStoredArray)
{
    const AIAction only = viewModel->actions().first();
    keepOnly({only});
    library().deleteAction(only);
    EXPECT_TRUE(viewModel->actions().isEmpty());
    EXPECT_EQ(viewModel->selectedActionID(), std::nullopt);
    EXPECT_EQ(domain->bytes(kActionsKey), QByteArrayLiteral("[]"));
    EXPECT_FALSE(storedDocument(kLayoutKey).contains("selectedActionID"));
    viewModel->runSelectedAction();
    EXPECT_EQ(note(), u"Create or select an action first."_s);
    launch();
    EXPECT_EQ(viewModel->actions().size(), 22);
}

TEST_F(ActionLibraryTest, onlyHiddenActionsGiveNoSelection)
{
    AIAction hidden = testAction(u"Hidden"_s);
    hidden.destination = ActionDestination::system(SystemDestinationKind::MailSearchMessages);
    keepOnly({hidden});
    EXPECT_EQ(library().selectedAction(), std::nullopt);
    EXPECT_TRUE(library().visibleActions().isEmpty());
}

TEST_F(ActionLibraryTest, selectionThatNoLongerResolvesIsReplacedForTheRunWithoutAChange)
{
    viewModel->setSelectedActionID(newUuid());
    const auto standing = viewModel->selectedActionID();
    EXPECT_EQ(library().selectedAction()->name, u"One-Sentence Summary"_s);
    EXPECT_EQ(viewModel->selectedActionID(), standing);
}

TEST_F(ActionLibraryTest, pinIsFlippedAndSavedAndAnUnknownIdDoesNothing)
{
    const QUuid id = actionNamed(u"Git Ideas"_s).id;
    library().togglePin(id);
    EXPECT_TRUE(actionNamed(u"Git Ideas"_s).isPinned);
    EXPECT_EQ(storedActions(), viewModel->actions());
    library().togglePin(id);
    EXPECT_FALSE(actionNamed(u"Git Ideas"_s).isPinned);
    domain->remove(kActionsKey);
    library().togglePin(newUuid());
    EXPECT_FALSE(domain->holds(kActionsKey));
}

TEST_F(ActionLibraryTest, resetToTheDefaultEngineTakesHiddenActionsTooAndLeavesDestinations)
{
    AIAction hidden = testAction(u"Hidden"_s);
    hidden.destination = ActionDestination::system(SystemDestinationKind::MailSearchMessages);
    hidden.provider = AIProvider::OpenAI;
    hidden.modelOverrideID = u"gpt-5"_s;
    keepOnly(viewModel->actions() + QList<AIAction>{hidden});
    library().applyDefaultEngineToAllActions();
    for (const AIAction &action : viewModel->actions()) {
        EXPECT_EQ(action.provider, AIProvider::UseDefault) << action.name.toStdString();
        EXPECT_EQ(action.modelOverrideID, std::nullopt);
    }
    EXPECT_EQ(actionNamed(u"Compose Email (Mail App)"_s).destination,
        ActionDestination::system(SystemDestinationKind::MailCompose));
    EXPECT_EQ(storedActions(), viewModel->actions());
}

struct SummaryRow
{
    AIProvider provider;
    ActionDestination destination;
    const char16_t *summary;
};

class RoutingSummaryTest
    : public ActionLibraryTest
    , public ::testing::WithParamInterface<SummaryRow>
{
};

TEST_P(RoutingSummaryTest, tellsWhereTheActionWillRun)
{
    AIAction action = testAction(u"Any"_s);
    action.provider = GetParam().provider;
    action.destination = GetParam().destination;
    EXPECT_EQ(viewModel->routingSummary(action), QString::fromUtf16(GetParam().summary));
}

using Kind = SystemDestinationKind;

SummaryRow systemRow(Kind kind, const char16_t *summary)
{
    return {AIProvider::LocalFallback, ActionDestination::system(kind), summary};
}

INSTANTIATE_TEST_SUITE_P(EveryEngine, RoutingSummaryTest,
    ::testing::Values(SummaryRow{AIProvider::UseDefault, {}, u"Apple Intelligence"},
        SummaryRow{AIProvider::AppleIntelligence, {}, u"Apple Intelligence"},
        SummaryRow{AIProvider::OpenAI, {}, u"OpenAI \u2022 gpt-5"},
        SummaryRow{AIProvider::Gemini, {}, u"Gemini \u2022 gemini-2.5-flash"},
        SummaryRow{AIProvider::Anthropic, {}, u"Anthropic \u2022 claude-opus-4-1-20250805"},
        SummaryRow{AIProvider::LocalFallback, {}, u"Local Preview Engine"},
        SummaryRow{AIProvider::OpenAI, ActionDestination::system(Kind::MailCompose),
            u"OpenAI \u2022 gpt-5 -> Mail (Prefill + Confirm)"}));

INSTANTIATE_TEST_SUITE_P(EverySystemKind, RoutingSummaryTest,
    ::testing::Values(systemRow(Kind::CalendarCreateEvent, u"Local Preview Engine -> Calendar"),
        systemRow(Kind::CalendarEditEvent, u"Local Preview Engine -> Calendar"),
        systemRow(Kind::CalendarDeleteEvent, u"Local Preview Engine -> Calendar"),
        systemRow(Kind::MailCompose, u"Local Preview Engine -> Mail (Prefill + Confirm)"),
        systemRow(Kind::MessagesCompose, u"Local Preview Engine -> Messages (Prefill + Confirm)"),
        systemRow(Kind::CalendarListUpcomingEvents, u"Unavailable"),
        systemRow(Kind::MailListInboxThreads, u"Unavailable"),
        systemRow(Kind::MailSearchMessages, u"Unavailable"),
        systemRow(Kind::MessagesSearchConversations, u"Unavailable"),
        systemRow(Kind::MessagesEditScheduled, u"Unavailable"),
        systemRow(Kind::MessagesUnsendRecent, u"Unavailable")));

} // namespace
} // namespace velarc
