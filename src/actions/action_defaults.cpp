#include "actions/action_defaults.h"

namespace velarc {

QString defaultActionName()
{
    return QStringLiteral("Untitled Action");
}

QString defaultActionIcon()
{
    return QStringLiteral("bolt.fill");
}

QString defaultActionColorHex()
{
    return QStringLiteral("2563EB");
}

QString defaultActionPrompt()
{
    return QStringLiteral("{User_Input}");
}

} // namespace velarc
