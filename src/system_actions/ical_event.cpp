#include "system_actions/ical_event.h"

#include <algorithm>
#include <map>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using std::chrono::days;
using std::chrono::seconds;

constexpr WallTime kFirstStart = std::chrono::local_days(std::chrono::year(1600) / 1 / 1);
constexpr WallTime kLastStart = std::chrono::local_days(std::chrono::year(2261) / 1 / 1);

std::optional<QString> textOf(const IcalComponent &component, QByteArrayView name)
{
    const IcalProperty *property = component.find(name);
    QString text = property == nullptr ? QString() : textOfIcal(property->value);
    return text.isEmpty() ? std::nullopt : std::optional(std::move(text));
}

std::optional<IcalTime> timeIn(const IcalComponent &component, QByteArrayView name, ZoneBook &zones)
{
    const IcalProperty *property = component.find(name);
    return property == nullptr ? std::nullopt : timeOfIcal(*property, zones);
}

// Some programs leave out the zone of what refers to a series.
IcalTime inZoneOf(IcalTime time, const IcalTime &start)
{
    if (time.form == TimeForm::Floating && start.form == TimeForm::Zoned) {
        time.form = start.form;
        time.zone = start.zone;
    }
    return time;
}

// A date stands for the occurrence of that day; a time of an all-day series for its date.
IcalTime asSlotOf(const IcalTime &time, const IcalTime &start)
{
    const auto day = std::chrono::floor<days>(time.wall);
    if (start.form == TimeForm::Date) {
        return {day, start.form, nullptr};
    }
    if (time.form == TimeForm::Date) {
        return {day + (start.wall - std::chrono::floor<days>(start.wall)), start.form, start.zone};
    }
    return inZoneOf(time, start);
}

IcalDuration between(const IcalTime &start, const IcalTime &writtenEnd)
{
    const IcalTime end = inZoneOf(writtenEnd, start);
    if (start.form == TimeForm::Date) {
        return {std::chrono::floor<days>(end.wall) - std::chrono::floor<days>(start.wall), {}};
    }
    const bool bothHaveZones = start.zone && end.zone;
    return {{},
        bothHaveZones ? end.zone->utcTimeOf(end.wall) - start.zone->utcTimeOf(start.wall)
                      : end.wall - start.wall};
}

IcalDuration lengthOf(const IcalComponent &component, const IcalTime &start, ZoneBook &zones)
{
    IcalDuration length;
    if (const auto end = timeIn(component, "DTEND", zones)) {
        length = between(start, *end);
    } else if (const IcalProperty *duration = component.find("DURATION")) {
        length = durationOfIcal(duration->value).value_or(IcalDuration());
    }
    length.days = std::max(length.days, days(start.form == TimeForm::Date ? 1 : 0));
    length.time =
        start.form == TimeForm::Date ? seconds::zero() : std::max(length.time, seconds::zero());
    return length;
}

void readRules(IcalEvent &event, const IcalComponent &component, ZoneBook &zones)
{
    constexpr std::size_t kMostRules = 10;
    for (const IcalProperty *property : component.all("RRULE")) {
        auto rule = ruleOfIcal(property->value, zones);
        if (rule && event.rules.size() < kMostRules) {
            event.rules.push_back(*std::move(rule));
        }
    }
}

// An RDATE may be a period: a start, and an end or a duration behind a slash.
void readAdded(IcalEvent &event, const IcalProperty &property, ZoneBook &zones)
{
    const auto zone = property.parameter("TZID");
    for (const QByteArray &value : property.value.split(',')) {
        const qsizetype slash = value.indexOf('/');
        const auto start = timeOfIcal(slash < 0 ? value : value.left(slash), zone, zones);
        if (!start) {
            continue;
        }
        std::optional<IcalDuration> length;
        if (slash >= 0) {
            const QByteArray rest = value.sliced(slash + 1);
            const auto end = timeOfIcal(rest, zone, zones);
            length = end ? between(*start, *end) : durationOfIcal(rest);
        }
        event.added.push_back({asSlotOf(*start, event.start), length});
    }
}

