#include "engines/openai_service.h"

#include "engines/openai_calls.h"

#include <array>
#include <utility>

namespace velarc {

namespace {

struct FailureText
{
    OpenAIFailure failure;
    const char16_t *text;
};

constexpr std::array kFailureTexts{
    FailureText{OpenAIFailure::RequestFailed, u""},
    FailureText{OpenAIFailure::MissingAPIKey, u"Missing OpenAI API key."},
    FailureText{OpenAIFailure::InvalidResponse, u"OpenAI returned an invalid response."},
    FailureText{OpenAIFailure::ImageEncodingFailed, u"OpenAI returned an invalid image payload."},
};
static_assert(standInEnumOrder(kFailureTexts));

} // namespace

QString failureText(OpenAIFailure failure)
{
    return QString::fromUtf16(kFailureTexts.at(static_cast<std::size_t>(failure)).text);
}

HttpSecretHeader bearerHeader(const Secret &key)
{
    HttpSecretHeader header{"Authorization", "Bearer ", key.trimmed()};
    if (header.value.isEmpty()) {
        throw OpenAIServiceError(OpenAIFailure::MissingAPIKey);
    }
    return header;
}

OpenAIService::OpenAIService(
    std::shared_ptr<HttpTransport> transport, std::shared_ptr<Clock> clock, QUrl host)
    : m_client(
        std::make_shared<CloudClient>(std::move(transport), std::move(clock), std::move(host)))
{
}

QCoro::Task<GenerationResult> OpenAIService::generateText(
    CloudTextRequest request, int maxOutputTokens, std::stop_token stop)
{
    auto client = m_client;
    CloudCall call = responsesCall(client->host, std::move(request), maxOutputTokens);
    co_return co_await performCall(std::move(client), std::move(call), std::move(stop));
}

QCoro::Task<GenerationResult> OpenAIService::generateImage(
    CloudImageRequest request, std::stop_token stop)
{
    auto client = m_client;
    CloudCall call = imagesCall(client->host, std::move(request));
    co_return co_await performCall(std::move(client), std::move(call), std::move(stop));
}

} // namespace velarc
