#include "system_actions/ical_edit.h"

#include "system_actions/zone_definition.h"

#include <algorithm>
#include <array>

namespace velarc {

namespace {

using std::chrono::days;
using std::chrono::seconds;

// The times of a record as a file is to tell them.
struct WrittenTimes
{
    IcalTime start;
    IcalTime end; // of all-day events the day behind the last one
};

IcalTime dayOf(Instant instant, const CalendarZone &system)
{
    const IcalTime date{{}, TimeForm::Date, nullptr};
    return timeLike(date, utcOfInstant(instant), system);
}

WrittenTimes writtenTimes(const CalendarEvent &event, const IcalTime &startModel,
    const IcalTime &endModel, const CalendarZone &system)
{
    if (!event.isAllDay) {
        return {timeLike(startModel, utcOfInstant(event.startDate), system),
            timeLike(endModel, utcOfInstant(event.endDate), system)};
    }
    const IcalTime first = dayOf(event.startDate, system);
    IcalTime last = dayOf(event.endDate, system);
    last.wall = std::max(first.wall, last.wall) + days(1);
    return {first, last};
}

// An end that is the start is told by leaving it out.
void setTimes(IcalComponent &component, const WrittenTimes &times, const CalendarZone &system)
{
    component.set(timeProperty("DTSTART", times.start));
    component.removeAll("DURATION");
    if (times.start.utc(system) == times.end.utc(system)) {
        component.removeAll("DTEND");
    } else {
        component.set(timeProperty("DTEND", times.end));
    }
}

void setText(IcalComponent &component, const QByteArray &name, const QString &text)
{
    component.set(icalProperty(name, {}, icalOfText(text)));
}

void stamp(IcalComponent &component, const EditContext &context)
{
    const IcalProperty *sequence = component.find("SEQUENCE");
    const int number = sequence == nullptr ? 0 : sequence->value.trimmed().toInt();
    component.set(icalProperty("SEQUENCE", {}, QByteArray::number(std::max(number, 0) + 1)));
    component.set(icalProperty("DTSTAMP", {}, icalOfUtc(context.now)));
    component.set(icalProperty("LAST-MODIFIED", {}, icalOfUtc(context.now)));
}

// For a new event, and for one that was of whole days before.
IcalTime systemModel(const CalendarZone &system)
{
    const ZonePointer zone = system.name().isEmpty() ? utcZone() : databaseZone(system.name());
    return {{}, TimeForm::Zoned, zone ? zone : utcZone()};
}

const IcalTime kUtcModel{{}, TimeForm::Zoned, utcZone()};

IcalTime endModelOf(const IcalComponent &component, const IcalTime &start)
{
    ZoneBook zones;
    const IcalProperty *end = component.find("DTEND");
    const auto time = end == nullptr ? std::nullopt : timeOfIcal(*end, zones);
    const bool isOfOtherZone = time && time->form == TimeForm::Zoned && start.zone
        && time->zone->name() != start.zone->name();
    return isOfOtherZone ? *time : start;
}

} // namespace

EditContext editNow()
{
    return {systemZone(), utcOfInstant(std::chrono::system_clock::now())};
}

IcalComponent newEvent(const CalendarEvent &event, const QString &uid, const EditContext &context)
{
    IcalComponent component{"VEVENT", "BEGIN:VEVENT\r\n", "END:VEVENT\r\n", {}};
    setText(component, "UID", uid);
    component.set(icalProperty("DTSTAMP", {}, icalOfUtc(context.now)));
    component.set(icalProperty("CREATED", {}, icalOfUtc(context.now)));
    component.set(icalProperty("LAST-MODIFIED", {}, icalOfUtc(context.now)));
    const IcalTime model = systemModel(*context.system);
    setTimes(component, writtenTimes(event, model, model, *context.system), *context.system);
    setText(component, "SUMMARY", event.title);
    if (event.location) {
        setText(component, "LOCATION", *event.location);
    }
    if (event.notes) {
        setText(component, "DESCRIPTION", *event.notes);
    }
    return component;
}

QByteArray newCalendarFile(
    const IcalComponent &event, const CalendarEvent &record, const EditContext &context)
{
    QByteArray zone;
    for (const auto *name : {"DTSTART", "DTEND"}) {
        const IcalProperty *time = event.find(name);
        if (zone.isEmpty() && time != nullptr && time->parameter("TZID")) {
            zone = zoneDefinition(*context.system, utcOfInstant(record.startDate));
        }
    }
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\nPRODID:-//Tolmar//Velarc//EN\r\n" + zone
        + writeIcal(event) + "END:VCALENDAR\r\n";
}

void changeEvent(IcalComponent &component, const IcalEvent &event, const CalendarEvent &present,
    const CalendarEvent &wanted, const EditContext &context)
{
    if (wanted.title != present.title) {
        setText(component, "SUMMARY", wanted.title);
    }
    if (wanted.location && wanted.location != present.location) {
        setText(component, "LOCATION", *wanted.location);
    }
    if (wanted.notes && wanted.notes != present.notes) {
        setText(component, "DESCRIPTION", *wanted.notes);
        component.removeAll("X-ALT-DESC"); // the same text in another markup
    }
    const bool hasOtherTimes = wanted.startDate != present.startDate
        || wanted.endDate != present.endDate || wanted.isAllDay != present.isAllDay;
    if (hasOtherTimes) {
        const bool wasAllDay = event.start.form == TimeForm::Date;
        const IcalTime start = wasAllDay ? kUtcModel : event.start;
        const IcalTime end = wasAllDay ? kUtcModel : endModelOf(component, event.start);
        setTimes(component, writtenTimes(wanted, start, end, *context.system), *context.system);
    }
    stamp(component, context);
}

IcalComponent overrideOf(
    const IcalComponent &component, const Occurrence &occurrence, const EditContext &context)
{
    IcalComponent copy = component;
    for (const auto *name : {"RRULE", "RDATE", "EXDATE", "EXRULE", "RECURRENCE-ID"}) {
        copy.removeAll(name);
    }
    const IcalEvent &event = *occurrence.event;
    copy.add(timeProperty("RECURRENCE-ID", *occurrence.due));
    const IcalTime end =
        timeLike(endModelOf(component, event.start), occurrence.end, *context.system);
    setTimes(
        copy, {timeLike(event.start, occurrence.start, *context.system), end}, *context.system);
    return copy;
}

void exclude(IcalComponent &master, const IcalTime &due, const EditContext &context)
{
    master.add(timeProperty("EXDATE", due));
    stamp(master, context);
}

} // namespace velarc
