#pragma once

// Reads what a calendar operation is asked for: lines of a key, a colon and a value.
//
// Nothing here fails: what cannot be read stays absent. Any thread.

#include "base/clock.h"

#include <QHash>
#include <QString>
#include <QStringView>

#include <optional>

namespace velarc {

struct ParsedCalendarInput
{
    std::optional<QString> title; // or the first line of a text that gives no key in it
    std::optional<Instant> startDate;
    std::optional<Instant> endDate;
    std::optional<QString> location;
    std::optional<QString> notes;
    std::optional<QString> calendarName;
    std::optional<QString> eventID;
    std::optional<qint64> limit; // or the first number anywhere; not clamped
    std::optional<qint64> days; // not clamped

    friend bool operator==(const ParsedCalendarInput &, const ParsedCalendarInput &) = default;
};

[[nodiscard]] ParsedCalendarInput parseCalendarInput(QStringView text);

// The values of all lines by their keys in lower case, both trimmed and neither empty. Of several
// lines with one key the last counts.
[[nodiscard]] QHash<QString, QString> parseCalendarKeyValues(QStringView text);

// Reads `value` whole as one of these, and nothing else:
//   2025-05-01T09:00:00Z         also with a fraction of a second and with an offset as +02:00
//   2025-05-01 09:00             in the system's time zone, as all below; also with seconds
//   2025-05-01                   the beginning of that day
//   May 1 2025 9:00 AM           English month names; also with a comma behind the day
//   5/1/2025 9:00 AM             month first; also 5/1/2025 09:00
// A wall time that comes twice is its first; one that is skipped is read as if it were not. A date
// that an Instant cannot hold is unreadable.
[[nodiscard]] std::optional<Instant> parseCalendarDate(const std::optional<QString> &value);

// The first run of digits anywhere in the text, as a decimal number without leading zeros; one
// beyond 64 bits is the largest that they hold. A sign in front of it is passed over.
[[nodiscard]] std::optional<QString> firstNumberInText(QStringView text);

} // namespace velarc
