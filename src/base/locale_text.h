#pragma once

// Texts that depend on the user's locale and time zone, over ICU.
//
// Both come from the system and are asked anew at each call, so that a changed time zone is
// followed: the zone from TZ or the host's setting, the locale from LC_ALL, then the category's own
// variable (LC_TIME, LC_COLLATE), then LANG. Any thread.

#include "base/clock.h"

#include <QString>
#include <QStringView>

#include <memory>

namespace velarc {

// "February 20, 2026 at 10:00 AM" for a US locale: the long date and the short time.
[[nodiscard]] QString longDateShortTime(Instant instant);

// "10:00 AM" for a US locale: the short time without a date. A space before AM or PM is narrow.
[[nodiscard]] QString shortTime(Instant instant);

// "Feb 20, 2026, 10:00 AM" for a US locale: the medium date and the short time.
[[nodiscard]] QString mediumDateShortTime(Instant instant);

// "2026-02-20" in the Gregorian calendar and the system's time zone, whatever the locale.
[[nodiscard]] QString localDayKey(Instant instant);

// "2026-02-20T15:00:00Z": date and time to the second, in UTC.
[[nodiscard]] QString iso8601(Instant instant);

// How long ago `then` was, as "2 hr. ago" is for English: the short style, in the largest calendar
// unit of which at least one has passed whole, seconds at the least. A `then` that lies ahead reads
// as "in 2 hr.".
[[nodiscard]] QString relativeShort(Instant then, Instant now);

// Compares names as the user's language does, without regard to case. Accents count.
//
// Build one for each sort: it holds the collator, and the sort key of a text can be kept.
class NameOrder
{
public:
    NameOrder();
    ~NameOrder();
    NameOrder(const NameOrder &) = delete;
    NameOrder &operator=(const NameOrder &) = delete;

    // Negative, zero or positive, as `left` stands before, with or behind `right`.
    [[nodiscard]] int compare(QStringView left, QStringView right) const;

    // Bytes that compare as the texts do: cheaper than compare() where a text is compared often.
    [[nodiscard]] QByteArray sortKey(QStringView text) const;

private:
    struct Collation;
    std::unique_ptr<Collation> m_collation;
};

} // namespace velarc
