#pragma once

// A transport that a test answers for.

#include "engines/http_transport.h"
#include "fakes/gate.h"

#include <exception>

namespace velarc {

// Keeps what is sent and gives the reply that the test has set, at once unless its gate is closed.
// A request that the test has set no reply for fails.
class ScriptedTransport final : public HttpTransport
{
public:
    Gate gate;
    QList<HttpRequest> requests;
    std::optional<HttpReply> reply;
    std::exception_ptr failure; // thrown in place of the reply

    void answer(int status, QByteArray body, HttpHeaders headers = {});

    [[nodiscard]] QCoro::Task<HttpReply> post(HttpRequest request, std::stop_token stop) override;

    // The body of the only request.
    [[nodiscard]] QByteArray onlyBody() const;

    // The value of a header of the only request, the one with the secret included.
    [[nodiscard]] std::optional<QByteArray> sentHeader(const QByteArray &name) const;
};

} // namespace velarc
