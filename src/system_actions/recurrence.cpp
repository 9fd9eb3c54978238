#include "system_actions/recurrence.h"

#include <algorithm>
#include <map>
#include <set>

namespace velarc {

namespace {

using std::chrono::days;

constexpr days kBeyondAnyOffset(1);

// One place in the recurrence set.
struct Slot
{
    UtcTime utc;
    IcalTime time;
    std::optional<IcalDuration> length; // its own
};

UtcTime endOf(const IcalTime &start, const IcalDuration &length, const CalendarZone &system)
{
    if (length.days == days::zero()) {
        return start.utc(system) + length.time;
    }
    const CalendarZone &zone = start.zone ? *start.zone : system;
    return zone.utcTimeOf(start.wall + length.days) + length.time;
}

bool isRecurring(const IcalSeries &series)
{
    return !series.master || series.master->isSeries() || !series.master->excluded.empty()
        || !series.overrides.empty();
}

bool isBeyondEnd(const RecurrenceRule &rule, WallTime wall, UtcTime utc)
{
    if (!rule.until) {
        return false;
    }
    switch (rule.until->form) {
    case TimeForm::Date:
        return std::chrono::floor<days>(wall) > rule.until->wall;
    case TimeForm::Floating:
        return wall > rule.until->wall;
    case TimeForm::Zoned:
        return utc > rule.until->utc(*utcZone());
    }
    Q_UNREACHABLE();
}

// What a master leaves out. A date leaves out the whole day.
class Exclusions
{
public:
    Exclusions(const IcalEvent &master, const CalendarZone &system)
    {
        for (const IcalTime &time : master.excluded) {
            if (time.form == TimeForm::Date || master.start.form == TimeForm::Date) {
                m_dates.insert(std::chrono::floor<days>(time.wall));
            } else {
                m_moments.insert(time.utc(system));
            }
        }
    }

    [[nodiscard]] bool contain(UtcTime utc, WallTime wall) const
    {
        return m_moments.contains(utc)
            || (!m_dates.empty() && m_dates.contains(std::chrono::floor<days>(wall)));
    }

private:
    std::set<UtcTime> m_moments;
    std::set<WallTime> m_dates;
};

// The slots of one master that are due in a window.
class Slots
{
public:
    Slots(const IcalEvent &master, UtcWindow due, const CalendarZone &system,
        ExpansionBounds bounds, std::stop_token stop)
        : m_master(master)
        , m_due(due)
        , m_system(system)
        , m_bounds(bounds)
        , m_budget(bounds.steps, std::move(stop))
    {
    }

    [[nodiscard]] std::vector<Slot> find()
    {
        take(m_master.start, std::nullopt);
        for (const RecurrenceRule &rule : m_master.rules) {
            takeRule(rule);
        }
        for (const AddedTime &added : m_master.added) {
            take(added.start, added.length);
        }
        std::stable_sort(m_slots.begin(), m_slots.end(),
            [](const Slot &left, const Slot &right) { return left.utc < right.utc; });
        const auto isSame = [](const Slot &left, const Slot &right) {
            return left.utc == right.utc;
        };
        m_slots.erase(std::unique(m_slots.begin(), m_slots.end(), isSame), m_slots.end());
        const Exclusions excluded(m_master, m_system);
        std::erase_if(
            m_slots, [&](const Slot &slot) { return excluded.contain(slot.utc, slot.time.wall); });
        return std::move(m_slots);
    }

private:
    const IcalEvent &m_master;
    UtcWindow m_due;
    const CalendarZone &m_system;
    ExpansionBounds m_bounds;
    StepBudget m_budget;
    std::vector<Slot> m_slots;

    void take(const IcalTime &time, const std::optional<IcalDuration> &length)
    {
        const UtcTime utc = time.utc(m_system);
        if (utc >= m_due.first && utc <= m_due.last) {
            m_slots.push_back({utc, time, length});
        }
    }

