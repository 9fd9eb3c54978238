#include "base/call_end.h"

namespace velarc {

CallEnd::CallEnd(
    const std::stop_token &stop, const std::stop_token &ending, std::chrono::milliseconds bound)
    : m_onStop(stop, [this] { m_source.request_stop(); })
    , m_onEnding(ending, [this] { m_source.request_stop(); })
    , m_stop(stop)
    , m_ending(ending)
{
    m_bound.setSingleShot(true);
    m_bound.setTimerType(Qt::PreciseTimer);
    m_bound.callOnTimeout([this] { m_source.request_stop(); });
    m_bound.start(bound);
}

} // namespace velarc
