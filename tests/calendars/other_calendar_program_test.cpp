// The folder is shared with other programs: one reads what is written here, and writes what is
// read.

#include "calendar_worlds.h"

#include "base/json.h"
#include "system_actions/vdir_calendar_store.h"

#include <QDir>
#include <QProcess>

namespace velarc {

namespace {

class OtherCalendarProgram : public testing::Test
{
protected:
    QTemporaryDir folder;
    VdirCalendars store{folder.path()};

    [[nodiscard]] QByteArray run(const QString &command, const QStringList &arguments = {}) const
    {
        QDir().mkpath(personal());
        QProcess process;
        process.start(u"/usr/bin/python3"_s,
            QStringList{QStringLiteral(VELARC_OTHER_CALENDAR_PROGRAM), command, personal()}
                + arguments);
        EXPECT_TRUE(process.waitForFinished(30'000));
        EXPECT_EQ(process.exitCode(), 0) << process.readAllStandardError().toStdString();
        return process.readAllStandardOutput();
    }

    [[nodiscard]] Json readThere() const { return parseJson(run(u"read"_s)); }

    [[nodiscard]] CalendarEvent make(const QString &title, Instant start, Instant end)
    {
        CalendarEvent event;
        event.calendarIdentifier = store.defaultCalendar({}).value().identifier;
        event.title = title;
        event.startDate = start;
        event.endDate = end;
        event.location = u"Straße 1; links, \"oben\""_s;
        event.notes = u"eins\nzwei\n"_s + u"🦷 lang "_s.repeated(30);
        return store.save(event, {});
    }

    [[nodiscard]] QString personal() const { return folder.path() + u"/Personal"_s; }
};

TEST_F(OtherCalendarProgram, readsWhatIsWrittenHere)
{
    const CalendarEvent event =
        make(u"Zahnärztin"_s, utc("2025-05-01 13:00"), utc("2025-05-01 13:30"));
    static_cast<void>(make(u"Winter"_s, utc("2025-12-01 13:00"), utc("2025-12-01 13:00")));
    static_cast<void>(make(u"Second 01:30"_s, utc("2026-11-01 06:30"), utc("2026-11-01 06:45")));
    const Json records = readThere();
    ASSERT_EQ(records.size(), 3U);
    EXPECT_EQ(records[0]["uid"], event.identifier.toStdString());
    EXPECT_EQ(records[0]["summary"], "Zahnärztin");
    EXPECT_EQ(records[0]["start"], "2025-05-01 13:00");
    EXPECT_EQ(records[0]["end"], "2025-05-01 13:30");
    EXPECT_EQ(jsonText(records[0]["location"]), event.location);
    EXPECT_EQ(jsonText(records[0]["description"]), event.notes);
    EXPECT_EQ(records[1]["start"], "2025-12-01 13:00");
    EXPECT_TRUE(records[1]["end"].is_null());
    EXPECT_EQ(records[2]["start"], "2026-11-01 06:30");
    for (const Json &record : records) {
        EXPECT_TRUE(record["errors"].empty()) << record.dump();
    }
}

TEST_F(OtherCalendarProgram, writesWhatIsReadHere)
{
    static_cast<void>(run(u"write"_s));
    const CalendarEvent plain = store.event(u"other-0"_s, {}).value();
    EXPECT_EQ(plain.title, u"Fahrrad; Öl, Kette"_s);
    EXPECT_EQ(plain.startDate, utc("2025-05-01 13:00"));
    EXPECT_EQ(plain.endDate, utc("2025-05-01 14:00"));
    EXPECT_EQ(plain.notes, u"first\nsecond "_s + u"long "_s.repeated(40));
    const CalendarEvent day = store.event(u"other-1"_s, {}).value();
    EXPECT_TRUE(day.isAllDay);
    EXPECT_EQ(day.startDate, at("2025-05-02 00:00"));
    const auto series = store.events({utc("2025-03-01 00:00"), utc("2025-04-30 00:00")}, {});
    ASSERT_EQ(series.size(), 3);
    EXPECT_EQ(series[0].startDate, utc("2025-03-28 08:00"));
    EXPECT_EQ(series[1].startDate, utc("2025-03-30 07:00"));
    EXPECT_EQ(series[2].startDate, utc("2025-03-31 07:00"));
}

TEST_F(OtherCalendarProgram, readsChangesThatWereMadeHereToItsSeries)
{
    static_cast<void>(run(u"write"_s));
    CalendarEvent moved = store.event(u"other-2#20250330T070000Z"_s, {}).value();
    moved.startDate = utc("2025-03-30 12:00");
    moved.endDate = utc("2025-03-30 12:20");
    static_cast<void>(store.save(moved, {}));
    store.remove(store.event(u"other-2#20250331T070000Z"_s, {}).value(), {});
    // Its own library leaves out the zones that it names.
    QByteArray text;
    for (const QString &name : QDir(personal()).entryList({u"*.ics"_s})) {
        text += readFile(personal() + u'/' + name);
    }
    EXPECT_TRUE(text.contains("RECURRENCE-ID;TZID=Europe/Berlin:20250330T090000"))
        << text.toStdString();
    EXPECT_TRUE(text.contains("DTSTART;TZID=Europe/Berlin:20250330T140000")) << text.toStdString();
    EXPECT_TRUE(text.contains("EXDATE;TZID=Europe/Berlin:20250331T090000")) << text.toStdString();
}

TEST_F(OtherCalendarProgram, changesWhatWasMadeHere)
{
    const CalendarEvent event = make(u"Old"_s, utc("2025-05-01 13:00"), utc("2025-05-01 13:30"));
    ASSERT_EQ(store.event(event.identifier, {}), event);
    static_cast<void>(run(u"rename"_s, {u"Old"_s, u"Neu, größer"_s}));
    CalendarEvent renamed = event;
    renamed.title = u"Neu, größer"_s;
    EXPECT_EQ(store.event(event.identifier, {}), renamed);
}

} // namespace

} // namespace velarc
