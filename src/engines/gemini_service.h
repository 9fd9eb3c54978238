#pragma once

// One prompt through the Gemini API's generateContent.

#include "engines/cloud_client.h"
#include "engines/engine_services.h"

#include <QUrl>

#include <memory>

namespace velarc {

enum class GeminiFailure
{
    RequestTooLarge, // carries its text, as do the next two
    Blocked,
    RequestFailed,
    MissingAPIKey,
    InvalidResponse
};

// The text of a failure that carries none; empty for the others.
[[nodiscard]] QString failureText(GeminiFailure failure);

using GeminiServiceError = CloudServiceError<GeminiFailure>;

// A body of more bytes is not sent.
inline constexpr qsizetype kMaxGeminiBodyBytes = 20 * 1024 * 1024;

// Keeps nothing between calls; calls may overlap. PDFs are sent as files. Results carry no debug
// record.
//
// Errors:   GeminiServiceError; HttpTransportError.
// Lifetime: a task owns what it uses and may outlive the service.
class GeminiService final : public GeminiServing
{
public:
    GeminiService(std::shared_ptr<HttpTransport> transport, std::shared_ptr<Clock> clock,
        QUrl host = QUrl(QStringLiteral("https://generativelanguage.googleapis.com")));

    [[nodiscard]] QCoro::Task<GenerationResult> generateText(
        CloudTextRequest request, OutputFormat outputFormat, std::stop_token stop) override;

private:
    std::shared_ptr<CloudClient> m_client;
};

// The call before it is sent. Errors: GeminiServiceError for a blank key.
[[nodiscard]] CloudCall generateContentCall(
    const QUrl &host, CloudTextRequest request, OutputFormat outputFormat);

} // namespace velarc
