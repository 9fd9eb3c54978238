#include "system_actions/calendar_date.h"

#include "base/local_time.h"

#include <unicode/smpdtfmt.h>
#include <unicode/timezone.h>

#include <algorithm>
#include <array>
#include <string_view>

namespace velarc {

using namespace std::chrono;

namespace {

bool isDigit(QChar character)
{
    return character >= u'0' && character <= u'9';
}

bool isLetter(QChar character)
{
    return (character >= u'a' && character <= u'z') || (character >= u'A' && character <= u'Z');
}

// --- Of the internet -----------------------------------------------------------------------------

// Whether `value` has a digit wherever `shape` has a 0, and is the same elsewhere.
bool hasShape(QStringView value, QStringView shape)
{
    return value.size() == shape.size()
        && std::equal(value.begin(), value.end(), shape.begin(),
            [](QChar one, QChar wanted) { return wanted == u'0' ? isDigit(one) : one == wanted; });
}

int numberAt(QStringView value, qsizetype index, qsizetype length)
{
    return value.mid(index, length).toInt();
}

// The seconds of "09:00:00" or "09:00"; none where a clock shows no such time.
std::optional<seconds> timeOfDay(QStringView value)
{
    const int hour = numberAt(value, 0, 2);
    const int minute = numberAt(value, 3, 2);
    const int second = value.size() > 5 ? numberAt(value, 6, 2) : 0;
    if (hour > 23 || minute > 59 || second > 59) {
        return std::nullopt;
    }
    return hours(hour) + minutes(minute) + seconds(second);
}

// Takes ".123" off the front of `rest`; none if a point stands there without a digit behind it.
std::optional<milliseconds> takeFraction(QStringView &rest)
{
    if (!rest.startsWith(u'.')) {
        return milliseconds(0);
    }
    const auto end = std::find_if_not(rest.begin() + 1, rest.end(), &isDigit);
    const qsizetype length = end - rest.begin() - 1;
    if (length == 0) {
        return std::nullopt;
    }
    int fraction = 0;
    for (qsizetype place = 0; place < 3; ++place) {
        fraction = fraction * 10 + (place < length ? numberAt(rest, place + 1, 1) : 0);
    }
    rest = rest.mid(length + 1);
    return milliseconds(fraction);
}

// How far the clocks of "Z" or "+02:00" are ahead.
std::optional<seconds> zoneOffset(QStringView zone)
{
    if (zone == u"Z") {
        return seconds(0);
    }
    if (hasShape(zone, u"+00:00")) {
        return timeOfDay(zone.mid(1));
    }
    if (hasShape(zone, u"-00:00")) {
        const auto behind = timeOfDay(zone.mid(1));
        return behind ? std::optional(-*behind) : std::nullopt;
    }
    return std::nullopt;
}

// --- Of people -----------------------------------------------------------------------------------

// In the order in which they are tried.
constexpr std::array<std::u16string_view, 7> kWrittenForms{
    u"yyyy-MM-dd HH:mm",
    u"yyyy-MM-dd HH:mm:ss",
    u"yyyy-MM-dd",
    u"MMM d yyyy h:mm a",
    u"MMM d, yyyy h:mm a",
    u"M/d/yyyy h:mm a",
    u"M/d/yyyy HH:mm",
};

bool isSeparator(QChar character)
{
    return character == u'-' || character == u'/' || character == u':';
}

// Whether the digits stand as they do in every form: four of the year, elsewhere one or two.
bool hasOneYear(QStringView value)
{
    int years = 0;
    for (auto at = value.begin(); at != value.end();) {
        const auto end = std::find_if_not(at, value.end(), &isDigit);
        const auto length = end - at;
        if (length > 2 && length != 4) {
            return false;
        }
        years += length == 4 ? 1 : 0;
        at = std::find_if(end, value.end(), &isDigit);
    }
    return years == 1;
}

// What the formatter reads besides the forms: years of two digits, numbers as 1e3, marks that
// nobody sees, blanks in front and inside of a date.
bool canBeWritten(QStringView value)
{
    QChar before = u' ';
    for (const QChar character : value) {
        const bool isKnown = isDigit(character) || isLetter(character) || isSeparator(character)
            || character == u',' || character.isSpace();
        const bool joinsDigit = isLetter(character) && isDigit(before);
        const bool isStrayBlank = character.isSpace() && isSeparator(before);
        if (!isKnown || joinsDigit || isStrayBlank) {
            return false;
        }
        before = character;
    }
    return !value.isEmpty() && !value.front().isSpace() && hasOneYear(value);
}

// Reads in UTC, where every wall time is there once; the time zone comes in afterwards.
std::optional<WallTime> wallTimeIn(
    icu::SimpleDateFormat &format, std::u16string_view form, const icu::UnicodeString &value)
{
    format.applyPattern(icu::UnicodeString(form.data(), static_cast<int32_t>(form.size())));
    icu::ParsePosition position(0);
    const UDate date = format.parse(value, position);
    if (position.getErrorIndex() >= 0 || position.getIndex() != value.length()) {
        return std::nullopt;
    }
    return WallTime(milliseconds(static_cast<std::int64_t>(date)));
}

} // namespace

std::optional<Instant> internetDate(QStringView value)
{
    constexpr QStringView kShape = u"0000-00-00T00:00:00";
    if (!hasShape(value.left(kShape.size()), kShape)) {
        return std::nullopt;
    }
    const year_month_day date = year(numberAt(value, 0, 4))
        / static_cast<unsigned>(numberAt(value, 5, 2))
        / static_cast<unsigned>(numberAt(value, 8, 2));
    const auto time = timeOfDay(value.mid(11, 8));
    QStringView rest = value.mid(kShape.size());
    const auto fraction = takeFraction(rest);
    const auto offset = zoneOffset(rest);
    if (!date.ok() || !time || !fraction || !offset) {
        return std::nullopt;
    }
    return instantAt(sys_days(date) + *time + *fraction - *offset);
}

std::optional<Instant> writtenDate(QStringView value)
{
    if (!canBeWritten(value)) {
        return std::nullopt;
    }
    UErrorCode status = U_ZERO_ERROR;
    icu::SimpleDateFormat format(
        icu::UnicodeString(), icu::Locale::createCanonical("en_US_POSIX"), status);
    if (U_FAILURE(status)) {
        return std::nullopt;
    }
    format.setLenient(false);
    format.adoptTimeZone(icu::TimeZone::getGMT()->clone());
    const icu::UnicodeString text(false, value.utf16(), static_cast<int32_t>(value.size()));
    for (const std::u16string_view form : kWrittenForms) {
        if (const auto shown = wallTimeIn(format, form, text)) {
            return instantAtWallTime(*shown);
        }
    }
    return std::nullopt;
}

} // namespace velarc
