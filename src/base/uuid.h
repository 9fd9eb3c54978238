#pragma once

// UUIDs in their one written form: canonical, hyphenated, upper case, without braces.

#include <QString>
#include <QStringView>
#include <QUuid>

#include <optional>

namespace velarc {

// A random UUID (version 4).
[[nodiscard]] QUuid newUuid();

// "6F9619FF-8B86-D011-B42D-00CF4FC964FF".
[[nodiscard]] QString uuidText(const QUuid &uuid);

// The UUID that `text` spells in 36 characters, either case; none for every other text, braces and
// missing hyphens included.
[[nodiscard]] std::optional<QUuid> uuidFromText(QStringView text);

} // namespace velarc
