#include "run/run_pipeline.h"

#include "base/text.h"
#include "base/uuid.h"
#include "run/run_core.h"
#include "run/run_stages.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

void showCanvas(AppState &state)
{
    state.setActiveProviderLabel(u"None"_s);
    state.setEngineState(EngineReady{});
    state.setHomePhase(HomePhase::Input);
}

void clearResultFields(AppState &state)
{
    state.setRefinePrompt(QString());
    state.setLatestRunDebugInfo(std::nullopt);
    state.setStatusNote(std::nullopt);
    state.setSuggestedConnectionProvider(std::nullopt);
}

// Lends the right to write to another run for a while, and gives it back on every way out. Whoever
// took the right in the meantime keeps it.
class BorrowedExecution
{
public:
    BorrowedExecution(std::shared_ptr<RunCore> core, QUuid executionID)
        : m_core(std::move(core))
        , m_executionID(executionID)
        , m_remembered(std::exchange(m_core->activeExecutionID, executionID))
    {
    }
    ~BorrowedExecution()
    {
        if (m_core->activeExecutionID == m_executionID) {
            m_core->activeExecutionID = m_remembered;
        }
    }
    BorrowedExecution(const BorrowedExecution &) = delete;
    BorrowedExecution &operator=(const BorrowedExecution &) = delete;

private:
    std::shared_ptr<RunCore> m_core;
    QUuid m_executionID;
    std::optional<QUuid> m_remembered;
};

QCoro::Task<ShortcutRun> runBorrowing(
    std::shared_ptr<RunCore> core, AIAction action, QString input, std::stop_token stop)
{
    const QString text = trimmed(input).toString();
    if (text.isEmpty()) {
        co_return ShortcutRun();
    }
    std::stop_source source;
    const auto stopRun = [&source] { source.request_stop(); };
    const std::stop_callback onCallersStop(stop, stopRun);
    const std::stop_callback onPipelinesEnd(core->lifetime.get_token(), stopRun);
    const QUuid executionID = newUuid();
    const BorrowedExecution borrowed(core, executionID);
    auto run = std::make_shared<ActiveRun>(
        core, executionID, source.get_token(), core->seams.scope->enter(source));
    co_return co_await performShortcutRun(std::move(run), std::move(action), text);
}

} // namespace

RunPipeline::RunPipeline(AppState &state, RunSeams seams) : m_core(std::make_shared<RunCore>())
{
    m_core->state = &state;
    m_core->seams = std::move(seams);
}

RunPipeline::~RunPipeline()
{
    m_core->dropExecution();
    m_core->lifetime.request_stop();
    m_core->state.clear();
}

void RunPipeline::runSelectedAction()
{
    auto action = m_core->seams.selection->selectedAction();
    if (!action) {
        m_core->state->setStatusNote(u"Create or select an action first."_s);
        return;
    }
    startRun(*std::move(action), SmartInput{});
}

void RunPipeline::startRun(AIAction action, InputStrategy strategy)
{
    m_core->dropExecution();
    const QUuid executionID = newUuid();
    std::stop_source source;
    m_core->activeExecutionID = executionID;
    m_core->executionTask = source;
    auto run = std::make_shared<ActiveRun>(
        m_core, executionID, source.get_token(), m_core->seams.scope->enter(source));
    // Posted to the state object: if that goes first, the run never begins.
    QMetaObject::invokeMethod(
        m_core->state.data(),
        [run = std::move(run), action = std::move(action), strategy = std::move(strategy)] {
            // Nobody awaits a run: it tells the state how it ends.
            static_cast<void>(performRun(run, action, strategy));
        },
        Qt::QueuedConnection);
}

void RunPipeline::cancelRun()
{
    AppState &state = *m_core->state;
    if (state.homePhase() != HomePhase::Processing) {
        return;
    }
    m_core->dropExecution();
    showCanvas(state);
    state.setStatusNote(u"Canceled."_s);
}

void RunPipeline::returnToInput()
{
    AppState &state = *m_core->state;
    if (state.homePhase() == HomePhase::Processing) {
        return;
    }
    clearResultFields(state);
    showCanvas(state);
}

void RunPipeline::restart()
{
    AppState &state = *m_core->state;
    m_core->dropExecution();
    clearResultFields(state);
    m_core->activeAction.reset();
    m_core->lastPreparedInput.reset();
    showCanvas(state);
}

void RunPipeline::runRefine()
{
    const AppState &state = *m_core->state;
    const auto *result = std::get_if<EngineResult>(&state.engineState());
    if (!m_core->activeAction || result == nullptr) {
        return;
    }
    const QString previous = payloadText(result->payload).value_or(QString());
    if (isBlank(previous)) {
        return;
    }
    const QString composed = u"Previous output:\n"_s + previous + u"\n\nRefine request:\n"_s
        + trimmed(state.refinePrompt()).toString();
    const PreparedRunInput input{trimmed(composed).toString(), {}};
    startRun(*m_core->activeAction, ExplicitInput{input});
}

void RunPipeline::retryRun()
{
    if (m_core->activeAction && m_core->lastPreparedInput
        && m_core->lastPreparedInput->hasContent()) {
        startRun(*m_core->activeAction, ExplicitInput{*m_core->lastPreparedInput});
    }
}

QCoro::Task<ShortcutRun> RunPipeline::runForShortcut(
    AIAction action, QString input, std::stop_token stop)
{
    return runBorrowing(m_core, std::move(action), std::move(input), std::move(stop));
}

const std::optional<AIAction> &RunPipeline::activeAction() const
{
    return m_core->activeAction;
}

const std::optional<PreparedRunInput> &RunPipeline::lastPreparedInput() const
{
    return m_core->lastPreparedInput;
}

const std::optional<QUuid> &RunPipeline::activeExecutionID() const
{
    return m_core->activeExecutionID;
}

bool RunPipeline::hasExecutionTask() const
{
    return m_core->executionTask.has_value();
}

} // namespace velarc
