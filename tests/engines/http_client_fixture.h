#pragma once

// A client, a server that it trusts, and what becomes of the requests between them.

#include "engines/http_client.h"
#include "support/environment.h"
#include "support/scripted_https_server.h"
#include "support/wait_until.h"

#include <gtest/gtest.h>

#include <memory>
#include <optional>
#include <stop_token>

namespace velarc {

// How a request ended.
struct Outcome
{
    std::optional<HttpReply> reply;
    std::optional<QString> transportError;
    bool isCancelled = false;
    bool isNotHttp = false;

    [[nodiscard]] bool isDone() const
    {
        return reply || transportError || isCancelled || isNotHttp;
    }
};

class HttpClientTest : public ::testing::Test
{
public:
    ScriptedHttpsServer server;
    std::unique_ptr<HttpClient> client = std::make_unique<HttpClient>();
    std::stop_source stop;

protected:
    HttpClientTest();

    [[nodiscard]] static TestAuthority &authority();

    // A request with the secret "canary-key" to the scripted server.
    [[nodiscard]] HttpRequest request(
        QByteArray body = "hello", const QString &path = QStringLiteral("/")) const;

    std::shared_ptr<Outcome> begin(HttpRequest request) const;
    Outcome send(HttpRequest request);
    Outcome send() { return send(request()); }

    // The transport error that the one request ends with, having been sent at most so often.
    QString errorOf(HttpRequest request, qsizetype requestsAtMost = 1);
    QString errorOf() { return errorOf(request()); }

private:
    ScopedTrust m_trust;
    // A proxy of the machine is no part of a test.
    ScopedVariable m_proxy{"https_proxy", std::nullopt};
    ScopedVariable m_allProxy{"all_proxy", std::nullopt};
    ScopedVariable m_httpProxy{"http_proxy", std::nullopt};
};

} // namespace velarc
