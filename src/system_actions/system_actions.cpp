#include "system_actions/system_actions.h"

#include <array>
#include <string_view>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

struct FailureText
{
    CalendarFailure failure;
    std::u16string_view text;
};

constexpr std::array kFailureTexts{
    FailureText{CalendarFailure::InvalidInput, u""}, // carries its own
    FailureText{CalendarFailure::AccessDenied, u"Calendar permission was denied."},
    FailureText{CalendarFailure::NoWritableCalendar, u"No writable calendar is available."},
    FailureText{CalendarFailure::EventNotFound, u"Could not find a matching calendar event."},
    FailureText{CalendarFailure::MissingEventIdentifierOrTitle,
        u"Provide EventID or Title to edit or delete an event."},
};

constexpr bool standsInEnumOrder()
{
    for (std::size_t index = 0; index < kFailureTexts.size(); ++index) {
        if (static_cast<std::size_t>(kFailureTexts[index].failure) != index) {
            return false;
        }
    }
    return true;
}
static_assert(standsInEnumOrder());

QString textOf(CalendarFailure failure)
{
    const std::u16string_view text = kFailureTexts.at(static_cast<std::size_t>(failure)).text;
    return QString::fromUtf16(text.data(), static_cast<qsizetype>(text.size()));
}

} // namespace

CalendarActionServiceError::CalendarActionServiceError(CalendarFailure failure)
    : CalendarActionServiceError(failure, textOf(failure))
{
}

CalendarActionServiceError CalendarActionServiceError::invalidInput(const QString &message)
{
    return CalendarActionServiceError(CalendarFailure::InvalidInput, message);
}

CalendarActionServiceError::CalendarActionServiceError(
    CalendarFailure failure, const QString &message)
    : SystemActionError(message), m_failure(failure)
{
}

SystemActionOrchestratorError SystemActionOrchestratorError::unsupportedDestination(
    SystemDestinationKind kind)
{
    return SystemActionOrchestratorError(label(kind) + u" is not supported on this platform."_s);
}

SystemActionOrchestratorError SystemActionOrchestratorError::missingSystemMetadata()
{
    return SystemActionOrchestratorError(u"This action is missing system action metadata."_s);
}

SystemActionOrchestratorError SystemActionOrchestratorError::unavailableComposeService()
{
    return SystemActionOrchestratorError(u"Compose service is unavailable on this platform."_s);
}

} // namespace velarc
