// What the user sees of a request that failed, and that it was sent once.

#include "cloud_run_fixture.h"

namespace velarc {
namespace {

class CloudFailureTest : public CloudRunTest
{
protected:
    // The detail below the headline of the engine, after a run that the server answers so.
    QString detailAfter(const ScriptedAnswer &answer)
    {
        server->answer(answer);
        run();
        const EngineError error = shownError();
        EXPECT_EQ(error.message, u"Request failed for provider "_s + label(action.provider) + u'.');
        EXPECT_EQ(storedUsage(), QStringList());
        return error.technical.value_or(u"no detail"_s);
    }
};

const QString kBrokenOff = u"The connection was closed before a whole reply came."_s;

TEST_F(CloudFailureTest, wordsOfTheProviderAreShownWhole)
{
    const QByteArray sentence =
        "Incorrect API key provided. " + QByteArray("Look at the help. ").repeated(100) + "Bye.";
    for (const AIProvider provider :
        {AIProvider::OpenAI, AIProvider::Gemini, AIProvider::Anthropic}) {
        useEngine(provider);
        EXPECT_EQ(detailAfter(reply(401, R"({"error":{"message":")" + sentence + R"("}})",
                      {{"WWW-Authenticate", "Bearer realm=\"api\""}})),
            QString::fromUtf8(sentence));
    }
}

TEST_F(CloudFailureTest, keyInTheWordsOfTheProviderIsNotShown)
{
    const QByteArray body =
        QByteArray(R"({"error":{"message":"No such key: )") + kCloudKey + R"(."}})";
    EXPECT_EQ(detailAfter(reply(401, body)), u"No such key: [API key]."_s);
}

TEST_F(CloudFailureTest, htmlPageOfAServerErrorIsShownInOneLine)
{
    const QByteArray page = wireFixture("html_page.html");
    const QString line = u"<html> <head><title>502 Bad Gateway</title></head> <body> <h1>502 Bad "
                         u"Gateway</h1> </body> </html>"_s;
    EXPECT_EQ(detailAfter(reply(500, page)),
        u"OpenAI request failed with status 500. request_id=n/a. Body: "_s + line);
    useEngine(AIProvider::Gemini);
    EXPECT_EQ(
        detailAfter(reply(500, page)), u"Gemini request failed with status 500. Body: "_s + line);
    useEngine(AIProvider::Anthropic);
    EXPECT_EQ(detailAfter(reply(500, page)),
        u"Anthropic request failed with status 500. Body: "_s + line);
}

TEST_F(CloudFailureTest, replyThatBreaksOffIsAFailureAndIsNotAskedForAgain)
{
    const QByteArray half = "HTTP/1.1 200 OK\r\nContent-Length: 40\r\n\r\n{\"output_text\":\"ha";
    for (const AIProvider provider :
        {AIProvider::OpenAI, AIProvider::Gemini, AIProvider::Anthropic}) {
        useEngine(provider);
        for (const Ending ending : {Ending::Close, Ending::Reset}) {
            EXPECT_EQ(detailAfter({.bytes = half, .ending = ending}), kBrokenOff);
            EXPECT_EQ(detailAfter({.bytes = {}, .ending = ending}), kBrokenOff);
        }
    }
    EXPECT_EQ(server->requests().size(), 12);
}

TEST_F(CloudFailureTest, truncatedJsonIsUnreadable)
{
    const ScriptedAnswer truncated = reply(200, R"({"output_text":"ha)");
    EXPECT_EQ(detailAfter(truncated),
        u"OpenAI returned unreadable JSON (status 200). Body: {\"output_text\":\"ha"_s);
    useEngine(AIProvider::Gemini);
    EXPECT_EQ(detailAfter(truncated), u"Gemini returned unreadable JSON."_s);
    useEngine(AIProvider::Anthropic);
    EXPECT_EQ(detailAfter(truncated),
        u"Anthropic returned unreadable JSON (status 200). Body: {\"output_text\":\"ha"_s);
}

TEST_F(CloudFailureTest, incompleteReplyWithoutTextIsAFailure)
{
    const QString detail =
        detailAfter(reply(200, wireFixture("openai_reply_incomplete_without_text.json")));
    EXPECT_THAT(detail.toStdString(),
        testing::StartsWith("OpenAI returned no text output. response_id=resp_cut; request_id=n/a; "
                            "status=incomplete; incomplete_reason=max_output_tokens; "));
}

TEST_F(CloudFailureTest, promptThatGeminiBlocksIsAFailure)
{
    useEngine(AIProvider::Gemini);
    EXPECT_EQ(detailAfter(reply(200, R"({"promptFeedback":{"blockReason":"SAFETY"}})")),
        u"Gemini blocked the request (SAFETY)."_s);
}

TEST_F(CloudFailureTest, redirectIsNotFollowed)
{
    EXPECT_EQ(detailAfter(reply(302, "moved", {{"Location", "https://127.0.0.1:1/elsewhere"}})),
        u"OpenAI request failed with status 302. request_id=n/a. Body: moved"_s);
}

TEST_F(CloudFailureTest, serverThatFallsSilentTimesOut)
{
    limits.silence = 150ms;
    launchCloud();
    EXPECT_EQ(detailAfter(ScriptedAnswer()), u"The request timed out."_s);
    EXPECT_EQ(detailAfter({.bytes = "HTTP/1.1 200 OK\r\nContent-Length: 40\r\n\r\nhalf"}),
        u"The request timed out."_s);
    EXPECT_TRUE(waitUntil([this] { return server->connectionsOpen() == 0; }));
}

TEST_F(CloudFailureTest, serverThatCannotBeTrustedGetsNoRequest)
{
    TestAuthority stranger;
    const ServerIdentity identities[] = {authority().selfSigned(), stranger.issue(),
        authority().issueExpired(), authority().issueForAnotherHost()};
    for (const ServerIdentity &identity : identities) {
        serveAs(identity);
        run();
        EXPECT_EQ(shownError().message, u"Request failed for provider OpenAI."_s);
        EXPECT_FALSE(shownError().technical.value_or(QString()).isEmpty());
        EXPECT_EQ(server->requests().size(), 0);
    }
}

TEST_F(CloudFailureTest, serverThatIsNotThereIsAFailure)
{
    server->close();
    run();
    EXPECT_EQ(shownError(),
        (EngineError{u"Request failed for provider OpenAI."_s, u"Connection refused"_s}));
}

TEST_F(CloudFailureTest, failureOfOpenAIBehindTheOnDeviceEngineIsShownUnderTheResolvedEngine)
{
    useEngine(AIProvider::AppleIntelligence);
    EXPECT_EQ(detailAfter(reply(429, R"({"error":{"message":"Slow down."}})")), u"Slow down."_s);
}

TEST_F(CloudFailureTest, failedRunCanBeTriedAgain)
{
    EXPECT_EQ(detailAfter(endingAt(Stage::RequestRead, Ending::Reset)), kBrokenOff);
    server->answer(reply(200, R"({"output_text":"at last"})"));
    noteCall();
    viewModel->retryRun();
    ASSERT_TRUE(goOnUntil([this] { return shownText() == u"at last"_s; }));
    EXPECT_EQ(server->requests().size(), 2);
}

} // namespace
} // namespace velarc
