#pragma once

// What a run takes: plain values, copied on assignment; any thread.

#include <QByteArray>
#include <QList>
#include <QString>
#include <QUuid>

#include <optional>
#include <variant>

namespace velarc {

enum class InputAttachmentKind
{
    Image,
    Pdf,
    Svg
};

// One file or picture beside the text. It lives in memory only and is never stored.
struct InputAttachment
{
    QUuid id; // fresh for each attachment
    InputAttachmentKind kind = InputAttachmentKind::Image;
    QString filename; // shown, and named in prompts
    QString mimeType; // "image/png", also of an Svg; "application/pdf"
    QByteArray bytes; // PNG, also of an Svg; or the PDF file
    std::optional<QString> extractedText; // of a Pdf that has text

    friend bool operator==(const InputAttachment &, const InputAttachment &) = default;
};

struct PreparedRunInput
{
    QString userText;
    QList<InputAttachment> attachments;

    // Whether there is anything to run on: a text that is not blank, or an attachment.
    [[nodiscard]] bool hasContent() const;

    friend bool operator==(const PreparedRunInput &, const PreparedRunInput &) = default;
};

// Where a run gets its input from.
struct ExplicitInput
{
    PreparedRunInput input; // used only if it has content
};
struct SmartInput
{
}; // the canvas, and the clipboard if the canvas is empty
struct ClipboardOnlyInput
{
};
using InputStrategy = std::variant<ExplicitInput, SmartInput, ClipboardOnlyInput>;

} // namespace velarc
