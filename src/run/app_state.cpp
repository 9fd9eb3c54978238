#include "run/app_state.h"

#include "actions/action_edit.h"

namespace velarc {

AppState::AppState(QObject *parent)
    : QObject(parent)
    , m_activeProviderLabel(QStringLiteral("None"))
    , m_newRunExperienceEnabled(true)
    , m_studioDraft(blankAction())
{
}

AppState::~AppState() = default;

} // namespace velarc
