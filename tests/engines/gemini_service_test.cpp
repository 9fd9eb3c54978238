#include "engines/cloud_call.h"
#include "engines/gemini_service.h"

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

constexpr const char *kReply = R"({"candidates":[{"content":{"parts":[{"text":"Hello"}]}}]})";

struct GeminiServiceTest : CloudTest
{
    GeminiService service{transport, clock};

    QCoro::Task<GenerationResult> call(
        CloudTextRequest request, OutputFormat format = OutputFormat::Text)
    {
        return service.generateText(std::move(request), format, {});
    }

    GenerationResult resultOf(CloudTextRequest request, OutputFormat format = OutputFormat::Text)
    {
        return outcomeOf(call(std::move(request), format));
    }

    GenerationResult resultOfReply(const QByteArray &body)
    {
        transport->answer(200, body);
        return resultOf(textRequest(u"Hi"_s));
    }

    Failed<GeminiFailure> failureOfReply(int status, const QByteArray &body)
    {
        transport->answer(status, body, {{"x-request-id", "never read"}});
        return failureOf<GeminiFailure>(call(textRequest(u"Hi"_s)));
    }

    void expectFailure(
        const Failed<GeminiFailure> &failed, GeminiFailure failure, const QString &text)
    {
        EXPECT_EQ(failed.failure, failure);
        EXPECT_EQ(failed.text, text);
    }

    // The address that a call with that model goes to, and the model it reports.
    std::pair<QByteArray, QString> sentTo(const QString &model)
    {
        transport->requests.clear();
        transport->answer(200, kReply);
        const GenerationResult result = resultOf(textRequest(u"Hi"_s, model));
        return {transport->requests.value(0).url.toEncoded(), result.modelID.value_or(QString())};
    }

    // A request whose body has that many bytes.
    CloudTextRequest requestOfBodySize(qsizetype bytes)
    {
        constexpr qsizetype kFrame =
            sizeof(R"({"contents":[{"role":"user","parts":[{"text":""}]}]})") - 1;
        return textRequest(QString(bytes - kFrame, u'x'));
    }
};

} // namespace

TEST_F(GeminiServiceTest, onePostGoesToTheModelWithTheKeyInItsHeaderAlone)
{
    transport->answer(200, kReply);
    CloudTextRequest request = textRequest(u"Hi"_s);
    request.apiKey = Secret(QByteArray(" ") + kTestKey + "\n");
    resultOf(std::move(request));
    ASSERT_EQ(transport->requests.size(), 1);
    EXPECT_EQ(transport->requests[0].url.toEncoded(),
        "https://generativelanguage.googleapis.com/v1beta/models/gemini-2.5-flash:generateContent");
    EXPECT_EQ(transport->sentHeader("Content-Type"), "application/json");
    EXPECT_EQ(transport->sentHeader("x-goog-api-key"), QByteArray(kTestKey));
    EXPECT_EQ(transport->requests[0].headers.size(), 1);
    EXPECT_FALSE(transport->onlyBody().contains(kTestKey));
}

TEST_F(GeminiServiceTest, aStoredModelsPrefixIsDroppedOnce)
{
    struct Case
    {
        const char16_t *model;
        const char *inPath;
        const char16_t *reported;
    };
    for (const Case &each : {
             Case{u"", "gemini-2.5-flash", u"gemini-2.5-flash"},
             Case{u" gemini-2.5-pro\n", "gemini-2.5-pro", u"gemini-2.5-pro"},
             Case{u"models/gemini-2.5-flash", "gemini-2.5-flash", u"gemini-2.5-flash"},
             Case{u" models/gemini-2.5-flash ", "gemini-2.5-flash", u"gemini-2.5-flash"},
             Case{u"models/models/x", "models/x", u"models/x"},
             Case{u"Models/x", "Models/x", u"Models/x"},
         }) {
        const auto [address, reported] = sentTo(QString::fromUtf16(each.model));
        EXPECT_EQ(address,
            QByteArray("https://generativelanguage.googleapis.com/v1beta/models/") + each.inPath
                + ":generateContent");
        EXPECT_EQ(reported, QString::fromUtf16(each.reported));
    }
}

