#include "cloud_run_fixture.h"

#include "engines/on_device_services.h"
#include "support/cloud_services.h"
#include "support/fixture.h"

namespace velarc {

namespace {

QCoro::Task<HttpReply> counted(std::shared_ptr<HttpTransport> inner, std::shared_ptr<int> replies,
    HttpRequest request, std::stop_token stop)
{
    HttpReply reply = co_await inner->post(std::move(request), std::move(stop));
    ++*replies;
    co_return reply;
}

} // namespace

QCoro::Task<HttpReply> CountingTransport::post(HttpRequest request, std::stop_token stop)
{
    return counted(m_inner, m_replies, std::move(request), std::move(stop));
}

CloudRunTest::CloudRunTest() : m_trust(authority())
{
    for (const AIProvider provider :
        {AIProvider::OpenAI, AIProvider::Gemini, AIProvider::Anthropic}) {
        keys->keys[provider] = kCloudKey;
    }
    action.systemPrompt = u"Sort: {User_Input}"_s;
    action.provider = AIProvider::OpenAI;
    serveAs(authority().issue());
}

void CloudRunTest::TearDown()
{
    // A request that was sent again would come late.
    EXPECT_FALSE(waitUntil([this] { return server->requests().size() > m_calls; }, 30ms));
    viewModel.reset();
    EXPECT_TRUE(scope->finish());
}

TestAuthority &CloudRunTest::authority()
{
    static TestAuthority shared;
    return shared;
}

QByteArray CloudRunTest::wireFixture(const char *name)
{
    return fixtureBytes((std::string("wire/") + name).c_str());
}

void CloudRunTest::serveAs(ServerIdentity identity)
{
    server = std::make_unique<ScriptedHttpsServer>(std::move(identity));
    launchCloud();
}

void CloudRunTest::launchCloud()
{
    launchCloud(std::make_shared<HttpClient>(limits));
}

void CloudRunTest::launchCloud(const std::shared_ptr<HttpTransport> &transport)
{
    viewModel.reset();
    AppServices made = overCloudClients(services(), transport, server->url({}));
    made.onDeviceModel = absentOnDeviceModel();
    made.appleIntelligenceService = std::make_shared<AppleIntelligenceService>(made.onDeviceModel);
    made.appleImageService = std::make_shared<AppleImageService>();
    viewModel = std::make_unique<AppViewModel>(std::move(made));
}

void CloudRunTest::useEngine(AIProvider provider, OutputFormat format)
{
    action.provider = provider;
    action.outputFormat = format;
}

void CloudRunTest::start(const PreparedRunInput &input)
{
    noteCall();
    viewModel->startRun(action, ExplicitInput{input});
}

void CloudRunTest::run(const PreparedRunInput &input)
{
    start(input);
    ASSERT_TRUE(goOnUntil([this] { return scope->running() == 0; }));
    ASSERT_EQ(viewModel->homePhase(), HomePhase::Output);
}

QByteArray CloudRunTest::latestHeader(const QByteArray &name) const
{
    const QList<QByteArray> values = server->requests().last().values(name);
    return values.size() == 1 ? values.first() : QByteArray("not one header");
}

QString CloudRunTest::shownText() const
{
    const auto *result = std::get_if<EngineResult>(&viewModel->engineState());
    return result == nullptr ? u"no result"_s : payloadText(result->payload).value_or(u"no text"_s);
}

QString CloudRunTest::shownStep() const
{
    const auto *processing = std::get_if<EngineProcessing>(&viewModel->engineState());
    return processing == nullptr ? QString() : processing->step;
}

EngineError CloudRunTest::shownError() const
{
    const auto *error = std::get_if<EngineError>(&viewModel->engineState());
    return error == nullptr ? EngineError{u"no error"_s, {}} : *error;
}

QStringList CloudRunTest::shownRows() const
{
    QStringList lines;
    if (const auto &info = viewModel->latestRunDebugInfo()) {
        for (const DebugInfoRow &row : info->infoRows) {
            lines.append(row.key + u": "_s + row.value);
        }
    }
    return lines;
}

QStringList CloudRunTest::storedUsage()
{
    QStringList lines;
    const Json ledger = storedDocument(kLedgerKey); // null where nothing was ever counted
    for (const Json &entry : ledger.is_null() ? Json::array() : ledger.at("entries")) {
        lines.append(u"%1 %2 %3 %4 %5"_s
                         .arg(QString::fromStdString(entry.at("provider").get<std::string>()),
                             QString::fromStdString(entry.at("modelID").get<std::string>()))
                         .arg(entry.at("inputTokens").get<qint64>())
                         .arg(entry.at("outputTokens").get<qint64>())
                         .arg(entry.at("totalTokens").get<qint64>()));
    }
    return lines;
}

} // namespace velarc
