#pragma once

// What a run hands to the desktop: calendar operations and prefilled mails and messages.

#include "actions/action.h"
#include "records/run_errors.h"
#include "records/run_records.h"

#include <QCoroTask>

#include <stop_token>

namespace velarc {

// Why a calendar operation did not happen. Nothing in the calendars has changed then.
enum class CalendarFailure
{
    InvalidInput,
    AccessDenied,
    NoWritableCalendar,
    EventNotFound,
    MissingEventIdentifierOrTitle,
};

class CalendarActionServiceError final : public SystemActionError
{
public:
    // With the failure's own sentence. Not for InvalidInput, which carries one.
    explicit CalendarActionServiceError(CalendarFailure failure);
    [[nodiscard]] static CalendarActionServiceError invalidInput(const QString &message);

    [[nodiscard]] CalendarFailure failure() const noexcept { return m_failure; }

private:
    CalendarActionServiceError(CalendarFailure failure, const QString &message);

    CalendarFailure m_failure;
};

class SystemActionOrchestratorError final : public SystemActionError
{
public:
    [[nodiscard]] static SystemActionOrchestratorError unsupportedDestination(
        SystemDestinationKind kind);
    [[nodiscard]] static SystemActionOrchestratorError missingSystemMetadata();
    [[nodiscard]] static SystemActionOrchestratorError unavailableComposeService();

private:
    using SystemActionError::SystemActionError;
};

// Takes the place of the engine's result.
struct SystemActionExecutionResult
{
    ResultPayload payload; // always a text
    QString providerLabel; // "Calendar", "Mail" or "Messages"
    std::optional<GenerationDebugInfo> debugInfo;

    friend bool operator==(
        const SystemActionExecutionResult &, const SystemActionExecutionResult &) = default;
};

// The one gate to the calendar and to compose windows.
//
// Main thread only; never blocks. Stop: CancellationError, from the event loop. Errors:
// SystemActionError, or the platform's own.
class SystemActionExecuting
{
public:
    virtual ~SystemActionExecuting() = default;
    [[nodiscard]] virtual QCoro::Task<SystemActionExecutionResult> execute(
        SystemDestinationKind kind, QString text, std::stop_token stop) = 0;
};

} // namespace velarc
