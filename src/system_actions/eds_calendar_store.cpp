#include "system_actions/eds_calendar_store.h"

#include "base/async.h"
#include "base/uuid.h"

#include <QCoreApplication>
#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QLibrary>

#include <algorithm>
#include <set>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

void check(const ServerOutcome &outcome, const std::stop_token &stop)
{
    throwIfStopped(stop);
    if (outcome.hasFailed) {
        throw CalendarStoreError(outcome.message);
    }
}

QString titleOrder(const ServerCalendar &calendar)
{
    return calendar.title.toCaseFolded();
}

// The names of a service carry a number that grows with its interface.
bool isService(const QString &name, QLatin1StringView service)
{
    const QString prefix = u"org.gnome.evolution.dataserver."_s + service;
    return name.size() > prefix.size() && name.startsWith(prefix)
        && name.at(prefix.size()).isDigit();
}

QStringList namesFromBus(const QDBusConnection &bus, const QString &method)
{
    constexpr int kMilliseconds = 5000;
    const QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method);
    const QDBusMessage answer = bus.call(question, QDBus::Block, kMilliseconds);
    return answer.type() == QDBusMessage::ReplyMessage ? answer.arguments().value(0).toStringList()
                                                       : QStringList();
}

// The server selects by UTC what has no zone of its own, so a day more is asked for on both sides.
// What recurs is always asked for: after a change to one occurrence the server looks for it at its
// old time.
QByteArray queryFor(CalendarWindow window)
{
    constexpr std::chrono::days kToBeSure(1);
    const QByteArray from = icalOfUtc(utcOfInstant(window.start) - kToBeSure);
    const QByteArray to = icalOfUtc(utcOfInstant(window.end) + kToBeSure);
    return "(or (has-recurrences?) (occur-in-time-range? (make-time \"" + from + "\") (make-time \""
        + to + "\")))";
}

// The names of zones that the components use.
std::set<QByteArray> zoneNamesIn(const IcalComponent &events)
{
    std::set<QByteArray> names;
    for (const IcalComponent *event : events.components("VEVENT")) {
        for (const auto *property : {"DTSTART", "DTEND", "RECURRENCE-ID", "RDATE", "EXDATE"}) {
            for (const IcalProperty *time : event->all(property)) {
                if (auto name = time->parameter("TZID")) {
                    names.insert(*std::move(name));
                }
            }
        }
    }
    return names;
}

QByteArray calendarFile(const QByteArray &components)
{
    return "BEGIN:VCALENDAR\r\nVERSION:2.0\r\n" + components + "END:VCALENDAR\r\n";
}

} // namespace

SessionBus askSessionBus()
{
    const QDBusConnection bus = QDBusConnection::sessionBus();
    if (!bus.isConnected()) {
        return {};
    }
    const QStringList names =
        namesFromBus(bus, u"ListActivatableNames"_s) + namesFromBus(bus, u"ListNames"_s);
    const auto has = [&](QLatin1StringView service) {
        return std::any_of(names.begin(), names.end(),
            [&](const QString &name) { return isService(name, service); });
    };
    return {true, has("Sources"_L1) && has("Calendar"_L1)};
}

std::unique_ptr<CalendarServer> loadCalendarServer()
{
    using Make = CalendarServer *(*)();
    const QString path =
        QDir(QCoreApplication::applicationDirPath())
            .absoluteFilePath(QStringLiteral(VELARC_PLUGINS) + u"/velarc-calendar-server.so"_s);
    QLibrary library(path);
    const auto make = reinterpret_cast<Make>(library.resolve("velarcMakeCalendarServer"));
    return std::unique_ptr<CalendarServer>(make == nullptr ? nullptr : make());
}

EdsCalendars::EdsCalendars(std::unique_ptr<CalendarServer> server) : m_server(std::move(server)) {}

bool EdsCalendars::requestAccess(std::stop_token stop)
{
    ServerCalendars found;
    const ServerOutcome outcome = m_server->calendars(found, stop);
    throwIfStopped(stop);
    if (outcome.hasFailed && outcome.isDenied) {
        return false;
    }
    check(outcome, stop);
    return true;
}

QList<CalendarInfo> EdsCalendars::calendars(std::stop_token stop)
{
    QList<CalendarInfo> calendars;
    for (const ServerCalendar &calendar : allCalendars(stop).all) {
        calendars.append(infoOf(calendar, stop));
    }
    return calendars;
}

std::optional<CalendarInfo> EdsCalendars::defaultCalendar(std::stop_token stop)
{
    const ServerCalendars found = allCalendars(stop);
    for (const ServerCalendar &calendar : found.all) {
        if (calendar.identifier == found.defaultIdentifier) {
            return infoOf(calendar, stop);
        }
    }
    return std::nullopt;
}

QList<CalendarEvent> EdsCalendars::events(CalendarWindow window, std::stop_token stop)
{
    RecordCollector collector(window, systemZone(), stop);
    const QByteArray query = queryFor(window);
    EachCalendar each;
    for (const ServerCalendar &calendar : allCalendars(stop).all) {
        each.attempt([&] {
            QList<QByteArray> components;
            check(m_server->select(calendar.identifier, query, components, stop), stop);
            const EventFile file = fileOf(calendar.identifier, components, stop);
            for (const IcalSeries &series : file.series()) {
                collector.take(series, calendar.identifier);
            }
        });
    }
    if (!each.hasSucceeded()) {
        each.throwIfFailed();
    }
    return collector.finish();
}

