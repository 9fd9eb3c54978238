#pragma once

// Saving a result under a name that the user gave.

#include "records/run_records.h"

#include <QString>

namespace velarc {

enum class Existing
{
    Kept,
    Replaced
};

enum class SaveEnding
{
    Saved,
    Exists, // and was to be kept
    IsFolder,
    Failed
};

struct SaveReport
{
    SaveEnding ending = SaveEnding::Failed;
    QString reason; // of a failure, in the system's words
};

// Writes the text in UTF-8, the picture's bytes, or what the PDF file holds. Blocks; any thread. A
// write that fails leaves what stood there.
[[nodiscard]] SaveReport saveResult(
    const ResultPayload &payload, const QString &path, Existing existing);

// The file that a path typed by the user means: "~" is their home, and what does not begin at the
// root lies there too.
[[nodiscard]] QString absolutePath(const QString &typed);

// "Velarc Result.txt", "Velarc Image.png", or the name of the PDF file.
[[nodiscard]] QString suggestedFileName(const ResultPayload &payload);

} // namespace velarc
