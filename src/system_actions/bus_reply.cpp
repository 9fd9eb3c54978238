#include "system_actions/bus_reply.h"

#include "base/async.h"
#include "base/worker.h"

#include <QDBusPendingCallWatcher>

#include <chrono>
#include <memory>

namespace velarc {

namespace {

using namespace std::chrono_literals;

constexpr std::chrono::milliseconds kReplyBound = 10s;

// What the wait ends with, whoever ends it.
struct Reply
{
    Wakeup wakeup;
    QDBusMessage message;
};

} // namespace

QCoro::Task<QDBusMessage> replyTo(QDBusMessage call, QDBusConnection bus, std::stop_token stop)
{
    throwIfStopped(stop);
    const auto reply = std::make_shared<Reply>();
    auto *watcher =
        new QDBusPendingCallWatcher(bus.asyncCall(call, static_cast<int>(kReplyBound.count())));
    QObject::connect(
        watcher, &QDBusPendingCallWatcher::finished, [reply](QDBusPendingCallWatcher *finished) {
            reply->message = finished->reply();
            finished->deleteLater();
            reply->wakeup.fire();
        });
    {
        const std::stop_callback breakOff(
            stop, [reply] { postToMainThread([reply] { reply->wakeup.fire(); }); });
        co_await reply->wakeup;
    }
    throwIfStopped(stop);
    const QDBusMessage message = reply->message;
    co_return message;
}

} // namespace velarc
