#include "actions/action_json.h"
#include "base/uuid.h"
#include "entry/intent.h"
#include "support/app_world.h"
#include "support/wait_until.h"

namespace velarc {
namespace {

struct Performed
{
    std::optional<IntentOutcome> outcome;
    std::exception_ptr failure;
};

QCoro::Task<void> keep(QCoro::Task<IntentOutcome> task, std::shared_ptr<Performed> performed)
{
    try {
        performed->outcome = co_await task;
    } catch (...) {
        performed->failure = std::current_exception();
    }
}

class IntentTest : public AppWorld
{
protected:
    int statesMade = 0;
    std::shared_ptr<Performed> performed = std::make_shared<Performed>();
    std::stop_source stop;

    void storeActions(const QList<AIAction> &actions) { store->saveActions(actions); }

    [[nodiscard]] AIAction localAction(const QString &name)
    {
        AIAction action = testAction(name);
        action.provider = AIProvider::LocalFallback;
        return action;
    }

    void perform(const QUuid &id, const QString &input)
    {
        const MakeViewModel makeViewModel = [this] {
            ++statesMade;
            return std::make_unique<AppViewModel>(services());
        };
        static_cast<void>(
            keep(performIntent(id, input, makeViewModel, stop.get_token()), performed));
        static_cast<void>(waitUntil(
            [this] { return performed->outcome || performed->failure; }, isHeldBack ? 0s : 20s));
    }

    bool isHeldBack = false;

    [[nodiscard]] QString dialog() const
    {
        return performed->outcome ? performed->outcome->dialog : QString();
    }

