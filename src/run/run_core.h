#pragma once

// What the pipeline and the frames of its runs share.

#include "run/app_state.h"
#include "run/run_pipeline.h"

#include <QPointer>

namespace velarc {

struct RunCore
{
    QPointer<AppState> state; // null once the state object has gone
    RunSeams seams;
    std::optional<AIAction> activeAction;
    std::optional<PreparedRunInput> lastPreparedInput;
    std::optional<std::stop_source> executionTask;
    std::optional<QUuid> activeExecutionID;
    std::stop_source lifetime; // stopped when the pipeline goes

    // Whether the run of that ID may write.
    [[nodiscard]] bool isActive(const QUuid &executionID) const
    {
        return state && activeExecutionID == executionID;
    }

    // Ends the run that is going, if any: it is stale from here on.
    void dropExecution();
};

// One run: its identity, its stop token and its right to write.
class ActiveRun final : public RunProgress
{
public:
    ActiveRun(std::shared_ptr<RunCore> core, QUuid executionID, std::stop_token stop,
        TaskScope::Ticket ticket)
        : m_core(std::move(core))
        , m_executionID(executionID)
        , m_stop(std::move(stop))
        , m_ticket(std::move(ticket))
    {
    }

    [[nodiscard]] bool isActive() const { return m_core->isActive(m_executionID); }
    void ensureActive() const override;
    void step(QString text) override;
    void note(QString text) override;

    // The state, for writing; call it only where the run is known to be active.
    [[nodiscard]] AppState &state() const { return *m_core->state; }
    [[nodiscard]] RunCore &core() const { return *m_core; }
    [[nodiscard]] const RunSeams &seams() const { return m_core->seams; }
    [[nodiscard]] const std::stop_token &stop() const { return m_stop; }

    // Clears the handle, unless a successor holds it.
    void finish();

private:
    std::shared_ptr<RunCore> m_core;
    QUuid m_executionID;
    std::stop_token m_stop;
    TaskScope::Ticket m_ticket; // out until the last frame of the run has gone
};

} // namespace velarc