    void takeRule(const RecurrenceRule &rule)
    {
        const IcalTime &start = m_master.start;
        const CalendarZone &zone = start.zone ? *start.zone : m_system;
        const WallTime last = zone.wallTimeAt(m_due.last) + kBeyondAnyOffset;
        RuleTimes times(rule, start.wall, start.form);
        if (!rule.count) {
            times.skipTo(zone.wallTimeAt(m_due.first) - kBeyondAnyOffset);
        }
        const std::size_t most = m_slots.size() + m_bounds.occurrences;
        int count = 0;
        while (const auto wall = times.next(m_budget)) {
            // The start counts as the first occurrence, even where the rule does not hold it.
            count += count == 0 && *wall != start.wall ? 2 : 1;
            const UtcTime utc = zone.utcTimeOf(*wall);
            if (*wall > last || isBeyondEnd(rule, *wall, utc) || m_slots.size() >= most
                || (rule.count && count > *rule.count)) {
                return;
            }
            take({*wall, start.form, start.zone}, std::nullopt);
        }
    }
};

// A series with its overrides laid over its slots.
class Expansion
{
public:
    Expansion(const IcalSeries &series, const CalendarZone &system)
        : m_series(series), m_system(system)
    {
        if (series.master) {
            m_excluded.emplace(*series.master, system);
        }
        for (const IcalEvent &event : series.overrides) {
            const UtcTime due = event.recurrenceId->utc(system);
            m_overridden.insert(due);
            if (event.isForFollowingToo) {
                m_ranges.insert_or_assign(due, &event);
            } else {
                m_single.insert(due);
            }
        }
    }

    // How far from its slot an occurrence may begin or end.
    [[nodiscard]] std::chrono::seconds reach() const
    {
        std::chrono::seconds reach = lengthOf(*m_series.master);
        for (const auto &[due, event] : m_ranges) {
            const auto moved = event->start.wall - event->recurrenceId->wall;
            reach = std::max(reach, lengthOf(*event) + std::chrono::abs(moved));
        }
        return reach + kBeyondAnyOffset;
    }

    [[nodiscard]] std::vector<Occurrence> ofSlots(
        UtcWindow due, ExpansionBounds bounds, std::stop_token stop) const
    {
        std::vector<Occurrence> found;
        const IcalEvent &master = *m_series.master;
        for (const Slot &slot : Slots(master, due, m_system, bounds, std::move(stop)).find()) {
            if (!m_overridden.contains(slot.utc)) {
                add(found, slot);
            }
        }
        return found;
    }

    [[nodiscard]] std::vector<Occurrence> ofOverrides() const
    {
        std::vector<Occurrence> found;
        for (const IcalEvent &event : m_series.overrides) {
            if (!event.isCancelled && !isReplaced(event)) {
                found.push_back({&event, event.recurrenceId, event.start.utc(m_system),
                    endOf(event.start, event.length, m_system)});
            }
        }
        return found;
    }

private:
    const IcalSeries &m_series;
    const CalendarZone &m_system;
    std::set<UtcTime> m_overridden;
    std::set<UtcTime> m_single; // by an override for one occurrence alone
    std::map<UtcTime, const IcalEvent *> m_ranges;
    std::optional<Exclusions> m_excluded;

    [[nodiscard]] static std::chrono::seconds lengthOf(const IcalEvent &event)
    {
        return event.length.days + event.length.time;
    }

    // What speaks for the following occurrences as well need not speak for its own.
    [[nodiscard]] bool isReplaced(const IcalEvent &event) const
    {
        const UtcTime due = event.recurrenceId->utc(m_system);
        return event.isForFollowingToo
            && (m_single.contains(due)
                || (m_excluded && m_excluded->contain(due, event.recurrenceId->wall)));
    }