    [[nodiscard]] bool wasRefused() const
    {
        return performed->outcome && performed->outcome->kind == IntentOutcome::Kind::Refused;
    }
};

TEST_F(IntentTest, offersEveryActionButHiddenOnesInDisplayOrder)
{
    AIAction beta = localAction(u"beta"_s);
    AIAction alpha = localAction(u"Alpha"_s);
    AIAction pinned = localAction(u"Zulu"_s);
    pinned.isPinned = true;
    pinned.sortOrder = 99;
    AIAction compose = localAction(u"Write"_s);
    compose.destination = ActionDestination::system(SystemDestinationKind::MailCompose);
    compose.sortOrder = 5;
    AIAction hidden = localAction(u"Hidden"_s);
    hidden.destination = ActionDestination::system(SystemDestinationKind::MailSearchMessages);
    storeActions({beta, hidden, alpha, compose, pinned});
    EXPECT_EQ(suggestedEntities(*store),
        (QList<VelarcActionEntity>{{pinned.id, u"Zulu"_s}, {alpha.id, u"Alpha"_s},
            {beta.id, u"beta"_s}, {compose.id, u"Write"_s}}));
}

TEST_F(IntentTest, entitiesComeInTheOrderAskedForWithoutUnknownAndHiddenOnes)
{
    AIAction one = localAction(u"One"_s);
    AIAction two = localAction(u"Two"_s);
    AIAction hidden = localAction(u"Hidden"_s);
    hidden.destination = ActionDestination::system(SystemDestinationKind::MailSearchMessages);
    storeActions({one, two, hidden});
    EXPECT_EQ(entitiesFor(*store, {two.id, newUuid(), hidden.id, one.id}),
        (QList<VelarcActionEntity>{{two.id, u"Two"_s}, {one.id, u"One"_s}}));
}

TEST_F(IntentTest, blankInputIsRefusedWhateverTheAction)
{
    perform(newUuid(), u" \n"_s);
    EXPECT_TRUE(wasRefused());
    EXPECT_EQ(dialog(), u"Input is empty."_s);
    EXPECT_EQ(statesMade, 0);
}

TEST_F(IntentTest, actionThatWasDeletedIsRefused)
{
    perform(newUuid(), u"x"_s);
    EXPECT_TRUE(wasRefused());
    EXPECT_EQ(dialog(), u"Action no longer exists."_s);
}

TEST_F(IntentTest, composeActionIsRefusedWithTheWayOut)
{
    AIAction compose = localAction(u"Write"_s);
    for (const auto kind :
        {SystemDestinationKind::MailCompose, SystemDestinationKind::MessagesCompose}) {
        compose.destination = ActionDestination::system(kind);
        storeActions({compose});
        performed = std::make_shared<Performed>();
        perform(compose.id, u"x"_s);
        EXPECT_TRUE(wasRefused());
        EXPECT_EQ(dialog(),
            u"This action needs foreground compose UI in Mail or Messages. Open Velarc and run "
            u"it there."_s);
    }
}

TEST_F(IntentTest, calendarActionRuns)
{
    AIAction calendar = localAction(u"Plain"_s);
    calendar.destination = ActionDestination::system(SystemDestinationKind::CalendarCreateEvent);
    storeActions({calendar});
    perform(calendar.id, u"x"_s);
    EXPECT_FALSE(wasRefused());
    EXPECT_EQ(systemActions->kinds,
        QList<SystemDestinationKind>{SystemDestinationKind::CalendarCreateEvent});
}

TEST_F(IntentTest, answerIsTheTextAsItStands)
{
    AIAction action = localAction(u"Plain"_s);
    storeActions({action});
    perform(action.id, u"  hello "_s);
    EXPECT_EQ(dialog(), u"[Local Preview Response]\nAction: Plain\n\nhello"_s);
    EXPECT_TRUE(performed->outcome->run.has_value());
}

TEST_F(IntentTest, blankAnswerAndEveryOtherPayloadHaveASentence)
{
    keys->keys[AIProvider::OpenAI] = "sk";
    AIAction action = testAction(u"Cloud"_s);
    action.provider = AIProvider::OpenAI;
    const auto answerTo = [&](OutputFormat format, const ResultPayload &payload) {
        action.outputFormat = format;
        storeActions({action});
        openAI->answer.result.payload = payload;
        performed = std::make_shared<Performed>();
        perform(action.id, u"x"_s);
        return dialog();
    };
    EXPECT_EQ(answerTo(OutputFormat::Text, TextPayload{u" \n"_s}), u"Action completed."_s);
    EXPECT_EQ(answerTo(OutputFormat::Image, ImagePayload{QByteArrayLiteral("png")}),
        u"Image generated."_s);
    EXPECT_EQ(answerTo(OutputFormat::Pdf, TextPayload{u"text"_s}), u"PDF generated."_s);
}

TEST_F(IntentTest, failureInsideTheRunIsTheIntentsFailure)
{
    AIAction action = testAction(u"Cloud"_s);
    action.provider = AIProvider::OpenAI;
    storeActions({action});
    perform(action.id, u"x"_s);
    ASSERT_TRUE(performed->failure);
    try {
        std::rethrow_exception(performed->failure);
    } catch (const std::exception &error) {
        EXPECT_EQ(errorDescription(error), u"OpenAI is not connected yet."_s);
    }
}

TEST_F(IntentTest, runCountsNoUsage)
{
    AIAction action = testAction(u"Cloud"_s);
    action.provider = AIProvider::OpenAI;
    storeActions({action});
    keys->keys[AIProvider::OpenAI] = "sk";
    openAI->answer.result.usage = TokenUsage{1, 1, 2};
    perform(action.id, u"x"_s);
    EXPECT_EQ(dialog(), u"from OpenAI"_s);
    EXPECT_TRUE(store->loadUsageLedger(clock->now()).entries.isEmpty());
}

TEST_F(IntentTest, stopEndsTheRun)
{
    AIAction action = testAction(u"Cloud"_s);
    action.provider = AIProvider::OpenAI;
    storeActions({action});
    keys->keys[AIProvider::OpenAI] = "sk";
    openAI->answer.gate.close();
    isHeldBack = true;
    perform(action.id, u"x"_s);
    stop.request_stop();
    turnEventLoop();
    ASSERT_TRUE(performed->failure);
    EXPECT_THROW(std::rethrow_exception(performed->failure), CancellationError);
}

} // namespace
} // namespace velarc
