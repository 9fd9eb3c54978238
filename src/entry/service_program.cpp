#include "entry/service_program.h"

#include "base/async.h"
#include "base/errors.h"
#include "base/worker.h"
#include "entry/actions_service.h"
#include "entry/desktop_names.h"
#include "entry/search_services.h"

#include <QDBusConnectionInterface>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

namespace {

// Calls that were sent before the name was given back have arrived by then.
constexpr std::chrono::milliseconds kLastCallsTime = 100ms;

// The three objects, for as long as it lives.
class ServedObjects final
{
public:
    ServedObjects(QDBusConnection bus, const ServiceParts &parts, Activity &activity)
        : m_bus(std::move(bus))
    {
        new ActionsService(&m_actions, m_bus, parts, activity); // each is its parent's
        new GnomeSearchProvider(&m_searchProvider, parts, activity);
        new KRunnerRunner(&m_runner, parts, activity);
    }
    ~ServedObjects()
    {
        m_bus.unregisterService(kServiceName);
        for (const QLatin1StringView path : {kActionsPath, kSearchProviderPath, kRunnerPath}) {
            m_bus.unregisterObject(path);
        }
    }
    ServedObjects(const ServedObjects &) = delete;
    ServedObjects &operator=(const ServedObjects &) = delete;

    // The objects first: whoever sees the name finds them.
    [[nodiscard]] bool appear()
    {
        return m_bus.registerObject(kActionsPath, &m_actions)
            && m_bus.registerObject(kSearchProviderPath, &m_searchProvider)
            && m_bus.registerObject(kRunnerPath, &m_runner) && takeName();
    }

    [[nodiscard]] bool takeName()
    {
        const auto reply = m_bus.interface()->registerService(kServiceName,
            QDBusConnectionInterface::DontQueueService,
            QDBusConnectionInterface::DontAllowReplacement);
        return reply.isValid() && reply.value() == QDBusConnectionInterface::ServiceRegistered;
    }

    void giveNameBack() { m_bus.unregisterService(kServiceName); }

private:
    QDBusConnection m_bus;
    QObject m_actions;
    QObject m_searchProvider;
    QObject m_runner;
};

QCoro::Task<void> openWindow(
    std::shared_ptr<SerialWorker> worker, std::optional<QUuid> action, ActivationContext context)
{
    auto work = [action, context](const std::stop_token &) {
        return action ? selectInWindow(*action, context, WindowStart::IfNeeded)
                      : activateWindow(context, WindowStart::IfNeeded);
    };
    co_await worker->run(std::move(work), {});
}

QCoro::Task<void> waitUntilIdle(std::shared_ptr<Clock> clock, const Activity *activity,
    std::chrono::milliseconds idleTime, std::stop_token stop)
{
    for (auto left = idleTime; left.count() > 0; left = activity->left(idleTime)) {
        co_await clock->pause(left, stop);
    }
}

// Gives the name back when nobody has asked for long. A call that came at that very moment is
// answered first, and the waiting begins anew.
QCoro::Task<void> serveUntilIdle(std::shared_ptr<Clock> clock, const Activity *activity,
    ServedObjects *objects, std::chrono::milliseconds idleTime, std::stop_token stop)
{
    int callsSeen = -1;
    do {
        co_await waitUntilIdle(clock, activity, idleTime, stop);
        callsSeen = activity->calls();
        objects->giveNameBack();
        co_await clock->pause(kLastCallsTime, stop);
    } while (activity->calls() != callsSeen && objects->takeName());
}

} // namespace

BusEnd::BusEnd(QDBusConnection bus)
{
    bus.connect(QString(), u"/org/freedesktop/DBus/Local"_s, u"org.freedesktop.DBus.Local"_s,
        u"Disconnected"_s, this, SLOT(noteEnd()));
}

void BusEnd::noteEnd()
{
    m_stop.request_stop();
}

QCoro::Task<bool> serveOnBus(QDBusConnection bus, ServiceParts parts,
    std::chrono::milliseconds idleTime, std::stop_token stop)
{
    Activity activity(*parts.clock);
    ServedObjects objects(bus, parts, activity);
    if (!bus.isConnected() || !objects.appear()) {
        co_return false;
    }
    BusEnd end(bus);
    const std::stop_callback onStop(stop, [&end] { end.noteEnd(); });
    try {
        co_await serveUntilIdle(parts.clock, &activity, &objects, idleTime, end.token());
    } catch (const CancellationError &) {
        throwIfStopped(stop);
    }
    co_return true;
}

std::function<void(std::optional<QUuid>, ActivationContext)> windowOpener()
{
    // Calls that the window does not answer hold up nothing but each other.
    const auto worker = std::make_shared<SerialWorker>();
    return [worker](const std::optional<QUuid> &action, const ActivationContext &context) {
        static_cast<void>(openWindow(worker, action, context));
    };
}

} // namespace velarc
