#include "engines/anthropic_service.h"
#include "engines/cloud_call.h"

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

constexpr int kMaxTokens = 2048;
constexpr const char *kReply = R"({"content":[{"type":"text","text":"Hello"}]})";

struct AnthropicServiceTest : CloudTest
{
    AnthropicService service{transport, clock};

    QCoro::Task<GenerationResult> call(CloudTextRequest request)
    {
        return service.generateText(std::move(request), kMaxTokens, {});
    }

    GenerationResult resultOf(CloudTextRequest request)
    {
        return outcomeOf(call(std::move(request)));
    }

    GenerationResult resultOfReply(const QByteArray &body, const HttpHeaders &headers = {})
    {
        transport->answer(200, body, headers);
        return resultOf(textRequest(u"Hi"_s));
    }

    Failed<AnthropicFailure> failureOfReply(
        int status, const QByteArray &body, const HttpHeaders &headers = {})
    {
        transport->answer(status, body, headers);
        return failureOf<AnthropicFailure>(call(textRequest(u"Hi"_s)));
    }

    void expectRequestFailed(const Failed<AnthropicFailure> &failed, const QString &text)
    {
        EXPECT_EQ(failed.failure, AnthropicFailure::RequestFailed);
        EXPECT_EQ(failed.text, text);
    }
};

} // namespace

TEST_F(AnthropicServiceTest, onePostGoesToTheMessagesEndpointWithItsThreeHeaders)
{
    transport->answer(200, kReply);
    CloudTextRequest request = textRequest(u"Hi"_s);
    request.apiKey = Secret(QByteArray("\n ") + kTestKey + " ");
    resultOf(std::move(request));
    ASSERT_EQ(transport->requests.size(), 1);
    EXPECT_EQ(transport->requests[0].url.toEncoded(), "https://api.anthropic.com/v1/messages");
    EXPECT_EQ(transport->sentHeader("Content-Type"), "application/json");
    EXPECT_EQ(transport->sentHeader("x-api-key"), QByteArray(kTestKey)); // no "Bearer "
    EXPECT_EQ(transport->sentHeader("anthropic-version"), "2023-06-01");
    EXPECT_EQ(transport->requests[0].headers.size(), 2);
}

TEST_F(AnthropicServiceTest, aBlankModelSendsTheDefaultModel)
{
    transport->answer(200, kReply);
    const GenerationResult result =
        resultOf(textRequest(u" Say \"hi\"\nto \\ Zoë\u0001 / 🙂 "_s, u" \n"_s));
    EXPECT_EQ(transport->onlyBody(), wireFixture("anthropic_request_prompt.json"));
    EXPECT_EQ(result.modelID, u"claude-opus-4-1-20250805"_s);
}

TEST_F(AnthropicServiceTest, picturesAreSentAsPlainBase64AndPDFsAsText)
{
    transport->answer(200, kReply);
    const GenerationResult result = outcomeOf(service.generateText(
        textRequest(u"Sum up"_s, u" claude-sonnet-4 "_s, mixedAttachments()), 24, {}));
    EXPECT_EQ(transport->onlyBody(), wireFixture("anthropic_request_attachments.json"));
    EXPECT_EQ(result.modelID, u"claude-sonnet-4"_s);
    EXPECT_EQ(rowOf(result, u"Model"_s), u"claude-sonnet-4"_s);
    EXPECT_EQ(rowOf(result, u"Attachments"_s), u"5"_s);
}

TEST_F(AnthropicServiceTest, aBlankKeySendsNothing)
{
    CloudTextRequest request = textRequest(u"Hi"_s);
    request.apiKey = Secret("\t\n");
    const auto failed = failureOf<AnthropicFailure>(call(std::move(request)));
    EXPECT_EQ(failed.failure, AnthropicFailure::MissingAPIKey);
    EXPECT_EQ(failed.text, u"Missing Anthropic API key."_s);
    EXPECT_TRUE(transport->requests.isEmpty());
}

