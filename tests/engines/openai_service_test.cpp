// The Responses call of OpenAIService: what goes out, and what each reply becomes.

#include "engines/cloud_call.h"
#include "engines/openai_service.h"

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

constexpr int kMaxOutputTokens = 2048;

struct OpenAIServiceTest : CloudTest
{
    OpenAIService service{transport, clock};

    QCoro::Task<GenerationResult> call(CloudTextRequest request)
    {
        return service.generateText(std::move(request), kMaxOutputTokens, {});
    }

    GenerationResult resultOf(CloudTextRequest request)
    {
        return outcomeOf(call(std::move(request)));
    }

    // What a reply with that body becomes.
    GenerationResult resultOfReply(const QByteArray &body, const HttpHeaders &headers = {})
    {
        transport->answer(200, body, headers);
        return resultOf(textRequest(u"Hi"_s));
    }

    Failed<OpenAIFailure> failureOfReply(
        int status, const QByteArray &body, const HttpHeaders &headers = {})
    {
        transport->answer(status, body, headers);
        return failureOf<OpenAIFailure>(call(textRequest(u"Hi"_s)));
    }

    void expectRequestFailed(const Failed<OpenAIFailure> &failed, const QString &text)
    {
        EXPECT_EQ(failed.failure, OpenAIFailure::RequestFailed);
        EXPECT_EQ(failed.text, text);
    }
};

} // namespace

TEST_F(OpenAIServiceTest, onePostGoesToTheResponsesEndpointWithItsTwoHeaders)
{
    resultOfReply(R"({"output_text":"Hello"})");
    ASSERT_EQ(transport->requests.size(), 1);
    EXPECT_EQ(transport->requests[0].url.toEncoded(), "https://api.openai.com/v1/responses");
    EXPECT_EQ(transport->sentHeader("Content-Type"), "application/json");
    EXPECT_EQ(transport->sentHeader("Authorization"), QByteArray("Bearer ") + kTestKey);
    EXPECT_EQ(transport->requests[0].headers.size(), 1);
}

TEST_F(OpenAIServiceTest, anotherHostIsSentToUnderTheSamePath)
{
    OpenAIService local(transport, clock, QUrl(u"http://127.0.0.1:8080"_s));
    transport->answer(200, R"({"output_text":"Hello"})");
    outcomeOf(local.generateText(textRequest(u"Hi"_s), kMaxOutputTokens, {}));
    EXPECT_EQ(transport->requests[0].url.toEncoded(), "http://127.0.0.1:8080/v1/responses");
}

TEST_F(OpenAIServiceTest, aPromptAloneIsSentUntrimmedToTheDefaultModel)
{
    transport->answer(200, R"({"output_text":"Hello"})");
    resultOf(textRequest(u" Say \"hi\"\nto \\ Zoë\u0001 / 🙂 "_s, u" \n"_s));
    EXPECT_EQ(transport->onlyBody(), wireFixture("openai_request_prompt.json"));
}

TEST_F(OpenAIServiceTest, picturesAreSentAsPicturesAndPDFsAsText)
{
    transport->answer(200, R"({"output_text":"Hello"})");
    outcomeOf(service.generateText(
        textRequest(u"Sum up"_s, u"gpt-5-mini"_s, mixedAttachments()), 64, {}));
    EXPECT_EQ(transport->onlyBody(), wireFixture("openai_request_attachments.json"));
}

TEST_F(OpenAIServiceTest, aDrawingIsSentAsPngWhateverItsMediaTypeSays)
{
    transport->answer(200, R"({"output_text":"Hello"})");
    resultOf(textRequest(
        u"Hi"_s, {}, {attachmentOf(InputAttachmentKind::Svg, u"d.svg"_s, u"text/html"_s, "abc")}));
    EXPECT_TRUE(transport->onlyBody().contains(R"("image_url":"data:image/png;base64,YWJj")"));
    EXPECT_FALSE(transport->onlyBody().contains("text/html"));
}

