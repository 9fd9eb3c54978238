// Runs against a provider on loopback, as they are seen on the screen.

#include "ui_world.h"

#include "engines/http_client.h"
#include "engines/openai_service.h"
#include "support/environment.h"
#include "support/fixture.h"
#include "support/scripted_https_server.h"
#include "support/wait_until.h"

#include <QBuffer>

namespace velarc {

namespace {

const ScriptedAnswer kStall{};

class CloudScreenTest : public UiWorld
{
protected:
    std::unique_ptr<ScriptedHttpsServer> server =
        std::make_unique<ScriptedHttpsServer>(authority().issue());
    AIAction action = testAction(u"Sort Things"_s);

    CloudScreenTest() : m_trust(authority())
    {
        keys->keys[AIProvider::OpenAI] = "sk-cloud-0123456789abcdef";
        action.systemPrompt = u"Sort: {User_Input}"_s;
        action.provider = AIProvider::OpenAI;
        AppServices made = services();
        made.openAIService =
            std::make_shared<OpenAIService>(std::make_shared<HttpClient>(), clock, server->url({}));
        viewModel = std::make_unique<AppViewModel>(std::move(made));
        openWindow();
    }

    ~CloudScreenTest() override
    {
        window.reset();
        engine.reset();
        screens.reset();
        viewModel.reset();
        EXPECT_TRUE(scope->finish());
    }

    static TestAuthority &authority()
    {
        static TestAuthority shared;
        return shared;
    }

    void start() { viewModel->startRun(action, ExplicitInput{{u"b, a"_s, {}}}); }

    // Turns the event loop, and ends the pauses of the run, until the screen shows it.
    [[nodiscard]] bool comesToShow(const QString &text)
    {
        QTimer turns; // an answer that came already wakes nobody
        turns.start(5ms);
        return waitUntil([this, &text] {
            if (shows(text)) {
                return true;
            }
            if (clock->pausesWaiting() > 0) {
                clock->advance(90ms);
            }
            settle();
            return shows(text);
        });
    }

    void finishWith(const QByteArray &body, int status = 200)
    {
        server->sendMore(reply(status, body).bytes);
    }

private:
    ScopedTrust m_trust;
    // A proxy of the machine is no part of a test.
    ScopedVariable m_proxy{"https_proxy", std::nullopt};
    ScopedVariable m_allProxy{"all_proxy", std::nullopt};
};

TEST_F(CloudScreenTest, eachStepAndTheResultAreShown)
{
    server->answer(kStall);
    start();
    EXPECT_TRUE(comesToShow(u"Preparing payload"_s));
    EXPECT_TRUE(shows(u"Action: "_s + viewModel->library().selectedAction()->name));
    EXPECT_TRUE(shows(u"Running"_s));
    EXPECT_TRUE(comesToShow(u"Selecting provider"_s));
    EXPECT_TRUE(comesToShow(u"Generating with OpenAI"_s));
    EXPECT_TRUE(waitUntil([this] { return !server->requests().isEmpty(); }));
    finishWith(fixtureBytes("wire/openai_reply_reasoning_before_message.json"));
    EXPECT_TRUE(comesToShow(u"In a peaceful grove, a fox slept."_s));
    EXPECT_TRUE(shows(u"Result \u2022 OpenAI"_s));
    click(u"Details"_s);
    EXPECT_TRUE(shows(u"Copy Response"_s));
    click(u"Info"_s);
    EXPECT_TRUE(shows(u"HTTP status"_s));
    click(u"Copy Info"_s);
    EXPECT_TRUE(copied->texts.last().contains(u"HTTP status: 200"_s));
}

TEST_F(CloudScreenTest, aPictureThatTheProviderSendsIsShown)
{
    QImage made(32, 16, QImage::Format_RGB32);
    made.fill(Qt::red);
    QByteArray png;
    QBuffer buffer(&png);
    made.save(&buffer, "PNG");
    action.outputFormat = OutputFormat::Image;
    server->answer(kStall);
    start();
    EXPECT_TRUE(comesToShow(u"Generating image with OpenAI"_s));
    EXPECT_TRUE(waitUntil([this] { return !server->requests().isEmpty(); }));
    finishWith(R"({"data":[{"b64_json":")" + png.toBase64() + R"("}]})");
    EXPECT_TRUE(comesToShow(u"Result image"_s));
    EXPECT_TRUE(waitUntil([this] { return !screens->result()->picture().isEmpty(); }));
    EXPECT_FALSE(shows(u"Refine"_s));
}

TEST_F(CloudScreenTest, aRefusedKeyIsToldWithWhatToDo)
{
    server->answer(reply(401, R"({"error":{"message":"Incorrect API key provided."}})"));
    start();
    EXPECT_TRUE(comesToShow(u"Request failed for provider OpenAI."_s));
    EXPECT_TRUE(shows(u"Error"_s));
    EXPECT_TRUE(shows(u"Issue \u2022 OpenAI"_s));
    click(u"Technical details"_s);
    click(u"Copy Details"_s);
    EXPECT_TRUE(copied->texts.last().contains(u"Incorrect API key provided."_s));
    server->answer(reply(200, fixtureBytes("wire/openai_reply_reasoning_before_message.json")));
    click(u"Retry"_s);
    EXPECT_TRUE(comesToShow(u"In a peaceful grove, a fox slept."_s));
}

TEST_F(CloudScreenTest, noNetworkIsAnErrorThatCanBeRetried)
{
    const quint16 port = server->serverPort();
    server.reset();
    start();
    EXPECT_TRUE(comesToShow(u"Request failed for provider OpenAI."_s));
    server = std::make_unique<ScriptedHttpsServer>(authority().issue(), port);
    server->answer(reply(200, fixtureBytes("wire/openai_reply_reasoning_before_message.json")));
    click(u"Retry"_s);
    EXPECT_TRUE(comesToShow(u"In a peaceful grove, a fox slept."_s));
}

TEST_F(CloudScreenTest, withoutASecretStoreTheEngineIsOfferedToBeConnected)
{
    keys->failure = CredentialStoreError::keychain(202); // nobody serves secrets
    start();
    EXPECT_TRUE(comesToShow(u"OpenAI is not connected."_s));
    click(u"Connect OpenAI"_s);
    EXPECT_EQ(viewModel->providerConnectSheetProvider(), AIProvider::OpenAI);
}

} // namespace

} // namespace velarc