TEST_F(AnthropicServiceTest, aRealReplyBecomesItsTextBlocks)
{
    const GenerationResult result = resultOfReply(
        wireFixture("anthropic_reply_thinking_and_tools.json"), {{"Request-Id", " req_1"}});
    EXPECT_EQ(result.payload, ResultPayload(TextPayload{u"Hello!\nHow are you?"_s}));
    EXPECT_EQ(result.usage, (TokenUsage{10, 25, 35}));
    EXPECT_EQ(result.provider, AIProvider::Anthropic);
    EXPECT_EQ(rowsOf(result),
        (QStringList{u"Provider: Anthropic"_s, u"Model: claude-opus-4-1-20250805"_s,
            u"HTTP status: 200"_s, u"Endpoint: /v1/messages"_s, u"Request ID:  req_1"_s,
            u"Response ID: msg_013Zva2CMHLNnXjNJJKqJ2EF"_s, u"Stop reason: end_turn"_s,
            u"Stop sequence: none"_s, u"Input tokens: 10"_s, u"Output tokens: 25"_s,
            u"Total tokens: 35"_s, u"Timestamp: "_s + kTestTimestamp}));
}

TEST_F(AnthropicServiceTest, rowsOfAReplyThatTellsNothingSaySo)
{
    const GenerationResult result =
        resultOfReply(R"({"id":" ","stop_reason":"","stop_sequence":" \n","model":"another",)"
                      R"("content":[{"type":"text","text":"Hello"}]})",
            {{"x-request-id", "of another engine"}});
    EXPECT_EQ(rowsOf(result).sliced(4, 7),
        (QStringList{u"Request ID: n/a"_s, u"Response ID: n/a"_s, u"Stop reason: none"_s,
            u"Stop sequence: none"_s, u"Input tokens: 0"_s, u"Output tokens: 0"_s,
            u"Total tokens: 0"_s}));
    EXPECT_EQ(result.modelID, u"claude-opus-4-1-20250805"_s);
}

TEST_F(AnthropicServiceTest, aReplyThatWasCutShortIsAResultAndItsRowsTellOfIt)
{
    const GenerationResult result =
        resultOfReply(R"({"content":[{"type":"text","text":"Half"}],"stop_reason":" max_tokens ",)"
                      R"("stop_sequence":" END "})");
    EXPECT_EQ(textOf(result), u"Half"_s);
    EXPECT_EQ(rowOf(result, u"Stop reason"_s), u"max_tokens"_s);
    EXPECT_EQ(rowOf(result, u"Stop sequence"_s), u"END"_s);
}

TEST_F(AnthropicServiceTest, theDebugTextsShowTheRequestAndTheReply)
{
    const GenerationResult result = resultOfReply(kReply);
    ASSERT_TRUE(result.debugInfo.has_value());
    EXPECT_TRUE(result.debugInfo->requestText.startsWith(
        u"Endpoint: POST /v1/messages\nPrompt:\nHi\n\nRequest JSON:\n{\n"
        "  \"model\": \"claude-opus-4-1-20250805\",\n  \"max_tokens\": 2048,\n"_s));
    EXPECT_EQ(result.debugInfo->responseText,
        u"{\n  \"content\": [\n    {\n      \"type\": \"text\",\n      \"text\": \"Hello\"\n"
        "    }\n  ]\n}"_s);
}

TEST_F(AnthropicServiceTest, theTotalIsAlwaysTheSum)
{
    struct Case
    {
        const char *usage = nullptr;
        std::optional<TokenUsage> counted;
    };
    constexpr qint64 kMost = std::numeric_limits<qint64>::max();
    for (const Case &each : {
             Case{R"({"input_tokens":10,"output_tokens":5,"total_tokens":99})",
                 TokenUsage{10, 5, 15}},
             Case{R"({"input_tokens":-10,"output_tokens":5})", TokenUsage{0, 5, 5}},
             Case{R"({"input_tokens":9223372036854775806,"output_tokens":9223372036854775806})",
                 TokenUsage{kMost - 1, kMost - 1, kMost}},
             Case{R"({"input_tokens":0,"output_tokens":0})", std::nullopt},
             Case{R"({"input_tokens":null})", std::nullopt},
         }) {
        const GenerationResult result =
            resultOfReply(QByteArray(R"({"content":[{"type":"text","text":"Hello"}],"usage":)")
                + each.usage + '}');
        EXPECT_EQ(result.usage, each.counted) << each.usage;
        EXPECT_EQ(rowOf(result, u"Total tokens"_s),
            QString::number(each.counted.value_or(TokenUsage()).totalTokens));
    }
}

TEST_F(AnthropicServiceTest, anErrorMessageSurfacesAloneWithoutAStatus)
{
    for (const int status : {300, 401, 429, 529}) {
        expectRequestFailed(failureOfReply(status, wireFixture("anthropic_reply_overloaded.json"),
                                {{"request-id", "req_1"}}),
            u"Overloaded"_s);
    }
}

