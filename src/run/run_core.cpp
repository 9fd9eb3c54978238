#include "run/run_core.h"

#include "base/errors.h"

namespace velarc {

void RunCore::dropExecution()
{
    if (executionTask) {
        executionTask->request_stop();
    }
    executionTask.reset();
    activeExecutionID.reset();
}

void ActiveRun::ensureActive() const
{
    if (!isActive()) {
        throw CancellationError();
    }
    throwIfStopped(m_stop);
}

void ActiveRun::step(QString text)
{
    ensureActive();
    state().setEngineState(EngineProcessing{std::move(text)});
}

void ActiveRun::note(QString text)
{
    ensureActive();
    state().setStatusNote(std::move(text));
}

void ActiveRun::finish()
{
    if (isActive()) {
        m_core->executionTask.reset();
        m_core->activeExecutionID.reset();
    }
}

} // namespace velarc
