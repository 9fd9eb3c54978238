#pragma once

#include "records/run_records.h"

namespace velarc {

// "Image", "PDF" or "SVG".
[[nodiscard]] QString label(InputAttachmentKind kind);

// `text` for an engine that takes no files: behind it the texts of the attachments, each under its
// kind and name, and how many pictures there are. Without attachments the text as it is.
[[nodiscard]] QString textWithAttachmentSummary(
    const QString &text, const QList<InputAttachment> &attachments);

} // namespace velarc
