#include "calendar_worlds.h"

#include "fakes/fake_clock.h"
#include "support/cpu_time.h"
#include "support/environment.h"
#include "system_actions/calendar_action_service.h"
#include "system_actions/vdir_calendar_store.h"

#include <QDir>
#include <QFile>

#include <gmock/gmock.h>
#include <sys/resource.h>
#include <sys/stat.h>
#include <unistd.h>

#include <csignal>

namespace velarc {

namespace {

using ::testing::ElementsAre;
using ::testing::SizeIs;
using ::testing::UnorderedElementsAre;

const QByteArray kPlain = "UID:plain\r\nDTSTAMP:20250101T000000Z\r\nSUMMARY:Plain\r\n"
                          "DTSTART:20250501T120000Z\r\nDTEND:20250501T130000Z\r\n";

class VdirCalendarStore : public testing::Test
{
protected:
    FolderWorld world;
    VdirCalendars store{world.root()};

    [[nodiscard]] QList<CalendarEvent> events() const
    {
        return const_cast<VdirCalendars &>(store).events(
            {utc("2025-01-01 00:00"), utc("2026-01-01 00:00")}, {});
    }

    [[nodiscard]] QStringList titles() const
    {
        QStringList found;
        for (const CalendarEvent &event : events()) {
            found.append(event.title);
        }
        return found;
    }

    CalendarEvent make(const QString &title)
    {
        CalendarEvent event;
        event.calendarIdentifier = store.defaultCalendar({}).value().identifier;
        event.title = title;
        event.startDate = utc("2025-05-01 12:00");
        event.endDate = utc("2025-05-01 13:00");
        return store.save(event, {});
    }

    [[nodiscard]] QStringList files() const
    {
        return QDir(world.personal()).entryList(QDir::Files | QDir::Hidden | QDir::System);
    }

    template <typename Call> static QString failureOf(Call call)
    {
        try {
            call();
            return {};
        } catch (const CalendarStoreError &error) {
            return error.message();
        }
    }

