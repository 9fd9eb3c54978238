#include "system_actions/recurrence_rule_days.h"

#include <algorithm>

namespace velarc {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::year;
using std::chrono::year_month_day;

namespace {

int daysInMonth(const year_month_day &date)
{
    const auto last = date.year() / date.month() / std::chrono::last;
    return static_cast<int>(static_cast<unsigned>(last.day()));
}

bool allowsWeekNumber(const RecurrenceRule &rule, local_days day)
{
    const int number = weekYear(day, rule.weekStart);
    const local_days first = firstWeek(number, rule.weekStart);
    const auto weeks = (firstWeek(number + 1, rule.weekStart) - first).count() / 7;
    return holdsPlace(
        rule.weekNumbers, static_cast<int>((day - first).count() / 7) + 1, static_cast<int>(weeks));
}

bool isOrdinal(int ordinal, int fromStart, int size)
{
    return ordinal > 0 ? (fromStart - 1) / 7 + 1 == ordinal
                       : (size - fromStart) / 7 + 1 == -ordinal;
}

// Ordinals count in the month or in the year; where there is neither they say nothing.
bool allowsOrdinal(
    const RecurrenceRule &rule, int ordinal, const year_month_day &date, int yearDay, int yearSize)
{
    const bool isYearly = rule.frequency == RuleFrequency::Yearly && rule.weekNumbers.empty();
    if (ordinal == 0) {
        return true;
    }
    if (rule.frequency == RuleFrequency::Monthly || (isYearly && !rule.months.empty())) {
        return isOrdinal(
            ordinal, static_cast<int>(static_cast<unsigned>(date.day())), daysInMonth(date));
    }
    return !isYearly || isOrdinal(ordinal, yearDay, yearSize);
}

} // namespace

year_month_day firstOfMonth(const year_month_day &date)
{
    return date.year() / date.month() / 1;
}

local_days newYear(int number)
{
    return local_days(year(number) / 1 / 1);
}

local_days firstWeek(int number, std::chrono::weekday weekStart)
{
    const local_days fourth = newYear(number) + days(3);
    return fourth - (std::chrono::weekday(fourth) - weekStart);
}

int weekYear(local_days day, std::chrono::weekday weekStart)
{
    const int number = static_cast<int>(year_month_day(day).year());
    if (day >= firstWeek(number + 1, weekStart)) {
        return number + 1;
    }
    return day < firstWeek(number, weekStart) ? number - 1 : number;
}

bool holdsPlace(const std::vector<int> &list, int fromStart, int size)
{
    return std::any_of(list.begin(), list.end(),
        [=](int place) { return place == fromStart || place == fromStart - size - 1; });
}

bool holds(const std::vector<int> &list, int number)
{
    return std::binary_search(list.begin(), list.end(), number);
}

bool allowsMonth(const RecurrenceRule &rule, const year_month_day &date)
{
    return rule.months.empty()
        || holds(rule.months, static_cast<int>(static_cast<unsigned>(date.month())));
}

bool allowsDay(const RecurrenceRule &rule, local_days day, const year_month_day &date)
{
    const int dayOfMonth = static_cast<int>(static_cast<unsigned>(date.day()));
    if (!rule.monthDays.empty() && !holdsPlace(rule.monthDays, dayOfMonth, daysInMonth(date))) {
        return false;
    }
    if (!rule.weekNumbers.empty() && !allowsWeekNumber(rule, day)) {
        return false;
    }
    const int number = static_cast<int>(date.year());
    const int yearDay = static_cast<int>((day - newYear(number)).count()) + 1;
    const int yearSize = date.year().is_leap() ? 366 : 365;
    if (!rule.yearDays.empty() && !holdsPlace(rule.yearDays, yearDay, yearSize)) {
        return false;
    }
    const std::chrono::weekday weekday(day);
    return rule.weekdays.empty()
        || std::any_of(rule.weekdays.begin(), rule.weekdays.end(), [&](const RuleWeekday &wanted) {
               return wanted.weekday == weekday
                   && allowsOrdinal(rule, wanted.ordinal, date, yearDay, yearSize);
           });
}

} // namespace velarc
