#pragma once

// The programs that the user's desktop opens addresses with. Blocks; any thread.

#include <QByteArray>
#include <QString>

#include <optional>

namespace velarc {

enum class UriLaunch
{
    Launched,
    NoHandler, // no program is there for the scheme
    Failed,
};

struct UriLaunchResult
{
    UriLaunch launch = UriLaunch::NoHandler;
    QString reason; // of a failure, in the desktop's words
};

// Whether a program is registered for addresses such as "mailto:", and is installed.
[[nodiscard]] bool hasUriHandler(const QByteArray &scheme);

// Has the program registered for the scheme of `uri` open it; does not wait for it.
[[nodiscard]] UriLaunchResult launchUri(const QByteArray &uri);

} // namespace velarc
