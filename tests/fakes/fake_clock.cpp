#include "fakes/fake_clock.h"

#include "base/async.h"
#include "base/errors.h"

#include <QCoreApplication>

#include <algorithm>
#include <list>

namespace velarc {

namespace {

struct Pause
{
    Instant due;
    Wakeup wakeup;
    QObject context; // receives the posted end of a stopped pause
};

constexpr Instant kStart{std::chrono::seconds(1'771'599'600)};

} // namespace

struct FakeClock::Members
{
    Instant now = kStart;
    bool isGone = false;
    std::list<Pause *> waiting;
};

FakeClock::FakeClock() : m_members(std::make_shared<Members>()) {}

FakeClock::~FakeClock()
{
    m_members->isGone = true;
    while (!m_members->waiting.empty()) {
        m_members->waiting.front()->wakeup.fire();
    }
}

Instant FakeClock::now() const
{
    return m_members->now;
}

void FakeClock::setNow(Instant instant)
{
    m_members->now = instant;
}

namespace {

template <typename Members>
QCoro::Task<void> pauseUntilWoken(
    std::shared_ptr<Members> members, std::chrono::milliseconds duration, std::stop_token stop)
{
    const auto throwIfEnded = [members, stop] {
        throwIfStopped(stop);
        if (members->isGone) {
            throw CancellationError();
        }
    };
    throwIfEnded();
    Pause pause;
    pause.due = members->now + duration;
    members->waiting.push_back(&pause);
    {
        const std::stop_callback breakOff(stop, [&pause] {
            QMetaObject::invokeMethod(
                &pause.context, [&pause] { pause.wakeup.fire(); }, Qt::QueuedConnection);
        });
        co_await pause.wakeup;
    }
    members->waiting.remove(&pause);
    throwIfEnded();
}

} // namespace

QCoro::Task<void> FakeClock::pause(std::chrono::milliseconds duration, std::stop_token stop)
{
    return pauseUntilWoken(m_members, duration, std::move(stop));
}

void FakeClock::advance(std::chrono::milliseconds duration)
{
    // The clock may be destroyed by what wakes.
    const std::shared_ptr<Members> members = m_members;
    const Instant end = members->now + duration;
    while (true) {
        const auto next = std::min_element(members->waiting.begin(), members->waiting.end(),
            [](const Pause *left, const Pause *right) { return left->due < right->due; });
        if (next == members->waiting.end() || (*next)->due > end) {
            break;
        }
        members->now = std::max(members->now, (*next)->due);
        (*next)->wakeup.fire();
    }
    members->now = end;
}

std::size_t FakeClock::pausesWaiting() const
{
    return m_members->waiting.size();
}

void turnEventLoop()
{
    constexpr int kEnoughTurns = 64;
    for (int turn = 0; turn < kEnoughTurns; ++turn) {
        QCoreApplication::sendPostedEvents();
    }
}

} // namespace velarc
