#include "action_samples.h"

#include "actions/action_defaults.h"
#include "actions/action_edit.h"
#include "actions/action_json.h"
#include "actions/catalogue.h"
#include "base/uuid.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <limits>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kLargest = std::numeric_limits<qint64>::max();

AIAction draftOn(AIProvider provider, OutputFormat format = OutputFormat::Text)
{
    AIAction draft = blankAction();
    draft.provider = provider;
    draft.outputFormat = format;
    return draft;
}

std::optional<QString> savedModel(AIProvider provider, const QString &model)
{
    AIAction draft = draftOn(provider);
    draft.modelOverrideID = model;
    return normalisedDraft(draft).modelOverrideID;
}

QString savedName(const QString &name)
{
    AIAction draft = blankAction();
    draft.name = name;
    return normalisedDraft(draft).name;
}

QString savedPrompt(const QString &prompt)
{
    AIAction draft = blankAction();
    draft.systemPrompt = prompt;
    return normalisedDraft(draft).systemPrompt;
}

void expectBlank(const AIAction &draft, qint64 sortOrder)
{
    EXPECT_FALSE(draft.id.isNull());
    EXPECT_EQ(draft.name, u"New Action"_s);
    EXPECT_EQ(draft.icon, u"bolt.fill"_s);
    EXPECT_EQ(draft.colorHex, u"2563EB"_s);
    EXPECT_EQ(draft.systemPrompt, uR"(You are a helpful assistant.\n\nInput:\n{User_Input})"_s);
    EXPECT_EQ(draft.provider, AIProvider::UseDefault);
    EXPECT_EQ(draft.outputFormat, OutputFormat::Text);
    EXPECT_EQ(draft.destination, ActionDestination::output(OutputDestination::ShowInApp));
    EXPECT_EQ(draft.modelOverrideID, std::nullopt);
    EXPECT_TRUE(draft.skills.isEmpty());
    EXPECT_FALSE(draft.isPinned);
    EXPECT_EQ(draft.sortOrder, sortOrder);
}

} // namespace

TEST(Drafts, blankActionStandsAtTheEndOfAnyLibrary)
{
    expectBlank(blankAction(), 999);
    EXPECT_NE(blankAction().id, blankAction().id);
}

TEST(Drafts, newActionOfAnEmptyLibraryHasOrderTen)
{
    expectBlank(newActionDraft({}), 10);
}

TEST(Drafts, newActionStandsBehindTheLibraryUntilItIsSaved)
{
    const QList<AIAction> actions = builtInActions();
    expectBlank(newActionDraft(actions), 230);
    EXPECT_EQ(newActionDraft(actions).sortOrder, 230);
    EXPECT_NE(newActionDraft(actions).id, newActionDraft(actions).id);
}

TEST(Drafts, hiddenActionsCountForTheNextOrder)
{
    const auto kind = SystemDestinationKind::MailSearchMessages;
    EXPECT_EQ(nextSortOrder({actionNamed(u"A"_s, 5),
                  bound(actionNamed(u"H"_s, 70), ActionDestination::system(kind)),
                  actionNamed(u"B"_s, 6)}),
        80);
}

TEST(Drafts, negativeOrdersCountAsTheyAre)
{
    EXPECT_EQ(nextSortOrder({actionNamed(u"A"_s, -50), actionNamed(u"B"_s, -40)}), -30);
    EXPECT_EQ(nextSortOrder({actionNamed(u"A"_s, std::numeric_limits<qint64>::min())}),
        std::numeric_limits<qint64>::min() + 10);
}

TEST(Drafts, nextOrderStopsAtTheLargest)
{
    for (const qint64 order : {kLargest, kLargest - 1, kLargest - 10}) {
        EXPECT_EQ(nextSortOrder({actionNamed(u"A"_s, order)}), kLargest);
    }
    EXPECT_EQ(nextSortOrder({actionNamed(u"A"_s, kLargest - 11)}), kLargest - 1);
}

TEST(SavingADraft, nameOfSpacesOnlyBecomesUntitledAction)
{
    EXPECT_EQ(savedName(u" \t\n "_s), u"Untitled Action"_s);
    EXPECT_EQ(savedName(u""_s), u"Untitled Action"_s);
}

