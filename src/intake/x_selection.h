#pragma once

// The clipboard of an X server, read over a connection of its own.

#include "intake/clipboard_forms.h"
#include "intake/selection_bounds.h"

#include <memory>
#include <stop_token>

namespace velarc {

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
