#pragma once

// One prompt through Anthropic's Messages API.

#include "engines/cloud_client.h"
#include "engines/engine_services.h"

#include <QUrl>

#include <memory>

namespace velarc {

enum class AnthropicFailure
{
    RequestFailed, // carries its text
    MissingAPIKey,
    InvalidResponse
};

// The text of a failure that carries none; empty for the others.
[[nodiscard]] QString failureText(AnthropicFailure failure);

using AnthropicServiceError = CloudServiceError<AnthropicFailure>;

// Keeps nothing between calls; calls may overlap. A reply with text is a success even where it was
// cut short.
//
// Errors:   AnthropicServiceError; HttpTransportError.
// Lifetime: a task owns what it uses and may outlive the service.
class AnthropicService final : public AnthropicServing
{
public:
    AnthropicService(std::shared_ptr<HttpTransport> transport, std::shared_ptr<Clock> clock,
        QUrl host = QUrl(QStringLiteral("https://api.anthropic.com")));

    [[nodiscard]] QCoro::Task<GenerationResult> generateText(
        CloudTextRequest request, int maxTokens, std::stop_token stop) override;

private:
    std::shared_ptr<CloudClient> m_client;
};

// The call before it is sent. Errors: AnthropicServiceError for a blank key.
[[nodiscard]] CloudCall messagesCall(const QUrl &host, CloudTextRequest request, int maxTokens);

} // namespace velarc
