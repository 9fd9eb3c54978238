// One call of the Images API: its body, and what is read from its reply.

#include "base/locale_text.h"
#include "base/text.h"
#include "engines/cloud_body.h"
#include "engines/cloud_text.h"
#include "engines/json_reader.h"
#include "engines/openai_calls.h"
#include "engines/openai_service.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

const QString kEndpoint = u"/v1/images/generations"_s;
const QString kDefaultModel = u"gpt-image-1"_s;
const QString kImageModels = u"gpt-image"_s; // what their names begin with
const QString kDefaultPrompt = u"Create an image."_s;

constexpr qsizetype kLettersAGroup = 4;

// What a call is made of, but for the key.
struct ImagesRequest
{
    QString model;
    QString prompt;
};

// The model in use: a text model chosen for an action makes no pictures.
QString imageModel(const QString &model)
{
    const QString wanted = trimmedOr(model, kDefaultModel);
    return wanted.startsWith(kImageModels) ? wanted : kDefaultModel;
}

QByteArray bodyOf(const ImagesRequest &request)
{
    QByteArray body = R"({"model":)";
    appendJsonString(body, request.model);
    body += R"(,"prompt":)";
    appendJsonString(body, request.prompt);
    body += R"(,"size":"1024x1024"})";
    return body;
}

struct ImagePayloads
{
    qsizetype count = 0;
    std::optional<QByteArray> firstBase64;
};

struct APIError
{
    QString message;
};

struct ImagesEnvelope
{
    ImagePayloads data;
    APIError error;
};

void readJson(JsonReader &reader, ImagePayloads &payloads)
{
    reader.array([&] {
        std::optional<QByteArray> base64;
        reader.object(field("b64_json", base64));
        if (payloads.count++ == 0) {
            payloads.firstBase64 = std::move(base64);
        }
    });
}

void readJson(JsonReader &reader, APIError &error)
{
    reader.object(field("message", error.message));
}

void readJson(JsonReader &reader, ImagesEnvelope &envelope)
{
    reader.object(field("data", envelope.data), field("error", envelope.error));
}

[[noreturn]] void fail(const CloudExchange &exchange, const ImagesEnvelope &envelope)
{
    const QString told = trimmedOr(envelope.error.message,
        u"OpenAI image request failed with status "_s + exchange.statusCode() + u"."_s);
    throw OpenAIServiceError(OpenAIFailure::RequestFailed, exchange.redaction.of(told));
}

QByteArray imageOf(const ImagesEnvelope &envelope)
{
    const auto &base64 = envelope.data.firstBase64;
    if (base64 && base64->size() % kLettersAGroup == 0) {
        const auto decoded = QByteArray::fromBase64Encoding(
            *base64, QByteArray::Base64Encoding | QByteArray::AbortOnBase64DecodingErrors);
        if (decoded) {
            return decoded.decoded;
        }
    }
    throw OpenAIServiceError(OpenAIFailure::ImageEncodingFailed);
}

GenerationResult resultOf(
    const ImagesRequest &request, const CloudExchange &exchange, const std::stop_token &stop)
{
    const auto envelope = recordFromJson<ImagesEnvelope>(exchange.reply.body, stop);
    if (!exchange.succeeded()) {
        fail(exchange, envelope);
    }
    QByteArray image = imageOf(envelope);
    GenerationResult result;
    result.provider = AIProvider::OpenAI;
    result.modelID = request.model;
    result.debugInfo = debugInfoOf(exchange, ShownRequest{kEndpoint, request.prompt},
        {
            {u"Provider"_s, u"OpenAI"_s},
            {u"Model"_s, request.model},
            {u"HTTP status"_s, exchange.statusCode()},
            {u"Endpoint"_s, kEndpoint},
            {u"Request ID"_s, exchange.header("x-request-id").value_or(u"n/a"_s)},
            {u"Image bytes"_s, QString::number(image.size())},
            {u"Timestamp"_s, iso8601(exchange.now)},
        },
        stop);
    result.payload = ImagePayload{std::move(image)};
    return result;
}

} // namespace

CloudCall imagesCall(const QUrl &host, CloudImageRequest request)
{
    HttpSecretHeader key = bearerHeader(request.apiKey);
    const auto shared = std::make_shared<const ImagesRequest>(ImagesRequest{
        imageModel(request.model), isBlank(request.prompt) ? kDefaultPrompt : request.prompt});
    return CloudCall{
        addressOf(host, kEndpoint),
        jsonHeaders(),
        std::move(key),
        [shared](const std::stop_token &) { return bodyOf(*shared); },
        [shared](const CloudExchange &exchange, const std::stop_token &stop) {
            return resultOf(*shared, exchange, stop);
        },
        std::make_exception_ptr(OpenAIServiceError(OpenAIFailure::InvalidResponse)),
    };
}

} // namespace velarc
