#pragma once

// The transport of the program: HTTP/1.1 over TLS.

#include "engines/http_transport.h"

#include <chrono>
#include <memory>

namespace velarc {

struct HttpLimits
{
    // The longest time without a byte in either direction.
    std::chrono::milliseconds silence = std::chrono::seconds(60);
    // How long a connection may rest, asleep or awake, and still carry another request. A server
    // may have dropped an older one, and a request that dies on it is not sent again.
    std::chrono::milliseconds rest = std::chrono::seconds(20);
    // The longest body of a reply, decompressed.
    qint64 replyBytes = qint64(256) * 1024 * 1024;
};

// One for the process, over the proxies and the trust store of the system; no cookies, no cache, no
// question for a password. Only https: any other address fails before a byte is sent. The key is
// handed to the network library when the transfer begins; copies made there are beyond our reach.
//
// Errors:   NotHttpError only where a status line is there and makes no sense. A reply that does
//           not even begin like HTTP cannot be told from a connection that was closed, and is an
//           HttpTransportError. So is an interim reply (101 to 199), behind which the final one is
//           lost; 100 is passed over.
// Lifetime: when it goes, running transfers are broken off at once; their tasks end with
//           CancellationError from the event loop.
class HttpClient final : public HttpTransport
{
public:
    explicit HttpClient(HttpLimits limits = {});
    ~HttpClient() override;
    HttpClient(const HttpClient &) = delete;
    HttpClient &operator=(const HttpClient &) = delete;

    [[nodiscard]] QCoro::Task<HttpReply> post(HttpRequest request, std::stop_token stop) override;

    struct Members;

private:
    std::shared_ptr<Members> m_members;
};

} // namespace velarc
