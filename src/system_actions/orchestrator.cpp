#include "system_actions/orchestrator.h"

#include "base/locale_text.h"
#include "base/text.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using Result = SystemActionExecutionResult;
using ComposeServiceHandle = std::shared_ptr<CommunicationComposeServing>;

const QString kNotAvailable = u"n/a"_s;

QString providerLabel(SystemDestinationKind kind)
{
    switch (kind) {
    case SystemDestinationKind::CalendarCreateEvent:
    case SystemDestinationKind::CalendarListUpcomingEvents:
    case SystemDestinationKind::CalendarEditEvent:
    case SystemDestinationKind::CalendarDeleteEvent:
        return u"Calendar"_s;
    case SystemDestinationKind::MailCompose:
        return u"Mail"_s;
    case SystemDestinationKind::MessagesCompose:
        return u"Messages"_s;
    case SystemDestinationKind::MailListInboxThreads:
    case SystemDestinationKind::MailSearchMessages:
    case SystemDestinationKind::MessagesSearchConversations:
    case SystemDestinationKind::MessagesEditScheduled:
    case SystemDestinationKind::MessagesUnsendRecent:
        return u"System"_s;
    }
    Q_UNREACHABLE();
}

Result resultOf(const QString &label, const QString &request, const QString &response,
    const QList<DebugInfoRow> &rows)
{
    GenerationDebugInfo debugInfo{request, response, {{u"Provider"_s, label}}};
    debugInfo.infoRows.append(rows);
    return {TextPayload{response}, label, std::move(debugInfo)};
}

// --- The calendar --------------------------------------------------------------------------------

QString detailsOf(const CalendarActionEvent &event, qsizetype number)
{
    const auto row = [](const QString &key, const QString &value) {
        return u"\n   "_s + key + u": "_s + value;
    };
    QString details = QString::number(number) + u". "_s + event.title;
    details += row(u"Start"_s, mediumDateShortTime(event.startDate));
    details += row(u"End"_s, mediumDateShortTime(event.endDate));
    const QString location = trimmed(event.location.value_or(QString())).toString();
    if (!location.isEmpty()) {
        details += row(u"Location"_s, location);
    }
    return details + row(u"Event ID"_s, event.identifier);
}

QString detailsOf(const QList<CalendarActionEvent> &events)
{
    QStringList details;
    for (const CalendarActionEvent &event : events) {
        details.append(detailsOf(event, details.size() + 1));
    }
    return details.join(u"\n\n"_s);
}

Result resultOf(const CalendarActionOutcome &outcome, SystemDestinationKind kind,
    const QString &text, Instant now)
{
    const QString details = detailsOf(outcome.events);
    const QString response =
        details.isEmpty() ? outcome.summary : outcome.summary + u"\n\n"_s + details;
    return resultOf(providerLabel(kind), text, response,
        {{u"Event count"_s, QString::number(outcome.events.size())},
            {u"Primary Event ID"_s, outcome.primaryEventID.value_or(kNotAvailable)},
            {u"Timestamp"_s, iso8601(now)}});
}

QCoro::Task<Result> calendarResult(QCoro::Task<CalendarActionOutcome> running,
    SystemDestinationKind kind, QString text, std::shared_ptr<const Clock> clock)
{
    const CalendarActionOutcome outcome = co_await running;
    co_return resultOf(outcome, kind, text, clock->now());
}

// --- Compose windows -----------------------------------------------------------------------------

QString orNotAvailable(const QString &text)
{
    return isBlank(text) ? kNotAvailable : text;
}

QCoro::Task<Result> composeResult(QCoro::Task<ComposeOutcome> running, SystemDestinationKind kind,
    ComposeDraft draft, QString text, std::shared_ptr<const Clock> clock)
{
    const ComposeOutcome outcome = co_await running;
    co_return resultOf(providerLabel(kind), text, resultText(outcome),
        {{u"Recipients"_s, orNotAvailable(draft.recipients.join(u", "_s))},
            {u"Subject"_s, orNotAvailable(draft.subject.value_or(QString()))},
            {u"Timestamp"_s, iso8601(clock->now())}});
}

QCoro::Task<Result> refusal(SystemDestinationKind kind)
{
    throw SystemActionOrchestratorError::unsupportedDestination(kind);
    co_return Result();
}

} // namespace

SystemActionOrchestrator::SystemActionOrchestrator(
    std::shared_ptr<CalendarActionServing> calendarService,
    std::shared_ptr<CommunicationComposeServing> communicationService,
    std::shared_ptr<const Clock> clock)
    : m_calendarService(std::move(calendarService))
    , m_communicationService(std::move(communicationService))
    , m_clock(std::move(clock))
{
}

QCoro::Task<Result> SystemActionOrchestrator::execute(
    SystemDestinationKind kind, QString text, std::stop_token stop)
{
    if (tier(kind) == SystemDestinationTier::Hidden) {
        return refusal(kind);
    }
    const auto onCalendar = [&](QCoro::Task<CalendarActionOutcome> running) {
        return calendarResult(std::move(running), kind, text, m_clock);
    };
    const auto composed = [&](ComposeDraft draft, QCoro::Task<ComposeOutcome> running) {
        return composeResult(std::move(running), kind, std::move(draft), text, m_clock);
    };
    switch (kind) {
    case SystemDestinationKind::CalendarCreateEvent:
        return onCalendar(m_calendarService->createEvent(text, stop));
    case SystemDestinationKind::CalendarListUpcomingEvents:
        return onCalendar(m_calendarService->listUpcomingEvents(text, stop));
    case SystemDestinationKind::CalendarEditEvent:
        return onCalendar(m_calendarService->editEvent(text, stop));
    case SystemDestinationKind::CalendarDeleteEvent:
        return onCalendar(m_calendarService->deleteEvent(text, stop));
    case SystemDestinationKind::MailCompose: {
        ComposeDraft draft = parseComposeInput(text, ComposeSubject::Included);
        return composed(draft, m_communicationService->composeMail(draft, stop));
    }
    case SystemDestinationKind::MessagesCompose: {
        ComposeDraft draft = parseComposeInput(text, ComposeSubject::Absent);
        return composed(
            draft, m_communicationService->composeMessage(draft.recipients, draft.body, stop));
    }
    case SystemDestinationKind::MailListInboxThreads:
    case SystemDestinationKind::MailSearchMessages:
    case SystemDestinationKind::MessagesSearchConversations:
    case SystemDestinationKind::MessagesEditScheduled:
    case SystemDestinationKind::MessagesUnsendRecent:
        return refusal(kind);
    }
    Q_UNREACHABLE();
}

} // namespace velarc
