#include "system_actions/recurrence_rule.h"

#include "base/async.h"
#include "system_actions/week_counting.h"

#include <algorithm>
#include <array>

namespace velarc {

namespace {

using std::chrono::days;
using std::chrono::local_days;
using std::chrono::months;
using std::chrono::seconds;
using std::chrono::year;
using std::chrono::year_month_day;

constexpr int kLastYear = 2299;
constexpr WallTime kEnd = local_days(year(kLastYear + 1) / 1 / 1);

year_month_day firstOfMonth(const year_month_day &date)
{
    return date.year() / date.month() / 1;
}

int daysInMonth(const year_month_day &date)
{
    const auto last = date.year() / date.month() / std::chrono::last;
    return static_cast<int>(static_cast<unsigned>(last.day()));
}

// Whether `list` holds the number, counted from 1, or from the end as -1 and so on.
bool holdsPlace(const std::vector<int> &list, int fromStart, int size)
{
    return std::any_of(list.begin(), list.end(),
        [=](int place) { return place == fromStart || place == fromStart - size - 1; });
}

bool holds(const std::vector<int> &list, int number)
{
    return std::binary_search(list.begin(), list.end(), number);
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

bool allowsMonth(const RecurrenceRule &rule, const year_month_day &date)
{
    return rule.months.empty()
        || holds(rule.months, static_cast<int>(static_cast<unsigned>(date.month())));
}

// But for the month.
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

seconds unitOf(RuleFrequency frequency)
{
    switch (frequency) {
    case RuleFrequency::Secondly:
        return seconds(1);
    case RuleFrequency::Minutely:
        return std::chrono::minutes(1);
    case RuleFrequency::Hourly:
        return std::chrono::hours(1);
    case RuleFrequency::Daily:
        return days(1);
    case RuleFrequency::Weekly:
        return std::chrono::weeks(1);
    case RuleFrequency::Monthly:
    case RuleFrequency::Yearly:
        break; // their length varies
    }
    return std::chrono::weeks(4);
}

bool isShort(RuleFrequency frequency)
{
    return frequency < RuleFrequency::Daily;
}

void makeOrderly(std::vector<int> &list)
{
    std::sort(list.begin(), list.end());
    list.erase(std::unique(list.begin(), list.end()), list.end());
}

// RFC 5545: what the rule leaves open comes from the start.
void completeDays(RecurrenceRule &rule, local_days start)
{
    const year_month_day date(start);
    const int dayOfMonth = static_cast<int>(static_cast<unsigned>(date.day()));
    if (!rule.yearDays.empty() || !rule.monthDays.empty() || !rule.weekdays.empty()) {
        return;
    }
    if (rule.frequency == RuleFrequency::Weekly || !rule.weekNumbers.empty()) {
        rule.weekdays.push_back({0, std::chrono::weekday(start)});
    } else if (rule.frequency == RuleFrequency::Monthly) {
        rule.monthDays.push_back(dayOfMonth);
    } else if (rule.frequency == RuleFrequency::Yearly) {
        rule.monthDays.push_back(dayOfMonth);
        if (rule.months.empty()) {
            rule.months.push_back(static_cast<int>(static_cast<unsigned>(date.month())));
        }
    }
}

void completeTimes(RecurrenceRule &rule, seconds ofDay)
{
    const std::chrono::hh_mm_ss start(ofDay);
    if (rule.hours.empty() && !isShort(rule.frequency)) {
        rule.hours.push_back(static_cast<int>(start.hours().count()));
    }
    if (rule.minutes.empty() && rule.frequency >= RuleFrequency::Hourly) {
        rule.minutes.push_back(static_cast<int>(start.minutes().count()));
    }
    if (rule.seconds.empty() && rule.frequency >= RuleFrequency::Minutely) {
        rule.seconds.push_back(static_cast<int>(start.seconds().count()));
    }
}

// `base` if a short period that begins there may hold something, else the next moment that may.
WallTime firstCandidate(const RecurrenceRule &rule, WallTime base)
{
    const auto day = std::chrono::floor<days>(base);
    const year_month_day date(day);
    if (!allowsMonth(rule, date)) {
        return local_days(firstOfMonth(date) + months(1));
    }
    if (!allowsDay(rule, day, date)) {
        return day + days(1);
    }
    const std::chrono::hh_mm_ss time(base - day);
    if (!rule.hours.empty() && !holds(rule.hours, static_cast<int>(time.hours().count()))) {
        return std::chrono::floor<std::chrono::hours>(base) + std::chrono::hours(1);
    }
    if (rule.frequency < RuleFrequency::Hourly && !rule.minutes.empty()
        && !holds(rule.minutes, static_cast<int>(time.minutes().count()))) {
        return std::chrono::floor<std::chrono::minutes>(base) + std::chrono::minutes(1);
    }
    if (rule.frequency == RuleFrequency::Secondly && !rule.seconds.empty()
        && !holds(rule.seconds, static_cast<int>(time.seconds().count()))) {
        return base + seconds(1);
    }
    return base;
}

} // namespace

bool StepBudget::take()
{
    constexpr int kBetweenQuestions = 1024;
    if (m_left % kBetweenQuestions == 0) {
        throwIfStopped(m_stop);
    }
    return m_left > 0 && --m_left >= 0;
}

RuleTimes::RuleTimes(RecurrenceRule rule, WallTime start, TimeForm form)
    : m_rule(std::move(rule)), m_start(start)
{
    const auto day = std::chrono::floor<days>(start);
    if (form == TimeForm::Date) {
        m_rule.hours = m_rule.minutes = m_rule.seconds = {0};
        m_hasEnded = isShort(m_rule.frequency);
    }
    completeDays(m_rule, day);
    completeTimes(m_rule, start - day);
    for (std::vector<int> *list :
        {&m_rule.months, &m_rule.hours, &m_rule.minutes, &m_rule.seconds}) {
        makeOrderly(*list);
    }
    const bool isByWeek = !m_rule.weekNumbers.empty();
    m_firstYear =
        isByWeek ? weekYear(day, m_rule.weekStart) : static_cast<int>(year_month_day(day).year());
}

void RuleTimes::skipTo(WallTime wall)
{
    constexpr qint64 kToBeSure = 2;
    const auto day = std::chrono::floor<days>(wall);
    qint64 units = (wall - m_start) / unitOf(m_rule.frequency);
    if (m_rule.frequency == RuleFrequency::Yearly) {
        units = static_cast<int>(year_month_day(day).year()) - m_firstYear;
    } else if (m_rule.frequency == RuleFrequency::Monthly) {
        const year_month_day from(std::chrono::floor<days>(m_start));
        const year_month_day to(day);
        units = (to.year() / to.month() - from.year() / from.month()).count();
    }
    m_period = std::max(m_period, units / m_rule.interval - kToBeSure);
}

std::optional<WallTime> RuleTimes::next(StepBudget &budget)
{
    for (;;) {
        for (; m_next < m_times.size(); ++m_next) {
            if (m_times[m_next] >= m_start) {
                return m_times[m_next++];
            }
        }
        m_times.clear();
        m_next = 0;
        m_hasEnded = m_hasEnded || !fillPeriod(budget);
        if (m_hasEnded) {
            return std::nullopt;
        }
        pickPositions();
    }
}

bool RuleTimes::fillPeriod(StepBudget &budget)
{
    const auto startDay = std::chrono::floor<days>(m_start);
    const qint64 units = m_period * m_rule.interval;
    if (isShort(m_rule.frequency)) {
        return fillShortPeriod(budget);
    }
    ++m_period;
    if (m_rule.frequency == RuleFrequency::Yearly) {
        if (m_firstYear + units > kLastYear) {
            return false;
        }
        const int number = m_firstYear + static_cast<int>(units);
        return m_rule.weekNumbers.empty() ? fillDays(newYear(number), newYear(number + 1), budget)
                                          : fillDays(firstWeek(number, m_rule.weekStart),
                                              firstWeek(number + 1, m_rule.weekStart), budget);
    }
    if (m_rule.frequency == RuleFrequency::Monthly) {
        if (units > qint64(kLastYear) * 12) {
            return false;
        }
        const auto month = firstOfMonth(year_month_day(startDay)) + months(static_cast<int>(units));
        return fillDays(local_days(month), local_days(month + months(1)), budget);
    }
    if (units > qint64(kLastYear) * 366) {
        return false;
    }
    const days offset(static_cast<int>(units));
    if (m_rule.frequency == RuleFrequency::Daily) {
        return fillDays(startDay + offset, startDay + offset + days(1), budget);
    }
    const auto week = startDay - (std::chrono::weekday(startDay) - m_rule.weekStart) + offset * 7;
    return fillDays(week, week + days(7), budget);
}

bool RuleTimes::fillDays(local_days from, local_days end, StepBudget &budget)
{
    if (WallTime(from) >= kEnd) {
        return false;
    }
    for (local_days day = from; day < end;) {
        const year_month_day date(day);
        if (!budget.take()) {
            return false;
        }
        if (!allowsMonth(m_rule, date)) {
            day = local_days(firstOfMonth(date) + months(1));
            continue;
        }
        if (allowsDay(m_rule, day, date) && !addTimesOf(day, budget)) {
            return false;
        }
        day += days(1);
    }
    return true;
}

bool RuleTimes::addTimesOf(local_days day, StepBudget &budget)
{
    for (const int hour : m_rule.hours) {
        if (!addTimesOf(day + std::chrono::hours(hour), m_rule.minutes, budget)) {
            return false;
        }
    }
    return true;
}

bool RuleTimes::addTimesOf(WallTime base, const std::vector<int> &minutes, StepBudget &budget)
{
    for (const int minute : minutes) {
        for (const int second : m_rule.seconds) {
            if (!budget.take()) {
                return false;
            }
            m_times.push_back(base + std::chrono::minutes(minute) + seconds(second));
        }
    }
    return true;
}

bool RuleTimes::fillShortPeriod(StepBudget &budget)
{
    const seconds unit = unitOf(m_rule.frequency);
    const seconds step = unit * m_rule.interval;
    const seconds surplus = m_start.time_since_epoch() % unit;
    const WallTime first = m_start - surplus - (surplus < seconds::zero() ? unit : seconds::zero());
    for (;;) {
        const WallTime base = first + m_period * step;
        if (base >= kEnd || !budget.take()) {
            return false;
        }
        const seconds ahead = firstCandidate(m_rule, base) - base;
        if (ahead > seconds::zero()) {
            m_period += (ahead + step - seconds(1)) / step;
            continue;
        }
        ++m_period;
        if (m_rule.frequency == RuleFrequency::Hourly) {
            return addTimesOf(base, m_rule.minutes, budget);
        }
        if (m_rule.frequency == RuleFrequency::Minutely) {
            return addTimesOf(base, {0}, budget);
        }
        m_times.push_back(base);
        return true;
    }
}

void RuleTimes::pickPositions()
{
    if (m_rule.positions.empty()) {
        return;
    }
    const int size = static_cast<int>(m_times.size());
    std::vector<WallTime> picked;
    for (int place = 1; place <= size; ++place) {
        if (holdsPlace(m_rule.positions, place, size)) {
            picked.push_back(m_times[static_cast<std::size_t>(place) - 1]);
        }
    }
    m_times = std::move(picked);
}

} // namespace velarc
