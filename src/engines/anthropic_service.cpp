#include "engines/anthropic_service.h"

#include "base/async.h"
#include "base/locale_text.h"
#include "engines/cloud_body.h"
#include "engines/cloud_text.h"
#include "engines/json_reader.h"

#include <array>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

struct FailureText
{
    AnthropicFailure failure;
    const char16_t *text;
};

constexpr std::array kFailureTexts{
    FailureText{AnthropicFailure::RequestFailed, u""},
    FailureText{AnthropicFailure::MissingAPIKey, u"Missing Anthropic API key."},
    FailureText{AnthropicFailure::InvalidResponse, u"Anthropic returned an invalid response."},
};
static_assert(standInEnumOrder(kFailureTexts));

const QString kEndpoint = u"/v1/messages"_s;
const QString kDefaultModel = u"claude-opus-4-1-20250805"_s;
const QString kTextType = u"text"_s;

// What a call is made of, but for the key.
struct MessagesRequest
{
    QString model; // the one in use
    QString prompt;
    QList<InputAttachment> attachments;
    int maxTokens = 0;
};

void appendImage(QByteArray &body, const InputAttachment &attachment)
{
    body += R"(,{"type":"image","source":{"type":"base64","media_type":)";
    appendJsonString(body, sentMimeType(attachment));
    body += R"(,"data":")";
    appendBase64(body, attachment.bytes);
    body += R"("}})";
}

QByteArray bodyOf(const MessagesRequest &request, const std::stop_token &stop)
{
    const QString text = promptWithAttachedDocuments(request.prompt, request.attachments);
    QByteArray body = roomForBody(text, request.attachments);
    body += R"({"model":)";
    appendJsonString(body, request.model);
    body += R"(,"max_tokens":)";
    body += QByteArray::number(request.maxTokens);
    body += R"(,"messages":[{"role":"user","content":[{"type":"text","text":)";
    appendJsonString(body, text);
    body += '}';
    for (const InputAttachment &attachment : request.attachments) {
        throwIfStopped(stop);
        if (attachment.kind != InputAttachmentKind::Pdf) {
            appendImage(body, attachment);
        }
    }
    body += "]}]}";
    return body;
}

// The texts of all text blocks, gathered as they are read.
struct Content
{
    JoinedPieces texts;
};

struct UsagePayload
{
    ReportedTokens tokens;
};

struct APIError
{
    QString message;
};

struct MessagesEnvelope
{
    QString id;
    QString model;
    QString stopReason;
    QString stopSequence;
    Content content;
    UsagePayload usage;
    APIError error;
};

void readJson(JsonReader &reader, Content &content)
{
    reader.array([&] {
        QString type;
        QString text;
        reader.object(field("type", type), field("text", text));
        if (trimmedOr(type) == kTextType) {
            content.texts.add(text);
        }
    });
}

void readJson(JsonReader &reader, UsagePayload &usage)
{
    reader.object(
        field("input_tokens", usage.tokens.input), field("output_tokens", usage.tokens.output));
}

void readJson(JsonReader &reader, APIError &error)
{
    reader.object(field("message", error.message));
}

void readJson(JsonReader &reader, MessagesEnvelope &envelope)
{
    reader.object(field("id", envelope.id), field("model", envelope.model),
        field("stop_reason", envelope.stopReason), field("stop_sequence", envelope.stopSequence),
        field("content", envelope.content), field("usage", envelope.usage),
        field("error", envelope.error));
}

QString responseID(const MessagesEnvelope &envelope)
{
    return trimmedOr(envelope.id, u"n/a"_s);
}

QString stopReason(const MessagesEnvelope &envelope)
{
    return trimmedOr(envelope.stopReason, u"none"_s);
}

QString requestID(const CloudExchange &exchange)
{
    return exchange.header("request-id").value_or(u"n/a"_s);
}

// Behind a text that ends with a full stop: the request's id where there is one, and the body.
QString requestAndBody(const CloudExchange &exchange)
{
    const auto id = exchange.header("request-id");
    return (id ? u" request_id="_s + *id + u"."_s : QString()) + u" Body: "_s + exchange.snippet();
}

[[noreturn]] void fail(const CloudExchange &exchange, const QString &text)
{
    throw AnthropicServiceError(AnthropicFailure::RequestFailed, exchange.redaction.of(text));
}

