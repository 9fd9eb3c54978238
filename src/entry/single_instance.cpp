#include "entry/single_instance.h"

#include "entry/session.h"

#include <utility>

namespace velarc {

HandOver handOver(const StartRequest &request, std::chrono::milliseconds patience)
{
    const WindowReply reply = request.addresses.isEmpty()
        ? activateWindow(request.context, WindowStart::Never)
        : openInWindow(request.addresses, request.context, WindowStart::Never);
    switch (reply) {
    case WindowReply::Done:
        return HandOver::Done;
    case WindowReply::NoWindow:
        return HandOver::NobodyThere;
    case WindowReply::NoBus:
        return handOverLocally(request, patience);
    case WindowReply::Failed:
        return HandOver::NotAnswered;
    }
    Q_UNREACHABLE();
}

SingleInstance::SingleInstance(WindowHandlers handlers) : m_requests(std::move(handlers)) {}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::claim()
{
    if (hasSessionBus()) {
        m_bus = std::make_unique<BusService>(QDBusConnection::sessionBus(), m_requests);
        const BusService::Claim claim = m_bus->claim();
        if (claim != BusService::Claim::NoBus) {
            return claim == BusService::Claim::Ours;
        }
        m_bus.reset();
    }
    m_local = std::make_unique<LocalInstance>(m_requests);
    return m_local->claim();
}

} // namespace velarc
