#pragma once

// Reads recipients, a subject and a body out of a plain text. Nothing here fails. Any thread.

#include <QString>
#include <QStringList>
#include <QStringView>

#include <optional>

namespace velarc {

struct ComposeDraft
{
    QStringList recipients;
    std::optional<QString> subject;
    QString body;

    friend bool operator==(const ComposeDraft &, const ComposeDraft &) = default;
};

// A mail has a subject, a message has none.
enum class ComposeSubject
{
    Included,
    Absent
};

// The lines "to:", "subject:" and "body:" in any case; what follows "body:" up to the end is the
// body, but for lines that are recipients or the subject even there. A text without a body goes out
// whole, such lines included.
[[nodiscard]] ComposeDraft parseComposeInput(QStringView text, ComposeSubject subject);

// The pieces between commas and semicolons, trimmed, without empty ones, in their order.
[[nodiscard]] QStringList splitRecipients(QStringView text);

} // namespace velarc
