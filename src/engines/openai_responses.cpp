// One call of the Responses API: its body, and what is read from its reply.

#include "base/async.h"
#include "base/locale_text.h"
#include "engines/cloud_body.h"
#include "engines/cloud_text.h"
#include "engines/json_reader.h"
#include "engines/openai_calls.h"
#include "engines/openai_service.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kEndpoint = u"/v1/responses"_s;
const QString kDefaultModel = u"gpt-5"_s;

// What a call is made of, but for the key.
struct ResponsesRequest
{
    QString model; // the one in use
    QString prompt;
    QList<InputAttachment> attachments;
    int maxOutputTokens = 0;
};

void appendImage(QByteArray &body, const InputAttachment &attachment)
{
    body += R"(,{"type":"input_image","image_url":"data:)";
    appendJsonCharacters(body, sentMimeType(attachment));
    body += ";base64,";
    appendBase64(body, attachment.bytes);
    body += R"("})";
}

QByteArray bodyOf(const ResponsesRequest &request, const std::stop_token &stop)
{
    const QString text = promptWithAttachedDocuments(request.prompt, request.attachments);
    QByteArray body = roomForBody(text, request.attachments);
    body += R"({"model":)";
    appendJsonString(body, request.model);
    body += R"(,"input":[{"role":"user","content":[{"type":"input_text","text":)";
    appendJsonString(body, text);
    body += '}';
    for (const InputAttachment &attachment : request.attachments) {
        throwIfStopped(stop);
        if (attachment.kind != InputAttachmentKind::Pdf) {
            appendImage(body, attachment);
        }
    }
    body += R"(]}],"max_output_tokens":)";
    body += QByteArray::number(request.maxOutputTokens);
    body += '}';
    return body;
}

// What all output items say, gathered as they are read.
struct Output
{
    JoinedPieces types{u","_s};
    JoinedPieces contentTypes{u","_s};
    JoinedPieces texts;
    JoinedPieces refusals;
};

struct IncompleteDetails
{
    QString reason;
};

struct UsagePayload
{
    ReportedTokens tokens;
};

struct APIError
{
    QString message;
    QString type;
    QString code;
};

struct ResponsesEnvelope
{
    QString id;
    QString status;
    IncompleteDetails incompleteDetails;
    QString outputText;
    Output output;
    UsagePayload usage;
    APIError error;
};

void readContentItem(JsonReader &reader, Output &output)
{
    QString type;
    QString text;
    QString refusal;
    reader.object(field("type", type), field("text", text), field("refusal", refusal));
    output.contentTypes.add(type);
    output.texts.add(text);
    output.refusals.add(refusal);
}

void readJson(JsonReader &reader, Output &output)
{
    reader.array([&] {
        QString type;
        const auto readContent = [&] { reader.array([&] { readContentItem(reader, output); }); };
        reader.object(field("type", type), field("content", readContent));
        output.types.add(type);
    });
}

void readJson(JsonReader &reader, IncompleteDetails &details)
{
    reader.object(field("reason", details.reason));
}

void readJson(JsonReader &reader, UsagePayload &usage)
{
    reader.object(field("input_tokens", usage.tokens.input),
        field("output_tokens", usage.tokens.output), field("total_tokens", usage.tokens.total));
}

void readJson(JsonReader &reader, APIError &error)
{
    reader.object(
        field("message", error.message), field("type", error.type), field("code", error.code));
}

void readJson(JsonReader &reader, ResponsesEnvelope &envelope)
{
    reader.object(field("id", envelope.id), field("status", envelope.status),
        field("incomplete_details", envelope.incompleteDetails),
        field("output_text", envelope.outputText), field("output", envelope.output),
        field("usage", envelope.usage), field("error", envelope.error));
}

QString responseID(const ResponsesEnvelope &envelope)
{
    return trimmedOr(envelope.id, u"n/a"_s);
}

QString responseStatus(const ResponsesEnvelope &envelope)
{
    return trimmedOr(envelope.status, u"n/a"_s);
}

QString incompleteReason(const ResponsesEnvelope &envelope)
{
    return trimmedOr(envelope.incompleteDetails.reason, u"none"_s);
}

QString textOf(const ResponsesEnvelope &envelope)
{
    const QString pieces = trimmedOr(envelope.output.texts.text(), envelope.output.refusals.text());
    return trimmedOr(envelope.outputText, pieces);
}