TEST_F(OpenAIServiceTest, aMediaTypeWithAQuoteStaysInsideItsString)
{
    transport->answer(200, R"({"output_text":"Hello"})");
    resultOf(textRequest(
        u"Hi"_s, {}, {attachmentOf(InputAttachmentKind::Image, u"p"_s, u"a\"b"_s, "abc")}));
    EXPECT_TRUE(transport->onlyBody().contains(R"("image_url":"data:a\"b;base64,YWJj")"));
}

TEST_F(OpenAIServiceTest, aPDFIsNoPictureButIsCountedInTheAttachmentsRow)
{
    transport->answer(200, R"({"output_text":"Hello"})");
    const GenerationResult result = resultOf(
        textRequest(u"Hi"_s, {}, {pdfOf(u"a.pdf"_s, std::nullopt), pdfOf(u"b.pdf"_s, u" "_s)}));
    EXPECT_FALSE(transport->onlyBody().contains("input_image"));
    EXPECT_FALSE(transport->onlyBody().contains("Attached documents"));
    EXPECT_EQ(rowOf(result, u"Attachments"_s), u"2"_s);
}

TEST_F(OpenAIServiceTest, aKeyOfBlanksAndNewlinesSendsNothing)
{
    for (const char *blank : {"", " \n\t\r\n ", "\xC2\xA0"}) {
        CloudTextRequest request = textRequest(u"Hi"_s);
        request.apiKey = Secret(blank);
        const auto failed = failureOf<OpenAIFailure>(call(std::move(request)));
        EXPECT_EQ(failed.failure, OpenAIFailure::MissingAPIKey);
        EXPECT_EQ(failed.text, u"Missing OpenAI API key."_s);
    }
    EXPECT_TRUE(transport->requests.isEmpty());
}

TEST_F(OpenAIServiceTest, theKeyIsSentTrimmed)
{
    transport->answer(200, R"({"output_text":"Hello"})");
    CloudTextRequest request = textRequest(u"Hi"_s);
    request.apiKey = Secret(" \nsk-1\r\n");
    resultOf(std::move(request));
    EXPECT_EQ(transport->sentHeader("Authorization"), "Bearer sk-1");
}

TEST_F(OpenAIServiceTest, aModelIsSentAndShownTrimmed)
{
    transport->answer(200, R"({"output_text":"Hello"})");
    const GenerationResult result = resultOf(textRequest(u"Hi"_s, u" gpt-4.1\n"_s));
    EXPECT_TRUE(transport->onlyBody().startsWith(R"({"model":"gpt-4.1",)"));
    EXPECT_EQ(result.modelID, u"gpt-4.1"_s);
    EXPECT_EQ(rowOf(result, u"Model"_s), u"gpt-4.1"_s);
}

TEST_F(OpenAIServiceTest, aRealReplyBecomesItsMessage)
{
    const QByteArray body = wireFixture("openai_reply_reasoning_before_message.json");
    const GenerationResult result = resultOfReply(body, {{"X-Request-Id", " req_7 "}});
    EXPECT_EQ(result.payload, ResultPayload(TextPayload{u"In a peaceful grove, a fox slept."_s}));
    EXPECT_EQ(result.provider, AIProvider::OpenAI);
    EXPECT_EQ(result.modelID, u"gpt-5"_s);
    EXPECT_EQ(result.usage, (TokenUsage{36, 87, 123}));
    EXPECT_EQ(rowsOf(result),
        (QStringList{u"Provider: OpenAI"_s, u"Model: gpt-5"_s, u"HTTP status: 200"_s,
            u"Endpoint: /v1/responses"_s, u"Request ID:  req_7 "_s,
            u"Response ID: resp_67ccd2bed1ec8190"_s, u"Response status: completed"_s,
            u"Incomplete reason: none"_s, u"Input tokens: 36"_s, u"Output tokens: 87"_s,
            u"Total tokens: 123"_s, u"Timestamp: 2026-02-20T15:00:00Z"_s}));
}

TEST_F(OpenAIServiceTest, theTimestampIsTheMomentOfTheReply)
{
    transport->gate.close();
    transport->answer(200, R"({"output_text":"Hello"})");
    auto task = call(textRequest(u"Hi"_s));
    while (transport->gate.waiting() == 0) {
        turnEventLoop();
    }
    clock->advance(std::chrono::milliseconds(61'900));
    transport->gate.open();
    EXPECT_EQ(rowOf(outcomeOf(std::move(task)), u"Timestamp"_s), u"2026-02-20T15:01:01Z"_s);
}

TEST_F(OpenAIServiceTest, rowsOfAReplyThatTellsNothingSaySo)
{
    const GenerationResult result = resultOfReply(
        R"({"output_text":"Hello","id":" ","status":"\n","incomplete_details":{"reason":" "}})");
    EXPECT_FALSE(result.usage.has_value());
    EXPECT_EQ(rowsOf(result).sliced(4, 7),
        (QStringList{u"Request ID: n/a"_s, u"Response ID: n/a"_s, u"Response status: n/a"_s,
            u"Incomplete reason: none"_s, u"Input tokens: 0"_s, u"Output tokens: 0"_s,
            u"Total tokens: 0"_s}));
}

TEST_F(OpenAIServiceTest, theDebugTextsShowTheRequestAndTheReplyWithoutTheKey)
{
    transport->answer(201, R"({"output_text":"Hello","n":[1,{}]})");
    const GenerationResult result =
        resultOf(textRequest(u"Hi"_s, {}, {pdfOf(u"a.pdf"_s, u"words"_s)}));
    ASSERT_TRUE(result.debugInfo.has_value());
    EXPECT_EQ(result.debugInfo->requestText,
        u"Endpoint: POST /v1/responses\nPrompt:\nHi\n\nRequest JSON:\n"
        "{\n"
        "  \"model\": \"gpt-5\",\n"
        "  \"input\": [\n"
        "    {\n"
        "      \"role\": \"user\",\n"
        "      \"content\": [\n"
        "        {\n"
        "          \"type\": \"input_text\",\n"
        "          \"text\": \"Hi\\n\\nAttached documents:\\n[PDF a.pdf]\\nwords\"\n"
        "        }\n"
        "      ]\n"
        "    }\n"
        "  ],\n"
        "  \"max_output_tokens\": 2048\n"
        "}"_s);
    EXPECT_EQ(result.debugInfo->responseText,
        u"{\n  \"output_text\": \"Hello\",\n  \"n\": [\n    1,\n    {}\n  ]\n}"_s);
}

TEST_F(OpenAIServiceTest, theFirstSourceThatYieldsAnythingIsTheText)
{
    const auto textOfReply = [this](const char *body) { return textOf(resultOfReply(body)); };
    EXPECT_EQ(textOfReply(R"({"output_text":" one ","output":[{"content":[{"text":"two"}]}]})"),
        u"one"_s);
    EXPECT_EQ(textOfReply(R"({"output_text":" \n","output":[{"content":[{"text":" two\n"}]}]})"),
        u"two"_s);
    EXPECT_EQ(textOfReply(R"({"output":[{"content":[{"text":" a "},{"text":" "},{"type":"x"}]},)"
                          R"({"type":"reasoning"},{"content":[{"text":"b","type":"odd"}]}]})"),
        u"a\nb"_s);
    EXPECT_EQ(
        textOfReply(R"({"output":[{"content":[{"refusal":"No."},{"text":"Yes."}]}]})"), u"Yes."_s);
    EXPECT_EQ(textOfReply(R"({"output":[{"content":[{"refusal":"No."},{"text":" "}]},)"
                          R"({"content":[{"refusal":" Never. "}]}]})"),
        u"No.\nNever."_s);
}

TEST_F(OpenAIServiceTest, aRefusalIsDeliveredAsTheText)
{
    const GenerationResult result = resultOfReply(wireFixture("openai_reply_refusal.json"));
    EXPECT_EQ(textOf(result), u"I cannot help with that."_s);
    EXPECT_EQ(result.usage, (TokenUsage{11, 9, 20}));
}

TEST_F(OpenAIServiceTest, anIncompleteReplyWithTextSucceedsAndItsRowsTellOfIt)
{
    const GenerationResult result = resultOfReply(
        R"({"status":"incomplete","incomplete_details":{"reason":" content_filter "},)"
        R"("error":{"message":"ignored"},"output":[{"content":[{"text":"Half"}]}]})");
    EXPECT_EQ(textOf(result), u"Half"_s);
    EXPECT_EQ(rowOf(result, u"Response status"_s), u"incomplete"_s);
    EXPECT_EQ(rowOf(result, u"Incomplete reason"_s), u"content_filter"_s);
}

TEST_F(OpenAIServiceTest, anIncompleteReplyWithoutTextNamesItsReason)
{
    const QByteArray body = wireFixture("openai_reply_incomplete_without_text.json");
    expectRequestFailed(failureOfReply(200, body, {{"x-request-id", "req_8"}}),
        u"OpenAI returned no text output. response_id=resp_cut; request_id=req_8; "
        "status=incomplete; incomplete_reason=max_output_tokens; "
        "output_types=[reasoning,message,function_call]; content_types=[output_text,refusal]; "
        "body="_s
            + QString::fromUtf8(body));
}

TEST_F(OpenAIServiceTest, aReplyThatSaysNothingAtAllIsDescribed)
{
    expectRequestFailed(failureOfReply(200, "{}"),
        u"OpenAI returned no text output. response_id=n/a; request_id=n/a; status=n/a; "
        "incomplete_reason=none; output_types=[]; content_types=[]; body={}"_s);
}

TEST_F(OpenAIServiceTest, tokenCountsAreReadAsTold)
{
    struct Case
    {
        const char *usage = nullptr;
        TokenUsage shown;
    };
    constexpr qint64 kMost = std::numeric_limits<qint64>::max();
    for (const Case &each : {
             Case{R"({"input_tokens":10,"output_tokens":5})", {10, 5, 15}},
             Case{R"({"input_tokens":10,"output_tokens":5,"total_tokens":99})", {10, 5, 99}},
             Case{R"({"input_tokens":10,"output_tokens":5,"total_tokens":null})", {10, 5, 15}},
             Case{R"({"input_tokens":10.0,"output_tokens":5e0})", {10, 5, 15}},
             Case{R"({"output_tokens":5})", {0, 5, 5}},
             Case{R"({"input_tokens":-3,"output_tokens":5})", {0, 5, 5}},
             Case{R"({"total_tokens":7})", {0, 0, 7}},
             Case{R"({"input_tokens":9223372036854775807,"output_tokens":9223372036854775807})",
                 {kMost, kMost, kMost}},
             Case{R"({"input_tokens":9223372036854775807,"output_tokens":0})", {kMost, 0, kMost}},
         }) {
        const GenerationResult result =
            resultOfReply(QByteArray(R"({"output_text":"Hello","usage":)") + each.usage + '}');
        EXPECT_EQ(result.usage, each.shown) << each.usage;
        EXPECT_EQ(rowOf(result, u"Input tokens"_s), QString::number(each.shown.inputTokens));
        EXPECT_EQ(rowOf(result, u"Output tokens"_s), QString::number(each.shown.outputTokens));
        EXPECT_EQ(rowOf(result, u"Total tokens"_s), QString::number(each.shown.totalTokens));
    }
}

TEST_F(OpenAIServiceTest, aTotalBelowOneMeansNoUsageButRowsAllTheSame)
{
    for (const char *usage : {"{}", R"({"input_tokens":0,"output_tokens":0,"total_tokens":0})",
             R"({"input_tokens":0,"total_tokens":-5})", R"({"input_tokens":-1})"}) {
        const GenerationResult result =
            resultOfReply(QByteArray(R"({"output_text":"Hello","usage":)") + usage + '}');
        EXPECT_FALSE(result.usage.has_value()) << usage;
        EXPECT_EQ(rowOf(result, u"Input tokens"_s), u"0"_s);
        EXPECT_EQ(rowOf(result, u"Output tokens"_s), u"0"_s);
        EXPECT_EQ(rowOf(result, u"Total tokens"_s), u"0"_s);
    }
    const GenerationResult counted =
        resultOfReply(R"({"output_text":"Hello","usage":{"input_tokens":8,"total_tokens":0}})");
    EXPECT_FALSE(counted.usage.has_value());
    EXPECT_EQ(rowOf(counted, u"Input tokens"_s), u"8"_s);
}

TEST_F(OpenAIServiceTest, anErrorMessageSurfacesAloneWhateverTheStatus)
{
    for (const int status : {199, 300, 302, 400, 401, 404, 429, 500, 503, 599}) {
        expectRequestFailed(failureOfReply(status, wireFixture("openai_reply_error.json")),
            u"You exceeded your current quota, please check your plan and billing details."_s);
    }
}

TEST_F(OpenAIServiceTest, everyStatusFrom200To299Succeeds)
{
    for (const int status : {200, 202, 299}) {
        transport->answer(status, R"({"output_text":"Hello"})");
        const GenerationResult result = resultOf(textRequest(u"Hi"_s));
        EXPECT_EQ(rowOf(result, u"HTTP status"_s), QString::number(status));
    }
}

TEST_F(OpenAIServiceTest, aStatusWithJSONButNoMessageGivesTheLongDiagnostic)
{
    expectRequestFailed(failureOfReply(429, R"({"id":"resp_1","error":{"message":" \n"}})",
                            {{"X-REQUEST-ID", "req_9"}}),
        u"OpenAI request failed with status 429. response_id=resp_1; request_id=req_9; "
        "status=n/a; incomplete_reason=none; output_types=[]; content_types=[]; "
        "body={\"id\":\"resp_1\",\"error\":{\"message\":\" \\n\"}}"_s);
}

TEST_F(OpenAIServiceTest, aStatusWithAnHTMLPageGivesTheShortDiagnostic)
{
    const QByteArray page = wireFixture("html_page.html");
    const QString snippet = u"<html> <head><title>502 Bad Gateway</title></head> <body> "
                            "<h1>502 Bad Gateway</h1> </body> </html>"_s;
    expectRequestFailed(failureOfReply(500, page),
        u"OpenAI request failed with status 500. request_id=n/a. Body: "_s + snippet);
    expectRequestFailed(failureOfReply(500, page, {{"x-request-id", "req_3"}}),
        u"OpenAI request failed with status 500. request_id=req_3. Body: "_s + snippet);
}

TEST_F(OpenAIServiceTest, aBodyThatIsNotTheExpectedJSONIsQuoted)
{
    struct Case
    {
        const char *body;
        const char16_t *snippet;
    };
    for (const Case &each : {
             Case{"", u""},
             Case{"[]", u"[]"},
             Case{"null", u"null"},
             Case{"\"text\"", u"\"text\""},
             Case{R"({"output_text":"Hel)", u"{\"output_text\":\"Hel"},
             Case{R"({"output_text":"Hello"} x)", u"{\"output_text\":\"Hello\"} x"},
             Case{R"({"output_text":1})", u"{\"output_text\":1}"},
             Case{R"({"output":{}})", u"{\"output\":{}}"},
             Case{R"({"output":[null]})", u"{\"output\":[null]}"},
             Case{R"({"output":[{"content":[7]}]})", u"{\"output\":[{\"content\":[7]}]}"},
             Case{R"({"usage":{"input_tokens":true}})", u"{\"usage\":{\"input_tokens\":true}}"},
             Case{R"({"usage":{"input_tokens":3.5}})", u"{\"usage\":{\"input_tokens\":3.5}}"},
             Case{R"({"error":{"code":7}})", u"{\"error\":{\"code\":7}}"},
             Case{R"({"incomplete_details":"x"})", u"{\"incomplete_details\":\"x\"}"},
             Case{"{\"id\":\"\xFF\"}", u"<non-utf8 response body>"},
         }) {
        const QString snippet = QString::fromUtf16(each.snippet);
        expectRequestFailed(failureOfReply(200, each.body),
            u"OpenAI returned unreadable JSON (status 200). Body: "_s + snippet);
        expectRequestFailed(failureOfReply(204, each.body, {{"x-request-id", "req_4"}}),
            u"OpenAI returned unreadable JSON (status 204). request_id=req_4. Body: "_s + snippet);
        expectRequestFailed(failureOfReply(500, each.body),
            u"OpenAI request failed with status 500. request_id=n/a. Body: "_s + snippet);
    }
}

TEST_F(OpenAIServiceTest, numbersBeyondEveryTypeInUnreadFieldsDoNotSpoilAReply)
{
    const GenerationResult result = resultOfReply(
        R"({"temperature":1e400,"seed":12345678901234567890123,"output_text":"Hello"})");
    EXPECT_EQ(textOf(result), u"Hello"_s);
    EXPECT_TRUE(result.debugInfo->responseText.contains(
        u"\"temperature\": 1e400,\n  \"seed\": 12345678901234567890123,\n"_s));
}

TEST_F(OpenAIServiceTest, aReplyThatIsNotHTTPIsInvalid)
{
    transport->failure = std::make_exception_ptr(NotHttpError(u"noise"_s));
    const auto failed = failureOf<OpenAIFailure>(call(textRequest(u"Hi"_s)));
    EXPECT_EQ(failed.failure, OpenAIFailure::InvalidResponse);
    EXPECT_EQ(failed.text, u"OpenAI returned an invalid response."_s);
}

TEST_F(OpenAIServiceTest, aTransportFailureIsPassedOnUnchanged)
{
    transport->failure = std::make_exception_ptr(HttpTransportError(u"The wire is cut."_s));
    try {
        resultOf(textRequest(u"Hi"_s));
        FAIL() << "succeeded";
    } catch (const HttpTransportError &error) {
        EXPECT_EQ(error.message(), u"The wire is cut."_s);
    }
}

TEST_F(OpenAIServiceTest, aKeyThatTheServerEchoesIsShownNowhere)
{
    const QByteArray key = kTestKey;
    const HttpHeaders headers{{"x-request-id", "req-" + key}};
    expectRequestFailed(
        failureOfReply(401, R"({"error":{"message":"Bad key )" + key + R"(, sorry."}})", headers),
        u"Bad key [API key], sorry."_s);
    expectRequestFailed(failureOfReply(500, "key " + key + "!", headers),
        u"OpenAI request failed with status 500. request_id=req-[API key]. "
        "Body: key [API key]!"_s);
    const QByteArray escaped = QByteArray(key).replace("-", "\\u002d");
    expectRequestFailed(failureOfReply(401, R"({"error":{"message":"Bad )" + escaped + R"("}})"),
        u"Bad [API key]"_s);

    const GenerationResult result = resultOfReply(R"({"output_text":"Hello","id":")" + key
            + R"(","status":")" + escaped + R"(","metadata":")" + escaped + R"("})",
        headers);
    EXPECT_EQ(rowOf(result, u"Request ID"_s), u"req-[API key]"_s);
    EXPECT_EQ(rowOf(result, u"Response ID"_s), u"[API key]"_s);
    EXPECT_EQ(rowOf(result, u"Response status"_s), u"[API key]"_s);
    EXPECT_FALSE(result.debugInfo->responseText.contains(QString::fromUtf8(key)));
}

TEST_F(OpenAIServiceTest, aSnippetThatIsCutInsideAnEchoedKeyHoldsNoPartOfIt)
{
    const QByteArray body = QByteArray(390, '.') + kTestKey;
    EXPECT_TRUE(failureOfReply(500, body).text.endsWith(u"...[API key]"_s));
}

} // namespace velarc
