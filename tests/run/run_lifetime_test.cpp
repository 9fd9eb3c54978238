#include "base/errors.h"
#include "run/run_fixture.h"

namespace velarc {
namespace {

// Where a run of a PDF action with a system destination can be waiting, in order.
enum class Wait
{
    FirstTurn,
    Clipboard,
    PreparingPause,
    PromptClipboard,
    SelectingPause,
    Engine,
    Export,
    RoutingPause,
    Delivery,
};

class RunLifetimeTest
    : public RunPipelineTest
    , public ::testing::WithParamInterface<Wait>
{
protected:
    // Starts a run and brings it to the wait; false if it never gets there.
    void bringTo(Wait wait)
    {
        action.systemPrompt = u"{User_Input} {Clipboard}"_s;
        action.destination = wait == Wait::RoutingPause
            ? ActionDestination::system(SystemDestinationKind::MailCompose)
            : ActionDestination();
        action.outputFormat = wait == Wait::Export ? OutputFormat::Pdf : OutputFormat::Text;
        run.clipboard->payload.text = u"clip"_s;
        if (wait == Wait::Clipboard) {
            run.clipboard->gate.close();
        }
        startOn(wait == Wait::Clipboard ? QString() : u"hello"_s);
        if (wait == Wait::FirstTurn) {
            return;
        }
        turnEventLoop();
        if (wait == Wait::PromptClipboard) {
            run.clipboard->gate.close();
        }
        if (wait > Wait::PreparingPause) {
            letOneStepPass();
        }
        closeGateOf(wait);
        if (wait > Wait::SelectingPause) {
            letOneStepPass();
        }
    }

    void closeGateOf(Wait wait)
    {
        if (wait == Wait::Engine) {
            run.generating->gate.close();
        } else if (wait == Wait::Export) {
            run.delivering->exportGate.close();
        } else if (wait == Wait::Delivery) {
            run.delivering->gate.close();
        }
    }

    [[nodiscard]] bool waitsAt(Wait wait) const
    {
        switch (wait) {
        case Wait::FirstTurn:
            return run.scope->running() == 1;
        case Wait::Clipboard:
        case Wait::PromptClipboard:
            return run.clipboard->gate.waiting() == 1;
        case Wait::PreparingPause:
        case Wait::SelectingPause:
        case Wait::RoutingPause:
            return run.clock->pausesWaiting() == 1;
        case Wait::Engine:
            return run.generating->gate.waiting() == 1;
        case Wait::Export:
            return run.delivering->exportGate.waiting() == 1;
        case Wait::Delivery:
            return run.delivering->gate.waiting() == 1;
        }
        return false;
    }
};

TEST_P(RunLifetimeTest, stateObjectMayBeDestroyedInThisWait)
{
    bringTo(GetParam());
    ASSERT_TRUE(waitsAt(GetParam()));
    run.destroyState();
    turnEventLoop();
    run.clock->advance(1s);
    turnEventLoop();
    EXPECT_EQ(run.scope->running(), 0U);
}

TEST_P(RunLifetimeTest, stateObjectMayBeDestroyedWhileNothingHeedsTheStop)
{
    run.generating->gate.ignoreStops();
    run.delivering->gate.ignoreStops();
    run.delivering->exportGate.ignoreStops();
    run.clipboard->gate.ignoreStops();
    bringTo(GetParam());
    ASSERT_TRUE(waitsAt(GetParam()));
    run.destroyState();
    turnEventLoop();
    run.generating->gate.open();
    run.delivering->gate.open();
    run.delivering->exportGate.open();
    run.clipboard->gate.open();
    run.clock->advance(1s);
    turnEventLoop();
    EXPECT_EQ(run.scope->running(), 0U);
}

TEST_P(RunLifetimeTest, cancellingInThisWaitEndsTheRunAndItsRequest)
{
    bringTo(GetParam());
    ASSERT_TRUE(waitsAt(GetParam()));
    pipeline().cancelRun();
    pipeline().restart();
    turnEventLoop();
    EXPECT_EQ(run.scope->running(), 0U);
    EXPECT_TRUE(showsReadyCanvas());
    EXPECT_EQ(run.clock->pausesWaiting(), 0U);
}

INSTANTIATE_TEST_SUITE_P(EveryWait, RunLifetimeTest,
    ::testing::Values(Wait::FirstTurn, Wait::Clipboard, Wait::PreparingPause, Wait::PromptClipboard,
        Wait::SelectingPause, Wait::Engine, Wait::Export, Wait::RoutingPause, Wait::Delivery));

// Keeps what a run without the canvas gave.
struct ShortcutOutcome
{
    std::optional<ResultPayload> payload;
    std::exception_ptr failure;
};

QCoro::Task<void> runShortcut(RunPipeline *pipeline, AIAction action, QString input,
    std::stop_token stop, std::shared_ptr<ShortcutOutcome> outcome)
{
    try {
        outcome->payload = (co_await pipeline->runForShortcut(action, input, stop)).payload;
    } catch (...) {
        outcome->failure = std::current_exception();
    }
}

class ShortcutRunTest : public RunPipelineTest
{
protected:
    std::shared_ptr<ShortcutOutcome> outcome = std::make_shared<ShortcutOutcome>();
    std::stop_source stop;

