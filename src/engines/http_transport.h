#pragma once

// One POST over HTTPS, as the cloud clients see it.

#include "base/errors.h"
#include "base/secret.h"

#include <QByteArray>
#include <QByteArrayView>
#include <QCoroTask>
#include <QList>
#include <QUrl>

#include <optional>
#include <stop_token>
#include <utility>

namespace velarc {

// Name and value, in the order in which they are sent or came.
using HttpHeaders = QList<std::pair<QByteArray, QByteArray>>;

// A header whose value is `prefix` followed by a secret, such as "Bearer " and a key.
struct HttpSecretHeader
{
    QByteArray name;
    QByteArray prefix;
    Secret value;
};

struct HttpRequest
{
    QUrl url;
    HttpHeaders headers; // Content-Length and the like are added by the transport
    std::optional<HttpSecretHeader> secretHeader;
    QByteArray body;
};

// A whole reply of any status from 200 on, decompressed.
struct HttpReply
{
    int status = 0;
    HttpHeaders headers;
    QByteArray body;

    // The value of the header of that name, in upper or lower case; none where there is none.
    [[nodiscard]] std::optional<QByteArray> header(QByteArrayView name) const
    {
        for (const auto &[key, value] : headers) {
            if (name.compare(key, Qt::CaseInsensitive) == 0) {
                return value;
            }
        }
        return std::nullopt;
    }
};

// No whole reply came: no connection, no trust, a reset, a time-out, a reply that is too long.
class HttpTransportError final : public UserFacingError
{
public:
    using UserFacingError::UserFacingError;
};

// What came back is not HTTP. Clients answer it with an error of their own.
class NotHttpError final : public UserFacingError
{
public:
    using UserFacingError::UserFacingError;
};

// Main thread only; never blocks.
//
// Sends each request once: nothing is repeated, and a redirect is a reply like any other.
//
// Stop:     a stopped token ends the transfer and the wait with CancellationError, from the event
//           loop.
// Errors:   HttpTransportError, NotHttpError. No text holds a part of the request.
// Lifetime: the request is copied into the task; what happens to running requests when the
//           transport goes is the implementation's to tell.
class HttpTransport
{
public:
    virtual ~HttpTransport() = default;
    [[nodiscard]] virtual QCoro::Task<HttpReply> post(
        HttpRequest request, std::stop_token stop) = 0;
};

} // namespace velarc