// The text of a reply that has one.
QString textOrFailure(
    const CloudExchange &exchange, const std::optional<MessagesEnvelope> &envelope)
{
    if (!exchange.succeeded()) {
        const QString told = envelope ? trimmedOr(envelope->error.message) : QString();
        fail(exchange,
            !told.isEmpty() ? told
                            : u"Anthropic request failed with status "_s + exchange.statusCode()
                    + u"."_s + requestAndBody(exchange));
    }
    if (!envelope) {
        fail(exchange,
            u"Anthropic returned unreadable JSON (status "_s + exchange.statusCode() + u")."_s
                + requestAndBody(exchange));
    }
    QString text = envelope->content.texts.text();
    if (text.isEmpty()) {
        fail(exchange,
            u"Anthropic returned no text output. response_id="_s + responseID(*envelope)
                + u"; request_id="_s + requestID(exchange) + u"; stop_reason="_s
                + stopReason(*envelope) + u"; body="_s + exchange.snippet());
    }
    return text;
}

QList<DebugInfoRow> infoRows(const MessagesRequest &request, const CloudExchange &exchange,
    const MessagesEnvelope &envelope, const TokenUsage &counted)
{
    QList<DebugInfoRow> rows{
        {u"Provider"_s, u"Anthropic"_s},
        {u"Model"_s, request.model},
        {u"HTTP status"_s, exchange.statusCode()},
        {u"Endpoint"_s, kEndpoint},
        {u"Request ID"_s, requestID(exchange)},
        {u"Response ID"_s, responseID(envelope)},
        {u"Stop reason"_s, stopReason(envelope)},
        {u"Stop sequence"_s, trimmedOr(envelope.stopSequence, u"none"_s)},
    };
    appendClosingRows(rows, counted, exchange.now, request.attachments.size());
    return rows;
}

GenerationResult resultOf(
    const MessagesRequest &request, const CloudExchange &exchange, const std::stop_token &stop)
{
    const auto envelope = envelopeOf<MessagesEnvelope>(exchange, stop);
    QString text = textOrFailure(exchange, envelope);
    const TokenUsage counted = countedTokens(envelope->usage.tokens);
    GenerationResult result;
    result.payload = TextPayload{std::move(text)};
    result.usage = usageOf(counted);
    result.provider = AIProvider::Anthropic;
    result.modelID = request.model;
    result.debugInfo = debugInfoOf(exchange, ShownRequest{kEndpoint, request.prompt},
        infoRows(request, exchange, *envelope, counted), stop);
    return result;
}

} // namespace

QString failureText(AnthropicFailure failure)
{
    return QString::fromUtf16(kFailureTexts.at(static_cast<std::size_t>(failure)).text);
}

CloudCall messagesCall(const QUrl &host, CloudTextRequest request, int maxTokens)
{
    HttpSecretHeader key{"x-api-key", {}, request.apiKey.trimmed()};
    if (key.value.isEmpty()) {
        throw AnthropicServiceError(AnthropicFailure::MissingAPIKey);
    }
    HttpHeaders headers = jsonHeaders();
    headers.emplaceBack("anthropic-version", "2023-06-01");
    const auto shared = std::make_shared<const MessagesRequest>(
        MessagesRequest{trimmedOr(request.model, kDefaultModel), std::move(request.prompt),
            std::move(request.attachments), maxTokens});
    return CloudCall{
        addressOf(host, kEndpoint),
        std::move(headers),
        std::move(key),
        [shared](const std::stop_token &stop) { return bodyOf(*shared, stop); },
        [shared](const CloudExchange &exchange, const std::stop_token &stop) {
            return resultOf(*shared, exchange, stop);
        },
        std::make_exception_ptr(AnthropicServiceError(AnthropicFailure::InvalidResponse)),
    };
}

AnthropicService::AnthropicService(
    std::shared_ptr<HttpTransport> transport, std::shared_ptr<Clock> clock, QUrl host)
    : m_client(
        std::make_shared<CloudClient>(std::move(transport), std::move(clock), std::move(host)))
{
}

QCoro::Task<GenerationResult> AnthropicService::generateText(
    CloudTextRequest request, int maxTokens, std::stop_token stop)
{
    auto client = m_client;
    CloudCall call = messagesCall(client->host, std::move(request), maxTokens);
    co_return co_await performCall(std::move(client), std::move(call), std::move(stop));
}

} // namespace velarc