TEST_F(GeminiServiceTest, aModelIsEncodedForThePathButKeepsWhatAPathAllows)
{
    constexpr const char *kModels = "https://generativelanguage.googleapis.com/v1beta/models/";
    struct Case
    {
        const char16_t *model;
        const char *inPath;
    };
    for (const Case &each : {
             Case{u"a b", "a%20b"},
             Case{u"a?key=1#x", "a%3Fkey=1%23x"},
             Case{u"50%", "50%25"},
             Case{u"a%2Fb", "a%252Fb"},
             Case{u"Zo\u00EB", "Zo%C3%AB"},
             Case{u"\"<>\\^`{|}[]", "%22%3C%3E%5C%5E%60%7B%7C%7D%5B%5D"},
             Case{u"-._~!$&'()*+,;=:@", "-._~!$&'()*+,;=:@"},
             // Slashes and dots belong to a path: they go out as they stand.
             Case{u"tuned/a", "tuned/a"},
             Case{u"../x", "../x"},
             Case{u"a/../../../x", "a/../../../x"},
             Case{u"//evil.example/x", "//evil.example/x"},
         }) {
        const auto [address, reported] = sentTo(QString::fromUtf16(each.model));
        EXPECT_EQ(address, QByteArray(kModels) + each.inPath + ":generateContent");
        EXPECT_EQ(reported, QString::fromUtf16(each.model));
        EXPECT_EQ(transport->requests[0].url.host(), u"generativelanguage.googleapis.com"_s);
    }
}

TEST_F(GeminiServiceTest, aModelThatNoAddressCanHoldIsAnInvalidResponse)
{
    transport->answer(200, kReply);
    expectFailure(failureOf<GeminiFailure>(call(textRequest(u"Hi"_s, QString(QChar(0xD800))))),
        GeminiFailure::InvalidResponse, u"Gemini returned an invalid response."_s);
    EXPECT_TRUE(transport->requests.isEmpty());
}

TEST_F(GeminiServiceTest, otherFormatsAddNothingToThePrompt)
{
    for (const OutputFormat format :
        {OutputFormat::Text, OutputFormat::Markdown, OutputFormat::Pdf, OutputFormat::Image}) {
        transport->requests.clear();
        transport->answer(200, kReply);
        resultOf(textRequest(u" Say \"hi\"\nto \\ Zoë\u0001 / 🙂 "_s), format);
        EXPECT_EQ(transport->onlyBody(), wireFixture("gemini_request_markdown.json"));
    }
}

TEST_F(GeminiServiceTest, theJSONFormatAsksForJSONAndEveryAttachmentGoesAsAFile)
{
    transport->answer(200, kReply);
    resultOf(textRequest(u"Sum up"_s, {}, mixedAttachments()), OutputFormat::Json);
    EXPECT_EQ(transport->onlyBody(), wireFixture("gemini_request_json_attachments.json"));
}

TEST_F(GeminiServiceTest, anEmptyPromptIsStillTheFirstPart)
{
    transport->answer(200, kReply);
    resultOf(textRequest(QString()));
    EXPECT_EQ(transport->onlyBody(), R"({"contents":[{"role":"user","parts":[{"text":""}]}]})");
}

TEST_F(GeminiServiceTest, aPDFGoesUnderItsOwnMediaTypeWhetherOrNotItHasText)
{
    for (const auto &text : {std::optional<QString>(), std::optional(u"words"_s)}) {
        transport->requests.clear();
        transport->answer(200, kReply);
        InputAttachment pdf = pdfOf(u"a.pdf"_s, text);
        pdf.mimeType = u"application/x-pdf"_s;
        resultOf(textRequest(u"Hi"_s, {}, {pdf}));
        EXPECT_TRUE(transport->onlyBody().contains(
            R"({"inlineData":{"mimeType":"application/x-pdf","data":"JVBERg=="}})"));
        EXPECT_FALSE(transport->onlyBody().contains("words"));
    }
}

TEST_F(GeminiServiceTest, aBodyOfTheLimitPassesAndOneByteMoreIsNotSent)
{
    transport->answer(200, kReply);
    resultOf(requestOfBodySize(20'971'520));
    EXPECT_EQ(transport->onlyBody().size(), 20'971'520);

    transport->requests.clear();
    expectFailure(failureOf<GeminiFailure>(call(requestOfBodySize(20'971'521))),
        GeminiFailure::RequestTooLarge,
        u"Input is too large for Gemini inline upload (20971521 bytes > 20971520 bytes). "
        "Remove attachments or use smaller files."_s);
    EXPECT_TRUE(transport->requests.isEmpty());
}

