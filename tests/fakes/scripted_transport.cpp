#include "fakes/scripted_transport.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

void ScriptedTransport::answer(int status, QByteArray body, HttpHeaders headers)
{
    reply = HttpReply{status, std::move(headers), std::move(body)};
}

QCoro::Task<HttpReply> ScriptedTransport::post(HttpRequest request, std::stop_token stop)
{
    requests.append(std::move(request));
    co_await gate.pass(stop);
    if (failure) {
        std::rethrow_exception(failure);
    }
    if (!reply) {
        throw HttpTransportError(u"This test sends nothing."_s);
    }
    HttpReply answered = *reply;
    co_return answered;
}

QByteArray ScriptedTransport::onlyBody() const
{
    return requests.size() == 1 ? requests.front().body : QByteArray("not one request");
}

std::optional<QByteArray> ScriptedTransport::sentHeader(const QByteArray &name) const
{
    if (requests.size() != 1) {
        return std::nullopt;
    }
    const auto &secret = requests.front().secretHeader;
    if (secret && secret->name == name) {
        return secret->prefix + secret->value.bytes().toByteArray();
    }
    for (const auto &[key, value] : requests.front().headers) {
        if (key == name) {
            return value;
        }
    }
    return std::nullopt;
}

} // namespace velarc
