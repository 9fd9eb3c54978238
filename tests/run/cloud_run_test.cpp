// Runs on the cloud engines, from the action to the shown result.

#include "cloud_run_fixture.h"

#include "support/outcome.h"

namespace velarc {
namespace {

constexpr const char *kOpenAIReply = "openai_reply_reasoning_before_message.json";
constexpr const char *kGeminiReply = "gemini_reply_thought_parts.json";
constexpr const char *kAnthropicReply = "anthropic_reply_thinking_and_tools.json";

TEST_F(CloudRunTest, openAIRunEndsInItsResultItsRowsAndItsUsage)
{
    server->answer(reply(200, wireFixture(kOpenAIReply), {{"x-request-id", "req_1"}}));
    run();
    EXPECT_EQ(viewModel->engineState(),
        EngineState(
            EngineResult{TextPayload{u"In a peaceful grove, a fox slept."_s}, u"OpenAI"_s}));
    EXPECT_EQ(viewModel->activeProviderLabel(), u"OpenAI"_s);
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
    EXPECT_EQ(shownRows(),
        QStringList({u"Provider: OpenAI"_s, u"Model: gpt-5"_s, u"HTTP status: 200"_s,
            u"Endpoint: /v1/responses"_s, u"Request ID: req_1"_s,
            u"Response ID: resp_67ccd2bed1ec8190"_s, u"Response status: completed"_s,
            u"Incomplete reason: none"_s, u"Input tokens: 36"_s, u"Output tokens: 87"_s,
            u"Total tokens: 123"_s, u"Timestamp: 2026-02-20T15:00:00Z"_s}));
    EXPECT_EQ(storedUsage(), QStringList(u"openAI gpt-5 36 87 123"_s));
}

TEST_F(CloudRunTest, openAIGetsThePromptTheLimitAndTheKey)
{
    server->answer(reply(200, wireFixture(kOpenAIReply)));
    run({u"b, a"_s, {}});
    EXPECT_EQ(server->requests().first().path, "/v1/responses");
    EXPECT_EQ(latestHeader("Authorization"), QByteArray("Bearer ") + kCloudKey);
    EXPECT_EQ(latestBody(),
        parseJson(R"({"model":"gpt-5","input":[{"role":"user","content":[)"
                  R"({"type":"input_text","text":"Sort: b, a"}]}],"max_output_tokens":2048})"));
}

TEST_F(CloudRunTest, geminiRunEndsInItsResultAndItsUsageWithoutRows)
{
    useEngine(AIProvider::Gemini);
    server->answer(reply(200, wireFixture(kGeminiReply)));
    run();
    EXPECT_EQ(shownText(), u"First I look at the text.\nThe answer is 4.\nOr 5."_s);
    EXPECT_EQ(viewModel->activeProviderLabel(), u"Gemini"_s);
    EXPECT_EQ(viewModel->latestRunDebugInfo(), std::nullopt);
    EXPECT_EQ(storedUsage(), QStringList(u"gemini gemini-2.5-flash 12 8 77"_s));
    EXPECT_EQ(server->requests().first().path, "/v1beta/models/gemini-2.5-flash:generateContent");
    EXPECT_EQ(latestHeader("x-goog-api-key"), kCloudKey);
}

TEST_F(CloudRunTest, jsonActionAsksGeminiForJson)
{
    useEngine(AIProvider::Gemini, OutputFormat::Json);
    server->answer(reply(200, R"({"candidates":[{"content":{"parts":[{"text":"{\"a\": 1}"}]}}]})"));
    run();
    EXPECT_EQ(shownText(), u"{\"a\": 1}"_s);
    EXPECT_EQ(latestBody().at("generationConfig").at("responseMimeType"), "application/json");
    EXPECT_EQ(latestBody().at("contents").at(0).at("parts").at(0).at("text"),
        "Sort: hello\n\nReturn valid JSON only. Do not include markdown code fences, comments, or "
        "extra explanatory text.");
    EXPECT_EQ(storedUsage(), QStringList());
}

