#include "base/locale_text.h"

#include <QByteArray>

#include <unicode/calendar.h>
#include <unicode/coll.h>
#include <unicode/datefmt.h>
#include <unicode/locid.h>
#include <unicode/reldatefmt.h>
#include <unicode/timezone.h>
#include <unicode/unistr.h>

#include <cstdlib>
#include <ctime>
#include <initializer_list>
#include <stdexcept>
#include <string_view>

namespace velarc {

namespace {

// The locale that the environment names for a category; the variables are asked in their rank.
icu::Locale environmentLocale(const char *categoryVariable)
{
    for (const char *variable : {"LC_ALL", categoryVariable, "LANG"}) {
        const char *value = std::getenv(variable);
        if (value == nullptr || *value == '\0') {
            continue;
        }
        const QByteArray name(value);
        const QByteArray language =
            name.left(name.indexOf('.') < 0 ? name.size() : name.indexOf('.'));
        if (language == "C" || language == "POSIX") {
            break;
        }
        icu::Locale locale = icu::Locale::createCanonical(language.constData());
        if (!locale.isBogus()) {
            return locale;
        }
    }
    return icu::Locale::createCanonical("en_US_POSIX");
}

QString toQString(const icu::UnicodeString &text)
{
    return QString(reinterpret_cast<const QChar *>(text.getBuffer()), text.length());
}

std::unique_ptr<icu::Collator> collatorFor(const icu::Locale &locale)
{
    UErrorCode status = U_ZERO_ERROR;
    std::unique_ptr<icu::Collator> collator(icu::Collator::createInstance(locale, status));
    if (U_FAILURE(status) || !collator) {
        throw std::runtime_error("collation is not available");
    }
    return collator;
}

bool isPosix(const icu::Collator &collator)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale = collator.getLocale(ULOC_ACTUAL_LOCALE, status);
    return std::string_view(locale.getVariant()) == "POSIX";
}

std::tm brokenDown(Instant instant, std::tm *(*convert)(const std::time_t *, std::tm *))
{
    const auto seconds = std::chrono::floor<std::chrono::seconds>(instant);
    const std::time_t time = seconds.time_since_epoch().count();
    std::tm parts{};
    if (convert(&time, &parts) == nullptr) {
        throw std::runtime_error("the instant has no calendar form");
    }
    return parts;
}

UDate toICU(Instant instant)
{
    const auto whole = std::chrono::floor<std::chrono::milliseconds>(instant);
    return static_cast<UDate>(whole.time_since_epoch().count());
}

QString formatted(const std::unique_ptr<icu::DateFormat> &format, Instant instant)
{
    if (!format) {
        return iso8601(instant);
    }
    format->adoptTimeZone(icu::TimeZone::detectHostTimeZone());
    icu::UnicodeString text;
    format->format(toICU(instant), text);
    return toQString(text);
}

QString dateShortTime(Instant instant, icu::DateFormat::EStyle dateStyle)
{
    const std::unique_ptr<icu::DateFormat> format(icu::DateFormat::createDateTimeInstance(
        dateStyle, icu::DateFormat::kShort, environmentLocale("LC_TIME")));
    return formatted(format, instant);
}

} // namespace

QString longDateShortTime(Instant instant)
{
    return dateShortTime(instant, icu::DateFormat::kLong);
}

QString mediumDateShortTime(Instant instant)
{
    return dateShortTime(instant, icu::DateFormat::kMedium);
}

QString shortTime(Instant instant)
{
    const std::unique_ptr<icu::DateFormat> format(
        icu::DateFormat::createTimeInstance(icu::DateFormat::kShort, environmentLocale("LC_TIME")));
    return formatted(format, instant);
}

QString localDayKey(Instant instant)
{
    tzset();
    const std::tm parts = brokenDown(instant, &localtime_r);
    return QString::asprintf(
        "%04d-%02d-%02d", parts.tm_year + 1900, parts.tm_mon + 1, parts.tm_mday);
}