    void runOn(const QString &input)
    {
        static_cast<void>(runShortcut(&pipeline(), action, input, stop.get_token(), outcome));
        turnEventLoop();
    }

    [[nodiscard]] QString outcomeText() const
    {
        return outcome->payload ? payloadText(*outcome->payload).value_or(QString()) : QString();
    }
};

TEST_F(ShortcutRunTest, returnsThePayloadAndTouchesNeitherCanvasNorUsage)
{
    state().setHomeAutomationOptions({true, true});
    runOn(u"  hello "_s);
    EXPECT_EQ(outcomeText(), u"generated"_s);
    EXPECT_EQ(run.generating->textRequests.first().prompt, u"hello"_s);
    EXPECT_EQ(run.delivering->deliveries.first().userText, u"hello"_s);
    EXPECT_EQ(state().homePhase(), HomePhase::Input);
    EXPECT_EQ(state().activeProviderLabel(), u"None"_s);
    EXPECT_EQ(state().quickInput(), QString());
    EXPECT_TRUE(run.usage->results.isEmpty());
    EXPECT_TRUE(run.delivering->copied.isEmpty());
    EXPECT_EQ(run.clock->pausesWaiting(), 0U);
    EXPECT_FALSE(pipeline().activeExecutionID().has_value());
    EXPECT_EQ(step(), u"Generating"_s) << "an engine's own step stays";
}

TEST_F(ShortcutRunTest, blankInputGivesAnEmptyTextAtOnce)
{
    runOn(u" \n"_s);
    EXPECT_EQ(outcome->payload, ResultPayload(TextPayload{}));
    EXPECT_TRUE(run.generating->textRequests.isEmpty());
}

TEST_F(ShortcutRunTest, failureIsThrownAndTheRightToWriteGivenBack)
{
    run.generating->gate.close();
    runOn(u"hello"_s);
    run.generating->gate.letOneOn(failureOf(UserFacingError(u"no"_s)));
    turnEventLoop();
    ASSERT_TRUE(outcome->failure);
    EXPECT_FALSE(pipeline().activeExecutionID().has_value());
    EXPECT_EQ(run.scope->running(), 0U);
}

TEST_F(ShortcutRunTest, imageOfAPdfActionIsPassedOnAsItIs)
{
    action.outputFormat = OutputFormat::Pdf;
    run.generating->answer.payload = ImagePayload{QByteArrayLiteral("png")};
    runOn(u"hello"_s);
    EXPECT_EQ(outcome->payload, ResultPayload(ImagePayload{QByteArrayLiteral("png")}));
    EXPECT_TRUE(run.delivering->exports.isEmpty());
}

TEST_F(ShortcutRunTest, canvasRunIsStaleOnlyForAsLongAsTheShortcutLasts)
{
    startOn(u"canvas"_s);
    turnEventLoop();
    const auto canvasID = pipeline().activeExecutionID();
    run.generating->gate.close();
    runOn(u"shortcut"_s);
    EXPECT_NE(pipeline().activeExecutionID(), canvasID);
    run.generating->gate.open();
    turnEventLoop();
    EXPECT_EQ(outcomeText(), u"generated"_s);
    EXPECT_EQ(pipeline().activeExecutionID(), canvasID);
    letRunGoOn();
    EXPECT_EQ(shownText(), u"generated"_s);
}

TEST_F(ShortcutRunTest, canvasRunThatGoesOnInThatTimeEndsAsCancelled)
{
    startOn(u"canvas"_s);
    turnEventLoop();
    run.generating->gate.close();
    runOn(u"shortcut"_s);
    run.clock->advance(90ms);
    turnEventLoop();
    run.generating->gate.open();
    letRunGoOn();
    EXPECT_EQ(outcomeText(), u"generated"_s);
    EXPECT_FALSE(shownResult().has_value());
}

TEST_F(ShortcutRunTest, canvasRunStartedMeanwhileKeepsTheRightToWrite)
{
    run.generating->gate.close();
    runOn(u"shortcut"_s);
    startOn(u"canvas"_s);
    letRunGoOn();
    run.generating->gate.open();
    letRunGoOn();
    EXPECT_EQ(shownText(), u"generated"_s);
    EXPECT_TRUE(outcome->failure);
}

TEST_F(ShortcutRunTest, stopEndsTheRunWithACancellation)
{
    run.generating->gate.close();
    runOn(u"hello"_s);
    stop.request_stop();
    EXPECT_FALSE(outcome->failure) << "nothing resumes inside the request";
    turnEventLoop();
    ASSERT_TRUE(outcome->failure);
    EXPECT_THROW(std::rethrow_exception(outcome->failure), CancellationError);
}

TEST_F(ShortcutRunTest, stateObjectMayBeDestroyedWhileItRuns)
{
    run.generating->gate.close();
    runOn(u"hello"_s);
    run.destroyState();
    run.generating->gate.open();
    turnEventLoop();
    EXPECT_TRUE(outcome->failure);
}

} // namespace
} // namespace velarc
