#pragma once

// A desktop that takes what is shared, and answers as a test wants it.

#include "base/errors.h"
#include "fakes/gate.h"
#include "ui/file_chooser.h"
#include "ui/sharing.h"

#include <QList>

namespace velarc {

class RecordedSharing final : public Sharing
{
public:
    Gate gate;
    SharingMeans offered{true, true, true, true};
    ShareOutcome outcome = ShareOutcome::Done;
    std::optional<QString> sentence; // of a failure that brings one
    QList<std::pair<QUrl, OpenChoice>> opened;
    QList<QUrl> shown;
    QList<SharedMail> mails;

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
        if (sentence) {
            throw UserFacingError(*sentence);
        }
        co_return ShareOutcome(outcome);
    }
};

// A dialog that the user answers as a test wants it.
class RecordedDialog final : public FileChoosing
{
public:
    FileChoice choice;
    QStringList names; // that were suggested

    [[nodiscard]] QCoro::Task<FileChoice> choose(FileWish wish, std::stop_token) override
    {
        names.append(wish.suggestedName);
        co_return FileChoice(choice);
    }
};

} // namespace velarc
