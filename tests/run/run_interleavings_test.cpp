// What holds of runs whatever happens in whatever order: random interleavings of everything that a
// user, an engine and time can do, with a seed that is printed when one fails.

#include "base/errors.h"
#include "fakes/notify_counter.h"
#include "run/run_fixture.h"

#include <random>

namespace velarc {
namespace {

constexpr std::uint32_t kSeed = 20260220;
constexpr int kInterleavings = 10'000;
constexpr int kEventsEach = 24;

enum class Event
{
    Start,
    StartOfSystemAction,
    StartWithoutInput,
    Cancel,
    ReturnToInput,
    Restart,
    EngineAnswers,
    EngineFails,
    EngineIsCancelled,
    DeliveryAnswers,
    DeliveryFails,
    TimePasses,
    LoopTurns,
};

constexpr unsigned kEventKinds = static_cast<unsigned>(Event::LoopTurns) + 1;

bool isOfTheUser(Event event)
{
    return event <= Event::Restart;
}

// A world in which everything is held back until an event lets it go. Whatever a run writes names
// the run's input, so that a write of the wrong run shows.
class Interleaving
{
public:
    explicit Interleaving(std::uint32_t seed) : m_random(seed)
    {
        run.generating->namesThePrompt = true;
        run.generating->gate.close();
        run.delivering->gate.close();
        if (m_random() % 3 == 0) {
            run.generating->gate.ignoreStops();
        }
        AppState *state = run.state.get();
        QObject::connect(state, &AppState::engineStateChanged, state, [this] { checkStep(); });
        QObject::connect(state, &AppState::statusNoteChanged, state, [this] { checkNote(); });
        QObject::connect(state, &AppState::quickInputChanged, state,
            [this] { EXPECT_EQ(run.state->quickInput(), m_activeInput); });
    }

    void happen()
    {
        const auto event = static_cast<Event>(m_random() % kEventKinds);
        m_trace.append(QString::number(static_cast<int>(event)));
        const bool nothingRan = !run.pipeline->hasExecutionTask();
        const NotifyCounter counter(*run.state);
        perform(event);
        if (nothingRan && !isOfTheUser(event)) {
            EXPECT_EQ(counter.count(), 0) << "something was written without a run";
        }
        if (!run.pipeline->hasExecutionTask()) {
            m_activeInput.clear();
        }
        checkInvariants();
    }

    // Lets everything end.
    void settle()
    {
        run.generating->gate.open();
        run.delivering->gate.open();
        for (int pause = 0; pause < 6; ++pause) {
            turnEventLoop();
            run.clock->advance(90ms);
        }
        turnEventLoop();
        checkInvariants();
        checkEnd();
    }

    [[nodiscard]] std::string trace() const { return m_trace.join(u' ').toStdString(); }

private:
    ScriptedRun run;
    std::mt19937 m_random;
    QStringList m_trace;
    QString m_activeInput; // of the only run that may write; empty for none
    int m_runs = 0;
    QString m_pausedStep;
    Instant m_pausedSince;

    void start(const ActionDestination &destination, const QString &input)
    {
        AIAction action = testAction(u"Name"_s);
        action.destination = destination;
        m_activeInput = input;
        run.pipeline->startRun(action, ExplicitInput{PreparedRunInput{input, {}}});
    }

    [[nodiscard]] QString nextInput() { return u"input "_s + QString::number(++m_runs); }

    void perform(Event event)
    {
        switch (event) {
        case Event::Start:
            return start(ActionDestination(), nextInput());
        case Event::StartOfSystemAction:
            return start(
                ActionDestination::system(SystemDestinationKind::MailCompose), nextInput());
        case Event::StartWithoutInput:
            return start(ActionDestination(), QString());
        case Event::Cancel:
            return run.pipeline->cancelRun();
        case Event::ReturnToInput:
            return run.pipeline->returnToInput();
        case Event::Restart:
            return run.pipeline->restart();
        case Event::EngineAnswers:
            return static_cast<void>(run.generating->gate.letOneOn());
        case Event::EngineFails:
            return static_cast<void>(
                run.generating->gate.letOneOn(failureOf(UserFacingError(u"engine"_s))));
        case Event::EngineIsCancelled:
            return static_cast<void>(run.generating->gate.letOneOn(failureOf(CancellationError())));
        case Event::DeliveryAnswers:
            return static_cast<void>(run.delivering->gate.letOneOn());
        case Event::DeliveryFails:
            return static_cast<void>(
                run.delivering->gate.letOneOn(failureOf(SystemActionError(u"delivery"_s))));
        case Event::TimePasses:
            return run.clock->advance(std::chrono::milliseconds(30 + m_random() % 90));
        case Event::LoopTurns:
            return turnEventLoop();
        }
    }

    // A step that pauses stands for its 90 ms before the run goes on.
    void checkStep()
    {
        const EngineState &state = run.state->engineState();
        const auto *processing = std::get_if<EngineProcessing>(&state);
        const QString step = processing == nullptr ? QString() : processing->step;
        const bool goesOn = (processing != nullptr && step != u"Preparing payload"_s)
            || std::holds_alternative<EngineResult>(state);
        if (goesOn && !m_pausedStep.isEmpty()) {
            EXPECT_GE(run.clock->now() - m_pausedSince, 90ms) << m_pausedStep.toStdString();
        }
        const bool pauses = step == u"Preparing payload"_s || step == u"Selecting provider"_s
            || step == u"Routing to Mail"_s;
        m_pausedStep = pauses ? step : QString();
        m_pausedSince = run.clock->now();
        if (const auto *result = std::get_if<EngineResult>(&state)) {
            EXPECT_EQ(payloadText(result->payload), u"result of "_s + m_activeInput);
        }
    }

    void checkNote()
    {
        const QString note = run.state->statusNote().value_or(QString());
        if (note.startsWith(u"note of "_s)) {
            EXPECT_EQ(note, u"note of "_s + m_activeInput);
        }
    }

    void checkInvariants() const
    {
        EXPECT_EQ(run.pipeline->hasExecutionTask(), run.pipeline->activeExecutionID().has_value());
        const bool isWorking = std::holds_alternative<EngineProcessing>(run.state->engineState());
        const bool isProcessing = run.state->homePhase() == HomePhase::Processing;
        EXPECT_TRUE(!isWorking || isProcessing);
        EXPECT_TRUE(!isProcessing || run.pipeline->hasExecutionTask());
    }

    void checkEnd() const
    {
        EXPECT_FALSE(run.pipeline->hasExecutionTask());
        EXPECT_EQ(run.scope->running(), 0U);
        EXPECT_EQ(run.clock->pausesWaiting(), 0U);
        const EngineState &state = run.state->engineState();
        const bool isShown = std::holds_alternative<EngineResult>(state)
            || std::holds_alternative<EngineError>(state);
        EXPECT_EQ(isShown, run.state->homePhase() == HomePhase::Output);
        EXPECT_EQ(
            std::holds_alternative<EngineReady>(state), run.state->homePhase() == HomePhase::Input);
    }
};

TEST(RunInterleavings, noOrderOfEventsBreaksThePromisesOfARun)
{
    std::mt19937 seeds(kSeed);
    for (int number = 0; number < kInterleavings; ++number) {
        const auto seed = static_cast<std::uint32_t>(seeds());
        Interleaving interleaving(seed);
        for (int event = 0; event < kEventsEach; ++event) {
            interleaving.happen();
        }
        interleaving.settle();
        if (::testing::Test::HasFailure()) {
            FAIL() << "seed " << seed << ", events " << interleaving.trace();
        }
    }
}

} // namespace
} // namespace velarc
