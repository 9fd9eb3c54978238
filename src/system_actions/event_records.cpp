#include "system_actions/event_records.h"

#include "base/async.h"

#include <ctime>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using std::chrono::seconds;

// When an answer holds so many records, or has cost so much, a series gives no more than its first
// occurrences in the window, as far as they are found with ease: more than are ever listed.
constexpr qsizetype kPlenty = 200'000;
constexpr seconds kMostCost(3);
constexpr ExpansionBounds kWhenPlenty{2'000, 30};

// Of the thread alone, so that what else runs on the machine changes no answer.
std::chrono::nanoseconds costSoFar()
{
    timespec time{};
    clock_gettime(CLOCK_THREAD_CPUTIME_ID, &time);
    return seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
}

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
    : m_window(utcWindowOf(window)), m_system(std::move(system)), m_stop(std::move(stop))
{
}

void RecordCollector::take(const IcalSeries &series, const QString &calendarIdentifier)
{
    throwIfStopped(m_stop);
    if (!m_most) {
        m_most = costSoFar() + kMostCost; // reading the calendar does not count
    }
    constexpr int kBetweenQuestions = 64; // which cost more than most series do
    if (++m_taken % kBetweenQuestions == 0 && !m_isPlenty) {
        m_isPlenty = m_records.size() >= kPlenty || costSoFar() >= *m_most;
    }
    const ExpansionBounds bounds = m_isPlenty ? kWhenPlenty : ExpansionBounds();
    for (const Occurrence &occurrence :
        occurrencesIn(series, m_window, *m_system, bounds, m_stop)) {
        m_records.append(recordOf(series, occurrence, calendarIdentifier));
    }
}

} // namespace velarc
