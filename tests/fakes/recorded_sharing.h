#pragma once

// A desktop that takes what is shared, and answers as a test wants it.

#include "fakes/gate.h"
#include "ui/sharing.h"

#include <QList>

namespace velarc {

class RecordedSharing final : public Sharing
{
public:
    Gate gate;
    SharingMeans offered{true, true, true, false};
    ShareOutcome outcome = ShareOutcome::Done;
    SaveChoice choice;
    QList<std::pair<QUrl, OpenChoice>> opened;
    QList<QUrl> shown;
    QList<SharedMail> mails;
    QStringList names; // that were suggested for saving

    [[nodiscard]] QCoro::Task<SharingMeans> means(std::stop_token stop) override
    {
        co_await gate.pass(stop);
        co_return SharingMeans(offered);
    }
    [[nodiscard]] QCoro::Task<ShareOutcome> open(
        QUrl file, OpenChoice asked, std::stop_token stop) override
    {
        opened.append({file, asked});
        co_await gate.pass(stop);
        co_return ShareOutcome(outcome);
    }
    [[nodiscard]] QCoro::Task<ShareOutcome> showInFolder(QUrl file, std::stop_token stop) override
    {
        shown.append(file);
        co_await gate.pass(stop);
        co_return ShareOutcome(outcome);
    }
    [[nodiscard]] QCoro::Task<ShareOutcome> mail(SharedMail mail, std::stop_token stop) override
    {
        mails.append(mail);
        co_await gate.pass(stop);
        co_return ShareOutcome(outcome);
    }
    [[nodiscard]] QCoro::Task<SaveChoice> askWhereToSave(
        QString name, std::stop_token stop) override
    {
        names.append(name);
        co_await gate.pass(stop);
        co_return SaveChoice(choice);
    }
};

} // namespace velarc
