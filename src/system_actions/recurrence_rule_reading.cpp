#include "system_actions/recurrence_rule.h"

#include <array>
#include <cstdlib>
#include <string_view>
#include <utility>

namespace velarc {

namespace {

// No honest list is longer than the days of a year, forwards and backwards.
constexpr qsizetype kLongestList = 2 * 366;
constexpr int kLargestNumber = 100'000'000;

constexpr std::array<std::pair<std::string_view, RuleFrequency>, 7> kFrequencies{{
    {"SECONDLY", RuleFrequency::Secondly},
    {"MINUTELY", RuleFrequency::Minutely},
    {"HOURLY", RuleFrequency::Hourly},
    {"DAILY", RuleFrequency::Daily},
    {"WEEKLY", RuleFrequency::Weekly},
    {"MONTHLY", RuleFrequency::Monthly},
    {"YEARLY", RuleFrequency::Yearly},
}};

constexpr std::array<std::string_view, 7> kWeekdays{"SU", "MO", "TU", "WE", "TH", "FR", "SA"};

// A part of a rule that is a list of numbers.
struct ListPart
{
    std::string_view name;
    std::vector<int> RecurrenceRule::*list;
    int least; // of the absolute value
    int greatest;
    bool countsFromTheEndToo;
};

constexpr std::array kListParts{
    ListPart{"BYMONTH", &RecurrenceRule::months, 1, 12, false},
    ListPart{"BYWEEKNO", &RecurrenceRule::weekNumbers, 1, 53, true},
    ListPart{"BYYEARDAY", &RecurrenceRule::yearDays, 1, 366, true},
    ListPart{"BYMONTHDAY", &RecurrenceRule::monthDays, 1, 31, true},
    ListPart{"BYHOUR", &RecurrenceRule::hours, 0, 23, false},
    ListPart{"BYMINUTE", &RecurrenceRule::minutes, 0, 59, false},
    ListPart{"BYSECOND", &RecurrenceRule::seconds, 0, 60, false},
    ListPart{"BYSETPOS", &RecurrenceRule::positions, 1, 366, true},
};

std::string_view viewOf(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

std::optional<int> numberOf(const QByteArray &text)
{
    bool isNumber = false;
    const int number = text.toInt(&isNumber);
    return isNumber && std::abs(number) <= kLargestNumber ? std::optional(number) : std::nullopt;
}

std::optional<std::chrono::weekday> weekdayOf(QByteArrayView name)
{
    for (unsigned index = 0; index < kWeekdays.size(); ++index) {
        if (name == QByteArrayView(kWeekdays.at(index))) {
            return std::chrono::weekday(index);
        }
    }
    return std::nullopt;
}

bool readFrequency(RecurrenceRule &rule, const QByteArray &value)
{
    for (const auto &[name, frequency] : kFrequencies) {
        if (viewOf(value) == name) {
            rule.frequency = frequency;
            return true;
        }
    }
    return false;
}

bool readWeekdays(RecurrenceRule &rule, const QByteArray &value)
{
    const QList<QByteArray> items = value.split(',');
    for (const QByteArray &item : items) {
        const QByteArray number = item.chopped(std::min<qsizetype>(item.size(), 2));
        const auto weekday = weekdayOf(item.last(std::min<qsizetype>(item.size(), 2)));
        const auto ordinal = number.isEmpty() ? std::optional(0) : numberOf(number);
        const bool isOrdinal =
            number.isEmpty() || (ordinal && std::abs(*ordinal) >= 1 && std::abs(*ordinal) <= 53);
        if (!weekday || !isOrdinal) {
            return false;
        }
        rule.weekdays.push_back({*ordinal, *weekday});
    }
    return items.size() <= kLongestList;
}

bool readList(RecurrenceRule &rule, const ListPart &part, const QByteArray &value)
{
    const QList<QByteArray> items = value.split(',');
    for (const QByteArray &item : items) {
        const auto number = numberOf(item);
        if (!number || std::abs(*number) < part.least || std::abs(*number) > part.greatest
            || (*number < 0 && !part.countsFromTheEndToo)) {
            return false;
        }
        (rule.*part.list).push_back(*number);
    }
    return items.size() <= kLongestList;
}

bool readPart(
    RecurrenceRule &rule, const QByteArray &name, const QByteArray &value, ZoneBook &zones)
{
    if (name == "FREQ") {
        return readFrequency(rule, value);
    }
    if (name == "BYDAY") {
        return readWeekdays(rule, value);
    }
    if (name == "UNTIL") {
        rule.until = timeOfIcal(value, std::nullopt, zones);
        return rule.until.has_value();
    }
    if (name == "INTERVAL") {
        rule.interval = numberOf(value).value_or(0);
        return rule.interval >= 1;
    }
    if (name == "COUNT") {
        rule.count = numberOf(value).value_or(0);
        return *rule.count >= 1;
    }
    if (name == "WKST") {
        const auto weekday = weekdayOf(value);
        rule.weekStart = weekday.value_or(std::chrono::Monday);
        return weekday.has_value();
    }
    for (const ListPart &part : kListParts) {
        if (viewOf(name) == part.name) {
            return readList(rule, part, value);
        }
    }
    return (name == "RSCALE" && value == "GREGORIAN") || (name == "SKIP" && value == "OMIT")
        || name.startsWith("X-");
}

} // namespace

std::optional<RecurrenceRule> ruleOfIcal(QByteArrayView value, ZoneBook &zones)
{
    RecurrenceRule rule;
    bool hasFrequency = false;
    const QByteArray capitals = value.trimmed().toByteArray().toUpper();
    for (const QByteArray &part : capitals.split(';')) {
        const qsizetype equals = part.indexOf('=');
        if (part.isEmpty()) {
            continue; // behind a semicolon too many
        }
        const QByteArray name = part.first(std::max<qsizetype>(equals, 0)).trimmed();
        if (equals < 0 || !readPart(rule, name, part.sliced(equals + 1).trimmed(), zones)) {
            return std::nullopt;
        }
        hasFrequency = hasFrequency || name == "FREQ";
    }
    for (int &second : rule.seconds) {
        second = std::min(second, 59); // no clock here knows a leap second
    }
    return hasFrequency ? std::optional(std::move(rule)) : std::nullopt;
}

} // namespace velarc
