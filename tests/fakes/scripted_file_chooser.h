#pragma once

#include "ui/file_chooser.h"

#include <QList>

namespace velarc {

// Gives one answer to every wish.
class ScriptedFileChooser final : public FileChoosing
{
public:
    FileChoice choice;
    QList<FileWish> wishes;

    [[nodiscard]] QCoro::Task<FileChoice> choose(FileWish wish, std::stop_token /*stop*/) override
    {
        wishes.append(std::move(wish));
        co_return FileChoice(choice);
    }
};

} // namespace velarc
