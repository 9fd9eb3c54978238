#pragma once

// Files and folders that are the user's alone, and the moving aside of a damaged database.

#include "base/clock.h"

#include <QString>

namespace velarc {

// Makes the folder and those above it, each for the user alone; one that is there stays as it is.
// Gives whether the folder is there now.
[[nodiscard]] bool makePrivateFolder(const QString &path);

// Makes an empty file for the user alone if nothing stands at `path`. A database that stands there
// is narrowed to that, with its side files.
void makePrivateFile(const QString &path);

// Moves the database at `path` and its side files to "<path>.corrupt-<time>", or to the first free
// name of that kind. Gives whether `path` is free now.
[[nodiscard]] bool setAside(const QString &path, Instant now);

// Holds a folder against everybody else who does the same, for as long as the object lives. Others
// are waited for, `patience` at most. Leaves nothing behind in the folder.
class FolderLock
{
public:
    FolderLock(const QString &folder, std::chrono::milliseconds patience);
    ~FolderLock();
    FolderLock(const FolderLock &) = delete;
    FolderLock &operator=(const FolderLock &) = delete;

    [[nodiscard]] bool isHeld() const { return m_isHeld; }

private:
    int m_descriptor = -1;
    bool m_isHeld = false;
};

} // namespace velarc