TEST_F(CloudRunTest, anthropicRunEndsInItsResultItsRowsAndItsUsage)
{
    useEngine(AIProvider::Anthropic);
    server->answer(reply(200, wireFixture(kAnthropicReply), {{"request-id", "req_2"}}));
    run();
    EXPECT_EQ(shownText(), u"Hello!\nHow are you?"_s);
    EXPECT_EQ(viewModel->activeProviderLabel(), u"Anthropic"_s);
    EXPECT_EQ(shownRows(),
        QStringList({u"Provider: Anthropic"_s, u"Model: claude-opus-4-1-20250805"_s,
            u"HTTP status: 200"_s, u"Endpoint: /v1/messages"_s, u"Request ID: req_2"_s,
            u"Response ID: msg_013Zva2CMHLNnXjNJJKqJ2EF"_s, u"Stop reason: end_turn"_s,
            u"Stop sequence: none"_s, u"Input tokens: 10"_s, u"Output tokens: 25"_s,
            u"Total tokens: 35"_s, u"Timestamp: 2026-02-20T15:00:00Z"_s}));
    EXPECT_EQ(storedUsage(), QStringList(u"anthropic claude-opus-4-1-20250805 10 25 35"_s));
    EXPECT_EQ(latestHeader("x-api-key"), kCloudKey);
    EXPECT_EQ(latestBody().at("max_tokens"), 2048);
}

TEST_F(CloudRunTest, imageActionShowsThePictureThatOpenAIMade)
{
    useEngine(AIProvider::OpenAI, OutputFormat::Image);
    const QByteArray png("\x89PNG\r\n", 6);
    server->answer(reply(200, R"({"data":[{"b64_json":")" + png.toBase64() + R"("}]})"));
    run();
    EXPECT_EQ(viewModel->engineState(), EngineState(EngineResult{ImagePayload{png}, u"OpenAI"_s}));
    EXPECT_EQ(server->requests().first().path, "/v1/images/generations");
    EXPECT_EQ(latestBody(),
        parseJson(R"({"model":"gpt-image-1","prompt":"Sort: hello","size":"1024x1024"})"));
    EXPECT_TRUE(shownRows().contains(u"Image bytes: 6"_s));
    EXPECT_EQ(storedUsage(), QStringList());
}

TEST_F(CloudRunTest, refusalIsShownAsTheResult)
{
    server->answer(reply(200, wireFixture("openai_reply_refusal.json")));
    run();
    EXPECT_EQ(shownText(), u"I cannot help with that."_s);
    EXPECT_EQ(storedUsage(), QStringList(u"openAI gpt-5 11 9 20"_s));
}

TEST_F(CloudRunTest, textOfAnIncompleteReplyIsShownAndTheRowsTellOfIt)
{
    server->answer(reply(200,
        R"({"status":"incomplete","incomplete_details":{"reason":"max_output_tokens"},)"
        R"("output_text":"The first half"})"));
    run();
    EXPECT_EQ(shownText(), u"The first half"_s);
    EXPECT_TRUE(shownRows().contains(u"Response status: incomplete"_s));
    EXPECT_TRUE(shownRows().contains(u"Incomplete reason: max_output_tokens"_s));
}

TEST_F(CloudRunTest, onDeviceActionWithAnOpenAIKeyIsAnsweredByOpenAI)
{
    useEngine(AIProvider::AppleIntelligence);
    server->answer(reply(200, wireFixture(kOpenAIReply)));
    run();
    EXPECT_EQ(shownText(), u"In a peaceful grove, a fox slept."_s);
    EXPECT_EQ(viewModel->activeProviderLabel(), u"OpenAI"_s);
    EXPECT_EQ(note(), u"Apple Intelligence unavailable. OpenAI was used instead."_s);
    EXPECT_EQ(storedUsage(), QStringList(u"openAI gpt-5 36 87 123"_s));
}

TEST_F(CloudRunTest, onDeviceImageWithAnOpenAIKeyIsMadeByOpenAI)
{
    useEngine(AIProvider::AppleIntelligence, OutputFormat::Image);
    server->answer(reply(200, R"({"data":[{"b64_json":"cG5n"}]})"));
    run();
    EXPECT_EQ(
        viewModel->engineState(), EngineState(EngineResult{ImagePayload{"png"}, u"OpenAI"_s}));
    EXPECT_EQ(note(), u"Apple image generation unavailable. OpenAI was used instead."_s);
}

