// The Images call of OpenAIService.

#include "engines/cloud_call.h"
#include "engines/openai_service.h"

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

struct OpenAIImagesTest : CloudTest
{
    OpenAIService service{transport, clock};

    QCoro::Task<GenerationResult> call(const QString &prompt, const QString &model = {})
    {
        CloudImageRequest request{prompt, model, Secret(kTestKey)};
        return service.generateImage(std::move(request), {});
    }

    GenerationResult resultOfReply(const QByteArray &body, const HttpHeaders &headers = {})
    {
        transport->answer(200, body, headers);
        return outcomeOf(call(u"A fox"_s));
    }

    Failed<OpenAIFailure> failureOfReply(int status, const QByteArray &body)
    {
        transport->answer(status, body);
        return failureOf<OpenAIFailure>(call(u"A fox"_s));
    }

    QByteArray bodySentFor(const QString &prompt, const QString &model)
    {
        transport->requests.clear();
        transport->answer(200, R"({"data":[{"b64_json":"iVBORw=="}]})");
        outcomeOf(call(prompt, model));
        return transport->onlyBody();
    }
};

} // namespace

TEST_F(OpenAIImagesTest, onePostGoesToTheImagesEndpoint)
{
    EXPECT_EQ(bodySentFor(u" a \"red\" fox\n"_s, {}), wireFixture("openai_images_request.json"));
    EXPECT_EQ(
        transport->requests[0].url.toEncoded(), "https://api.openai.com/v1/images/generations");
    EXPECT_EQ(transport->sentHeader("Content-Type"), "application/json");
    EXPECT_EQ(transport->sentHeader("Authorization"), QByteArray("Bearer ") + kTestKey);
}

