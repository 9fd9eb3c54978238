#include "entry/single_instance.h"

#include "entry/session.h"

#include <poll.h>

#include <utility>

namespace velarc {

namespace {

constexpr std::chrono::milliseconds kRetryPause{20};

} // namespace

HandOver handOver(const StartRequest &request)
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
        return handOverLocally(request);
    case WindowReply::Failed:
        return HandOver::NotAnswered;
    }
    Q_UNREACHABLE();
}

SingleInstance::SingleInstance(WindowHandlers handlers) : m_requests(std::move(handlers)) {}

SingleInstance::~SingleInstance() = default;

bool SingleInstance::claim()
{
    m_local.reset();
    m_bus.reset();
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

Standing SingleInstance::claimOrHandOver(
    const StartRequest &request, std::chrono::milliseconds patience)
{
    const auto deadline = std::chrono::steady_clock::now() + patience;
    while (!claim()) {
        const HandOver outcome = handOver(request);
        if (outcome == HandOver::Done) {
            return Standing::HandedOver;
        }
        if (outcome == HandOver::NotAnswered || std::chrono::steady_clock::now() >= deadline) {
            return Standing::NotAnswered;
        }
        ::poll(nullptr, 0, static_cast<int>(kRetryPause.count()));
    }
    return Standing::HasTheWindow;
}

} // namespace velarc