void readExcluded(IcalEvent &event, const IcalProperty &property, ZoneBook &zones)
{
    const auto zone = property.parameter("TZID");
    for (const QByteArray &value : property.value.split(',')) {
        if (const auto time = timeOfIcal(value, zone, zones)) {
            event.excluded.push_back(inZoneOf(*time, event.start));
        }
    }
}

void readRecurrenceId(IcalEvent &event, const IcalComponent &component, ZoneBook &zones)
{
    if (const IcalProperty *property = component.find("RECURRENCE-ID")) {
        event.recurrenceId = timeOfIcal(*property, zones);
        event.isForFollowingToo =
            property->parameter("RANGE").value_or(QByteArray()).toUpper() == "THISANDFUTURE";
    }
}

// Overrides find their master wherever it stands in the file.
class SeriesCollector
{
public:
    void take(IcalEvent event)
    {
        const bool isOverride = event.recurrenceId.has_value();
        auto [place, isNew] = m_places.try_emplace(event.uid, m_series.size());
        if (!isNew && !isOverride && m_series[place->second].master) {
            place->second = m_series.size(); // somebody else's event of the same name
            isNew = true;
        }
        if (isNew) {
            m_series.push_back({event.uid, {}, {}});
        }
        IcalSeries &series = m_series[place->second];
        if (isOverride) {
            series.overrides.push_back(std::move(event));
        } else {
            series.master = std::move(event);
        }
    }

    [[nodiscard]] std::vector<IcalSeries> finish()
    {
        for (IcalSeries &series : m_series) {
            for (IcalEvent &event : series.overrides) {
                if (series.master) {
                    event.recurrenceId = asSlotOf(*event.recurrenceId, series.master->start);
                }
            }
        }
        return std::move(m_series);
    }

private:
    std::vector<IcalSeries> m_series;
    std::map<QString, std::size_t> m_places;
};

} // namespace

std::optional<IcalEvent> eventOfIcal(const IcalComponent &component, ZoneBook &zones)
{
    const auto start = timeIn(component, "DTSTART", zones);
    if (!start || start->wall < kFirstStart || start->wall >= kLastStart) {
        return std::nullopt;
    }
    IcalEvent event;
    event.start = *start;
    event.length = lengthOf(component, *start, zones);
    event.uid = textOf(component, "UID").value_or(QString());
    event.title = textOf(component, "SUMMARY").value_or(QString());
    event.location = textOf(component, "LOCATION");
    event.notes = textOf(component, "DESCRIPTION");
    const IcalProperty *status = component.find("STATUS");
    event.isCancelled = status != nullptr && status->value.trimmed().toUpper() == "CANCELLED";
    readRecurrenceId(event, component, zones);
    if (event.recurrenceId) {
        return event;
    }
    readRules(event, component, zones);
    for (const IcalProperty *property : component.all("RDATE")) {
        readAdded(event, *property, zones);
    }
    for (const IcalProperty *property : component.all("EXDATE")) {
        readExcluded(event, *property, zones);
    }
    return event;
}

std::vector<const IcalComponent *> eventComponents(const IcalComponent &file)
{
    std::vector<const IcalComponent *> found;
    for (const IcalComponent *calendar : file.components("VCALENDAR")) {
        const auto events = calendar->components("VEVENT");
        found.insert(found.end(), events.begin(), events.end());
    }
    return found;
}

std::vector<IcalSeries> seriesOfIcal(
    const IcalComponent &file, const QString &fileName, ZoneBook &zones)
{
    SeriesCollector series;
    std::size_t number = 0;
    for (const IcalComponent *calendar : file.components("VCALENDAR")) {
        zones.openCalendar(*calendar);
        for (const IcalComponent *component : calendar->components("VEVENT")) {
            if (auto event = eventOfIcal(*component, zones)) {
                event->number = number;
                if (event->uid.isEmpty()) {
                    event->uid = fileName + u'/' + QString::number(number);
                }
                series.take(*std::move(event));
            }
            ++number;
        }
    }
    return series.finish();
}

} // namespace velarc
