#include "system_actions/calendar_action_service.h"

#include "base/async.h"
#include "base/local_time.h"
#include "base/locale_text.h"
#include "base/text.h"
#include "system_actions/calendar_parser.h"

#include <algorithm>
#include <tuple>
#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using std::chrono::days;

namespace {

using StoreHandle = std::shared_ptr<CalendarStore>;

constexpr std::chrono::minutes kDefaultDelay = 1h;
constexpr std::chrono::minutes kDefaultLength = 30min;
constexpr days kSearchedBack{30};
constexpr days kSearchedAhead{365};

struct ListBounds
{
    qint64 ifAbsent;
    qint64 most;
};
constexpr ListBounds kDays{7, 90};
constexpr ListBounds kLimit{5, 25};

CalendarActionServiceError endBeforeStart()
{
    return CalendarActionServiceError::invalidInput(u"End date must be after start date."_s);
}

qint64 clamped(const std::optional<qint64> &asked, ListBounds bounds)
{
    return std::clamp(asked.value_or(bounds.ifAbsent), qint64{1}, bounds.most);
}

// A day of the calendar can be longer or shorter than 24 hours.
Instant daysFrom(Instant instant, days count)
{
    return addingDays(instant, count).value_or(instant + count);
}

CalendarActionEvent actionEventOf(const CalendarEvent &event)
{
    return {
        event.identifier, event.title, event.startDate, event.endDate, event.location, event.notes};
}

std::optional<QString> identifierOf(const CalendarEvent &event)
{
    return event.identifier.isEmpty() ? std::nullopt : std::optional(event.identifier);
}

QString titleOr(const QString &title, const QString &fallback)
{
    return isBlank(title) ? fallback : title;
}

QString sentence(const QString &beginning, const QString &title)
{
    return beginning + u" calendar event \""_s + title + u"\"."_s;
}

CalendarActionOutcome outcomeOf(QString summary, const CalendarEvent &event)
{
    return {std::move(summary), {actionEventOf(event)}, identifierOf(event)};
}

// By start, then by title, and the rest so that the order is always the same one. UTF-8 compares as
// code points do, UTF-16 does not.
bool standsBefore(const CalendarEvent &left, const CalendarEvent &right)
{
    if (left.startDate != right.startDate) {
        return left.startDate < right.startDate;
    }
    const auto rank = [](const CalendarEvent &event) {
        return std::pair(event.title.toUtf8(), event.identifier.toUtf8());
    };
    return rank(left) < rank(right);
}

QCoro::Task<void> ensureAccess(StoreHandle store, std::stop_token stop)
{
    const bool isGranted = co_await store->requestFullAccessToEvents(stop);
    if (!isGranted) {
        throw CalendarActionServiceError(CalendarFailure::AccessDenied);
    }
}

// --- Creating ------------------------------------------------------------------------------------

QString defaultTitle(const QString &text)
{
    return titleOr(trimmed(text).toString(), u"New Event"_s);
}

CalendarEvent newEvent(const ParsedCalendarInput &input, const QString &text, Instant now)
{
    CalendarEvent event;
    event.title = input.title.value_or(defaultTitle(text));
    event.startDate = input.startDate.value_or(now + kDefaultDelay);
    event.endDate = input.endDate.value_or(event.startDate + kDefaultLength);
    event.location = input.location;
    event.notes = input.notes;
    return event;
}

// The first writable calendar of that name; none where the name is unknown.
std::optional<CalendarInfo> calendarNamed(const QString &name, const QList<CalendarInfo> &calendars)
{
    const NameOrder order;
    const auto found =
        std::find_if(calendars.begin(), calendars.end(), [&](const CalendarInfo &calendar) {
            return calendar.allowsContentModifications && order.compare(calendar.title, name) == 0;
        });
    return found == calendars.end() ? std::nullopt : std::optional(*found);
}

QCoro::Task<CalendarInfo> calendarFor(
    std::optional<QString> name, StoreHandle store, std::stop_token stop)
{
    if (name) {
        const QList<CalendarInfo> calendars = co_await store->calendars(stop);
        if (auto named = calendarNamed(*name, calendars)) {
            co_return *std::move(named);
        }
    }
    auto byDefault = co_await store->defaultCalendarForNewEvents(stop);
    if (!byDefault) {
        throw CalendarActionServiceError(CalendarFailure::NoWritableCalendar);
    }
    co_return *std::move(byDefault);
}

QCoro::Task<CalendarActionOutcome> create(
    QString text, StoreHandle store, std::shared_ptr<const Clock> clock, std::stop_token stop)
{
    co_await ensureAccess(store, stop);
    const ParsedCalendarInput input = parseCalendarInput(text);
    CalendarEvent event = newEvent(input, text, clock->now());
    const QString title = event.title;
    if (event.endDate < event.startDate) {
        throw endBeforeStart();
    }
    const CalendarInfo calendar = co_await calendarFor(input.calendarName, store, stop);
    event.calendarIdentifier = calendar.identifier;
    throwIfStopped(stop);
    const CalendarEvent saved = co_await store->save(std::move(event), stop);
    co_return outcomeOf(sentence(u"Created"_s, titleOr(saved.title, title)), saved);
}

// --- Listing -------------------------------------------------------------------------------------

CalendarActionOutcome listing(QList<CalendarEvent> found, qint64 limit, qint64 dayCount)
{
    const auto count = std::min<qsizetype>(found.size(), limit);
    std::partial_sort(found.begin(), found.begin() + count, found.end(), &standsBefore);
    CalendarActionOutcome outcome;
    for (qsizetype index = 0; index < count; ++index) {
        outcome.events.append(actionEventOf(found.at(index)));
    }
    if (count == 0) {
        outcome.summary =
            u"No upcoming events found in the next "_s + QString::number(dayCount) + u" days."_s;
        return outcome;
    }
    outcome.summary = u"Found "_s + QString::number(count) + u" upcoming event"_s
        + (count == 1 ? u"."_s : u"s."_s);
    outcome.primaryEventID = identifierOf(found.first());
    return outcome;
}

QCoro::Task<CalendarActionOutcome> list(
    QString text, StoreHandle store, std::shared_ptr<const Clock> clock, std::stop_token stop)
{
    co_await ensureAccess(store, stop);
    const ParsedCalendarInput input = parseCalendarInput(text);
    const qint64 dayCount = clamped(input.days, kDays);
    const qint64 limit = clamped(input.limit, kLimit);
    const Instant now = clock->now();
    const CalendarWindow window{now, daysFrom(now, days(dayCount))};
    QList<CalendarEvent> found = co_await store->events(window, stop);
    co_return listing(std::move(found), limit, dayCount);
}

// --- Finding one ---------------------------------------------------------------------------------

std::optional<CalendarEvent> earliestTitled(
    const QString &title, const QList<CalendarEvent> &events)
{
    const NameOrder order;
    const CalendarEvent *earliest = nullptr;
    for (const CalendarEvent &event : events) {
        if (order.compare(event.title, title) == 0
            && (earliest == nullptr || standsBefore(event, *earliest))) {
            earliest = &event;
        }
    }
    return earliest == nullptr ? std::nullopt : std::optional(*earliest);
}

QCoro::Task<std::optional<CalendarEvent>> findEvent(
    ParsedCalendarInput input, StoreHandle store, Instant now, std::stop_token stop)
{
    const QString identifier = trimmed(input.eventID.value_or(QString())).toString();
    if (!identifier.isEmpty()) {
        co_return co_await store->eventWithIdentifier(identifier, stop);
    }
    const QString title = trimmed(input.title.value_or(QString())).toString();
    if (title.isEmpty()) {
        throw CalendarActionServiceError(CalendarFailure::MissingEventIdentifierOrTitle);
    }
    const CalendarWindow window{daysFrom(now, -kSearchedBack), daysFrom(now, kSearchedAhead)};
    const QList<CalendarEvent> events = co_await store->events(window, stop);
    co_return earliestTitled(title, events);
}

QCoro::Task<CalendarEvent> existingEvent(
    ParsedCalendarInput input, StoreHandle store, Instant now, std::stop_token stop)
{
    auto found = co_await findEvent(std::move(input), std::move(store), now, std::move(stop));
    if (!found) {
        throw CalendarActionServiceError(CalendarFailure::EventNotFound);
    }
    co_return *std::move(found);
}

// --- Editing and deleting ------------------------------------------------------------------------

QString shownTitle(const CalendarEvent &event)
{
    return titleOr(event.title, u"Untitled Event"_s);
}

void apply(const ParsedCalendarInput &input, CalendarEvent &event)
{
    event.title = input.title.value_or(event.title);
    event.startDate = input.startDate.value_or(event.startDate);
    if (input.endDate) {
        event.endDate = *input.endDate;
    } else if (input.startDate && event.endDate < event.startDate) {
        event.endDate = event.startDate + kDefaultLength;
    }
    if (input.location) {
        event.location = input.location;
    }
    if (input.notes) {
        event.notes = input.notes;
    }
}

QCoro::Task<CalendarActionOutcome> edit(
    QString text, StoreHandle store, std::shared_ptr<const Clock> clock, std::stop_token stop)
{
    co_await ensureAccess(store, stop);
    const ParsedCalendarInput input = parseCalendarInput(text);
    CalendarEvent event = co_await existingEvent(input, store, clock->now(), stop);
    apply(input, event);
    if (event.endDate < event.startDate) {
        throw endBeforeStart();
    }
    throwIfStopped(stop);
    const CalendarEvent saved = co_await store->save(std::move(event), stop);
    co_return outcomeOf(sentence(u"Updated"_s, shownTitle(saved)), saved);
}

QCoro::Task<CalendarActionOutcome> removeFound(
    QString text, StoreHandle store, std::shared_ptr<const Clock> clock, std::stop_token stop)
{
    co_await ensureAccess(store, stop);
    const ParsedCalendarInput input = parseCalendarInput(text);
    const CalendarEvent event = co_await existingEvent(input, store, clock->now(), stop);
    CalendarActionOutcome outcome;
    outcome.summary = sentence(u"Deleted"_s, shownTitle(event));
    outcome.primaryEventID = identifierOf(event);
    throwIfStopped(stop);
    co_await store->remove(event, stop);
    co_return outcome;
}

} // namespace

