#include "engines/gemini_service.h"

#include "base/async.h"
#include "base/text.h"
#include "engines/cloud_body.h"
#include "engines/cloud_text.h"
#include "engines/json_reader.h"

#include <algorithm>
#include <array>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

struct FailureText
{
    GeminiFailure failure;
    const char16_t *text;
};

constexpr std::array kFailureTexts{
    FailureText{GeminiFailure::RequestTooLarge, u""},
    FailureText{GeminiFailure::Blocked, u""},
    FailureText{GeminiFailure::RequestFailed, u""},
    FailureText{GeminiFailure::MissingAPIKey, u"Missing Gemini API key."},
    FailureText{GeminiFailure::InvalidResponse, u"Gemini returned an invalid response."},
};
static_assert(standInEnumOrder(kFailureTexts));

const QString kDefaultModel = u"gemini-2.5-flash"_s;
const QString kModelPrefix = u"models/"_s;
const QString kJsonRequest =
    u"\n\nReturn valid JSON only. Do not include markdown code fences, comments, or extra "
    "explanatory text."_s;

// What may stand in the path of an address as it is, beside letters and digits.
constexpr const char *kPathCharacters = "/:@!$&'()*+,;=";

constexpr std::array<QStringView, 4> kSafetyReasons{
    u"SAFETY", u"BLOCKLIST", u"PROHIBITED_CONTENT", u"SPII"};

// What a call is made of, but for the key.
struct GenerateContentRequest
{
    QString model; // the one in use
    QString prompt;
    QList<InputAttachment> attachments;
    OutputFormat outputFormat = OutputFormat::Text;
};

QString modelInUse(const QString &model)
{
    QString named = trimmedOr(model, kDefaultModel);
    if (named.startsWith(kModelPrefix)) {
        named.remove(0, kModelPrefix.size());
    }
    return named;
}

QUrl addressFor(const QUrl &host, const QString &model)
{
    const QString encoded = model.isValidUtf16()
        ? QString::fromLatin1(QUrl::toPercentEncoding(model, kPathCharacters))
        : model;
    return addressOf(host, u"/v1beta/models/"_s + encoded + u":generateContent"_s);
}

void appendPart(QByteArray &body, const InputAttachment &attachment)
{
    body += R"(,{"inlineData":{"mimeType":)";
    appendJsonString(body, sentMimeType(attachment));
    body += R"(,"data":")";
    appendBase64(body, attachment.bytes);
    body += R"("}})";
}

[[noreturn]] void failTooLarge(qsizetype bytes)
{
    throw GeminiServiceError(GeminiFailure::RequestTooLarge,
        u"Input is too large for Gemini inline upload ("_s + QString::number(bytes) + u" bytes > "_s
            + QString::number(kMaxGeminiBodyBytes)
            + u" bytes). Remove attachments or use smaller files."_s);
}

QByteArray bodyOf(const GenerateContentRequest &request, const std::stop_token &stop)
{
    const bool wantsJson = request.outputFormat == OutputFormat::Json;
    const QString text = wantsJson ? request.prompt + kJsonRequest : request.prompt;
    QByteArray body = roomForBody(text, request.attachments);
    body += R"({"contents":[{"role":"user","parts":[{"text":)";
    appendJsonString(body, text);
    body += '}';
    for (const InputAttachment &attachment : request.attachments) {
        throwIfStopped(stop);
        appendPart(body, attachment);
    }
    body += "]}]";
    if (wantsJson) {
        body += R"(,"generationConfig":{"responseMimeType":"application/json"})";
    }
    body += '}';
    if (body.size() > kMaxGeminiBodyBytes) {
        failTooLarge(body.size());
    }
    return body;
}

// What all candidates say, gathered as they are read.
struct Candidates
{
    JoinedPieces texts;
    JoinedPieces finishReasons{u", "_s};
    bool endedForSafety = false;
};

struct PromptFeedback
{
    QString blockReason;
    QString blockReasonMessage;
};

struct UsageMetadata
{
    ReportedTokens tokens;
};

struct APIError
{
    std::optional<qint64> code;
    QString message;
    QString status;
};

struct GenerateContentEnvelope
{
    Candidates candidates;
    PromptFeedback promptFeedback;
    UsageMetadata usageMetadata;
    APIError error;
};

void readPart(JsonReader &reader, Candidates &candidates)
{
    QString text;
    reader.object(field("text", text));
    candidates.texts.add(text);
}

void readContent(JsonReader &reader, Candidates &candidates)
{
    const auto readParts = [&] { reader.array([&] { readPart(reader, candidates); }); };
    reader.object(field("parts", readParts));
}

bool isSafetyReason(const QString &finishReason)
{
    const QString reason = trimmedOr(finishReason).toUpper();
    return std::find(kSafetyReasons.begin(), kSafetyReasons.end(), reason) != kSafetyReasons.end();
}

void readJson(JsonReader &reader, Candidates &candidates)
{
    reader.array([&] {
        QString finishReason;
        const auto content = [&] { readContent(reader, candidates); };
        reader.object(field("content", content), field("finishReason", finishReason));
        candidates.finishReasons.add(finishReason);
        candidates.endedForSafety |= isSafetyReason(finishReason);
    });
}

