#pragma once

// Opening a prefilled mail or message, which the user checks and sends there.

#include "records/run_errors.h"
#include "system_actions/compose_parser.h"

#include <QCoroTask>

#include <stop_token>

namespace velarc {

// How far a compose window went, as far as it can be known.
enum class ComposeOutcome
{
    Sent,
    Saved,
    Closed,
    Opened,
};

// The sentence for the user.
[[nodiscard]] QString resultText(ComposeOutcome outcome);

class CommunicationComposeError final : public SystemActionError
{
public:
    // There is no program for it.
    [[nodiscard]] static CommunicationComposeError unavailable(const QString &message);
    // There is one, and it could not be brought up.
    [[nodiscard]] static CommunicationComposeError failed(const QString &message);
    // For services with a window of their own.
    [[nodiscard]] static CommunicationComposeError busy();
    [[nodiscard]] static CommunicationComposeError noPresenter();

private:
    using SystemActionError::SystemActionError;
};

// Main thread only; never blocks. Nothing is ever sent.
//
// Stop:     CancellationError, from the event loop; a window that opens by then stays.
// Errors:   CommunicationComposeError.
class CommunicationComposeServing
{
public:
    CommunicationComposeServing() = default;
    virtual ~CommunicationComposeServing() = default;
    CommunicationComposeServing(const CommunicationComposeServing &) = delete;
    CommunicationComposeServing &operator=(const CommunicationComposeServing &) = delete;

    [[nodiscard]] virtual QCoro::Task<ComposeOutcome> composeMail(
        ComposeDraft draft, std::stop_token stop) = 0;
    [[nodiscard]] virtual QCoro::Task<ComposeOutcome> composeMessage(
        QStringList recipients, QString body, std::stop_token stop) = 0;
};

} // namespace velarc
