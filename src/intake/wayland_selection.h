#pragma once

// The clipboard of a Wayland session, read over the window's connection but not by its thread.

#include "intake/clipboard_forms.h"
#include "intake/selection_bounds.h"

#include <stop_token>

namespace velarc {

// What the compositor tells this program of the clipboard of its seat: nothing before a window of
// ours has had the keyboard, and what stood there last while none has it.
//
// Lifetime: that of the process, since a connection breaks when something is told to an object that
// its program has given up. Nothing is called any more once the application object goes.
class WaylandSeat
{
public:
    // None where the session is no Wayland session, or has no seat yet. Main thread only.
    [[nodiscard]] static WaylandSeat *ofThisSession();
    ~WaylandSeat() = delete;
    WaylandSeat(const WaylandSeat &) = delete;
    WaylandSeat &operator=(const WaylandSeat &) = delete;

    // The names of the forms on offer; waits for the compositor alone. Any thread.
    [[nodiscard]] QStringList formNames();

    // A descriptor from which the form can be read as its owner writes it, or -1. The caller closes
    // it. Any thread.
    [[nodiscard]] int request(const QString &name);

private:
    class Connection;
    explicit WaylandSeat(Connection *connection);
    Connection *m_connection;
};

// The forms on that clipboard. An owner that stays silent has no forms from then on.
//
// Stop: CancellationError, within a twentieth of a second.
class WaylandSelection final : public ClipboardForms
{
public:
    WaylandSelection(WaylandSeat &seat, std::stop_token stop, SelectionBounds bounds = {});

    [[nodiscard]] QStringList names() override;
    [[nodiscard]] std::optional<QByteArray> bytes(const QString &name) override;

private:
    WaylandSeat &m_seat;
    std::stop_token m_stop;
    SelectionBounds m_bounds;
    bool m_isSilent = false;
};

} // namespace velarc
