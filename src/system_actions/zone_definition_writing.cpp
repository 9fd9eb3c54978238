#include "system_actions/ical_values.h"
#include "system_actions/zone_definition.h"

#include <algorithm>
#include <array>
#include <vector>

namespace velarc {

namespace {

using std::chrono::days;
using std::chrono::seconds;

constexpr std::array kWeekdays{"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

// So many years are looked ahead; what holds in all of them is taken for a rule.
constexpr std::chrono::years kLookAhead(10);

// Shorter than the time between any two changes that a zone makes by rule.
constexpr days kStride(20);

UtcTime momentOfChange(const CalendarZone &zone, UtcTime before, UtcTime after)
{
    const seconds old = zone.offsetAt(before);
    while (after - before > seconds(1)) {
        const UtcTime middle = before + (after - before) / 2;
        (zone.offsetAt(middle) == old ? before : after) = middle;
    }
    return after;
}

std::vector<ZoneChange> changesBetween(const CalendarZone &zone, UtcTime from, UtcTime to)
{
    std::vector<ZoneChange> changes;
    for (UtcTime at = from; at < to; at += kStride) {
        const seconds before = zone.offsetAt(at);
        const seconds after = zone.offsetAt(at + kStride);
        if (before != after) {
            changes.push_back({momentOfChange(zone, at, at + kStride), before, after});
        }
    }
    return changes;
}

// What the wall shows when the change is due.
WallTime wallOf(const ZoneChange &change)
{
    return WallTime(change.at.time_since_epoch() + change.before);
}

// "the last Sunday of October", as far as one date tells.
struct Pattern
{
    unsigned month = 0;
    unsigned weekday = 0;
    seconds timeOfDay{0};
    int fromStart = 0; // the fourth Sunday
    bool isLast = false;
};

Pattern patternOf(const ZoneChange &change)
{
    const WallTime wall = wallOf(change);
    const auto day = std::chrono::floor<days>(wall);
    const std::chrono::year_month_day date(day);
    const auto last = date.year() / date.month() / std::chrono::last;
    const unsigned number = static_cast<unsigned>(date.day());
    return {static_cast<unsigned>(date.month()), std::chrono::weekday(day).c_encoding(), wall - day,
        static_cast<int>((number - 1) / 7 + 1), number + 7 > static_cast<unsigned>(last.day())};
}

// The rule that all the changes follow, one a year; empty if there is none.
QByteArray ruleOf(const std::vector<ZoneChange> &changes)
{
    const Pattern first = patternOf(changes.front());
    bool areSame = true;
    bool areLast = true;
    int year = static_cast<int>(
        std::chrono::year_month_day(std::chrono::floor<days>(wallOf(changes.front()))).year());
    for (const ZoneChange &change : changes) {
        const Pattern pattern = patternOf(change);
        const std::chrono::year_month_day date(std::chrono::floor<days>(wallOf(change)));
        if (pattern.month != first.month || pattern.weekday != first.weekday
            || pattern.timeOfDay != first.timeOfDay || static_cast<int>(date.year()) != year++) {
            return {};
        }
        areSame = areSame && pattern.fromStart == first.fromStart;
        areLast = areLast && pattern.isLast;
    }
    if (!areSame && !areLast) {
        return {};
    }
    return "RRULE:FREQ=YEARLY;BYMONTH=" + QByteArray::number(first.month)
        + ";BYDAY=" + (areLast ? "-1" : QByteArray::number(first.fromStart))
        + kWeekdays.at(first.weekday) + "\r\n";
}

QByteArray offsetText(seconds offset)
{
    const std::chrono::hh_mm_ss parts(std::chrono::abs(offset));
    const auto digits = [](auto count) {
        return QByteArray::number(static_cast<qint64>(count.count())).rightJustified(2, '0');
    };
    QByteArray text = offset < seconds::zero() ? "-" : "+";
    text += digits(parts.hours()) + digits(parts.minutes());
    return parts.seconds() == seconds::zero() ? text : text + digits(parts.seconds());
}

QByteArray observance(const ZoneChange &change, const QByteArray &rule)
{
    const QByteArray name = change.after > change.before ? "DAYLIGHT" : "STANDARD";
    return "BEGIN:" + name
        + "\r\nDTSTART:" + icalOfTime({wallOf(change), TimeForm::Floating, nullptr})
        + "\r\nTZOFFSETFROM:" + offsetText(change.before)
        + "\r\nTZOFFSETTO:" + offsetText(change.after) + "\r\n" + rule + "END:" + name + "\r\n";
}

// One direction of the clock's changes: a rule if they follow one, else each by itself.
QByteArray observances(const std::vector<ZoneChange> &changes)
{
    QByteArray text;
    if (changes.empty()) {
        return text;
    }
    const QByteArray rule = changes.size() > 1 ? ruleOf(changes) : QByteArray();
    if (!rule.isEmpty()) {
        return observance(changes.front(), rule);
    }
    for (const ZoneChange &change : changes) {
        text += observance(change, {});
    }
    return text;
}

} // namespace

QByteArray zoneDefinition(const CalendarZone &zone, UtcTime from)
{
    if (zone.name().isEmpty()) {
        return {};
    }
    const UtcTime start = from - std::chrono::years(1);
    std::vector<ZoneChange> forward;
    std::vector<ZoneChange> back;
    for (const ZoneChange &change : changesBetween(zone, start, from + kLookAhead)) {
        (change.after > change.before ? forward : back).push_back(change);
    }
    // What holds before the first change, and for a zone that has none.
    const seconds offset = zone.offsetAt(start);
    const auto midnight = std::chrono::floor<days>(zone.wallTimeAt(start));
    const ZoneChange standing{UtcTime(midnight.time_since_epoch() - offset), offset, offset};
    return "BEGIN:VTIMEZONE\r\nTZID:" + zone.name() + "\r\n" + observance(standing, {})
        + observances(forward) + observances(back) + "END:VTIMEZONE\r\n";
}

} // namespace velarc