TEST(SavingADraft, nameIsTrimmed)
{
    EXPECT_EQ(savedName(u"\u00a0 My  action \n"_s), u"My  action"_s);
}

TEST(SavingADraft, blankPromptBecomesTheFallbackWithItsBackslashes)
{
    const QString fallback = uR"(You are a helpful assistant.\n\n{User_Input})"_s;
    EXPECT_EQ(savedPrompt(u""_s), fallback);
    EXPECT_EQ(savedPrompt(u" \n "_s), fallback);
    EXPECT_NE(fallback, blankActionPrompt());
}

TEST(SavingADraft, fallbackPromptKeepsItsBackslashesInTheStore)
{
    AIAction draft = blankAction();
    draft.systemPrompt.clear();
    const QByteArray stored = writeJson(encodeAction(normalisedDraft(draft)));
    EXPECT_TRUE(stored.contains(R"("You are a helpful assistant.\\n\\n{User_Input}")"));
}

TEST(SavingADraft, promptKeepsItsSpaces)
{
    EXPECT_EQ(savedPrompt(u"  hi  "_s), u"  hi  "_s);
}

TEST(SavingADraft, imageOnAnEngineWithoutImagesBecomesText)
{
    for (const AIProvider provider : {AIProvider::Anthropic, AIProvider::Gemini}) {
        AIAction draft = draftOn(provider, OutputFormat::Image);
        draft.destination = ActionDestination::output(OutputDestination::ShareImmediately);
        EXPECT_EQ(normalisedDraft(draft).outputFormat, OutputFormat::Text);
        draft.outputFormat = OutputFormat::Pdf;
        EXPECT_EQ(normalisedDraft(draft).outputFormat, OutputFormat::Pdf);
    }
}

TEST(SavingADraft, imageOnOpenAIStays)
{
    EXPECT_EQ(normalisedDraft(draftOn(AIProvider::OpenAI, OutputFormat::Image)).outputFormat,
        OutputFormat::Image);
    EXPECT_EQ(normalisedDraft(draftOn(AIProvider::UseDefault, OutputFormat::Image)).outputFormat,
        OutputFormat::Image);
}

TEST(SavingADraft, systemDestinationTurnsItsFormatToText)
{
    for (const OutputFormat format : {OutputFormat::Json, OutputFormat::Pdf, OutputFormat::Image}) {
        const AIAction draft = bound(draftOn(AIProvider::OpenAI, format),
            ActionDestination::system(SystemDestinationKind::MailCompose));
        EXPECT_EQ(normalisedDraft(draft).outputFormat, OutputFormat::Text);
    }
}

TEST(SavingADraft, enginesWithoutModelsLoseTheOverride)
{
    EXPECT_EQ(savedModel(AIProvider::AppleIntelligence, u"gpt-5"_s), std::nullopt);
    EXPECT_EQ(savedModel(AIProvider::UseDefault, u"gpt-5"_s), std::nullopt);
    EXPECT_EQ(savedModel(AIProvider::LocalFallback, u"gpt-5"_s), std::nullopt);
}

TEST(SavingADraft, enginesWithModelsKeepTheOverrideTrimmed)
{
    EXPECT_EQ(savedModel(AIProvider::OpenAI, u"  gpt-5  "_s), u"gpt-5"_s);
    EXPECT_EQ(savedModel(AIProvider::Gemini, u"gemini-2.5-pro\n"_s), u"gemini-2.5-pro"_s);
    EXPECT_EQ(savedModel(AIProvider::Anthropic, u"claude-sonnet-4-5"_s), u"claude-sonnet-4-5"_s);
}

TEST(SavingADraft, blankOverrideIsNone)
{
    EXPECT_EQ(savedModel(AIProvider::Gemini, u"   "_s), std::nullopt);
    EXPECT_EQ(savedModel(AIProvider::OpenAI, u""_s), std::nullopt);
    EXPECT_EQ(normalisedDraft(draftOn(AIProvider::Anthropic)).modelOverrideID, std::nullopt);
}

