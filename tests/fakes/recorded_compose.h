#pragma once

#include "system_actions/compose_serving.h"

#include <exception>

namespace velarc {

// Opens no window and remembers what it was asked for.
class RecordedCompose final : public CommunicationComposeServing
{
public:
    ComposeOutcome outcome = ComposeOutcome::Opened;
    std::exception_ptr failure;
    QList<ComposeDraft> mails;
    QList<ComposeDraft> messages; // without subjects

    [[nodiscard]] QCoro::Task<ComposeOutcome> composeMail(
        ComposeDraft draft, std::stop_token) override
    {
        mails.append(draft);
        return answer(outcome, failure);
    }

    [[nodiscard]] QCoro::Task<ComposeOutcome> composeMessage(
        QStringList recipients, QString body, std::stop_token) override
    {
        messages.append({recipients, std::nullopt, body});
        return answer(outcome, failure);
    }

private:
    static QCoro::Task<ComposeOutcome> answer(ComposeOutcome outcome, std::exception_ptr failure)
    {
        if (failure) {
            std::rethrow_exception(failure);
        }
        co_return outcome;
    }
};

} // namespace velarc