    void close(const QString &calendar, QFile::Permissions permissions) const
    {
        ASSERT_TRUE(QFile::setPermissions(world.root() + u'/' + calendar, permissions));
    }
};

TEST_F(VdirCalendarStore, lookingForEventsMakesNothing)
{
    EXPECT_TRUE(events().isEmpty());
    EXPECT_EQ(store.event(u"x"_s, {}), std::nullopt);
    EXPECT_FALSE(QDir(world.root()).exists());
}

TEST_F(VdirCalendarStore, newEventIsAFileForItsUserAlone)
{
    const CalendarEvent event = make(u"Private"_s);
    ASSERT_THAT(files(), ElementsAre(event.identifier + u".ics"_s));
    for (const auto &[path, mode] : {std::pair(world.personal() + u'/' + files()[0], 0600U),
             std::pair(world.personal(), 0700U), std::pair(world.root(), 0700U)}) {
        struct stat status = {};
        ASSERT_EQ(stat(QFile::encodeName(path).constData(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777U, mode) << path.toStdString();
    }
    const QByteArray text = world.written();
    EXPECT_TRUE(text.contains("BEGIN:VTIMEZONE\r\nTZID:America/New_York\r\n"))
        << text.toStdString();
    EXPECT_TRUE(text.contains("DTSTART;TZID=America/New_York:20250501T080000\r\n"));
}

TEST_F(VdirCalendarStore, eventIsWrittenInUtcWhereTheSystemsZoneHasNoName)
{
    const ScopedVariable zone("TZ", "XYZ3");
    make(u"Nowhere"_s);
    EXPECT_TRUE(world.written().contains("DTSTART:20250501T120000Z\r\n"));
    EXPECT_FALSE(world.written().contains("VTIMEZONE"));
}

TEST_F(VdirCalendarStore, otherEventsOfAFileAreKeptByteByByte)
{
    const QByteArray before = "BEGIN:VCALENDAR\nVERSION:2.0\nX-WR-CALNAME:Café\nBEGIN:VEVENT\n"
                              "UID:one\nSUMMARY:One\nDTSTART:20250501T120000Z\nX-ODD;P=\"a;b\":x\n"
                              "garbage line\nEND:VEVENT\nBEGIN:VTODO\nUID:todo\nEND:VTODO\n";
    const QByteArray second = "BEGIN:VEVENT\nUID:two\nSUMMARY:Two\nDTSTART:20250601T120000Z\n"
                              "END:VEVENT\n";
    writeFile(world.personal() + u"/many.ics"_s, before + second + "END:VCALENDAR\n");
    ASSERT_THAT(titles(), UnorderedElementsAre(u"One"_s, u"Two"_s));

    CalendarEvent two = store.event(u"two"_s, {}).value();
    two.title = u"Changed"_s;
    EXPECT_EQ(store.save(two, {}), two);
    EXPECT_TRUE(world.written().startsWith(before)) << world.written().toStdString();
    EXPECT_TRUE(world.written().contains("SUMMARY:Changed\n"));
    store.remove(two, {});
    EXPECT_EQ(world.written(), before + "END:VCALENDAR\n");

    store.remove(store.event(u"one"_s, {}).value(), {});
    EXPECT_TRUE(world.written().contains("UID:todo")) << "a file that holds more is not removed";
}

TEST_F(VdirCalendarStore, fileGoesWithItsLastEvent)
{
    const CalendarEvent event = make(u"Short-lived"_s);
    store.remove(event, {});
    EXPECT_TRUE(files().isEmpty());
}

TEST_F(VdirCalendarStore, brokenAndForeignFilesAreSkippedAndLeftAlone)
{
    const QList<std::pair<QString, QByteArray>> odd{
        {u"cut.ics"_s, calendarWith({kPlain}).chopped(20)}, {u"empty.ics"_s, {}},
        {u"picture.ics"_s, QByteArray("\x89PNG\0\0\xff", 7)},
        {u"deep.ics"_s, QByteArray("BEGIN:VEVENT\n").repeated(100'000)},
        {u"huge.ics"_s, calendarWith({kPlain}) + QByteArray(kMaxIcalBytes, '\n')},
        {u"notes.txt"_s, calendarWith({kPlain})}, {u".hidden.ics"_s, calendarWith({kPlain})},
        {u"todo.ics"_s, "BEGIN:VCALENDAR\nBEGIN:VTODO\nUID:t\nEND:VTODO\nEND:VCALENDAR\n"},
        {u"startless.ics"_s, calendarWith({"UID:s\r\nSUMMARY:No start\r\n"})}};
    for (const auto &[name, bytes] : odd) {
        writeFile(world.personal() + u'/' + name, bytes);
    }
    writeFile(world.personal() + u"/good.ics"_s, calendarWith({kPlain}));
    QDir().mkpath(world.personal() + u"/folder.ics"_s);
    ASSERT_EQ(mkfifo(QFile::encodeName(world.personal() + u"/pipe.ics"_s).constData(), 0600), 0);

    EXPECT_THAT(titles(), ElementsAre(u"Plain"_s));
    store.remove(make(u"Other"_s), {});
    for (const auto &[name, bytes] : odd) {
        EXPECT_EQ(readFile(world.personal() + u'/' + name), bytes) << name.toStdString();
    }
}

TEST_F(VdirCalendarStore, crowdOfHostileSeriesEndsSoonAndHidesNothing)
{
    for (int number = 0; number < 400; ++number) {
        writeFile(world.personal() + u"/bad-"_s + QString::number(number) + u".ics"_s,
            calendarWith({"UID:bad-" + QByteArray::number(number)
                + "\r\nDTSTART:19700101T000000Z\r\nRRULE:FREQ=SECONDLY"
                + (number % 2 == 0 ? "" : ";COUNT=2000000000") + "\r\n"}));
    }
    world.put({kPlain});
    QStringList found;
    EXPECT_LT(cpuTime([&] { found = titles(); }), std::chrono::seconds(10));
    EXPECT_EQ(found.count(u"Plain"_s), 1);
    EXPECT_LT(found.size(), 1'000'000);
    EXPECT_EQ(store.event(u"plain"_s, {})->title, u"Plain"_s);
}

TEST_F(VdirCalendarStore, linksAreNotFollowed)
{
    QDir().mkpath(world.personal());
    const QString outside = world.root() + u"/../outside"_s;
    writeFile(outside + u"/secret.ics"_s, calendarWith({kPlain}));
    ASSERT_TRUE(QFile::link(outside + u"/secret.ics"_s, world.personal() + u"/link.ics"_s));
    ASSERT_TRUE(QFile::link(outside, world.root() + u"/Linked"_s));

    EXPECT_TRUE(events().isEmpty());
    EXPECT_THAT(store.calendars({}), SizeIs(1));
    CalendarEvent event;
    event.calendarIdentifier = u"Linked"_s;
    event.startDate = event.endDate = utc("2025-05-01 12:00");
    EXPECT_NE(failureOf([&] { static_cast<void>(store.save(event, {})); }), QString());
    for (const QString &name : {u""_s, u"."_s, u".."_s, u"../outside"_s, u"Personal/.."_s}) {
        event.calendarIdentifier = name;
        EXPECT_NE(failureOf([&] { static_cast<void>(store.save(event, {})); }), QString());
    }
    EXPECT_THAT(QDir(outside).entryList(QDir::Files), SizeIs(1));
}

TEST_F(VdirCalendarStore, hostileIdentifiersNameNoFileOutside)
{
    writeFile(world.root() + u"/outside.ics"_s, calendarWith({kPlain}));
    writeFile(world.personal() + u"/x.ics"_s,
        calendarWith({QByteArray(kPlain).replace("UID:plain", "UID:../outside")}));
    const CalendarEvent event = store.event(u"../outside"_s, {}).value();
    EXPECT_EQ(event.title, u"Plain"_s);
    store.remove(event, {});
    EXPECT_TRUE(QFile::exists(world.root() + u"/outside.ics"_s));
    EXPECT_FALSE(QFile::exists(world.personal() + u"/x.ics"_s));
    EXPECT_EQ(store.event(QString(100'000, u'x'), {}), std::nullopt);
    EXPECT_EQ(store.event(QString(u'\0'), {}), std::nullopt);
    EXPECT_EQ(store.event(QString(), {}), std::nullopt);
}

TEST_F(VdirCalendarStore, eventsWithoutUidCanBeChangedAndDeleted)
{
    writeFile(world.personal() + u"/x.ics"_s,
        calendarWith({QByteArray(kPlain).replace("UID:plain\r\n", ""),
            QByteArray(kPlain).replace("UID:plain\r\n", "").replace("Plain", "Second")}));
    ASSERT_THAT(titles(), UnorderedElementsAre(u"Plain"_s, u"Second"_s));
    for (CalendarEvent event : events()) {
        event.notes = event.title;
        EXPECT_EQ(store.save(event, {}), event);
    }
    store.remove(events()[0], {});
    EXPECT_THAT(titles(), SizeIs(1));
}

TEST_F(VdirCalendarStore, changesByOtherProgramsAreSeen)
{
    const QString path = world.personal() + u"/other.ics"_s;
    writeFile(path, calendarWith({kPlain}));
    EXPECT_THAT(titles(), ElementsAre(u"Plain"_s));
    // In place, with the same size, and at once.
    writeFile(path, calendarWith({QByteArray(kPlain).replace("Plain", "Plane")}));
    EXPECT_THAT(titles(), ElementsAre(u"Plane"_s));
    EXPECT_TRUE(QFile::remove(path));
    EXPECT_TRUE(events().isEmpty());
}

TEST_F(VdirCalendarStore, defaultCalendarIsPersonalElseTheFirstThatCanBeWritten)
{
    for (const auto *name : {u"zeta", u"Beta", u"alpha"}) {
        QDir().mkpath(world.root() + u'/' + QString::fromUtf16(name));
    }
    close(u"alpha"_s, QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_EQ(store.defaultCalendar({}).value().title, u"Beta"_s);
    QStringList found;
    for (const CalendarInfo &calendar : store.calendars({})) {
        found.append(calendar.title);
    }
    EXPECT_THAT(found, ElementsAre(u"alpha"_s, u"Beta"_s, u"zeta"_s));
    QDir().mkpath(world.personal());
    EXPECT_EQ(store.defaultCalendar({}).value().title, u"Personal"_s);
}

TEST_F(VdirCalendarStore, thereIsNoDefaultWhereNothingCanBeWritten)
{
    QDir().mkpath(world.root() + u"/Work"_s);
    close(u"Work"_s, QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_EQ(store.defaultCalendar({}), std::nullopt);
    CalendarActionService service(world.open(), std::make_shared<FakeClock>());
    try {
        static_cast<void>(outcomeOf(service.createEvent(u"title: x"_s, {})));
        ADD_FAILURE() << "it was created";
    } catch (const CalendarActionServiceError &error) {
        EXPECT_EQ(error.message(), u"No writable calendar is available."_s);
    }
}

TEST_F(VdirCalendarStore, titleIsWhatTheFolderSaysOfItself)
{
    writeFile(world.root() + u"/4711/displayname"_s, "  Büro \nmore\n");
    const QList<CalendarInfo> all = store.calendars({});
    ASSERT_THAT(all, SizeIs(1));
    EXPECT_EQ(all[0], (CalendarInfo{u"4711"_s, u"Büro"_s, true}));
}

TEST_F(VdirCalendarStore, closedFolderFailsInTheSystemsWordsAndNothingChanges)
{
    const CalendarEvent event = make(u"Kept"_s);
    const QByteArray before = world.written();
    close(u"Personal"_s, QFile::ReadOwner | QFile::ExeOwner);
    CalendarEvent changed = event;
    changed.title = u"Changed"_s;
    const QString denied = qt_error_string(EACCES);
    EXPECT_EQ(failureOf([&] { make(u"New"_s); }), denied);
    EXPECT_EQ(failureOf([&] { static_cast<void>(store.save(changed, {})); }), denied);
    EXPECT_EQ(failureOf([&] { store.remove(event, {}); }), denied);
    EXPECT_EQ(world.written(), before);
    EXPECT_THAT(files(), SizeIs(1));
}

TEST_F(VdirCalendarStore, folderThatCannotBeReadFailsInTheSystemsWords)
{
    const CalendarEvent event = make(u"Unseen"_s);
    const QString denied = qt_error_string(EACCES);
    for (const QFile::Permissions permissions :
        {QFile::Permissions(), QFile::Permissions(QFile::ReadOwner)}) {
        close(u"Personal"_s, permissions);
        EXPECT_EQ(failureOf([&] { static_cast<void>(events()); }), denied);
        EXPECT_EQ(failureOf([&] { static_cast<void>(store.event(event.identifier, {})); }), denied);
        EXPECT_EQ(failureOf([&] { make(u"New"_s); }), denied);
    }
    close(u"Personal"_s, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
    EXPECT_THAT(files(), SizeIs(1));
}

TEST_F(VdirCalendarStore, oneClosedCalendarDoesNotHideTheOthers)
{
    make(u"Seen"_s);
    writeFile(world.root() + u"/Closed/a.ics"_s, calendarWith({kPlain}));
    close(u"Closed"_s, {});
    EXPECT_THAT(titles(), ElementsAre(u"Seen"_s));
}

TEST_F(VdirCalendarStore, parentThatCannotBeWrittenFailsInTheSystemsWords)
{
    QDir().mkpath(world.root());
    close({}, QFile::ReadOwner | QFile::ExeOwner);
    EXPECT_EQ(failureOf([&] { make(u"New"_s); }), qt_error_string(EACCES));
    close({}, QFile::ReadOwner | QFile::WriteOwner | QFile::ExeOwner);
}

// As on a full disk, a write breaks off half way.
class SmallFiles
{
public:
    explicit SmallFiles(rlim_t bytes)
    {
        getrlimit(RLIMIT_FSIZE, &m_before);
        m_handler = std::signal(SIGXFSZ, SIG_IGN);
        const rlimit small{bytes, m_before.rlim_max};
        EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &small), 0);
    }
    ~SmallFiles()
    {
        setrlimit(RLIMIT_FSIZE, &m_before);
        std::signal(SIGXFSZ, m_handler);
    }
    SmallFiles(const SmallFiles &) = delete;
    SmallFiles &operator=(const SmallFiles &) = delete;

private:
    rlimit m_before{};
    void (*m_handler)(int) = nullptr;
};

TEST_F(VdirCalendarStore, writeThatBreaksOffLeavesEverythingAsItWas)
{
    CalendarEvent event = make(u"Kept"_s);
    const QByteArray before = world.written();
    {
        const SmallFiles limit(100);
        const QString tooLarge = qt_error_string(EFBIG);
        EXPECT_EQ(failureOf([&] { make(u"New"_s); }), tooLarge);
        CalendarEvent changed = event;
        changed.title = u"Changed"_s;
        EXPECT_EQ(failureOf([&] { static_cast<void>(store.save(changed, {})); }), tooLarge);
    }
    EXPECT_EQ(world.written(), before);
    EXPECT_THAT(files(), SizeIs(1)) << "a part was left behind";
    EXPECT_EQ(store.event(event.identifier, {}), event);
}

TEST_F(VdirCalendarStore, editOfAnOccurrenceIsAnOverrideBesideItsSeries)
{
    const QByteArray series =
        "UID:s\r\nDTSTAMP:20250101T000000Z\r\nSEQUENCE:3\r\n"
        "SUMMARY:Team\r\nDTSTART;TZID=W. Europe Standard Time:20250303T090000\r\n"
        "DURATION:PT1H\r\nRRULE:FREQ=WEEKLY;COUNT=3\r\nEXDATE;TZID=W. Europe Standa"
        "rd Time:20250317T090000\r\nATTENDEE:mailto:a@example.org\r\n";
    world.put({series});
    CalendarEvent event = store.event(u"s#20250310T080000Z"_s, {}).value();
    event.title = u"Team, big room"_s;
    EXPECT_EQ(store.save(event, {}), event);
    const QByteArray text = world.written();
    EXPECT_TRUE(text.contains(series)) << "the series is as it was\n" << text.toStdString();
    const QByteArray added = text.sliced(text.lastIndexOf("BEGIN:VEVENT"));
    for (const char *line : {"UID:s\r\n", "SEQUENCE:4\r\n", "SUMMARY:Team\\, big room\r\n",
             "RECURRENCE-ID;TZID=W. Europe Standard Time:20250310T090000\r\n",
             "DTSTART;TZID=W. Europe Standard Time:20250310T090000\r\n",
             "ATTENDEE:mailto:a@example.org\r\n"}) {
        EXPECT_TRUE(added.contains(line)) << line << added.toStdString();
    }
    EXPECT_FALSE(added.contains("RRULE") || added.contains("EXDATE"));
}

TEST_F(VdirCalendarStore, removalOfAnOccurrenceIsAnExceptionInTheZoneOfItsSeries)
{
    world.put({"UID:s\r\nDTSTART;TZID=Europe/Berlin:20250303T090000\r\nRRULE:FREQ=WEEKLY\r\n"});
    store.remove(store.event(u"s#20250310T080000Z"_s, {}).value(), {});
    EXPECT_TRUE(world.written().contains("EXDATE;TZID=Europe/Berlin:20250310T090000\r\n"));
    EXPECT_EQ(store.event(u"s#20250310T080000Z"_s, {}), std::nullopt);
}

TEST_F(VdirCalendarStore, occurrenceOfAChangeForAllThatFollowIsChangedAlone)
{
    writeFile(world.personal() + u"/s.ics"_s,
        calendarWith(
            {"UID:s\r\nSUMMARY:Old\r\nDTSTART:20250303T090000Z\r\nRRULE:FREQ=WEEKLY;COUNT=4\r\n",
                "UID:s\r\nSUMMARY:New\r\nRECURRENCE-ID;RANGE=THISANDFUTURE:20250310T090000Z\r\n"
                "DTSTART:20250310T100000Z\r\n"}));
    for (const auto *id : {u"s#20250310T090000Z", u"s#20250317T090000Z"}) {
        CalendarEvent event = store.event(QString::fromUtf16(id), {}).value();
        EXPECT_EQ(event.title, u"New"_s);
        event.title = u"Single"_s;
        EXPECT_EQ(store.save(event, {}), event);
    }
    EXPECT_THAT(titles(), UnorderedElementsAre(u"Old"_s, u"Single"_s, u"Single"_s, u"New"_s));
}

TEST_F(VdirCalendarStore, twoStoresThatWriteAtOnceLoseNothing)
{
    world.put({"UID:s\r\nSUMMARY:S\r\nDTSTART:20250303T090000Z\r\nRRULE:FREQ=DAILY;COUNT=40\r\n"});
    const auto first = world.open();
    const auto second = world.open();
    std::vector<std::shared_ptr<const Outcome<CalendarEvent>>> running;
    for (CalendarEvent event : events()) {
        event.notes = u"changed"_s;
        running.push_back(watch((running.size() % 2 == 0 ? first : second)->save(event, {})));
    }
    ASSERT_EQ(running.size(), 40U);
    for (const auto &outcome : running) {
        EXPECT_EQ(outcomeOf<CalendarEvent>(outcome).notes, u"changed"_s);
    }
    for (const CalendarEvent &event : events()) {
        EXPECT_EQ(event.notes, u"changed"_s);
    }
}

} // namespace

} // namespace velarc
