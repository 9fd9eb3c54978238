#pragma once

// What the plugin for the desktop's calendar server offers: its calls, and texts in and out.
//
// The plugin is a library of its own, so that programs do without the server's libraries where
// there is no server. It throws nothing, and it is never unloaded.

#include <QByteArray>
#include <QList>
#include <QString>

#include <stop_token>

namespace velarc {

struct ServerCalendar
{
    QString identifier;
    QString title;
};

struct ServerCalendars
{
    QList<ServerCalendar> all;
    QString defaultIdentifier; // empty where there is none
};

// How a call went. A call that was stopped failed.
struct ServerOutcome
{
    bool hasFailed = false;
    bool isDenied = false; // somebody forbids to talk to the server
    QString message; // the server's own
};

// Worker thread; every call blocks until the server has answered or `stop` is requested.
class CalendarServer
{
public:
    CalendarServer() = default;
    virtual ~CalendarServer() = default;
    CalendarServer(const CalendarServer &) = delete;
    CalendarServer &operator=(const CalendarServer &) = delete;

    virtual ServerOutcome calendars(ServerCalendars &found, std::stop_token stop) = 0;

    // Takes a while for a calendar that is not.
    virtual ServerOutcome askWhetherWritable(
        const QString &calendar, bool &isWritable, std::stop_token stop) = 0;

    // The VEVENT components that `query`, in the server's language, selects.
    virtual ServerOutcome select(const QString &calendar, const QByteArray &query,
        QList<QByteArray> &components, std::stop_token stop) = 0;

    // All of one UID; none where the calendar does not know it.
    virtual ServerOutcome find(const QString &calendar, const QByteArray &uid,
        QList<QByteArray> &components, std::stop_token stop) = 0;

    // The VTIMEZONE component that the calendar knows under this name; empty if it knows none.
    virtual ServerOutcome zone(const QString &calendar, const QByteArray &name,
        QByteArray &component, std::stop_token stop) = 0;

    // `file` is a VCALENDAR with one event and the time zones that this names. All three fail for a
    // calendar that is read-only.
    virtual ServerOutcome create(
        const QString &calendar, const QByteArray &file, std::stop_token stop) = 0;
    virtual ServerOutcome modify(
        const QString &calendar, const QByteArray &file, std::stop_token stop) = 0;
    // `occurrence` is a RECURRENCE-ID; without it all of the UID goes.
    virtual ServerOutcome remove(const QString &calendar, const QByteArray &uid,
        const QByteArray &occurrence, std::stop_token stop) = 0;
};

} // namespace velarc

// The plugin's one symbol: a server that connects when it is first asked. The caller owns it.
extern "C" Q_DECL_EXPORT velarc::CalendarServer *velarcMakeCalendarServer();
