#pragma once

// What intake hands over: the clipboard as it was read, and what became of files and data.

#include "records/run_records.h"

#include <QStringList>

namespace velarc {

// What stands on the clipboard. All of it may be present at once.
struct ClipboardPayload
{
    QString text;
    std::optional<QByteArray> imagePNGData;
    std::optional<QByteArray> pdfData;
    QList<QUrl> fileURLs; // without repeats, in order

    // Whether anything usable is there: a text that is not blank, or any of the others.
    [[nodiscard]] bool hasContent() const;
};

// The good attachments, and a sentence for each thing that could not be taken.
struct AttachmentIntake
{
    QList<InputAttachment> attachments;
    QStringList notices;

    // The notices as they are shown, a line each; none if there are none.
    [[nodiscard]] std::optional<QString> joinedNotices() const;
};

} // namespace velarc
