#include "fakes/gate.h"

#include "base/async.h"
#include "base/errors.h"

#include <QObject>

#include <deque>
#include <optional>
#include <utility>

namespace velarc {

namespace {

struct Waiter
{
    Wakeup wakeup;
    std::exception_ptr failure;
    QObject context; // receives the posted end of a stopped wait
};

} // namespace

struct Gate::Members
{
    std::deque<Waiter *> waiting;
    bool isOpen = true;
    bool isGone = false;
    OnStop onStop = OnStop::EndsWait;
};

namespace {

QCoro::Task<void> passGate(std::shared_ptr<Gate::Members> members, std::stop_token stop)
{
    const bool endsOnStop = members->onStop == Gate::OnStop::EndsWait;
    if (endsOnStop) {
        throwIfStopped(stop);
    }
    if (members->isOpen) {
        co_return;
    }
    Waiter waiter;
    members->waiting.push_back(&waiter);
    {
        const std::stop_callback breakOff(endsOnStop ? stop : std::stop_token(), [&waiter] {
            QMetaObject::invokeMethod(
                &waiter.context, [&waiter] { waiter.wakeup.fire(); }, Qt::QueuedConnection);
        });
        co_await waiter.wakeup;
    }
    std::erase(members->waiting, &waiter);
    if (members->isGone) {
        throw CancellationError();
    }
    if (waiter.failure) {
        std::rethrow_exception(waiter.failure);
    }
    if (endsOnStop) {
        throwIfStopped(stop);
    }
}

} // namespace

Gate::Gate() : m_members(std::make_shared<Members>()) {}

Gate::~Gate()
{
    m_members->isGone = true;
    open();
}

QCoro::Task<void> Gate::pass(std::stop_token stop)
{
    return passGate(m_members, std::move(stop));
}

void Gate::close()
{
    m_members->isOpen = false;
}

void Gate::open()
{
    const auto members = m_members;
    members->isOpen = true;
    while (!members->waiting.empty()) {
        members->waiting.front()->wakeup.fire();
    }
}

void Gate::ignoreStops()
{
    m_members->onStop = OnStop::Ignored;
}

bool Gate::letOneOn(std::exception_ptr failure)
{
    if (m_members->waiting.empty()) {
        return false;
    }
    Waiter *first = m_members->waiting.front();
    first->failure = std::move(failure);
    first->wakeup.fire();
    return true;
}

std::size_t Gate::waiting() const
{
    return m_members->waiting.size();
}

} // namespace velarc
