#include "system_actions/zone_definition.h"

#include "system_actions/recurrence_rule.h"

#include <algorithm>

namespace velarc {

namespace {

using std::chrono::seconds;

constexpr int kMostChanges = 1000; // of one rule
constexpr int kMostSteps = 100'000; // of one zone
constexpr std::size_t kMostRules = 10; // of one observance
constexpr WallTime kHorizon = std::chrono::local_days(std::chrono::year(2200) / 1 / 1);

// "+0530" or "-043015".
std::optional<seconds> offsetOfIcal(const IcalProperty *property)
{
    const QByteArray value = property == nullptr ? QByteArray() : property->value.trimmed();
    if ((value.size() != 5 && value.size() != 7)
        || (!value.startsWith('+') && !value.startsWith('-'))) {
        return std::nullopt;
    }
    bool isNumber = false;
    const int digits = value.sliced(1).leftJustified(6, '0').toInt(&isNumber);
    const seconds offset = std::chrono::hours(digits / 10'000)
        + std::chrono::minutes(digits / 100 % 100) + seconds(digits % 100);
    if (!isNumber || digits < 0 || offset >= std::chrono::days(1)) {
        return std::nullopt;
    }
    return value.startsWith('-') ? -offset : offset;
}

// The changes to one kind of time, standard or daylight.
class Observance
{
public:
    Observance(const IcalComponent &component, ZoneBook &none)
        : m_component(component)
        , m_none(none)
        , m_before(offsetOfIcal(component.find("TZOFFSETFROM")))
        , m_after(offsetOfIcal(component.find("TZOFFSETTO")))
    {
        if (const IcalProperty *start = component.find("DTSTART")) {
            m_start = timeOfIcal(start->value, std::nullopt, none);
        }
    }

    [[nodiscard]] bool isSound() const { return m_before && m_after && m_start; }

    void addTo(std::vector<ZoneChange> &changes, StepBudget &budget) const
    {
        add(changes, m_start->wall);
        for (const IcalProperty *property : m_component.all("RDATE")) {
            for (const QByteArray &value : property->value.split(',')) {
                if (const auto date = timeOfIcal(value, std::nullopt, m_none)) {
                    add(changes, date->wall);
                }
            }
        }
        const auto rules = m_component.all("RRULE");
        for (std::size_t index = 0; index < std::min(rules.size(), kMostRules); ++index) {
            if (const auto rule = ruleOfIcal(rules[index]->value, m_none)) {
                addRule(changes, *rule, budget);
            }
        }
    }

private:
    const IcalComponent &m_component;
    ZoneBook &m_none;
    std::optional<seconds> m_before;
    std::optional<seconds> m_after;
    std::optional<IcalTime> m_start;

    [[nodiscard]] UtcTime momentOf(WallTime wall) const
    {
        return UtcTime(wall.time_since_epoch() - *m_before);
    }

    void add(std::vector<ZoneChange> &changes, WallTime wall) const
    {
        changes.push_back({momentOf(wall), *m_before, *m_after});
    }

    void addRule(
        std::vector<ZoneChange> &changes, const RecurrenceRule &rule, StepBudget &budget) const
    {
        RuleTimes times(rule, m_start->wall, TimeForm::Floating);
        const int most = std::min(rule.count.value_or(kMostChanges), kMostChanges);
        for (int count = 0; count < most; ++count) {
            const auto wall = times.next(budget);
            if (!wall || *wall > kHorizon || isBeyondEnd(rule, *wall)) {
                return;
            }
            add(changes, *wall);
        }
    }

    [[nodiscard]] bool isBeyondEnd(const RecurrenceRule &rule, WallTime wall) const
    {
        if (!rule.until) {
            return false;
        }
        return rule.until->form == TimeForm::Zoned ? momentOf(wall) > rule.until->utc(*utcZone())
                                                   : wall > rule.until->wall;
    }
};

} // namespace

ZonePointer definedZone(const IcalComponent &definition)
{
    constexpr std::size_t kMostObservances = 100;
    const IcalProperty *name = definition.find("TZID");
    std::vector<const IcalComponent *> parts = definition.components("STANDARD");
    const auto daylight = definition.components("DAYLIGHT");
    parts.insert(parts.end(), daylight.begin(), daylight.end());
    ZoneBook none;
    std::vector<ZoneChange> changes;
    StepBudget budget(kMostSteps, {});
    for (std::size_t index = 0; index < std::min(parts.size(), kMostObservances); ++index) {
        const Observance observance(*parts[index], none);
        if (observance.isSound()) {
            observance.addTo(changes, budget);
        }
    }
    if (changes.empty() || name == nullptr) {
        return nullptr;
    }
    std::sort(changes.begin(), changes.end(),
        [](const ZoneChange &left, const ZoneChange &right) { return left.at < right.at; });
    return zoneOfChanges(name->value, std::move(changes));
}

} // namespace velarc
