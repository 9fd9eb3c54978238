#pragma once

// Calls to the window over the session bus, for programs that are not the window.
//
// Any thread, without an application object too. Each call waits for its answer, 25 seconds at
// most. Never starts a bus.

#include "intake/copied_thing.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QUuid>

namespace velarc {

enum class WindowReply
{
    Done,
    NoWindow, // none runs, and none was to be started or could be
    NoBus,
    Failed, // it is there, but did not do it or did not answer
};

enum class WindowStart
{
    Never,
    IfNeeded, // by the bus
};

// What lets a window come to the front: each is "" where the caller has none.
struct ActivationContext
{
    QString activationToken; // of Wayland's xdg-activation
    QString startupId; // of X11's startup notification

    // From this process's environment, where whoever started it left them. They are removed there,
    // since each is good for one window.
    [[nodiscard]] static ActivationContext taken();

    // Back into the environment, for a window that this process opens itself.
    void giveBack() const;

    friend bool operator==(const ActivationContext &, const ActivationContext &) = default;
};

// Brings the window to the front.
[[nodiscard]] WindowReply activateWindow(const ActivationContext &context, WindowStart start);

// Hands addresses to the window, which takes up those of its own scheme and comes to the front.
[[nodiscard]] WindowReply openInWindow(
    const QStringList &addresses, const ActivationContext &context, WindowStart start);

// Has the window select an action and come to the front.
[[nodiscard]] WindowReply selectInWindow(
    const QUuid &action, const ActivationContext &context, WindowStart start);

// What came of an import: its summary where it is done, a sentence where the window refused it.
struct ImportReply
{
    WindowReply reply = WindowReply::NoBus;
    QString text;
};

// Has a running window take the actions of an exported file over.
[[nodiscard]] ImportReply importInWindow(const QByteArray &json);

// Has a running window copy something.
[[nodiscard]] WindowReply copyInWindow(const CopiedThing &thing);

} // namespace velarc
