// The choice between the stores in real sessions; each suite runs in the one that it is written
// for.

#include "calendar_worlds.h"

#include "fakes/fake_clock.h"
#include "system_actions/calendar_action_service.h"
#include "system_actions/calendar_backend.h"
#include "system_actions/calendar_store_choice.h"
#include "system_actions/eds_calendar_store.h"

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDir>
#include <QFile>

#include <csignal>

namespace velarc {

namespace {

const QString kChoiceFile = u"/velarc/calendars"_s; // in the folder for state

QString stateFile()
{
    return qEnvironmentVariable("XDG_STATE_HOME") + kChoiceFile;
}

QString folderOfEvents()
{
    return qEnvironmentVariable("XDG_DATA_HOME") + u"/velarc/calendars/Personal"_s;
}

CalendarEvent newEvent(CalendarStore &store)
{
    CalendarEvent event;
    event.calendarIdentifier = outcomeOf(store.defaultCalendarForNewEvents({})).value().identifier;
    event.title = u"Somewhere"_s;
    event.startDate = utc("2025-05-01 12:00");
    event.endDate = utc("2025-05-01 13:00");
    return outcomeOf(store.save(event, {}));
}

QString messageOf(const std::function<void()> &call)
{
    try {
        call();
    } catch (const UserFacingError &error) {
        return error.message();
    }
    return {};
}

QVariant askBus(const QString &method, const QString &name)
{
    QDBusMessage question = QDBusMessage::createMethodCall(
        u"org.freedesktop.DBus"_s, u"/org/freedesktop/DBus"_s, u"org.freedesktop.DBus"_s, method);
    if (!name.isEmpty()) {
        question.setArguments({name});
    }
    return QDBusConnection::sessionBus().call(question).arguments().value(0);
}

// The process that serves calendars, which runs by then.
pid_t serverProcess()
{
    for (const QString &name : askBus(u"ListNames"_s, {}).toStringList()) {
        if (name.startsWith(u"org.gnome.evolution.dataserver.Calendar"_s)) {
            return static_cast<pid_t>(askBus(u"GetConnectionUnixProcessID"_s, name).toUInt());
        }
    }
    ADD_FAILURE() << "no server runs";
    return 0;
}

TEST(CalendarOnDesktop, firstEventGoesToTheServerAndSettlesTheChoice)
{
    EXPECT_TRUE(askSessionBus().hasCalendarServer);
    const auto store = makeCalendarStore();
    EXPECT_TRUE(outcomeOf(store->requestFullAccessToEvents({})));
    const CalendarEvent event = newEvent(*store);
    EXPECT_EQ(readFile(stateFile()), "server\n");
    EXPECT_FALSE(QFile::exists(folderOfEvents()));
    EXPECT_EQ(outcomeOf(makeCalendarStore()->eventWithIdentifier(event.identifier, {})), event);
}

TEST(CalendarOnDesktop, callOfAServerThatHangsEndsAtItsBound)
{
    BackgroundCalendarStore store(
        std::make_shared<EdsCalendars>(loadCalendarServer()), std::chrono::milliseconds(500));
    const CalendarWindow window{utc("2025-01-01 00:00"), utc("2026-01-01 00:00")};
    static_cast<void>(outcomeOf(store.events(window, {})));
    const pid_t server = serverProcess();
    ASSERT_EQ(kill(server, SIGSTOP), 0);
    EXPECT_EQ(messageOf([&] { static_cast<void>(outcomeOf(store.events(window, {}))); }),
        u"The calendar does not answer."_s);
    ASSERT_EQ(kill(server, SIGCONT), 0);
    EXPECT_NO_THROW(static_cast<void>(outcomeOf(store.events(window, {}))));
}

TEST(CalendarOnDesktop, serverThatDiedIsStartedAgain)
{
    const auto store = makeCalendarStore();
    const CalendarEvent event = newEvent(*store);
    ASSERT_EQ(kill(serverProcess(), SIGKILL), 0);
    // What is lost with it may be told once.
    static_cast<void>(messageOf(
        [&] { static_cast<void>(outcomeOf(store->eventWithIdentifier(event.identifier, {}))); }));
    EXPECT_EQ(outcomeOf(store->eventWithIdentifier(event.identifier, {})), event);
}

TEST(CalendarDenied, accessIsNotGranted)
{
    const auto store = makeCalendarStore();
    EXPECT_FALSE(outcomeOf(store->requestFullAccessToEvents({})));
    EXPECT_NE(messageOf([&] { static_cast<void>(outcomeOf(store->calendars({}))); }), QString());
    EXPECT_FALSE(QFile::exists(folderOfEvents()));
}

// The server's own calendar is switched off before the server starts.
class CalendarWithoutDefault : public testing::Test
{
protected:
    CalendarWithoutDefault()
    {
        writeFile(qEnvironmentVariable("XDG_CONFIG_HOME")
                + u"/evolution/sources/system-calendar.source"_s,
            "[Data Source]\nDisplayName=Personal\nEnabled=false\nParent=local-stub\n"
            "[Calendar]\nBackendName=local\n");
    }
};

TEST_F(CalendarWithoutDefault, serverHasNoWritableCalendar)
{
    const auto store = std::make_shared<BackgroundCalendarStore>(
        std::make_shared<EdsCalendars>(loadCalendarServer()));
    EXPECT_EQ(outcomeOf(store->defaultCalendarForNewEvents({})), std::nullopt);
    CalendarActionService service(store, std::make_shared<FakeClock>());
    EXPECT_EQ(
        messageOf([&] { static_cast<void>(outcomeOf(service.createEvent(u"title: x"_s, {}))); }),
        u"No writable calendar is available."_s);
}

TEST_F(CalendarWithoutDefault, firstEventGoesToTheFolder)
{
    EXPECT_TRUE(askSessionBus().hasCalendarServer);
    const CalendarEvent event = newEvent(*makeCalendarStore());
    EXPECT_EQ(readFile(stateFile()), "folder\n");
    EXPECT_TRUE(QFile::exists(folderOfEvents() + u'/' + event.identifier + u".ics"_s));
    ASSERT_TRUE(QFile::remove(stateFile()));
}

TEST(CalendarWithoutServer, firstEventGoesToTheFolderAndSettlesTheChoice)
{
    const SessionBus bus = askSessionBus();
    EXPECT_TRUE(bus.isThere);
    EXPECT_FALSE(bus.hasCalendarServer);
    const auto store = makeCalendarStore();
    const CalendarEvent event = newEvent(*store);
    EXPECT_EQ(readFile(stateFile()), "folder\n");
    EXPECT_TRUE(QFile::exists(folderOfEvents() + u'/' + event.identifier + u".ics"_s));
    ASSERT_TRUE(QFile::remove(stateFile()));
}

TEST(CalendarWithoutServer, serverThatWasChosenBeforeIsMissed)
{
    writeFile(stateFile(), "server\n");
    const auto store = makeCalendarStore();
    EXPECT_EQ(messageOf([&] { static_cast<void>(newEvent(*store)); }),
        u"The calendar server that holds your events cannot be reached."_s);
    ASSERT_TRUE(QFile::remove(stateFile()));
}

TEST(CalendarWithoutBus, eventsGoToTheFolderAndNothingIsSettled)
{
    EXPECT_FALSE(askSessionBus().isThere);
    const auto store = makeCalendarStore();
    const CalendarEvent event = newEvent(*store);
    EXPECT_TRUE(QFile::exists(folderOfEvents() + u'/' + event.identifier + u".ics"_s));
    EXPECT_FALSE(QFile::exists(stateFile()));
}

} // namespace

} // namespace velarc
