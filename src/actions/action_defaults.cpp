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

QString blankActionName()
{
    return QStringLiteral("New Action");
}

QString blankActionPrompt()
{
    return QStringLiteral(R"(You are a helpful assistant.\n\nInput:\n{User_Input})");
}

QString savedPromptOfBlank()
{
    return QStringLiteral(R"(You are a helpful assistant.\n\n{User_Input})");
}

} // namespace velarc
