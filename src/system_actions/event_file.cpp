#include "system_actions/event_file.h"

#include <algorithm>

namespace velarc {

namespace {

IcalComponent *eventIn(IcalNode &node)
{
    auto *component = std::get_if<IcalComponent>(&node.content);
    return component != nullptr && component->name == "VEVENT" ? component : nullptr;
}

std::vector<std::size_t> numbersOf(const IcalSeries &series)
{
    std::vector<std::size_t> numbers;
    if (series.master) {
        numbers.push_back(series.master->number);
    }
    for (const IcalEvent &event : series.overrides) {
        numbers.push_back(event.number);
    }
    return numbers;
}

bool isOwnOverride(const Occurrence &occurrence)
{
    const IcalEvent &event = *occurrence.event;
    return event.recurrenceId && occurrence.due && !event.isForFollowingToo
        && icalOfTime(*event.recurrenceId) == icalOfTime(*occurrence.due);
}

} // namespace

std::optional<EventFile> EventFile::read(QByteArrayView bytes, const QString &name, ZoneBook &zones)
{
    auto file = readIcal(bytes);
    if (!file) {
        return std::nullopt;
    }
    return of(*std::move(file), name, zones);
}

EventFile EventFile::of(IcalComponent file, const QString &name, ZoneBook &zones)
{
    auto series = seriesOfIcal(file, name, zones);
    return {std::move(file), std::move(series)};
}

const IcalSeries *EventFile::find(const QString &uid) const
{
    const auto found = std::find_if(m_series.begin(), m_series.end(),
        [&](const IcalSeries &series) { return series.uid == uid; });
    return found == m_series.end() ? nullptr : &*found;
}

const IcalComponent &EventFile::change(const IcalSeries &series, const Occurrence &occurrence,
    const CalendarEvent &present, const CalendarEvent &wanted, const EditContext &context)
{
    IcalComponent &told = component(occurrence.event->number);
    if (!occurrence.due || isOwnOverride(occurrence)) {
        changeEvent(told, *occurrence.event, present, wanted, context);
        return told;
    }
    IcalComponent added = overrideOf(told, occurrence, context);
    changeEvent(added, *occurrence.event, present, wanted, context);
    return insertBehind(numbersOf(series).back(), std::move(added));
}

void EventFile::remove(
    const IcalSeries &series, const Occurrence &occurrence, const EditContext &context)
{
    if (!occurrence.due) {
        removeComponents({occurrence.event->number});
        return;
    }
    IcalSeries rest = series;
    if (rest.master) {
        rest.master->excluded.push_back(*occurrence.due);
    }
    if (isOwnOverride(occurrence)) {
        rest.overrides.erase(rest.overrides.begin() + (occurrence.event - series.overrides.data()));
    }
    const bool hasMore = rest.master || !rest.overrides.empty();
    if (!hasMore || !firstOccurrence(rest, *context.system, {})) {
        removeComponents(numbersOf(series));
        return;
    }
    if (series.master) {
        exclude(component(series.master->number), *occurrence.due, context);
    }
    if (isOwnOverride(occurrence)) {
        removeComponents({occurrence.event->number});
    }
}

bool EventFile::isEmpty() const
{
    const std::vector<const IcalComponent *> calendars = m_file.components("VCALENDAR");
    return std::all_of(calendars.begin(), calendars.end(), [](const IcalComponent *calendar) {
        return std::all_of(
            calendar->nodes.begin(), calendar->nodes.end(), [](const IcalNode &node) {
                const auto *component = std::get_if<IcalComponent>(&node.content);
                return component == nullptr || component->name == "VTIMEZONE";
            });
    });
}

// Calls `visit(calendar, index, number)` for each event until that gives true.
template <typename Visit> void EventFile::visitEvents(Visit visit)
{
    std::size_t number = 0;
    for (IcalNode &node : m_file.nodes) {
        auto *calendar = std::get_if<IcalComponent>(&node.content);
        if (calendar == nullptr || calendar->name != "VCALENDAR") {
            continue;
        }
        for (std::size_t index = 0; index < calendar->nodes.size(); ++index) {
            if (eventIn(calendar->nodes[index]) != nullptr && visit(*calendar, index, number++)) {
                return;
            }
        }
    }
}

// The numbers come from the file itself, so there is one.
IcalComponent &EventFile::component(std::size_t number)
{
    IcalComponent *found = nullptr;
    visitEvents([&](IcalComponent &calendar, std::size_t index, std::size_t at) {
        found = eventIn(calendar.nodes[index]);
        return at == number;
    });
    return *found;
}

void EventFile::removeComponents(const std::vector<std::size_t> &numbers)
{
    std::vector<std::pair<IcalComponent *, std::size_t>> places;
    visitEvents([&](IcalComponent &calendar, std::size_t index, std::size_t at) {
        if (std::find(numbers.begin(), numbers.end(), at) != numbers.end()) {
            places.emplace_back(&calendar, index);
        }
        return false;
    });
    for (auto place = places.rbegin(); place != places.rend(); ++place) {
        auto &[calendar, index] = *place;
        calendar->nodes.erase(calendar->nodes.begin() + static_cast<std::ptrdiff_t>(index));
    }
}

const IcalComponent &EventFile::insertBehind(std::size_t number, IcalComponent added)
{
    IcalComponent *inserted = nullptr;
    visitEvents([&](IcalComponent &calendar, std::size_t index, std::size_t at) {
        if (at == number) {
            const auto place = calendar.nodes.insert(
                calendar.nodes.begin() + static_cast<std::ptrdiff_t>(index) + 1,
                IcalNode{std::move(added)});
            inserted = eventIn(*place);
        }
        return at == number;
    });
    return *inserted;
}

} // namespace velarc
