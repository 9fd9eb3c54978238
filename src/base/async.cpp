#include "base/async.h"

#include "base/errors.h"

#include <QEventLoop>
#include <QTimer>

#include <map>
#include <utility>
#include <vector>

namespace velarc {

void throwIfStopped(const std::stop_token &stop)
{
    if (stop.stop_requested()) {
        throw CancellationError();
    }
}

void Wakeup::fire()
{
    if (std::exchange(m_fired, true)) {
        return;
    }
    // The resumed coroutine may destroy this object: nothing is touched behind the call.
    if (const std::coroutine_handle<> waiting = std::exchange(m_waiting, nullptr)) {
        waiting.resume();
    }
}

struct TaskScope::Members
{
    std::map<std::size_t, std::stop_source> running;
    std::size_t nextNumber = 0;
    QEventLoop *drain = nullptr; // set while finish() turns the loop
};

TaskScope::TaskScope() : m_members(std::make_shared<Members>()) {}

TaskScope::~TaskScope() = default;

TaskScope::Ticket TaskScope::enter(std::stop_source stop)
{
    const std::size_t number = m_members->nextNumber++;
    if (m_members->drain != nullptr) {
        stop.request_stop();
    }
    m_members->running.emplace(number, std::move(stop));
    return Ticket(m_members, number);
}

std::size_t TaskScope::running() const
{
    return m_members->running.size();
}

bool TaskScope::finish(std::chrono::milliseconds bound)
{
    std::vector<std::stop_source> sources;
    for (const auto &[number, source] : m_members->running) {
        sources.push_back(source);
    }
    for (std::stop_source &source : sources) {
        source.request_stop();
    }
    if (m_members->running.empty()) {
        return true;
    }
    QEventLoop loop;
    m_members->drain = &loop;
    QTimer::singleShot(bound, &loop, &QEventLoop::quit);
    loop.exec();
    m_members->drain = nullptr;
    return m_members->running.empty();
}

TaskScope::Ticket::Ticket(std::shared_ptr<Members> members, std::size_t number)
    : m_members(std::move(members)), m_number(number)
{
}

TaskScope::Ticket::~Ticket()
{
    if (!m_members) {
        return;
    }
    m_members->running.erase(m_number);
    if (m_members->running.empty() && m_members->drain != nullptr) {
        m_members->drain->quit();
    }
}

} // namespace velarc