TEST(SavingADraft, everythingElseStays)
{
    AIAction draft = draftOn(AIProvider::OpenAI, OutputFormat::Json);
    draft.icon = u" star "_s;
    draft.colorHex = u"nonsense"_s;
    draft.skills = {u" a "_s, u""_s};
    draft.isPinned = true;
    draft.sortOrder = -3;
    EXPECT_EQ(normalisedDraft(draft), draft);
}

TEST(SavingADraft, editedActionIsReplacedInItsPlace)
{
    const QList<AIAction> actions{
        actionNamed(u"A"_s, 1), actionNamed(u"B"_s, 2), actionNamed(u"C"_s, 3)};
    AIAction draft = actions[1];
    draft.name = u"Edited"_s;
    EXPECT_EQ(
        withSavedDraft(actions, draft, draft.id), (QList<AIAction>{actions[0], draft, actions[2]}));
}

TEST(SavingADraft, newActionIsAppended)
{
    const QList<AIAction> actions{actionNamed(u"A"_s, 1)};
    const AIAction draft = newActionDraft(actions);
    EXPECT_EQ(withSavedDraft(actions, draft, std::nullopt), actions + QList<AIAction>{draft});
    // The draft's own id decides nothing.
    EXPECT_EQ(withSavedDraft(actions, actions[0], std::nullopt), actions + actions);
}

TEST(SavingADraft, draftOfADeletedActionIsAppendedWithItsOldId)
{
    const QList<AIAction> actions{actionNamed(u"A"_s, 1)};
    const AIAction deleted = actionNamed(u"Gone"_s, 2);
    const QList<AIAction> saved = withSavedDraft(actions, deleted, deleted.id);
    EXPECT_EQ(saved, actions + QList<AIAction>{deleted});
    EXPECT_EQ(saved.last().id, deleted.id);
}

TEST(SavingADraft, ofTwoActionsOfOneIdTheFirstIsReplaced)
{
    QList<AIAction> actions{actionNamed(u"A"_s), actionNamed(u"B"_s)};
    actions[1].id = actions[0].id;
    AIAction draft = actions[0];
    draft.name = u"Edited"_s;
    EXPECT_EQ(
        namesOf(withSavedDraft(actions, draft, draft.id)), (QStringList{u"Edited"_s, u"B"_s}));
}

TEST(Duplicating, pinnedActionGivesAnUnpinnedCopyAtTheEndOfTheOrder)
{
    AIAction source = pinned(actionNamed(u"A"_s, 10));
    source.skills = {u"x"_s};
    source.modelOverrideID = u"m"_s;
    const QList<AIAction> actions{source, actionNamed(u"B"_s, 220)};
    const QList<AIAction> after = withDuplicate(actions, source);
    ASSERT_EQ(after.size(), 3);
    EXPECT_EQ(after.first(2), actions);
    AIAction expected = source;
    expected.id = after.last().id;
    expected.name = u"A Copy"_s;
    expected.isPinned = false;
    expected.sortOrder = 230;
    EXPECT_EQ(after.last(), expected);
    EXPECT_NE(after.last().id, source.id);
}

TEST(Duplicating, twoDuplicatesOfOneSourceShareTheirName)
{
    const QList<AIAction> actions{actionNamed(u"A"_s)};
    const QList<AIAction> after = withDuplicate(withDuplicate(actions, actions[0]), actions[0]);
    EXPECT_EQ(namesOf(after), (QStringList{u"A"_s, u"A Copy"_s, u"A Copy"_s}));
    EXPECT_NE(after[1].id, after[2].id);
}

TEST(Duplicating, duplicateOfADuplicateIsNamedCopyCopy)
{
    const QList<AIAction> actions{actionNamed(u"A"_s)};
    const QList<AIAction> once = withDuplicate(actions, actions[0]);
    EXPECT_EQ(withDuplicate(once, once.last()).last().name, u"A Copy Copy"_s);
}

TEST(Deleting, everyActionOfTheIdGoes)
{
    QList<AIAction> actions{actionNamed(u"A"_s), actionNamed(u"B"_s), actionNamed(u"C"_s)};
    actions[2].id = actions[0].id;
    EXPECT_EQ(namesOf(withoutAction(actions, actions[0].id)), QStringList{u"B"_s});
    EXPECT_EQ(withoutAction(actions, newUuid()), actions);
}

