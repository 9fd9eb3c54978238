#pragma once

// One prompt through OpenAI's Responses API, one picture through its Images API.

#include "engines/cloud_client.h"
#include "engines/engine_services.h"

#include <QUrl>

#include <memory>

namespace velarc {

enum class OpenAIFailure
{
    RequestFailed, // carries its text
    MissingAPIKey,
    InvalidResponse,
    ImageEncodingFailed
};

// The text of a failure that carries none; empty for the others.
[[nodiscard]] QString failureText(OpenAIFailure failure);

using OpenAIServiceError = CloudServiceError<OpenAIFailure>;

// Keeps nothing between calls; calls may overlap. A reply with text is a success even where it was
// cut short; a refusal is delivered as the text.
//
// Errors:   OpenAIServiceError; HttpTransportError; of an Images reply that cannot be read
// JsonError. Lifetime: a task owns what it uses and may outlive the service.
class OpenAIService final : public OpenAIServing
{
public:
    OpenAIService(std::shared_ptr<HttpTransport> transport, std::shared_ptr<Clock> clock,
        QUrl host = QUrl(QStringLiteral("https://api.openai.com")));

    [[nodiscard]] QCoro::Task<GenerationResult> generateText(
        CloudTextRequest request, int maxOutputTokens, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<GenerationResult> generateImage(
        CloudImageRequest request, std::stop_token stop) override;

private:
    std::shared_ptr<CloudClient> m_client;
};

} // namespace velarc