TEST_F(AnthropicServiceTest, aStatusWithoutAMessageQuotesTheBody)
{
    const QByteArray page = wireFixture("html_page.html");
    const QString snippet = u"<html> <head><title>502 Bad Gateway</title></head> <body> "
                            "<h1>502 Bad Gateway</h1> </body> </html>"_s;
    expectRequestFailed(
        failureOfReply(500, page), u"Anthropic request failed with status 500. Body: "_s + snippet);
    expectRequestFailed(failureOfReply(500, page, {{"REQUEST-ID", "req_2"}}),
        u"Anthropic request failed with status 500. request_id=req_2. Body: "_s + snippet);
    expectRequestFailed(failureOfReply(500, R"({"error":{"message":" "}})"),
        u"Anthropic request failed with status 500. Body: {\"error\":{\"message\":\" \"}}"_s);
}

TEST_F(AnthropicServiceTest, aBodyThatIsNotTheExpectedJSONIsQuoted)
{
    for (const char *body : {"", "[]", "<html>", R"({"content":{}})", R"({"content":[null]})",
             R"({"content":[{"type":"text","text":1}]})", R"({"model":1})", R"({"id":[]})",
             R"({"stop_sequence":false})", R"({"usage":{"input_tokens":"1"}})", R"({"usage":[]})",
             R"({"error":"x"})", R"({"content":[{"type":"text","text":"Hel)"}) {
        expectRequestFailed(failureOfReply(200, body),
            u"Anthropic returned unreadable JSON (status 200). Body: "_s + QString::fromUtf8(body));
        expectRequestFailed(failureOfReply(206, body, {{"request-id", "req_3"}}),
            u"Anthropic returned unreadable JSON (status 206). request_id=req_3. Body: "_s
                + QString::fromUtf8(body));
    }
}

TEST_F(AnthropicServiceTest, aReplyWithOnlyOtherBlocksHasNoText)
{
    const QByteArray body = wireFixture("anthropic_reply_tool_call_only.json");
    expectRequestFailed(failureOfReply(200, body, {{"request-id", " req_4 "}}),
        u"Anthropic returned no text output. response_id=msg_tool; request_id= req_4 ; "
        "stop_reason=tool_use; body="_s
            + QString::fromUtf8(body));
}

TEST_F(AnthropicServiceTest, blankTextBlocksAreDroppedAndNothingMoreIsNoText)
{
    for (const char *body : {"{}", R"({"content":null})", R"({"content":[]})",
             R"({"content":[{"type":"text","text":" \n"},{"text":"x"}]})"}) {
        expectRequestFailed(failureOfReply(200, body),
            u"Anthropic returned no text output. response_id=n/a; request_id=n/a; "
            "stop_reason=none; body="_s
                + QString::fromUtf8(body));
    }
}

TEST_F(AnthropicServiceTest, aReplyThatIsNotHTTPIsInvalid)
{
    transport->failure = std::make_exception_ptr(NotHttpError(u"noise"_s));
    const auto failed = failureOf<AnthropicFailure>(call(textRequest(u"Hi"_s)));
    EXPECT_EQ(failed.failure, AnthropicFailure::InvalidResponse);
    EXPECT_EQ(failed.text, u"Anthropic returned an invalid response."_s);
}

TEST_F(AnthropicServiceTest, aKeyThatTheServerEchoesIsShownNowhere)
{
    const QByteArray key = kTestKey;
    const HttpHeaders headers{{"request-id", key}};
    expectRequestFailed(
        failureOfReply(401, R"({"error":{"message":"Bad )" + key + R"("}})"), u"Bad [API key]"_s);
    expectRequestFailed(failureOfReply(500, key, headers),
        u"Anthropic request failed with status 500. request_id=[API key]. Body: [API key]"_s);
    const GenerationResult result = resultOfReply(
        R"({"id":")" + key + R"(","content":[{"type":"text","text":"Hello"}]})", headers);
    EXPECT_EQ(rowOf(result, u"Request ID"_s), u"[API key]"_s);
    EXPECT_EQ(rowOf(result, u"Response ID"_s), u"[API key]"_s);
    EXPECT_FALSE(result.debugInfo->responseText.contains(QString::fromUtf8(key)));
}

} // namespace velarc
