#pragma once

// What an RRULE says, and the wall times that follow from it.
//
// Rules come from outside and may be made to cost: every step is counted against a budget, so
// that "every second of the 30th of February" ends as soon as any other rule.

#include "system_actions/ical_values.h"

#include <optional>
#include <stop_token>
#include <vector>

namespace velarc {

enum class RuleFrequency
{
    Secondly,
    Minutely,
    Hourly,
    Daily,
    Weekly,
    Monthly,
    Yearly,
};

// "the second Monday": of the month or the year; 0 for each, negative from the end.
struct RuleWeekday
{
    int ordinal = 0;
    std::chrono::weekday weekday;
};

// A list that is empty does not narrow the rule.
struct RecurrenceRule
{
    RuleFrequency frequency = RuleFrequency::Daily;
    int interval = 1;
    std::optional<int> count;
    std::optional<IcalTime> until; // inclusive
    std::chrono::weekday weekStart = std::chrono::Monday;
    std::vector<int> months;
    std::vector<int> weekNumbers;
    std::vector<int> yearDays;
    std::vector<int> monthDays;
    std::vector<RuleWeekday> weekdays;
    std::vector<int> hours;
    std::vector<int> minutes;
    std::vector<int> seconds;
    std::vector<int> positions;
};

// None for a rule that RFC 5545 does not allow, and for one of another calendar than the Gregorian.
[[nodiscard]] std::optional<RecurrenceRule> ruleOfIcal(QByteArrayView value, ZoneBook &zones);

// How many steps may yet be taken.
//
// Stop: asked about as steps are taken; CancellationError.
class StepBudget
{
public:
    StepBudget(int steps, std::stop_token stop) : m_left(steps), m_stop(std::move(stop)) {}

    // Takes one; false when none is left.
    [[nodiscard]] bool take();

private:
    int m_left;
    std::stop_token m_stop;
};

// The wall times of a rule, in order. COUNT and UNTIL are its caller's to heed.
class RuleTimes
{
public:
    // `start` gives what the rule leaves open. Dates have no times of the day.
    RuleTimes(RecurrenceRule rule, WallTime start, TimeForm form);

    // Leaves out what lies well before `wall`: up to a period of the rule before it is still given.
    void skipTo(WallTime wall);

    // The next time, none of them before the start. None when no more come before the year 2300,
    // or when the budget is spent.
    [[nodiscard]] std::optional<WallTime> next(StepBudget &budget);

private:
    RecurrenceRule m_rule;
    WallTime m_start;
    int m_firstYear = 0;
    qint64 m_period = 0; // the next one, counted from the one that the start lies in
    bool m_hasEnded = false;
    std::vector<WallTime> m_times; // of the period before
    std::size_t m_next = 0;

    // Each gives false when there is no more to come.
    [[nodiscard]] bool fillPeriod(StepBudget &budget);
    [[nodiscard]] bool fillDays(
        std::chrono::local_days from, std::chrono::local_days end, StepBudget &budget);
    [[nodiscard]] bool fillShortPeriod(StepBudget &budget);
    [[nodiscard]] bool addTimesOf(std::chrono::local_days day, StepBudget &budget);
    [[nodiscard]] bool addTimesOf(
        WallTime base, const std::vector<int> &minutes, StepBudget &budget);
    void pickPositions();
};

} // namespace velarc
