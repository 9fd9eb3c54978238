#pragma once

// The clipboard of an X server, read over a connection of its own.

#include "intake/clipboard_forms.h"

#include <chrono>
#include <memory>
#include <stop_token>

namespace velarc {

// How long, and for how much, the owner of a selection is waited for.
struct SelectionBounds
{
    std::chrono::milliseconds silence = std::chrono::seconds(3); // without any sign of it
    std::chrono::milliseconds form = std::chrono::seconds(60); // for all of one form
    qint64 bytes = qint64(512) * 1024 * 1024; // of one form
};

// The selection CLIPBOARD of the server that the environment names.
//
// Reads on whatever thread uses it, with nothing of the window's own connection, so that an owner
// that hangs holds up nobody else. One that stays silent, or goes away meanwhile, has no forms from
// then on, and takes no harm. Without a server there are none.
//
// Stop: CancellationError, within a twentieth of a second.
class XSelection final : public ClipboardForms
{
public:
    explicit XSelection(std::stop_token stop, SelectionBounds bounds = {});
    ~XSelection() override;

    [[nodiscard]] QStringList names() override;
    [[nodiscard]] std::optional<QByteArray> bytes(const QString &name) override;

private:
    class Transfer;
    std::unique_ptr<Transfer> m_transfer;
};

} // namespace velarc
