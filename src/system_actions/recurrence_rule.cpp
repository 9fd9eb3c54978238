#include "system_actions/recurrence_rule.h"

#include "base/async.h"
#include "system_actions/recurrence_rule_days.h"

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
