#pragma once

#include "base/worker.h"
#include "ui/sharing.h"

#include <QDBusConnection>

namespace velarc {

// Through the desktop's portal and its file manager where they are on the bus, else through the
// program that opens files by their kinds, and the one that is registered for mails.
class DesktopSharing final : public Sharing
{
public:
    explicit DesktopSharing(QDBusConnection bus = QDBusConnection::sessionBus())
        : m_bus(std::move(bus))
    {
    }

    [[nodiscard]] QCoro::Task<SharingMeans> means(std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<ShareOutcome> open(
        QUrl file, OpenChoice choice, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<ShareOutcome> showInFolder(QUrl file, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<ShareOutcome> mail(SharedMail mail, std::stop_token stop) override;

private:
    QDBusConnection m_bus;
    std::shared_ptr<SerialWorker> m_worker = std::make_shared<SerialWorker>();
};

} // namespace velarc