TEST_F(GeminiServiceTest, theLimitCountsTheBase64OfAttachments)
{
    const QByteArray bytes(16'000'000, '\0'); // 21,333,336 letters
    const auto failed = failureOf<GeminiFailure>(call(textRequest(u"Hi"_s, {},
        {attachmentOf(InputAttachmentKind::Image, u"p.png"_s, u"image/png"_s, bytes)})));
    EXPECT_EQ(failed.failure, GeminiFailure::RequestTooLarge);
    EXPECT_TRUE(transport->requests.isEmpty());
}

TEST_F(GeminiServiceTest, aBlankKeySendsNothing)
{
    CloudTextRequest request = textRequest(u"Hi"_s);
    request.apiKey = Secret(" \n");
    expectFailure(failureOf<GeminiFailure>(call(std::move(request))), GeminiFailure::MissingAPIKey,
        u"Missing Gemini API key."_s);
    EXPECT_TRUE(transport->requests.isEmpty());
}

TEST_F(GeminiServiceTest, aRealReplyBecomesTheTextsOfAllItsCandidates)
{
    const GenerationResult result = resultOfReply(wireFixture("gemini_reply_thought_parts.json"));
    EXPECT_EQ(result.payload,
        ResultPayload(TextPayload{u"First I look at the text.\nThe answer is 4.\nOr 5."_s}));
    EXPECT_EQ(result.usage, (TokenUsage{12, 8, 77}));
    EXPECT_EQ(result.provider, AIProvider::Gemini);
    EXPECT_EQ(result.modelID, u"gemini-2.5-flash"_s);
    EXPECT_FALSE(result.debugInfo.has_value());
}

TEST_F(GeminiServiceTest, aReplyThatWasCutShortIsAResult)
{
    EXPECT_EQ(textOf(resultOfReply(R"({"candidates":[{"finishReason":"SAFETY"},)"
                                   R"({"content":{"parts":[{"text":"Half"}]},)"
                                   R"("finishReason":"MAX_TOKENS"}],"error":{"message":"no"}})")),
        u"Half"_s);
}

TEST_F(GeminiServiceTest, tokenCountsAreReadAsTold)
{
    struct Case
    {
        const char *usage = nullptr;
        std::optional<TokenUsage> counted;
    };
    constexpr qint64 kMost = std::numeric_limits<qint64>::max();
    for (const Case &each : {
             Case{R"({"promptTokenCount":10,"candidatesTokenCount":5})", TokenUsage{10, 5, 15}},
             Case{R"({"promptTokenCount":10,"totalTokenCount":9})", TokenUsage{10, 0, 9}},
             Case{R"({"promptTokenCount":-1,"candidatesTokenCount":5})", TokenUsage{0, 5, 5}},
             Case{R"({"promptTokenCount":9223372036854775807,"candidatesTokenCount":1})",
                 TokenUsage{kMost, 1, kMost}},
             Case{R"({"promptTokenCount":4,"totalTokenCount":0})", std::nullopt},
             Case{R"({})", std::nullopt},
             Case{R"(null)", std::nullopt},
         }) {
        const GenerationResult result =
            resultOfReply(QByteArray(R"({"candidates":[{"content":{"parts":[{"text":"Hello"}]}}],)"
                                     R"("usageMetadata":)")
                + each.usage + '}');
        EXPECT_EQ(result.usage, each.counted) << each.usage;
    }
}

TEST_F(GeminiServiceTest, anErrorMessageSurfacesAlone)
{
    for (const int status : {301, 400, 401, 429, 500}) {
        expectFailure(failureOfReply(status, wireFixture("gemini_reply_error.json")),
            GeminiFailure::RequestFailed, u"API key not valid. Please pass a valid API key."_s);
    }
}

TEST_F(GeminiServiceTest, aStatusWithoutAMessageQuotesTheBody)
{
    expectFailure(failureOfReply(502, wireFixture("html_page.html")), GeminiFailure::RequestFailed,
        u"Gemini request failed with status 502. Body: <html> <head><title>502 Bad "
        "Gateway</title></head> <body> <h1>502 Bad Gateway</h1> </body> </html>"_s);
    for (const char *body : {R"({"error":{"message":" \n","code":400}})", R"({"error":null})",
             R"({"error":{"message":"no","code":"400"}})", ""}) {
        expectFailure(failureOfReply(400, body), GeminiFailure::RequestFailed,
            u"Gemini request failed with status 400. Body: "_s + QString::fromUtf8(body));
    }
}