QString iso8601(Instant instant)
{
    const std::tm parts = brokenDown(instant, &gmtime_r);
    return QString::asprintf("%04d-%02d-%02dT%02d:%02d:%02dZ", parts.tm_year + 1900,
        parts.tm_mon + 1, parts.tm_mday, parts.tm_hour, parts.tm_min, parts.tm_sec);
}

namespace {

struct CalendarUnit
{
    UCalendarDateFields field;
    URelativeDateTimeUnit unit;
};

constexpr CalendarUnit kUnits[]{
    {UCAL_YEAR, UDAT_REL_UNIT_YEAR},
    {UCAL_MONTH, UDAT_REL_UNIT_MONTH},
    {UCAL_WEEK_OF_YEAR, UDAT_REL_UNIT_WEEK},
    {UCAL_DAY_OF_MONTH, UDAT_REL_UNIT_DAY},
    {UCAL_HOUR_OF_DAY, UDAT_REL_UNIT_HOUR},
    {UCAL_MINUTE, UDAT_REL_UNIT_MINUTE},
    {UCAL_SECOND, UDAT_REL_UNIT_SECOND},
};

struct Distance
{
    int32_t count = 0;
    URelativeDateTimeUnit unit = UDAT_REL_UNIT_SECOND;
};

// How far `then` is from `now` in the largest unit that fits; negative if it has passed.
Distance calendarDistance(Instant then, Instant now, const icu::Locale &locale)
{
    UErrorCode status = U_ZERO_ERROR;
    const std::unique_ptr<icu::Calendar> calendar(
        icu::Calendar::createInstance(icu::TimeZone::detectHostTimeZone(), locale, status));
    Distance distance;
    for (const CalendarUnit &unit : kUnits) {
        if (U_FAILURE(status)) {
            break;
        }
        calendar->setTime(toICU(now), status);
        distance = {calendar->fieldDifference(toICU(then), unit.field, status), unit.unit};
        if (distance.count != 0) {
            break;
        }
    }
    return distance;
}

} // namespace

QString relativeShort(Instant then, Instant now)
{
    UErrorCode status = U_ZERO_ERROR;
    const icu::Locale locale = environmentLocale("LC_TIME");
    const icu::RelativeDateTimeFormatter formatter(
        locale, nullptr, UDAT_STYLE_SHORT, UDISPCTX_CAPITALIZATION_NONE, status);
    const Distance distance = calendarDistance(then, now, locale);
    // A moment that is just now counts as passed.
    const double offset = distance.count == 0 ? -0.0 : distance.count;
    icu::UnicodeString text;
    formatter.formatNumeric(offset, distance.unit, text, status);
    return U_FAILURE(status) ? iso8601(then) : toQString(text);
}

struct NameOrder::Collation
{
    std::unique_ptr<icu::Collator> collator;
};

NameOrder::NameOrder() : m_collation(std::make_unique<Collation>())
{
    m_collation->collator = collatorFor(environmentLocale("LC_COLLATE"));
    // The collation of the C locale, which every unknown one falls back to, orders by code points:
    // all capitals before all small letters.
    if (isPosix(*m_collation->collator)) {
        m_collation->collator = collatorFor(icu::Locale::getUS());
    }
    // The second level keeps accents apart and leaves case to the third.
    m_collation->collator->setStrength(icu::Collator::SECONDARY);
}

NameOrder::~NameOrder() = default;

int NameOrder::compare(QStringView left, QStringView right) const
{
    UErrorCode status = U_ZERO_ERROR;
    return m_collation->collator->compare(left.utf16(), static_cast<int32_t>(left.size()),
        right.utf16(), static_cast<int32_t>(right.size()), status);
}

QByteArray NameOrder::sortKey(QStringView text) const
{
    const icu::Collator &collator = *m_collation->collator;
    const auto length = static_cast<int32_t>(text.size());
    QByteArray key(text.size() * 4 + 8, Qt::Uninitialized);
    const auto fill = [&] {
        return collator.getSortKey(text.utf16(), length, reinterpret_cast<uint8_t *>(key.data()),
            static_cast<int32_t>(key.size()));
    };
    int32_t needed = fill();
    if (needed > key.size()) {
        key.resize(needed);
        needed = fill();
    }
    key.truncate(needed);
    return key;
}

} // namespace velarc
