#pragma once

// How the user names a file: by the desktop's own dialog, where it has one.

#include <QCoroTask>
#include <QString>

#include <stop_token>

namespace velarc {

struct FileWish
{
    enum class Purpose
    {
        Open,
        Save,
    };

    Purpose purpose = Purpose::Open;
    QString title; // of the dialog
    QString acceptLabel; // of the command that ends it
    QString suggestedName; // of a file to save
};

struct FileChoice
{
    enum class Outcome
    {
        Chosen,
        Dismissed, // by the user
        NoDialog, // the desktop has none: somebody else must ask
    };

    Outcome outcome = Outcome::NoDialog;
    QString path; // of a file on this machine, where one was chosen
};

// Main thread only; never blocks it.
class FileChoosing
{
public:
    FileChoosing() = default;
    virtual ~FileChoosing() = default;
    FileChoosing(const FileChoosing &) = delete;
    FileChoosing &operator=(const FileChoosing &) = delete;

    // Stop: takes the dialog away; CancellationError.
    [[nodiscard]] virtual QCoro::Task<FileChoice> choose(FileWish wish, std::stop_token stop) = 0;
};

} // namespace velarc
