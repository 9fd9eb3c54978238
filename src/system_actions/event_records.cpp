#include "system_actions/event_records.h"

#include "base/async.h"

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using std::chrono::seconds;

// When an answer holds so many records, or has taken so long, a series gives no more than its first
// occurrences, as far as they are found with ease.
constexpr qsizetype kPlenty = 200'000;
constexpr std::chrono::seconds kLong(3);
constexpr ExpansionBounds kWhenPlenty{2'000, 20};

UtcWindow utcWindowOf(CalendarWindow window)
{
    const UtcTime first = utcOfInstant(window.start);
    // The end itself lies outside.
    const auto last = std::chrono::ceil<seconds>(window.end) - seconds(1);
    return {first, std::max(first, UtcTime(last))};
}

} // namespace

QString eventIdentifier(const QString &uid, const std::optional<IcalTime> &due)
{
    return due ? uid + u'#' + occurrenceName(*due) : uid;
}

CalendarEvent recordOf(
    const IcalSeries &series, const Occurrence &occurrence, const QString &calendarIdentifier)
{
    const IcalEvent &event = *occurrence.event;
    const bool isAllDay = event.start.form == TimeForm::Date;
    // One second before the midnight behind it: of an all-day event the last day.
    const UtcTime end = occurrence.end - seconds(isAllDay ? 1 : 0);
    return {eventIdentifier(series.uid, occurrence.due), calendarIdentifier, event.title,
        instantOfUtc(occurrence.start), instantOfUtc(end), isAllDay, event.location, event.notes};
}

CalendarStoreError eventIsGone()
{
    return CalendarStoreError(u"The event is no longer in the calendar."_s);
}

QList<EventReference> readingsOf(const QString &identifier)
{
    QList<EventReference> readings{{identifier, std::nullopt}};
    const qsizetype hash = identifier.lastIndexOf(u'#');
    if (hash > 0) {
        if (const auto due = dueOfOccurrenceName(QStringView(identifier).sliced(hash + 1))) {
            readings.append({identifier.first(hash), due});
        }
    }
    return readings;
}

std::optional<Occurrence> occurrenceOf(const IcalSeries &series, const std::optional<IcalTime> &due,
    const CalendarZone &system, std::stop_token stop)
{
    return due ? occurrenceDueAt(series, due->utc(system), system, std::move(stop))
               : firstOccurrence(series, system, std::move(stop));
}

RecordCollector::RecordCollector(CalendarWindow window, ZonePointer system, std::stop_token stop)
    : m_window(utcWindowOf(window))
    , m_system(std::move(system))
    , m_stop(std::move(stop))
    , m_soon(std::chrono::steady_clock::now() + kLong)
{
}

void RecordCollector::take(const IcalSeries &series, const QString &calendarIdentifier)
{
    throwIfStopped(m_stop);
    const bool isPlenty = m_records.size() >= kPlenty || std::chrono::steady_clock::now() >= m_soon;
    const ExpansionBounds bounds = isPlenty ? kWhenPlenty : ExpansionBounds();
    for (const Occurrence &occurrence :
        occurrencesIn(series, m_window, *m_system, bounds, m_stop)) {
        m_records.append(recordOf(series, occurrence, calendarIdentifier));
    }
}

} // namespace velarc