TEST_F(GeminiServiceTest, aBodyThatIsNotTheExpectedJSONIsUnreadable)
{
    for (const char *body : {"", "[]", "<html>", R"({"candidates":{}})", R"({"candidates":[null]})",
             R"({"candidates":[{"content":[]}]})", R"({"candidates":[{"content":{"parts":{}}}]})",
             R"({"candidates":[{"content":{"parts":[{"text":1}]}}]})",
             R"({"usageMetadata":{"totalTokenCount":"7"}})",
             R"({"candidates":[{"content":{"parts":[{"text":"Hel)", "\"\xFF\""}) {
        expectFailure(failureOfReply(200, body), GeminiFailure::RequestFailed,
            u"Gemini returned unreadable JSON."_s);
    }
}

TEST_F(GeminiServiceTest, aBlockedPromptFailsWhateverTheCandidatesHold)
{
    expectFailure(failureOfReply(200,
                      R"({"candidates":[{"content":{"parts":[{"text":"Hello"}]}}],)"
                      R"("promptFeedback":{"blockReason":" SAFETY "}})"),
        GeminiFailure::Blocked, u"Gemini blocked the request (SAFETY)."_s);
    expectFailure(failureOfReply(200,
                      R"({"promptFeedback":{"blockReason":"OTHER",)"
                      R"("blockReasonMessage":" Not allowed. "}})"),
        GeminiFailure::Blocked, u"Gemini blocked the request (OTHER): Not allowed."_s);
    EXPECT_EQ(
        textOf(resultOfReply(R"({"promptFeedback":{"blockReason":" ","blockReasonMessage":)"
                             R"("x"},"candidates":[{"content":{"parts":[{"text":"Hi"}]}}]})")),
        u"Hi"_s);
}

TEST_F(GeminiServiceTest, aSafetyReasonWithoutTextIsABlockInAnyCase)
{
    for (const char *reason : {"SAFETY", "safety", "Blocklist", "PROHIBITED_CONTENT", " spii "}) {
        expectFailure(failureOfReply(200,
                          QByteArray(R"({"candidates":[{"finishReason":"STOP"},{"finishReason":")")
                              + reason + R"("}]})"),
            GeminiFailure::Blocked, u"Gemini blocked the response for safety reasons."_s);
    }
}

TEST_F(GeminiServiceTest, otherReasonsWithoutTextAreNamed)
{
    struct Case
    {
        const char *body;
        const char16_t *reasons;
    };
    for (const Case &each : {
             Case{"{}", u"none"},
             Case{R"({"candidates":null})", u"none"},
             Case{R"({"candidates":[]})", u"none"},
             Case{R"({"candidates":[{"finishReason":" "},{"content":null}]})", u"none"},
             Case{R"({"candidates":[{"finishReason":" MAX_TOKENS "},{"finishReason":"Stop",)"
                  R"("content":{"parts":[{"text":" "},{}]}},{"finishReason":"SAFETY_2"}]})",
                 u"MAX_TOKENS, Stop, SAFETY_2"},
         }) {
        expectFailure(failureOfReply(200, each.body), GeminiFailure::RequestFailed,
            u"Gemini returned no text output (finish_reason: "_s + QString::fromUtf16(each.reasons)
                + u")."_s);
    }
}

TEST_F(GeminiServiceTest, aReplyThatIsNotHTTPIsInvalid)
{
    transport->failure = std::make_exception_ptr(NotHttpError(u"noise"_s));
    expectFailure(failureOf<GeminiFailure>(call(textRequest(u"Hi"_s))),
        GeminiFailure::InvalidResponse, u"Gemini returned an invalid response."_s);
}

TEST_F(GeminiServiceTest, aKeyThatTheServerEchoesIsShownNowhere)
{
    const QByteArray key = kTestKey;
    EXPECT_EQ(failureOfReply(400, R"({"error":{"message":"Bad )" + key + R"("}})").text,
        u"Bad [API key]"_s);
    EXPECT_EQ(
        failureOfReply(500, key).text, u"Gemini request failed with status 500. Body: [API key]"_s);
    EXPECT_EQ(failureOfReply(200, R"({"promptFeedback":{"blockReason":")" + key + R"("}})").text,
        u"Gemini blocked the request ([API key])."_s);
    EXPECT_EQ(failureOfReply(200, R"({"candidates":[{"finishReason":")" + key + R"("}]})").text,
        u"Gemini returned no text output (finish_reason: [API key])."_s);
}

} // namespace velarc
