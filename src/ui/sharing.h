#pragma once

// Handing a result on: to another program, to the file manager, to a mail.

#include <QCoroTask>
#include <QString>
#include <QUrl>

#include <optional>
#include <stop_token>

namespace velarc {

// What the desktop has for it.
struct SharingMeans
{
    bool opens = false; // files in other programs
    bool showsInFolder = false;
    bool mailsTexts = false;
    bool mailsFiles = false;

    friend bool operator==(const SharingMeans &, const SharingMeans &) = default;
};

enum class ShareOutcome
{
    Done, // as far as it can be known
    Cancelled, // by the user
    Failed
};

enum class OpenChoice
{
    Usual, // the program that is usual for such a file
    Asked // one that the user picks, where the desktop lets them
};

// A text as the body, or a file as an attachment.
struct SharedMail
{
    QString text;
    std::optional<QUrl> file;
};

// Main thread only; never blocks.
//
// Errors:   a UserFacingError brings its own sentence.
// Stop:     CancellationError, from the event loop; a window that opens by then stays.
// Lifetime: it need not outlive its tasks.
class Sharing
{
public:
    Sharing() = default;
    virtual ~Sharing() = default;
    Sharing(const Sharing &) = delete;
    Sharing &operator=(const Sharing &) = delete;

    // What has not answered within a few seconds is not there.
    [[nodiscard]] virtual QCoro::Task<SharingMeans> means(std::stop_token stop) = 0;

    [[nodiscard]] virtual QCoro::Task<ShareOutcome> open(
        QUrl file, OpenChoice choice, std::stop_token stop) = 0;
    [[nodiscard]] virtual QCoro::Task<ShareOutcome> showInFolder(
        QUrl file, std::stop_token stop) = 0;
    [[nodiscard]] virtual QCoro::Task<ShareOutcome> mail(SharedMail mail, std::stop_token stop) = 0;
};

} // namespace velarc