TEST_F(CloudRunTest, onDeviceActionWithoutAKeyAsksNobody)
{
    keys->keys.clear();
    useEngine(AIProvider::AppleIntelligence);
    run();
    EXPECT_EQ(viewModel->activeProviderLabel(), u"Local Preview Engine"_s);
    EXPECT_EQ(note(), u"Apple Intelligence unavailable. Local preview engine was used instead."_s);
    EXPECT_EQ(server->connectionsAccepted(), 0);
}

TEST_F(CloudRunTest, runsFollowEachOtherWithOneRequestEach)
{
    for (int number = 1; number <= 5; ++number) {
        const QByteArray text = "number " + QByteArray::number(number);
        server->answer(reply(200, R"({"output_text":")" + text + R"("})"));
        run();
        EXPECT_EQ(shownText(), QString::fromUtf8(text));
        EXPECT_EQ(server->requests().size(), number);
    }
}

class CloudConnectTest : public CloudRunTest
{
protected:
    [[nodiscard]] QCoro::Task<std::optional<QString>> connecting(
        AIProvider provider, const char *key, std::stop_token stop = {})
    {
        noteCall();
        keys->keys.clear();
        launchCloud();
        ConnectRequest request;
        request.provider = provider;
        request.apiKey = Secret(key);
        return viewModel->connections().connectProvider(std::move(request), std::move(stop));
    }
};

TEST_F(CloudConnectTest, goodKeyIsVerifiedByOneShortRequestAndStored)
{
    server->answer(reply(200, wireFixture(kOpenAIReply)));
    EXPECT_EQ(outcomeOf(connecting(AIProvider::OpenAI, " good-key-1234 \n")), std::nullopt);
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), "good-key-1234");
    EXPECT_EQ(latestHeader("Authorization"), "Bearer good-key-1234");
    EXPECT_EQ(latestBody().at("max_output_tokens"), 64);
    EXPECT_EQ(latestBody().at("input").at(0).at("content").at(0).at("text"), "Reply with OK.");
    EXPECT_TRUE(viewModel->providerConnections().openAI.isConnected);
    EXPECT_EQ(note(), u"OpenAI connected successfully."_s);
    EXPECT_EQ(storedUsage(), QStringList());
}

TEST_F(CloudConnectTest, goodKeysOfTheOtherProvidersAreVerifiedToo)
{
    server->answer(reply(200, wireFixture(kGeminiReply)));
    EXPECT_EQ(outcomeOf(connecting(AIProvider::Gemini, "good-key-1234")), std::nullopt);
    EXPECT_TRUE(viewModel->providerConnections().gemini.isConnected);
    server->answer(reply(200, wireFixture(kAnthropicReply)));
    EXPECT_EQ(outcomeOf(connecting(AIProvider::Anthropic, "good-key-1234")), std::nullopt);
    EXPECT_TRUE(viewModel->providerConnections().anthropic.isConnected);
    EXPECT_EQ(latestBody().at("max_tokens"), 24);
}

TEST_F(CloudConnectTest, badKeyGivesTheWordsOfTheProviderWithoutTheKey)
{
    server->answer(
        reply(401, R"({"error":{"message":"Incorrect API key provided: bad-key-1234."}})"));
    EXPECT_EQ(outcomeOf(connecting(AIProvider::OpenAI, "bad-key-1234")),
        u"Incorrect API key provided: [API key]."_s);
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), std::nullopt);
    EXPECT_FALSE(viewModel->providerConnections().openAI.isConnected);
}

TEST_F(CloudConnectTest, stoppedVerificationEndsTheRequestAndStoresNothing)
{
    std::stop_source stop;
    server->answer(ScriptedAnswer());
    const auto outcome = watch(connecting(AIProvider::OpenAI, "good-key-1234", stop.get_token()));
    ASSERT_TRUE(waitUntil(
        [this] { return !server->requests().isEmpty() && server->requests().last().isWhole; }));
    stop.request_stop();
    EXPECT_THROW(outcomeOf(outcome), CancellationError);
    EXPECT_TRUE(waitUntil([this] { return server->connectionsOpen() == 0; }));
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), std::nullopt);
    EXPECT_EQ(viewModel->statusNote(), std::nullopt);
}

} // namespace
} // namespace velarc