void readJson(JsonReader &reader, PromptFeedback &feedback)
{
    reader.object(field("blockReason", feedback.blockReason),
        field("blockReasonMessage", feedback.blockReasonMessage));
}

void readJson(JsonReader &reader, UsageMetadata &usage)
{
    reader.object(field("promptTokenCount", usage.tokens.input),
        field("candidatesTokenCount", usage.tokens.output),
        field("totalTokenCount", usage.tokens.total));
}

void readJson(JsonReader &reader, APIError &error)
{
    reader.object(
        field("code", error.code), field("message", error.message), field("status", error.status));
}

void readJson(JsonReader &reader, GenerateContentEnvelope &envelope)
{
    reader.object(field("candidates", envelope.candidates),
        field("promptFeedback", envelope.promptFeedback),
        field("usageMetadata", envelope.usageMetadata), field("error", envelope.error));
}

[[noreturn]] void fail(const CloudExchange &exchange, GeminiFailure failure, const QString &text)
{
    throw GeminiServiceError(failure, exchange.redaction.of(text));
}

[[noreturn]] void failForStatus(
    const CloudExchange &exchange, const std::optional<GenerateContentEnvelope> &envelope)
{
    const QString told = envelope ? trimmedOr(envelope->error.message) : QString();
    fail(exchange, GeminiFailure::RequestFailed,
        !told.isEmpty() ? told
                        : u"Gemini request failed with status "_s + exchange.statusCode()
                + u". Body: "_s + exchange.snippet());
}

void failIfBlocked(const CloudExchange &exchange, const GenerateContentEnvelope &envelope)
{
    const QString reason = trimmedOr(envelope.promptFeedback.blockReason);
    if (reason.isEmpty()) {
        return;
    }
    const QString message = trimmedOr(envelope.promptFeedback.blockReasonMessage);
    fail(exchange, GeminiFailure::Blocked,
        u"Gemini blocked the request ("_s + reason
            + (message.isEmpty() ? u")."_s : u"): "_s + message));
}

[[noreturn]] void failWithoutText(const CloudExchange &exchange, const Candidates &candidates)
{
    if (candidates.endedForSafety) {
        fail(
            exchange, GeminiFailure::Blocked, u"Gemini blocked the response for safety reasons."_s);
    }
    fail(exchange, GeminiFailure::RequestFailed,
        u"Gemini returned no text output (finish_reason: "_s
            + trimmedOr(candidates.finishReasons.text(), u"none"_s) + u")."_s);
}

GenerationResult resultOf(const GenerateContentRequest &request, const CloudExchange &exchange,
    const std::stop_token &stop)
{
    const auto envelope = envelopeOf<GenerateContentEnvelope>(exchange, stop);
    if (!exchange.succeeded()) {
        failForStatus(exchange, envelope);
    }
    if (!envelope) {
        fail(exchange, GeminiFailure::RequestFailed, u"Gemini returned unreadable JSON."_s);
    }
    failIfBlocked(exchange, *envelope);
    const QString text = envelope->candidates.texts.text();
    if (text.isEmpty()) {
        failWithoutText(exchange, envelope->candidates);
    }
    GenerationResult result;
    result.payload = TextPayload{text};
    result.usage = usageOf(countedTokens(envelope->usageMetadata.tokens));
    result.provider = AIProvider::Gemini;
    result.modelID = request.model;
    return result;
}

} // namespace

QString failureText(GeminiFailure failure)
{
    return QString::fromUtf16(kFailureTexts.at(static_cast<std::size_t>(failure)).text);
}

CloudCall generateContentCall(const QUrl &host, CloudTextRequest request, OutputFormat outputFormat)
{
    HttpSecretHeader key{"x-goog-api-key", {}, request.apiKey.trimmed()};
    if (key.value.isEmpty()) {
        throw GeminiServiceError(GeminiFailure::MissingAPIKey);
    }
    const auto shared = std::make_shared<const GenerateContentRequest>(
        GenerateContentRequest{modelInUse(request.model), std::move(request.prompt),
            std::move(request.attachments), outputFormat});
    return CloudCall{
        addressFor(host, shared->model),
        jsonHeaders(),
        std::move(key),
        [shared](const std::stop_token &stop) { return bodyOf(*shared, stop); },
        [shared](const CloudExchange &exchange, const std::stop_token &stop) {
            return resultOf(*shared, exchange, stop);
        },
        std::make_exception_ptr(GeminiServiceError(GeminiFailure::InvalidResponse)),
    };
}

GeminiService::GeminiService(
    std::shared_ptr<HttpTransport> transport, std::shared_ptr<Clock> clock, QUrl host)
    : m_client(
        std::make_shared<CloudClient>(std::move(transport), std::move(clock), std::move(host)))
{
}

QCoro::Task<GenerationResult> GeminiService::generateText(
    CloudTextRequest request, OutputFormat outputFormat, std::stop_token stop)
{
    auto client = m_client;
    CloudCall call = generateContentCall(client->host, std::move(request), outputFormat);
    co_return co_await performCall(std::move(client), std::move(call), std::move(stop));
}

} // namespace velarc
