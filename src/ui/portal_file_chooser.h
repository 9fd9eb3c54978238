#pragma once

// The desktop's own file dialog, through its portal.

#include "ui/file_chooser.h"

#include <QDBusConnection>

namespace velarc {

// Asks org.freedesktop.portal.FileChooser on `bus`. Where nobody answers the call as a portal does,
// the outcome is NoDialog. The dialog belongs to the window that has the focus.
class PortalFileChooser final : public FileChoosing
{
public:
    explicit PortalFileChooser(QDBusConnection bus = QDBusConnection::sessionBus());

    [[nodiscard]] QCoro::Task<FileChoice> choose(FileWish wish, std::stop_token stop) override;

private:
    QDBusConnection m_bus;
};

} // namespace velarc
