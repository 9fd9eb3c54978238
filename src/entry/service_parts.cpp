#include "entry/service_parts.h"

#include <algorithm>

namespace velarc {

void Activity::note()
{
    m_state->latest = m_clock.now();
    ++m_state->calls;
}

Activity::Hold Activity::hold()
{
    note();
    ++m_state->held;
    return {nullptr, [state = m_state](void *) { --state->held; }};
}

std::chrono::milliseconds Activity::left(std::chrono::milliseconds patience) const
{
    if (m_state->held > 0) {
        return patience;
    }
    const auto idle = m_clock.now() - m_state->latest;
    const auto rest = std::chrono::ceil<std::chrono::milliseconds>(patience - idle);
    // A clock that was set back must not keep the program for longer.
    return std::clamp(rest, std::chrono::milliseconds(0), patience);
}

QString busText(QString text)
{
    return text.replace(QChar::Null, QChar::ReplacementCharacter);
}

} // namespace velarc
