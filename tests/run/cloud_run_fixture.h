#pragma once

// A whole program over its real cloud clients and a provider on loopback.

#include "engines/http_client.h"
#include "support/app_world.h"
#include "support/environment.h"
#include "support/printers.h"
#include "support/scripted_https_server.h"
#include "support/wait_until.h"

#include <memory>

namespace velarc {

// As long as a real key, so that it is looked for in what comes back.
inline constexpr const char *kCloudKey = "sk-cloud-0123456789abcdef";

// Counts the replies that reach a client through it.
class CountingTransport final : public HttpTransport
{
public:
    explicit CountingTransport(std::shared_ptr<HttpTransport> inner) : m_inner(std::move(inner)) {}
    [[nodiscard]] QCoro::Task<HttpReply> post(HttpRequest request, std::stop_token stop) override;
    [[nodiscard]] int replies() const { return *m_replies; }

private:
    std::shared_ptr<HttpTransport> m_inner;
    std::shared_ptr<int> m_replies = std::make_shared<int>(0);
};

// Every test ends with nothing running and with no more requests than calls.
class CloudRunTest : public AppWorld
{
protected:
    CloudRunTest();
    void TearDown() override;

    std::unique_ptr<ScriptedHttpsServer> server;
    HttpLimits limits;
    AIAction action = testAction(u"Sort Things"_s);

    [[nodiscard]] static TestAuthority &authority();
    [[nodiscard]] static QByteArray wireFixture(const char *name);

    // Starts the program again: over that server, over those limits, over that transport.
    void serveAs(ServerIdentity identity);
    void launchCloud();
    void launchCloud(const std::shared_ptr<HttpTransport> &transport);

    // Names the engine of the action, and how it is to answer.
    void useEngine(AIProvider provider, OutputFormat format = OutputFormat::Text);

    void start(const PreparedRunInput &input = {u"hello"_s, {}});
    void noteCall() { ++m_calls; }
    void run(const PreparedRunInput &input = {u"hello"_s, {}});

    // Turns the event loop, and ends the pauses of runs, until it holds.
    template <typename Predicate> [[nodiscard]] bool goOnUntil(Predicate holds)
    {
        return waitUntil([this, &holds] {
            if (clock->pausesWaiting() > 0) {
                clock->advance(90ms);
            }
            return holds();
        });
    }

    // The JSON of the body that the provider got last.
    [[nodiscard]] Json latestBody() const { return parseJson(server->requests().last().body); }
    [[nodiscard]] QByteArray latestHeader(const QByteArray &name) const;

    [[nodiscard]] QString shownText() const;
    [[nodiscard]] QString shownStep() const;
    [[nodiscard]] EngineError shownError() const;
    // "Key: value" lines.
    [[nodiscard]] QStringList shownRows() const;
    // "engine model input output total" lines, as they are stored.
    [[nodiscard]] QStringList storedUsage();

private:
    ScopedTrust m_trust;
    // A proxy of the machine is no part of a test.
    ScopedVariable m_proxy{"https_proxy", std::nullopt};
    ScopedVariable m_allProxy{"all_proxy", std::nullopt};
    ScopedVariable m_httpProxy{"http_proxy", std::nullopt};
    int m_calls = 0;
};

} // namespace velarc
