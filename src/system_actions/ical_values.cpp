#include "system_actions/ical_values.h"

#include "system_actions/zone_definition.h"

#include <algorithm>

namespace velarc {

namespace {

using std::chrono::days;
using std::chrono::seconds;

constexpr qsizetype kDateDigits = 8;
constexpr qsizetype kTimeDigits = 6;

constexpr days kCentury(36525);

// Instant counts nanoseconds: it reaches from 1677 to 2262.
constexpr UtcTime kFirstInstant = std::chrono::sys_days(std::chrono::year(1678) / 1 / 1);
constexpr UtcTime kLastInstant = std::chrono::sys_days(std::chrono::year(2262) / 1 / 1);

// More than these of one kind are no honest calendar's.
constexpr std::size_t kMostZones = 1000;
constexpr std::size_t kMostZonesOfAFile = 50;

bool isDigits(QByteArrayView text)
{
    return std::all_of(text.begin(), text.end(), [](char c) { return c >= '0' && c <= '9'; });
}

std::optional<std::chrono::local_days> dateOf(QByteArrayView digits)
{
    if (digits.size() != kDateDigits || !isDigits(digits)) {
        return std::nullopt;
    }
    const std::chrono::year_month_day date(std::chrono::year(digits.first(4).toInt()),
        std::chrono::month(digits.sliced(4, 2).toUInt()),
        std::chrono::day(digits.sliced(6, 2).toUInt()));
    return date.ok() ? std::optional(std::chrono::local_days(date)) : std::nullopt;
}

std::optional<seconds> timeOfDay(QByteArrayView digits)
{
    if (digits.size() != kTimeDigits || !isDigits(digits)) {
        return std::nullopt;
    }
    const int hour = digits.first(2).toInt();
    const int minute = digits.sliced(2, 2).toInt();
    const int second = digits.sliced(4, 2).toInt();
    if (hour > 23 || minute > 59 || second > 60) {
        return std::nullopt;
    }
    // A leap second is the second before it, as no clock here knows any.
    return std::chrono::hours(hour) + std::chrono::minutes(minute) + seconds(std::min(second, 59));
}

// The number at the front of `rest` and the letter behind it.
std::optional<std::pair<qint64, char>> takeAmount(QByteArrayView &rest)
{
    constexpr qsizetype kMostDigits = 10;
    qsizetype digits = 0;
    while (digits < rest.size() && isDigits(rest.sliced(digits, 1))) {
        ++digits;
    }
    if (digits == 0 || digits > kMostDigits || digits == rest.size()) {
        return std::nullopt;
    }
    const std::pair amount(rest.first(digits).toLongLong(), rest[digits]);
    rest = rest.sliced(digits + 1);
    return amount;
}

bool add(IcalDuration &duration, std::pair<qint64, char> amount, bool isTime)
{
    const auto [count, unit] = amount;
    if (!isTime && unit == 'W') {
        duration.days += days(count * 7);
    } else if (!isTime && unit == 'D') {
        duration.days += days(count);
    } else if (isTime && unit == 'H') {
        duration.time += std::chrono::hours(count);
    } else if (isTime && unit == 'M') {
        duration.time += std::chrono::minutes(count);
    } else if (isTime && unit == 'S') {
        duration.time += seconds(count);
    } else {
        return false;
    }
    return true;
}

void putDigits(char *to, unsigned number, int width)
{
    for (int place = width - 1; place >= 0; --place) {
        to[place] = static_cast<char>('0' + number % 10);
        number /= 10;
    }
}

// A list of events spends much of its time here: one piece of memory, with room for a `Z`.
QByteArray icalOfWall(WallTime wall, bool isDate)
{
    const auto day = std::chrono::floor<days>(wall);
    const std::chrono::year_month_day date(day);
    QByteArray text;
    text.reserve(kDateDigits + 1 + kTimeDigits + 1);
    text.resize(isDate ? kDateDigits : kDateDigits + 1 + kTimeDigits);
    char *to = text.data();
    putDigits(to, static_cast<unsigned>(static_cast<int>(date.year())), 4);
    putDigits(to + 4, static_cast<unsigned>(date.month()), 2);
    putDigits(to + 6, static_cast<unsigned>(date.day()), 2);
    if (!isDate) {
        const std::chrono::hh_mm_ss time(wall - day);
        to[kDateDigits] = 'T';
        to += kDateDigits + 1;
        putDigits(to, static_cast<unsigned>(time.hours().count()), 2);
        putDigits(to + 2, static_cast<unsigned>(time.minutes().count()), 2);
        putDigits(to + 4, static_cast<unsigned>(time.seconds().count()), 2);
    }
    return text;
}

// What is written into a file calls a zone as the file does.
class RenamedZone final : public CalendarZone
{
public:
    RenamedZone(QByteArray name, ZonePointer zone)
        : CalendarZone(std::move(name)), m_zone(std::move(zone))
    {
    }
    [[nodiscard]] seconds offsetAt(UtcTime utc) const override { return m_zone->offsetAt(utc); }

private:
    ZonePointer m_zone;
};

const ZonePointer &remembered(std::map<QByteArray, ZonePointer> &zones, const QByteArray &name,
    ZonePointer (*find)(const QByteArray &))
{
    if (zones.size() >= kMostZones) {
        zones.clear();
    }
    auto [place, isNew] = zones.try_emplace(name);
    if (isNew) {
        const ZonePointer zone = find(name);
        const bool isItsName = !zone || zone->name() == name;
        place->second = isItsName ? zone : std::make_shared<RenamedZone>(name, zone);
    }
    return place->second;
}

bool isUtc(const IcalTime &time)
{
    return time.form == TimeForm::Zoned && time.zone == utcZone();
}

} // namespace

UtcTime IcalTime::utc(const CalendarZone &system) const
{
    return (zone ? *zone : system).utcTimeOf(wall);
}

void ZoneBook::openCalendar(const IcalComponent &calendar)
{
    m_ofCalendar.clear();
    for (const IcalComponent *definition : calendar.components("VTIMEZONE")) {
        const IcalProperty *name = definition->find("TZID");
        if (name == nullptr || m_ofCalendar.size() >= kMostZonesOfAFile) {
            continue;
        }
        if (m_defined.size() >= kMostZones) {
            m_defined.clear();
        }
        auto [place, isNew] = m_defined.try_emplace(writeIcal(*definition));
        if (isNew) {
            place->second = definedZone(*definition);
        }
        m_ofCalendar.try_emplace(name->value, place->second);
    }
}

ZonePointer ZoneBook::zoneFor(const QByteArray &name)
{
    const ZonePointer &known = remembered(m_database, name, &databaseZone);
    if (known) {
        return known;
    }
    const auto defined = m_ofCalendar.find(name);
    if (defined != m_ofCalendar.end() && defined->second) {
        return defined->second;
    }
    return remembered(m_windows, name, &windowsZone);
}

bool ZoneBook::isInDatabase(const QByteArray &name)
{
    return remembered(m_database, name, &databaseZone) != nullptr;
}

std::optional<IcalTime> timeOfIcal(
    QByteArrayView value, const std::optional<QByteArray> &zoneName, ZoneBook &zones)
{
    value = value.trimmed();
    const auto date = dateOf(value.first(std::min(value.size(), kDateDigits)));
    if (!date) {
        return std::nullopt;
    }
    if (value.size() == kDateDigits) {
        return IcalTime{*date, TimeForm::Date, nullptr};
    }
    const bool endsAsUtc = value.endsWith('Z') || value.endsWith('z');
    const QByteArrayView time = value.sliced(kDateDigits + 1).chopped(endsAsUtc ? 1 : 0);
    const auto ofDay = timeOfDay(time);
    if ((value[kDateDigits] != 'T' && value[kDateDigits] != 't') || !ofDay) {
        return std::nullopt;
    }
    const WallTime wall = *date + *ofDay;
    ZonePointer zone = endsAsUtc ? utcZone() : zoneName ? zones.zoneFor(*zoneName) : nullptr;
    const TimeForm form = zone ? TimeForm::Zoned : TimeForm::Floating;
    return IcalTime{wall, form, std::move(zone)};
}

std::optional<IcalTime> timeOfIcal(const IcalProperty &property, ZoneBook &zones)
{
    return timeOfIcal(property.value, property.parameter("TZID"), zones);
}

std::optional<IcalDuration> durationOfIcal(QByteArrayView value)
{
    QByteArrayView rest = value.trimmed();
    const bool isNegative = rest.startsWith('-');
    if (isNegative || rest.startsWith('+')) {
        rest = rest.sliced(1);
    }
    if (!rest.startsWith('P') || rest.size() < 3) {
        return std::nullopt;
    }
    rest = rest.sliced(1);
    IcalDuration duration;
    bool isTime = false;
    while (!rest.isEmpty()) {
        if (!isTime && rest.startsWith('T')) {
            isTime = true;
            rest = rest.sliced(1);
        }
        const auto amount = takeAmount(rest);
        if (!amount || !add(duration, *amount, isTime)) {
            return std::nullopt;
        }
    }
    if (duration.days > kCentury || duration.time > kCentury) {
        return std::nullopt;
    }
    return isNegative ? IcalDuration{-duration.days, -duration.time} : duration;
}

QByteArray icalOfTime(const IcalTime &time)
{
    return icalOfWall(time.wall, time.form == TimeForm::Date) + (isUtc(time) ? "Z" : "");
}

QByteArray icalOfUtc(UtcTime utc)
{
    return icalOfWall(WallTime(utc.time_since_epoch()), false) + 'Z';
}

IcalTime timeLike(const IcalTime &model, UtcTime utc, const CalendarZone &system)
{
    const WallTime wall = (model.zone ? *model.zone : system).wallTimeAt(utc);
    if (model.form == TimeForm::Date) {
        return {std::chrono::floor<days>(wall), model.form, nullptr};
    }
    const IcalTime time{wall, model.form, model.zone};
    if (time.utc(system) == utc) {
        return time;
    }
    return {WallTime(utc.time_since_epoch()), TimeForm::Zoned, utcZone()};
}

IcalProperty timeProperty(const QByteArray &name, const IcalTime &time)
{
    QByteArray parameters;
    if (time.form == TimeForm::Date) {
        parameters = ";VALUE=DATE";
    } else if (time.form == TimeForm::Zoned && !isUtc(time)) {
        const QByteArray &zone = time.zone->name();
        const bool needsQuotes = zone.contains(':') || zone.contains(';') || zone.contains(',');
        parameters = needsQuotes ? ";TZID=\"" + zone + '"' : ";TZID=" + zone;
    }
    return icalProperty(name, parameters, icalOfTime(time));
}

UtcTime utcOfInstant(Instant instant)
{
    return std::chrono::floor<seconds>(instant);
}

Instant instantOfUtc(UtcTime utc)
{
    return std::clamp(utc, kFirstInstant, kLastInstant);
}

} // namespace velarc