TEST(Deleting, everyOccurrenceLeavesTheRecentList)
{
    const QUuid gone = newUuid();
    const QUuid other = newUuid();
    EXPECT_EQ(withoutRecentAction({gone, other, gone}, gone), QList<QUuid>{other});
}

TEST(Deleting, selectionMovesToTheFirstPinnedActionInDisplayOrder)
{
    const QList<AIAction> actions{actionNamed(u"A"_s, 1), pinned(actionNamed(u"Q"_s, 9)),
        pinned(actionNamed(u"P"_s, 8)), actionNamed(u"B"_s, 0)};
    const QList<AIAction> remaining = withoutAction(actions, actions[0].id);
    EXPECT_EQ(selectionAfterRemoval(remaining, actions[0].id, actions[0].id), actions[2].id);
}

TEST(Deleting, selectionOfAnotherActionStays)
{
    const QList<AIAction> actions{pinned(actionNamed(u"A"_s)), actionNamed(u"B"_s)};
    EXPECT_EQ(selectionAfterRemoval(actions, actions[1].id, newUuid()), actions[1].id);
    EXPECT_EQ(selectionAfterRemoval(actions, std::nullopt, newUuid()), std::nullopt);
}

TEST(Deleting, lastVisibleActionLeavesNoSelection)
{
    const AIAction last = actionNamed(u"A"_s);
    const AIAction hidden = bound(actionNamed(u"H"_s),
        ActionDestination::system(SystemDestinationKind::MessagesUnsendRecent));
    EXPECT_EQ(selectionAfterRemoval({hidden}, last.id, last.id), std::nullopt);
    EXPECT_EQ(selectionAfterRemoval({}, last.id, last.id), std::nullopt);
}

TEST(Pinning, flipsThePinOfTheFirstActionOfTheIdAndLeavesTheOrder)
{
    QList<AIAction> actions{actionNamed(u"A"_s), actionNamed(u"B"_s), actionNamed(u"C"_s)};
    actions[2].id = actions[1].id;
    QList<AIAction> expected = actions;
    expected[1].isPinned = true;
    EXPECT_EQ(withPinToggled(actions, actions[1].id), expected);
    EXPECT_EQ(withPinToggled(expected, actions[1].id), actions);
}

TEST(Pinning, unknownIdChangesNothing)
{
    const QList<AIAction> actions{actionNamed(u"A"_s)};
    EXPECT_EQ(withPinToggled(actions, newUuid()), actions);
}

TEST(DefaultEngineEverywhere, setsEngineAndModelOfEveryActionAndNothingElse)
{
    AIAction mail = bound(
        actionNamed(u"Mail"_s), ActionDestination::system(SystemDestinationKind::MailCompose));
    mail.provider = AIProvider::Gemini;
    mail.modelOverrideID = u"m"_s;
    AIAction hidden = bound(
        actionNamed(u"H"_s), ActionDestination::system(SystemDestinationKind::MailSearchMessages));
    hidden.provider = AIProvider::AppleIntelligence;
    AIAction picture = pinned(actionNamed(u"Picture"_s, 4));
    picture.provider = AIProvider::OpenAI;
    picture.outputFormat = OutputFormat::Image;
    picture.modelOverrideID = u"gpt-4o"_s;

    QList<AIAction> expected{mail, hidden, picture};
    for (AIAction &action : expected) {
        action.provider = AIProvider::UseDefault;
        action.modelOverrideID.reset();
    }
    EXPECT_EQ(withDefaultEngineEverywhere({mail, hidden, picture}), expected);
    EXPECT_EQ(expected[0].destination, mail.destination);
}

TEST(DefaultEngineEverywhere, builtInActionsOfTheDeviceFollow)
{
    for (const AIAction &action : withDefaultEngineEverywhere(builtInActions())) {
        EXPECT_EQ(action.provider, AIProvider::UseDefault) << action.name.toStdString();
    }
}

} // namespace velarc