    void add(std::vector<Occurrence> &found, const Slot &slot) const
    {
        const IcalEvent *event = &*m_series.master;
        IcalTime start = slot.time;
        const auto next = m_ranges.upper_bound(slot.utc);
        const bool isChanged = next != m_ranges.begin();
        if (isChanged) {
            event = std::prev(next)->second;
            start = {slot.time.wall + (event->start.wall - event->recurrenceId->wall),
                event->start.form, event->start.zone};
        }
        if (!isChanged || !event->isCancelled) {
            const IcalDuration length = slot.length.value_or(event->length);
            found.push_back(
                {event, slot.time, start.utc(m_system), endOf(start, length, m_system)});
        }
    }
};

bool touches(const Occurrence &occurrence, UtcWindow window)
{
    const bool isMoment = occurrence.start == occurrence.end;
    return occurrence.start <= window.last
        && (occurrence.end > window.first || (isMoment && occurrence.start == window.first));
}

Occurrence single(const IcalEvent &event, const CalendarZone &system)
{
    return {
        &event, std::nullopt, event.start.utc(system), endOf(event.start, event.length, system)};
}

// Everything that is due in the window, whenever it takes place.
std::vector<Occurrence> occurrencesDue(const IcalSeries &series, UtcWindow due,
    const CalendarZone &system, ExpansionBounds bounds, std::stop_token stop)
{
    const Expansion expansion(series, system);
    std::vector<Occurrence> found = expansion.ofOverrides();
    std::erase_if(found, [&](const Occurrence &occurrence) {
        const UtcTime utc = occurrence.due->utc(system);
        return utc < due.first || utc > due.last;
    });
    if (series.master) {
        const auto others = expansion.ofSlots(due, bounds, std::move(stop));
        found.insert(found.end(), others.begin(), others.end());
    }
    return found;
}

} // namespace

std::vector<Occurrence> occurrencesIn(const IcalSeries &series, UtcWindow window,
    const CalendarZone &system, ExpansionBounds bounds, std::stop_token stop)
{
    std::vector<Occurrence> found;
    if (!isRecurring(series)) {
        found.push_back(single(*series.master, system));
    } else {
        const Expansion expansion(series, system);
        found = expansion.ofOverrides();
        if (series.master) {
            const auto reach = expansion.reach();
            const auto others = expansion.ofSlots(
                {window.first - reach, window.last + reach}, bounds, std::move(stop));
            found.insert(found.end(), others.begin(), others.end());
        }
    }
    std::erase_if(
        found, [&](const Occurrence &occurrence) { return !touches(occurrence, window); });
    return found;
}

std::optional<Occurrence> firstOccurrence(
    const IcalSeries &series, const CalendarZone &system, std::stop_token stop)
{
    if (!isRecurring(series)) {
        return single(*series.master, system);
    }
    const auto isEarlier = [&](const Occurrence &left, const Occurrence &right) {
        return left.due->utc(system) < right.due->utc(system);
    };
    constexpr UtcTime kBeginning = std::chrono::sys_days(std::chrono::year(1599) / 1 / 1);
    constexpr std::chrono::years kLongest(800);
    // Nearly always the first year holds it.
    const UtcTime start = series.master ? series.master->start.utc(system) : kBeginning;
    for (std::chrono::years span(1); span < kLongest; span *= 8) {
        const auto found = occurrencesDue(series, {kBeginning, start + span}, system, {}, stop);
        if (!found.empty()) {
            return *std::min_element(found.begin(), found.end(), isEarlier);
        }
    }
    const auto found = Expansion(series, system).ofOverrides();
    const auto first = std::min_element(found.begin(), found.end(), isEarlier);
    return first == found.end() ? std::nullopt : std::optional(*first);
}

std::optional<Occurrence> occurrenceDueAt(
    const IcalSeries &series, UtcTime due, const CalendarZone &system, std::stop_token stop)
{
    if (!isRecurring(series)) {
        return std::nullopt;
    }
    const auto found = occurrencesDue(series, {due, due}, system, {}, std::move(stop));
    return found.empty() ? std::nullopt : std::optional(found.front());
}

QString occurrenceName(const IcalTime &due)
{
    return QString::fromLatin1(
        due.form == TimeForm::Zoned ? icalOfUtc(due.utc(*utcZone())) : icalOfTime(due));
}

std::optional<IcalTime> dueOfOccurrenceName(QStringView name)
{
    ZoneBook zones;
    const auto due = timeOfIcal(name.toLatin1(), std::nullopt, zones);
    return due && occurrenceName(*due) == name ? due : std::nullopt;
}

} // namespace velarc
