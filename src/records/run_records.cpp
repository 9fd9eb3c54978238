#include "records/run_records.h"

#include "base/text.h"

namespace velarc {

bool PreparedRunInput::hasContent() const
{
    return !isBlank(userText) || !attachments.isEmpty();
}

std::optional<QString> payloadText(const ResultPayload &payload)
{
    if (const auto *text = std::get_if<TextPayload>(&payload)) {
        return text->text;
    }
    if (const auto *pdf = std::get_if<PdfPayload>(&payload)) {
        return pdf->previewText;
    }
    return std::nullopt;
}

} // namespace velarc