std::optional<CalendarEvent> EdsCalendars::event(const QString &identifier, std::stop_token stop)
{
    std::optional<CalendarEvent> found;
    EachCalendar each;
    for (const ServerCalendar &calendar : allCalendars(stop).all) {
        each.attempt([&] { found = record(calendar.identifier, identifier, stop); });
        if (found) {
            return found;
        }
    }
    each.throwIfFailed();
    return std::nullopt;
}

CalendarEvent EdsCalendars::save(const CalendarEvent &event, std::stop_token stop)
{
    if (event.identifier.isEmpty()) {
        return create(event, stop);
    }
    const QString &calendar = event.calendarIdentifier;
    Place place = placeOf(event, stop);
    const EditContext context = editNow();
    const CalendarEvent present = recordOf(*place.series, place.occurrence, calendar);
    const IcalComponent changed =
        place.file.change(*place.series, place.occurrence, present, event, context);
    IcalComponent events;
    events.nodes.push_back({changed});
    const QByteArray text = calendarFile(zonesOf(calendar, events, stop) + writeIcal(changed));
    check(m_server->modify(calendar, text, stop), stop);
    return record(calendar, event.identifier, stop).value_or(event);
}

void EdsCalendars::remove(const CalendarEvent &event, std::stop_token stop)
{
    Place place = placeOf(event, stop);
    const QByteArray uid = place.series->uid.toUtf8();
    QByteArray occurrence;
    if (place.occurrence.due) {
        occurrence = icalOfTime(*place.occurrence.due);
        place.file.remove(*place.series, place.occurrence, editNow());
        if (place.file.isEmpty()) {
            occurrence.clear(); // it was the last one
        }
    }
    check(m_server->remove(event.calendarIdentifier, uid, occurrence, stop), stop);
}

ServerCalendars EdsCalendars::allCalendars(const std::stop_token &stop)
{
    ServerCalendars found;
    check(m_server->calendars(found, stop), stop);
    std::stable_sort(found.all.begin(), found.all.end(),
        [](const ServerCalendar &left, const ServerCalendar &right) {
            return titleOrder(left) < titleOrder(right);
        });
    return found;
}

// What cannot be reached cannot be written; whoever uses it is told why it fails.
CalendarInfo EdsCalendars::infoOf(const ServerCalendar &calendar, const std::stop_token &stop)
{
    bool isWritable = false;
    static_cast<void>(m_server->askWhetherWritable(calendar.identifier, isWritable, stop));
    throwIfStopped(stop);
    return {calendar.identifier, calendar.title, isWritable};
}

EventFile EdsCalendars::fileOf(
    const QString &calendar, const QList<QByteArray> &components, const std::stop_token &stop)
{
    IcalComponent events{"VCALENDAR", {}, {}, {}};
    for (const QByteArray &text : components) {
        throwIfStopped(stop);
        auto read = readIcal(text);
        for (IcalNode &node : read ? read->nodes : std::vector<IcalNode>()) {
            events.nodes.push_back(std::move(node));
        }
    }
    if (const auto zones = readIcal(zonesOf(calendar, events, stop))) {
        events.nodes.insert(events.nodes.begin(), zones->nodes.begin(), zones->nodes.end());
    }
    IcalComponent file;
    file.nodes.push_back({std::move(events)});
    return EventFile::of(std::move(file), calendar, m_zones);
}

// What the time zone database knows need not be asked for.
QByteArray EdsCalendars::zonesOf(
    const QString &calendar, const IcalComponent &events, const std::stop_token &stop)
{
    QByteArray definitions;
    for (const QByteArray &name : zoneNamesIn(events)) {
        QByteArray definition;
        if (!m_zones.isInDatabase(name)) {
            check(m_server->zone(calendar, name, definition, stop), stop);
        }
        definitions += definition;
    }
    return definitions;
}

std::optional<EdsCalendars::Place> EdsCalendars::find(
    const QString &calendar, const QString &identifier, const std::stop_token &stop)
{
    for (const EventReference &reference : readingsOf(identifier)) {
        QList<QByteArray> components;
        check(m_server->find(calendar, reference.uid.toUtf8(), components, stop), stop);
        EventFile file = fileOf(calendar, components, stop);
        const IcalSeries *series = file.find(reference.uid);
        const auto occurrence = series == nullptr
            ? std::nullopt
            : occurrenceOf(*series, reference.due, *systemZone(), stop);
        if (occurrence) {
            return Place{std::move(file), series, *occurrence};
        }
    }
    return std::nullopt;
}

EdsCalendars::Place EdsCalendars::placeOf(const CalendarEvent &event, const std::stop_token &stop)
{
    auto place = find(event.calendarIdentifier, event.identifier, stop);
    if (!place) {
        throw eventIsGone();
    }
    return *std::move(place);
}

std::optional<CalendarEvent> EdsCalendars::record(
    const QString &calendar, const QString &identifier, const std::stop_token &stop)
{
    const auto place = find(calendar, identifier, stop);
    return place ? std::optional(recordOf(*place->series, place->occurrence, calendar))
                 : std::nullopt;
}

CalendarEvent EdsCalendars::create(const CalendarEvent &event, const std::stop_token &stop)
{
    const QString uid = uuidText(newUuid());
    const EditContext context = editNow();
    const QByteArray file = newCalendarFile(newEvent(event, uid, context), event, context);
    check(m_server->create(event.calendarIdentifier, file, stop), stop);
    CalendarEvent created = event;
    created.identifier = uid;
    return record(event.calendarIdentifier, uid, stop).value_or(created);
}

} // namespace velarc