TEST_F(OpenAIImagesTest, onlyImageModelsAreUsed)
{
    struct Case
    {
        const char16_t *wanted;
        const char *sent;
    };
    for (const Case &each : {
             Case{u"", "gpt-image-1"},
             Case{u" \n", "gpt-image-1"},
             Case{u"gpt-5", "gpt-image-1"},
             Case{u"my-gpt-image-2", "gpt-image-1"},
             Case{u"GPT-image-2", "gpt-image-1"},
             Case{u"gpt-image", "gpt-image"},
             Case{u" gpt-image-1.5-mini\n", "gpt-image-1.5-mini"},
         }) {
        EXPECT_EQ(bodySentFor(u"x"_s, QString::fromUtf16(each.wanted)),
            QByteArray(R"({"model":")") + each.sent + R"(","prompt":"x","size":"1024x1024"})");
    }
}

TEST_F(OpenAIImagesTest, aBlankPromptIsReplacedAndShownAsItWasSent)
{
    EXPECT_TRUE(bodySentFor(u" \n"_s, {}).contains(R"("prompt":"Create an image.")"));
    const GenerationResult result = outcomeOf(call(QString()));
    EXPECT_TRUE(result.debugInfo->requestText.startsWith(
        u"Endpoint: POST /v1/images/generations\nPrompt:\nCreate an image.\n\nRequest JSON:\n{\n"_s));
}

TEST_F(OpenAIImagesTest, aBlankKeySendsNothing)
{
    CloudImageRequest request{u"A fox"_s, {}, Secret(" \n")};
    const auto failed = failureOf<OpenAIFailure>(service.generateImage(std::move(request), {}));
    EXPECT_EQ(failed.failure, OpenAIFailure::MissingAPIKey);
    EXPECT_EQ(failed.text, u"Missing OpenAI API key."_s);
    EXPECT_TRUE(transport->requests.isEmpty());
}

TEST_F(OpenAIImagesTest, theFirstImageIsTheResult)
{
    const GenerationResult result = resultOfReply(
        R"({"created":1713833628,"error":null,"data":[{"b64_json":"iVBORw==","revised_prompt":"x"},)"
        R"({"b64_json":"no base64"},{}],"usage":{"total_tokens":100}})",
        {{"x-request-id", "req_5"}});
    EXPECT_EQ(result.payload, ResultPayload(ImagePayload{"\x89PNG"}));
    EXPECT_FALSE(result.usage.has_value());
    EXPECT_EQ(result.provider, AIProvider::OpenAI);
    EXPECT_EQ(result.modelID, u"gpt-image-1"_s);
    EXPECT_EQ(rowsOf(result),
        (QStringList{u"Provider: OpenAI"_s, u"Model: gpt-image-1"_s, u"HTTP status: 200"_s,
            u"Endpoint: /v1/images/generations"_s, u"Request ID: req_5"_s, u"Image bytes: 4"_s,
            u"Timestamp: "_s + kTestTimestamp}));
    EXPECT_TRUE(result.debugInfo->responseText.contains(u"\"b64_json\": \"iVBORw==\""_s));
    EXPECT_EQ(
        rowOf(resultOfReply(R"({"data":[{"b64_json":"iVBORw=="}]})"), u"Request ID"_s), u"n/a"_s);
}

TEST_F(OpenAIImagesTest, theBytesArePassedOnWhateverTheyAre)
{
    EXPECT_EQ(resultOfReply(R"({"data":[{"b64_json":"bm8gUE5H"}]})").payload,
        ResultPayload(ImagePayload{"no PNG"}));
    EXPECT_EQ(resultOfReply(R"({"data":[{"b64_json":"\/\/\/\/"}]})").payload,
        ResultPayload(ImagePayload{"\xFF\xFF\xFF"}));
    EXPECT_EQ(
        resultOfReply(R"({"data":[{"b64_json":""}]})").payload, ResultPayload(ImagePayload{}));
}

TEST_F(OpenAIImagesTest, aReplyWithoutAValidImageIsAnInvalidPayload)
{
    for (const char *body : {
             "{}",
             R"({"data":null})",
             R"({"data":[]})",
             R"({"data":[{}]})",
             R"({"data":[{"url":"https://example.org/a.png"}]})",
             R"({"data":[{"b64_json":null},{"b64_json":"iVBORw=="}]})",
             R"({"data":[{"b64_json":"not base64!"}]})",
             R"({"data":[{"b64_json":"iVBORw"}]})",
             R"({"data":[{"b64_json":"iVBO\nRw=="}]})",
             R"({"data":[{"b64_json":" iVBORw=="}]})",
             R"({"data":[{"b64_json":"i==="}]})",
             R"({"data":[{"b64_json":"===="}]})",
             R"({"data":[{"b64_json":"iV==BORw"}]})",
             R"({"data":[{"b64_json":"_-__"}]})",
         }) {
        const auto failed = failureOfReply(200, body);
        EXPECT_EQ(failed.failure, OpenAIFailure::ImageEncodingFailed) << body;
        EXPECT_EQ(failed.text, u"OpenAI returned an invalid image payload."_s);
    }
}

TEST_F(OpenAIImagesTest, aFailedStatusSurfacesItsMessageOrItsNumber)
{
    const auto withMessage = failureOfReply(400, R"({"error":{"message":" Too rude. ","code":7}})");
    EXPECT_EQ(withMessage.failure, OpenAIFailure::RequestFailed);
    EXPECT_EQ(withMessage.text, u"Too rude."_s);
    for (const char *body : {"{}", R"({"error":null})", R"({"error":{"message":" "}})",
             R"({"data":[{"b64_json":"iVBORw=="}]})"}) {
        const auto failed = failureOfReply(503, body);
        EXPECT_EQ(failed.failure, OpenAIFailure::RequestFailed);
        EXPECT_EQ(failed.text, u"OpenAI image request failed with status 503."_s) << body;
    }
}

TEST_F(OpenAIImagesTest, aBodyThatCannotBeReadSurfacesTheDecodersErrorWhateverTheStatus)
{
    for (const int status : {200, 500}) {
        for (const QByteArray &body : {wireFixture("html_page.html"), QByteArray(),
                 QByteArray("[]"), QByteArray(R"({"data":[{"b64_json":7}]})"),
                 QByteArray(R"({"data":{"b64_json":"iVBORw=="}})"),
                 QByteArray(R"({"error":{"message":7}})"), QByteArray("{\"a\":\"\xFF\"}")}) {
            transport->answer(status, body);
            EXPECT_THROW(outcomeOf(call(u"A fox"_s)), JsonError) << body.constData();
        }
    }
}

TEST_F(OpenAIImagesTest, aReplyThatIsNotHTTPIsInvalid)
{
    transport->failure = std::make_exception_ptr(NotHttpError(u"noise"_s));
    EXPECT_EQ(failureOf<OpenAIFailure>(call(u"A fox"_s)).failure, OpenAIFailure::InvalidResponse);
}

TEST_F(OpenAIImagesTest, aKeyThatTheServerEchoesIsShownNowhere)
{
    const QByteArray key = kTestKey;
    EXPECT_EQ(failureOfReply(401, R"({"error":{"message":"Bad )" + key + R"("}})").text,
        u"Bad [API key]"_s);
    const GenerationResult result =
        resultOfReply(R"({"key":")" + key + R"(","data":[{"b64_json":"iVBORw=="}]})");
    EXPECT_TRUE(result.debugInfo->responseText.contains(u"\"key\": \"[API key]\""_s));
}

} // namespace velarc