std::optional<QString> requestID(const CloudExchange &exchange)
{
    return exchange.header("x-request-id");
}

QString diagnosticText(
    const CloudExchange &exchange, const std::optional<ResponsesEnvelope> &envelope)
{
    const QString request = requestID(exchange).value_or(u"n/a"_s);
    if (!envelope) {
        return u"request_id="_s + request + u". Body: "_s + exchange.snippet();
    }
    return u"response_id="_s + responseID(*envelope) + u"; request_id="_s + request + u"; status="_s
        + responseStatus(*envelope) + u"; incomplete_reason="_s + incompleteReason(*envelope)
        + u"; output_types=["_s + envelope->output.types.text() + u"]; content_types=["_s
        + envelope->output.contentTypes.text() + u"]; body="_s + exchange.snippet();
}

QString unreadableText(const CloudExchange &exchange)
{
    const auto request = requestID(exchange);
    return u"OpenAI returned unreadable JSON (status "_s + exchange.statusCode() + u")."_s
        + (request ? u" request_id="_s + *request + u"."_s : QString()) + u" Body: "_s
        + exchange.snippet();
}

[[noreturn]] void fail(const CloudExchange &exchange, const QString &text)
{
    throw OpenAIServiceError(OpenAIFailure::RequestFailed, exchange.redaction.of(text));
}

// The text of a reply that has one.
QString textOrFailure(
    const CloudExchange &exchange, const std::optional<ResponsesEnvelope> &envelope)
{
    if (!exchange.succeeded()) {
        const QString told = envelope ? trimmedOr(envelope->error.message) : QString();
        fail(exchange,
            !told.isEmpty() ? told
                            : u"OpenAI request failed with status "_s + exchange.statusCode()
                    + u". "_s + diagnosticText(exchange, envelope));
    }
    if (!envelope) {
        fail(exchange, unreadableText(exchange));
    }
    QString text = textOf(*envelope);
    if (text.isEmpty()) {
        fail(exchange, u"OpenAI returned no text output. "_s + diagnosticText(exchange, envelope));
    }
    return text;
}

QList<DebugInfoRow> infoRows(const ResponsesRequest &request, const CloudExchange &exchange,
    const ResponsesEnvelope &envelope, const TokenUsage &counted)
{
    QList<DebugInfoRow> rows{
        {u"Provider"_s, u"OpenAI"_s},
        {u"Model"_s, request.model},
        {u"HTTP status"_s, exchange.statusCode()},
        {u"Endpoint"_s, kEndpoint},
        {u"Request ID"_s, requestID(exchange).value_or(u"n/a"_s)},
        {u"Response ID"_s, responseID(envelope)},
        {u"Response status"_s, responseStatus(envelope)},
        {u"Incomplete reason"_s, incompleteReason(envelope)},
    };
    appendClosingRows(rows, counted, exchange.now, request.attachments.size());
    return rows;
}

GenerationResult resultOf(
    const ResponsesRequest &request, const CloudExchange &exchange, const std::stop_token &stop)
{
    const auto envelope = envelopeOf<ResponsesEnvelope>(exchange, stop);
    QString text = textOrFailure(exchange, envelope);
    const TokenUsage counted = countedTokens(envelope->usage.tokens);
    GenerationResult result;
    result.payload = TextPayload{std::move(text)};
    result.usage = usageOf(counted);
    result.provider = AIProvider::OpenAI;
    result.modelID = request.model;
    result.debugInfo = debugInfoOf(exchange, ShownRequest{kEndpoint, request.prompt},
        infoRows(request, exchange, *envelope, counted), stop);
    return result;
}

} // namespace

CloudCall responsesCall(const QUrl &host, CloudTextRequest request, int maxOutputTokens)
{
    HttpSecretHeader key = bearerHeader(request.apiKey);
    const auto shared = std::make_shared<const ResponsesRequest>(
        ResponsesRequest{trimmedOr(request.model, kDefaultModel), std::move(request.prompt),
            std::move(request.attachments), maxOutputTokens});
    return CloudCall{
        addressOf(host, kEndpoint),
        jsonHeaders(),
        std::move(key),
        [shared](const std::stop_token &stop) { return bodyOf(*shared, stop); },
        [shared](const CloudExchange &exchange, const std::stop_token &stop) {
            return resultOf(*shared, exchange, stop);
        },
        std::make_exception_ptr(OpenAIServiceError(OpenAIFailure::InvalidResponse)),
    };
}

} // namespace velarc
