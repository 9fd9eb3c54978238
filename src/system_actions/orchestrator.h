#pragma once

// The one gate through which a run reaches the calendar and compose windows.

#include "system_actions/calendar_action_service.h"
#include "system_actions/compose_serving.h"
#include "system_actions/system_actions.h"

namespace velarc {

// Lifetime: the orchestrator need not outlive its tasks.
class SystemActionOrchestrator final : public SystemActionExecuting
{
public:
    SystemActionOrchestrator(std::shared_ptr<CalendarActionServing> calendarService,
        std::shared_ptr<CommunicationComposeServing> communicationService,
        std::shared_ptr<const Clock> clock);

    // A kind of tier Hidden fails with unsupportedDestination, whatever its service could do.
    [[nodiscard]] QCoro::Task<SystemActionExecutionResult> execute(
        SystemDestinationKind kind, QString text, std::stop_token stop) override;

private:
    std::shared_ptr<CalendarActionServing> m_calendarService;
    std::shared_ptr<CommunicationComposeServing> m_communicationService;
    std::shared_ptr<const Clock> m_clock;
};

} // namespace velarc
