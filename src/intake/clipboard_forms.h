#pragma once

// What a clipboard offers, form by form, and what is made of it.

#include "records/intake_records.h"

#include <QByteArray>
#include <QHash>
#include <QStringList>

#include <optional>

namespace velarc {

// The forms in which one thing lies on a clipboard, under the names that their owner gave them:
// MIME types, and the older names of the X window system.
//
// Used on a worker by one thread; bytes() may wait for another program.
class ClipboardForms
{
public:
    virtual ~ClipboardForms() = default;

    [[nodiscard]] virtual QStringList names() = 0;

    // None if the form is not there or its owner does not answer.
    [[nodiscard]] virtual std::optional<QByteArray> bytes(const QString &name) = 0;
};

// Forms that are in memory already.
class HeldClipboardForms final : public ClipboardForms
{
public:
    QHash<QString, QByteArray> forms;

    [[nodiscard]] QStringList names() override { return forms.keys(); }
    [[nodiscard]] std::optional<QByteArray> bytes(const QString &name) override;
};

// The names among `offered` that a payload is made of.
[[nodiscard]] QStringList wantedForms(const QStringList &offered);

// The same where its text alone is asked for.
[[nodiscard]] QStringList wantedTextForms(const QStringList &offered);

// The payload. Text counts only where a text is offered and no file stands beside it. A picture
// that is no PNG becomes one; one that cannot be read, or is larger than kPictureBytes once
// unpacked, is absent.
[[nodiscard]] ClipboardPayload payloadFrom(ClipboardForms &forms);

// The payload's text alone.
[[nodiscard]] QString textFrom(ClipboardForms &forms);

} // namespace velarc
