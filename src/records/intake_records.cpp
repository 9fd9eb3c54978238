#include "records/intake_records.h"

#include "base/text.h"

namespace velarc {

bool ClipboardPayload::hasContent() const
{
    return !isBlank(text) || imagePNGData || pdfData || !fileURLs.isEmpty();
}

std::optional<QString> AttachmentIntake::joinedNotices() const
{
    if (notices.isEmpty()) {
        return std::nullopt;
    }
    return notices.join(QLatin1Char('\n'));
}

} // namespace velarc
