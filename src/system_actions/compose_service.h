#pragma once

#include "base/worker.h"
#include "system_actions/compose_serving.h"

namespace velarc {

// Opens the user's mail and message programs: through the desktop's portal for mails where there is
// one, else with an address, which may be kMostAddressBytes long.
//
// It cannot be known what the user does next, so that the outcome is Opened, or Closed where they
// called off the choice of a program.
//
// Lifetime: the service need not outlive its tasks.
class CommunicationComposeService final : public CommunicationComposeServing
{
public:
    [[nodiscard]] QCoro::Task<ComposeOutcome> composeMail(
        ComposeDraft draft, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<ComposeOutcome> composeMessage(
        QStringList recipients, QString body, std::stop_token stop) override;

private:
    std::shared_ptr<SerialWorker> m_worker = std::make_shared<SerialWorker>();
};

} // namespace velarc