std::size_t qHash(const CalendarActionEvent &event, std::size_t seed)
{
    const auto count = [](Instant instant) { return instant.time_since_epoch().count(); };
    return qHashMulti(seed, event.identifier, event.title, count(event.startDate),
        count(event.endDate), event.location.value_or(QString()), event.notes.value_or(QString()));
}

CalendarActionService::CalendarActionService(
    std::shared_ptr<CalendarStore> eventStore, std::shared_ptr<const Clock> clock)
    : m_eventStore(std::move(eventStore)), m_clock(std::move(clock))
{
}

QCoro::Task<CalendarActionOutcome> CalendarActionService::createEvent(
    QString text, std::stop_token stop)
{
    return create(std::move(text), m_eventStore, m_clock, std::move(stop));
}

QCoro::Task<CalendarActionOutcome> CalendarActionService::listUpcomingEvents(
    QString text, std::stop_token stop)
{
    return list(std::move(text), m_eventStore, m_clock, std::move(stop));
}

QCoro::Task<CalendarActionOutcome> CalendarActionService::editEvent(
    QString text, std::stop_token stop)
{
    return edit(std::move(text), m_eventStore, m_clock, std::move(stop));
}

QCoro::Task<CalendarActionOutcome> CalendarActionService::deleteEvent(
    QString text, std::stop_token stop)
{
    return removeFound(std::move(text), m_eventStore, m_clock, std::move(stop));
}

} // namespace velarc
