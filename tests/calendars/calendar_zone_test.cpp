#include "series_text.h"

#include "support/cpu_time.h"
#include "support/environment.h"
#include "system_actions/zone_definition.h"

#include <ctime>

namespace velarc {

namespace {

using std::chrono::hours;

QByteArray utcOf(const ZonePointer &zone, const QByteArray &wall)
{
    ZoneBook zones;
    return icalOfUtc(zone->utcTimeOf(timeOfIcal(wall, std::nullopt, zones).value().wall));
}

ZonePointer zoneOf(const QByteArray &definition)
{
    const auto file = readIcal(definition);
    EXPECT_TRUE(file);
    const auto components = file->components("VTIMEZONE");
    EXPECT_EQ(components.size(), 1U);
    return components.empty() ? nullptr : definedZone(*components.front());
}

TEST(CalendarZone, wallTimesAroundChangesOfTheClockFollowTheStandard)
{
    struct Case
    {
        const char *zone;
        const char *wall;
        const char *utc;
    };
    for (const auto &[zone, wall, utc] : {
             Case{"America/New_York", "20250309T015959", "20250309T065959Z"},
             Case{"America/New_York", "20250309T020000", "20250309T070000Z"}, // left out
             Case{"America/New_York", "20250309T025959", "20250309T075959Z"}, // left out
             Case{"America/New_York", "20250309T030000", "20250309T070000Z"},
             Case{"America/New_York", "20251102T005959", "20251102T045959Z"},
             Case{"America/New_York", "20251102T010000", "20251102T050000Z"}, // twice
             Case{"America/New_York", "20251102T015959", "20251102T055959Z"}, // twice
             Case{"America/New_York", "20251102T020000", "20251102T070000Z"},
             Case{"Europe/Berlin", "20250330T023000", "20250330T013000Z"},
             Case{"Europe/Berlin", "20251026T023000", "20251026T003000Z"},
             Case{"Australia/Lord_Howe", "20250406T014500", "20250405T144500Z"}, // half an hour
             Case{"Australia/Lord_Howe", "20251005T021500", "20251004T154500Z"},
             Case{"Pacific/Apia", "20111230T120000", "20111230T220000Z"}, // a day left out
             Case{"America/Sao_Paulo", "20181104T000000", "20181104T030000Z"}, // at midnight
             Case{"Asia/Kathmandu", "20250101T000000", "20241231T181500Z"},
         }) {
        EXPECT_EQ(utcOf(databaseZone(zone), wall), utc) << zone << ' ' << wall;
    }
}

// Each of these was decreed within the last years.
TEST(CalendarZone, zonesAreAsTheSystemKnowsThemAndNotAsOldTablesDo)
{
    EXPECT_EQ(utcOf(databaseZone("America/Mexico_City"), "20260701T090000"), "20260701T150000Z");
    EXPECT_EQ(utcOf(databaseZone("Africa/Cairo"), "20260701T090000"), "20260701T060000Z");
    EXPECT_EQ(utcOf(databaseZone("Asia/Almaty"), "20260701T090000"), "20260701T040000Z");
}

TEST(CalendarZone, yearsFarAheadFollowTheLastRule)
{
    EXPECT_EQ(utcOf(databaseZone("America/New_York"), "20990701T090000"), "20990701T130000Z");
    EXPECT_EQ(utcOf(databaseZone("America/New_York"), "20990101T090000"), "20990101T140000Z");
    EXPECT_EQ(utcOf(databaseZone("Europe/Berlin"), "20371025T023000"), "20371025T003000Z");
}

TEST(CalendarZone, namesOfOtherProgramsAreUnderstood)
{
    for (const char *name : {"/freeassociation.sourceforge.net/Europe/Berlin",
             "/citadel.org/20250101_1/Europe/Berlin", "/vendor.example/Tzfile/Europe/Berlin"}) {
        const ZonePointer zone = databaseZone(name);
        ASSERT_TRUE(zone) << name;
        EXPECT_EQ(utcOf(zone, "20250701T120000"), "20250701T100000Z");
    }
    EXPECT_EQ(utcOf(databaseZone("/mozilla.org/1/America/Argentina/Salta"), "20250701T120000"),
        "20250701T150000Z");
    EXPECT_EQ(utcOf(windowsZone("W. Europe Standard Time"), "20250701T120000"), "20250701T100000Z");
    EXPECT_EQ(utcOf(windowsZone("Eastern Standard Time"), "20250701T120000"), "20250701T160000Z");
    for (const char *name : {"", "Nowhere/Land", "../../etc/passwd", "/etc/passwd", "/", "///"}) {
        EXPECT_FALSE(databaseZone(name)) << name;
        EXPECT_FALSE(windowsZone(name)) << name;
    }
    EXPECT_FALSE(databaseZone(QByteArray(100'000, 'a')));
    EXPECT_FALSE(windowsZone(QByteArray(100'000, 'a')));
}

TEST(CalendarZone, systemsZoneIsTheOneThatIsSetNow)
{
    for (const auto &[name, utc] : {std::pair("Asia/Tokyo", "20250630T150000Z"),
             std::pair("America/New_York", "20250701T040000Z")}) {
        const ScopedVariable zone("TZ", name);
        EXPECT_EQ(systemZone()->name(), name);
        EXPECT_EQ(utcOf(systemZone(), "20250701T000000"), utc);
    }
    const ScopedVariable zone("TZ", "XYZ3"); // nobody else knows it
    EXPECT_EQ(utcOf(systemZone(), "20250701T000000"), "20250701T030000Z");
    EXPECT_EQ(systemZone()->name(), "");
}

const QByteArray kBerlin =
    "BEGIN:VTIMEZONE\r\nTZID:Our Office\r\n"
    "BEGIN:DAYLIGHT\r\nDTSTART:19810329T020000\r\nRRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=-1SU\r\n"
    "TZOFFSETFROM:+0100\r\nTZOFFSETTO:+0200\r\nEND:DAYLIGHT\r\n"
    "BEGIN:STANDARD\r\nDTSTART:19961027T030000\r\nRRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU\r\n"
    "TZOFFSETFROM:+0200\r\nTZOFFSETTO:+0100\r\nEND:STANDARD\r\nEND:VTIMEZONE\r\n";

TEST(CalendarZone, fileMayDefineAZoneOfItsOwn)
{
    const ZonePointer zone = zoneOf(kBerlin);
    ASSERT_TRUE(zone);
    EXPECT_EQ(zone->name(), "Our Office");
    const ZonePointer berlin = databaseZone("Europe/Berlin");
    for (UtcTime at = moment("20000101T000000Z"); at < moment("20500101T000000Z"); at += hours(7)) {
        ASSERT_EQ(zone->offsetAt(at), berlin->offsetAt(at)) << icalOfUtc(at).constData();
    }
    const IcalSeries series = seriesOf(
        kBerlin + event("DTSTART;TZID=Our Office:20250329T093000\r\nRRULE:FREQ=DAILY;COUNT=2\r\n"));
    EXPECT_EQ(occurrencesOf(series, "20250101T000000Z", "20260101T000000Z"),
        "20250329T083000Z 20250330T073000Z");
}

TEST(CalendarZone, definitionCountsForNamesThatTheDatabaseDoesNotKnow)
{
    QByteArray wrong = kBerlin;
    wrong.replace("Our Office", "America/New_York");
    const QByteArray there = event("DTSTART;TZID=America/New_York:20250701T090000\r\n");
    EXPECT_EQ(occurrencesOf(seriesOf(wrong + there), "20250101T000000Z", "20260101T000000Z"),
        "20250701T130000Z");
    QByteArray windows = kBerlin;
    windows.replace("Our Office", "Eastern Standard Time");
    const QByteArray east = event("DTSTART;TZID=Eastern Standard Time:20250701T090000\r\n");
    EXPECT_EQ(occurrencesOf(seriesOf(windows + east), "20250101T000000Z", "20260101T000000Z"),
        "20250701T070000Z");
    EXPECT_EQ(
        occurrencesOf(seriesOf(east), "20250101T000000Z", "20260101T000000Z"), "20250701T130000Z");
    EXPECT_EQ(occurrencesOf(seriesOf(event("DTSTART;TZID=Elsewhere:20250701T090000\r\n")),
                  "20250101T000000Z", "20260101T000000Z"),
        "20250701T130000Z")
        << "a zone that nobody knows is the system's";
}

TEST(CalendarZone, brokenDefinitionsAreNone)
{
    const QByteArray start = "BEGIN:VTIMEZONE\r\nTZID:X\r\nBEGIN:STANDARD\r\n";
    const QByteArray end = "END:STANDARD\r\nEND:VTIMEZONE\r\n";
    for (const char *lines : {"", "DTSTART:19700101T000000\r\n",
             "DTSTART:19700101T000000\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:+9900\r\n",
             "DTSTART:19700101T000000\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:0200\r\n",
             "DTSTART:19700101T000000\r\nTZOFFSETFROM:+01-1\r\nTZOFFSETTO:+0200\r\n",
             "DTSTART:then\r\nTZOFFSETFROM:+0100\r\nTZOFFSETTO:+0200\r\n"}) {
        EXPECT_FALSE(zoneOf(start + lines + end)) << lines;
    }
    EXPECT_FALSE(zoneOf("BEGIN:VTIMEZONE\r\nTZID:X\r\nEND:VTIMEZONE\r\n"));
}

TEST(CalendarZone, hostileDefinitionsEndSoon)
{
    const auto begin = threadCpuTime();
    QByteArray text = "BEGIN:VTIMEZONE\r\nTZID:X\r\n";
    for (int count = 0; count < 300; ++count) {
        text += "BEGIN:STANDARD\r\nDTSTART:16010101T000000\r\nRRULE:FREQ=SECONDLY\r\n"
                "RRULE:FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30\r\nTZOFFSETFROM:+0100\r\n"
                "TZOFFSETTO:+0200\r\nEND:STANDARD\r\n";
    }
    EXPECT_TRUE(zoneOf(text + "END:VTIMEZONE\r\n"));
    EXPECT_LT(threadCpuTime() - begin, std::chrono::seconds(2));
}

TEST(CalendarZone, definitionThatIsWrittenSaysWhatTheZoneDoes)
{
    for (const char *name : {"America/New_York", "Europe/Berlin", "Europe/London", "Europe/Dublin",
             "Asia/Kolkata", "Asia/Kathmandu", "Australia/Lord_Howe", "America/St_Johns",
             "Africa/Casablanca", "America/Mexico_City", "Africa/Cairo", "Asia/Jerusalem",
             "America/Santiago", "Asia/Tehran", "Antarctica/Troll", "Pacific/Chatham", "Etc/UTC"}) {
        const ZonePointer zone = databaseZone(name);
        const UtcTime from = moment("20260601T000000Z");
        const QByteArray text = zoneDefinition(*zone, from);
        const ZonePointer read = zoneOf(text);
        ASSERT_TRUE(read) << name;
        EXPECT_EQ(read->name(), name);
        for (UtcTime at = from - hours(24 * 360); at < from + hours(24 * 3600); at += hours(5)) {
            ASSERT_EQ(read->offsetAt(at), zone->offsetAt(at))
                << name << ' ' << icalOfUtc(at).constData() << '\n'
                << text.constData();
        }
    }
    EXPECT_TRUE(zoneDefinition(*databaseZone("Europe/Berlin"), moment("20260601T000000Z"))
                    .contains("RRULE:FREQ=YEARLY;BYMONTH=10;BYDAY=-1SU"));
    EXPECT_TRUE(zoneDefinition(*databaseZone("America/New_York"), moment("20260601T000000Z"))
                    .contains("RRULE:FREQ=YEARLY;BYMONTH=3;BYDAY=2SU"));
}

} // namespace

} // namespace velarc
