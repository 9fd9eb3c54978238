#include "series_text.h"

#include "base/errors.h"
#include "support/cpu_time.h"
#include "support/fixture.h"
#include "system_actions/event_records.h"

#include <chrono>

namespace velarc {

namespace {

constexpr const char *kEver = "22000101T000000Z";

QByteArray weekly(const QByteArray &more)
{
    return event("DTSTART;TZID=America/New_York:20250303T090000\r\n"
                 "DTEND;TZID=America/New_York:20250303T100000\r\nRRULE:FREQ=WEEKLY;COUNT=4\r\n"
        + more);
}

QByteArray startsIn2025(const QByteArray &components)
{
    return occurrencesOf(seriesOf(components), "20250101T000000Z", "20260101T000000Z");
}

// The fixture's instants come from another program: a rule a line, with its zone, its start and the
// first twelve occurrences. Two wall times of one moment are one occurrence.
TEST(Recurrence, rulesGiveWhatAnotherProgramGives)
{
    const auto lines = fixtureBytes("calendar/recurrences.txt").trimmed().split('\n');
    ASSERT_GE(lines.size(), 80);
    for (const QByteArray &line : lines) {
        const QList<QByteArray> fields = line.split('|');
        const IcalSeries series = seriesOf(event(
            "DTSTART;TZID=" + fields[0] + ':' + fields[1] + "\r\nRRULE:" + fields[2] + "\r\n"));
        const QByteArray last = fields[3].split(' ').last();
        EXPECT_EQ(occurrencesOf(series, "19900101T000000Z", last), fields[3]) << line.constData();
    }
}

TEST(Recurrence, windowFarFromTheStartHoldsTheSame)
{
    for (const QByteArray &line : fixtureBytes("calendar/recurrences.txt").trimmed().split('\n')) {
        const QList<QByteArray> fields = line.split('|');
        const IcalSeries series = seriesOf(event(
            "DTSTART;TZID=" + fields[0] + ':' + fields[1] + "\r\nRRULE:" + fields[2] + "\r\n"));
        for (const QByteArray &start : fields[3].split(' ')) {
            EXPECT_EQ(occurrencesOf(series, start, start), start) << line.constData();
        }
    }
}

TEST(Recurrence, rulesThatNobodyMayWriteCountForNothing)
{
    ZoneBook zones;
    for (const char *rule : {"", "FREQ=FORTNIGHTLY", "INTERVAL=2", "FREQ=DAILY;INTERVAL=0",
             "FREQ=DAILY;INTERVAL=-1", "FREQ=DAILY;COUNT=0", "FREQ=DAILY;COUNT=x",
             "FREQ=DAILY;UNTIL=tomorrow", "FREQ=DAILY;UNTIL=20250230", "FREQ=MONTHLY;BYMONTHDAY=0",
             "FREQ=MONTHLY;BYMONTHDAY=32", "FREQ=MONTHLY;BYMONTHDAY=", "FREQ=YEARLY;BYMONTH=13",
             "FREQ=YEARLY;BYMONTH=-1", "FREQ=YEARLY;BYWEEKNO=54", "FREQ=YEARLY;BYYEARDAY=367",
             "FREQ=DAILY;BYHOUR=24", "FREQ=DAILY;BYMINUTE=60", "FREQ=DAILY;BYSECOND=61",
             "FREQ=WEEKLY;BYDAY=XX", "FREQ=MONTHLY;BYDAY=0MO", "FREQ=MONTHLY;BYDAY=54MO",
             "FREQ=WEEKLY;WKST=1", "FREQ=YEARLY;RSCALE=HEBREW", "FREQ=DAILY;NEW=1", "FREQ"}) {
        EXPECT_FALSE(ruleOfIcal(rule, zones)) << rule;
    }
    EXPECT_TRUE(ruleOfIcal("freq=daily;x-mine=1;RSCALE=GREGORIAN;", zones));
    EXPECT_EQ(startsIn2025(event("DTSTART:20250301T120000Z\r\nRRULE:FREQ=NEVER\r\n")),
        "20250301T120000Z");
}

// The longest of them alone would take another expander minutes.
TEST(Recurrence, hostileRulesEndSoon)
{
    for (const char *rule : {"FREQ=SECONDLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=SECONDLY",
             "FREQ=MINUTELY;BYMONTHDAY=31;BYMONTH=4", "FREQ=YEARLY;BYMONTH=2;BYMONTHDAY=30",
             "FREQ=MONTHLY;BYMONTH=2;BYMONTHDAY=30", "FREQ=DAILY;BYSETPOS=366",
             "FREQ=SECONDLY;COUNT=100000000", "FREQ=YEARLY;INTERVAL=100000000",
             "FREQ=SECONDLY;INTERVAL=100000000", "FREQ=MONTHLY;BYDAY=MO;BYSETPOS=300",
             "FREQ=SECONDLY;BYSECOND=59;BYMINUTE=59;BYHOUR=23;BYYEARDAY=366;BYMONTH=1"}) {
        const auto start = threadCpuTime();
        const IcalSeries series =
            seriesOf(event(QByteArray("DTSTART:19700101T000000Z\r\nRRULE:") + rule + "\r\n"));
        const auto found = occurrencesIn(
            series, {moment("20250101T000000Z"), moment("20260101T000000Z")}, *utcZone(), {}, {});
        EXPECT_LE(found.size(), ExpansionBounds().occurrences) << rule;
        EXPECT_LT(threadCpuTime() - start, std::chrono::milliseconds(500)) << rule;
        EXPECT_TRUE(firstOccurrence(series, *utcZone(), {})) << rule;
    }
}

TEST(Recurrence, periodsWithMoreTimesThanAnybodyCountsEndSoon)
{
    QByteArray rule = "FREQ=YEARLY;BYDAY=SU,MO,TU,WE,TH,FR,SA;BYHOUR=";
    const auto all = [](int end) {
        QList<QByteArray> numbers;
        for (int number = 0; number < end; ++number) {
            numbers.append(QByteArray::number(number));
        }
        return numbers.join(',');
    };
    rule += all(24) + ";BYMINUTE=" + all(60) + ";BYSECOND=" + all(60);
    const IcalSeries series = seriesOf(event("DTSTART:20250101T000000Z\r\nRRULE:" + rule + "\r\n"));
    const auto start = threadCpuTime();
    EXPECT_LE(occurrencesIn(series, {moment("20250101T000000Z"), moment("20260101T000000Z")},
                  *utcZone(), {}, {})
                  .size(),
        1U);
    EXPECT_LT(threadCpuTime() - start, std::chrono::milliseconds(500));
}

TEST(Recurrence, stoppedExpansionEnds)
{
    std::stop_source stop;
    stop.request_stop();
    const IcalSeries series =
        seriesOf(event("DTSTART:19700101T000000Z\r\nRRULE:FREQ=SECONDLY;COUNT=99999999\r\n"));
    EXPECT_THROW(static_cast<void>(
                     occurrencesIn(series, {moment("20250101T000000Z"), moment("20260101T000000Z")},
                         *utcZone(), {}, stop.get_token())),
        CancellationError);
}

TEST(Recurrence, startIsTheFirstOccurrenceEvenWhereTheRuleDoesNotHoldIt)
{
    EXPECT_EQ(
        startsIn2025(event("DTSTART:20250304T090000Z\r\nRRULE:FREQ=WEEKLY;BYDAY=MO;COUNT=3\r\n")),
        "20250304T090000Z 20250310T090000Z 20250317T090000Z");
}

TEST(Recurrence, endOfARuleBelongsToIt)
{
    const QByteArray daily =
        "DTSTART;TZID=America/New_York:20250307T220000\r\nRRULE:FREQ=DAILY;UNTIL=";
    // In UTC the last one lies on the next day already, and the clock was changed before it.
    EXPECT_EQ(startsIn2025(event(daily + "20250310T020000Z\r\n")),
        "20250308T030000Z 20250309T030000Z 20250310T020000Z");
    EXPECT_EQ(
        startsIn2025(event(daily + "20250310T015959Z\r\n")), "20250308T030000Z 20250309T030000Z");
    EXPECT_EQ(startsIn2025(event(daily + "20250309T220000\r\n")),
        "20250308T030000Z 20250309T030000Z 20250310T020000Z");
    EXPECT_EQ(startsIn2025(event(daily + "20250309\r\n")),
        "20250308T030000Z 20250309T030000Z 20250310T020000Z");
    EXPECT_EQ(
        startsIn2025(event("DTSTART;VALUE=DATE:20250307\r\nRRULE:FREQ=DAILY;UNTIL=20250309\r\n")),
        "20250307T050000Z 20250308T050000Z 20250309T050000Z");
}

TEST(Recurrence, occurrencesCanBeAddedByDateTimeAndPeriod)
{
    EXPECT_EQ(startsIn2025(weekly("RDATE;TZID=America/New_York:20250501T120000,20250303T090000\r\n"
                                  "RDATE:20250601T120000Z\r\n")),
        "20250303T140000Z 20250310T130000Z 20250317T130000Z 20250324T130000Z 20250501T160000Z "
        "20250601T120000Z");
    const IcalSeries series = seriesOf(
        event("DTSTART:20250301T120000Z\r\nDURATION:PT1H\r\n"
              "RDATE;VALUE=PERIOD:20250302T120000Z/PT15M,20250303T120000Z/20250303T143000Z\r\n"));
    EXPECT_EQ(occurrencesOf(series, "20250101T000000Z", kEver, Tell::Lengths), "60 15 150");
}

TEST(Recurrence, occurrencesCanBeLeftOutInEveryForm)
{
    const QByteArray rest = "20250303T140000Z 20250317T130000Z 20250324T130000Z";
    EXPECT_EQ(startsIn2025(weekly("EXDATE;TZID=America/New_York:20250310T090000\r\n")), rest);
    EXPECT_EQ(startsIn2025(weekly("EXDATE:20250310T130000Z\r\n")), rest);
    EXPECT_EQ(startsIn2025(weekly("EXDATE;TZID=Europe/Berlin:20250310T140000\r\n")), rest);
    EXPECT_EQ(startsIn2025(weekly("EXDATE:20250310T090000\r\n")), rest) << "without its zone";
    EXPECT_EQ(startsIn2025(weekly("EXDATE;VALUE=DATE:20250310\r\n")), rest) << "the whole day";
    EXPECT_EQ(startsIn2025(weekly("EXDATE:20250310T130000Z,20250303T140000Z,garbage\r\n")),
        "20250317T130000Z 20250324T130000Z");
    EXPECT_EQ(startsIn2025(weekly("EXDATE:20250310T130001Z\r\n")).count('Z'), 4)
        << "another moment";
    EXPECT_EQ(startsIn2025(event("DTSTART;VALUE=DATE:20250310\r\nRRULE:FREQ=DAILY;COUNT=2\r\n"
                                 "EXDATE:20250310T000000\r\n")),
        "20250311T040000Z");
}

TEST(Recurrence, changedOccurrenceTakesThePlaceOfItsOwn)
{
    const QByteArray moved = "DTSTART;TZID=America/New_York:20250311T110000\r\nDURATION:PT1H\r\n";
    const QByteArray expected =
        "20250303T140000Z 20250311T150000Z 20250317T130000Z 20250324T130000Z";
    for (const char *id : {"RECURRENCE-ID;TZID=America/New_York:20250310T090000\r\n",
             "RECURRENCE-ID:20250310T130000Z\r\n", "RECURRENCE-ID:20250310T090000\r\n",
             "RECURRENCE-ID;VALUE=DATE:20250310\r\n"}) {
        EXPECT_EQ(startsIn2025(weekly({}) + event(id + moved)), expected) << id;
        EXPECT_EQ(startsIn2025(event(id + moved) + weekly({})), expected) << "before its series";
    }
}

TEST(Recurrence, cancelledOccurrenceIsLeftOut)
{
    EXPECT_EQ(startsIn2025(weekly({})
                  + event("RECURRENCE-ID:20250310T130000Z\r\nSTATUS:CANCELLED\r\n"
                          "DTSTART:20250310T130000Z\r\n")),
        "20250303T140000Z 20250317T130000Z 20250324T130000Z");
}

TEST(Recurrence, changeMayHoldForTheFollowingOccurrencesToo)
{
    const QByteArray shifted =
        event("RECURRENCE-ID;RANGE=THISANDFUTURE;TZID=America/New_York:20250310T090000\r\n"
              "DTSTART;TZID=America/New_York:20250310T103000\r\nDURATION:PT15M\r\n");
    EXPECT_EQ(startsIn2025(weekly({}) + shifted),
        "20250303T140000Z 20250310T143000Z 20250317T143000Z 20250324T143000Z");
    EXPECT_EQ(
        occurrencesOf(seriesOf(weekly({}) + shifted), "20250101T000000Z", kEver, Tell::Lengths),
        "60 15 15 15");
    const QByteArray single =
        event("RECURRENCE-ID:20250317T130000Z\r\nDTSTART:20250317T200000Z\r\n");
    EXPECT_EQ(startsIn2025(weekly({}) + shifted + single),
        "20250303T140000Z 20250310T143000Z 20250317T200000Z 20250324T143000Z");
    EXPECT_EQ(startsIn2025(weekly("EXDATE:20250310T130000Z\r\n") + shifted),
        "20250303T140000Z 20250317T143000Z 20250324T143000Z");
}

TEST(Recurrence, occurrenceWhoseSeriesIsMissingStandsByItself)
{
    const IcalSeries series =
        seriesOf(event("RECURRENCE-ID:20250310T130000Z\r\nDTSTART:20250310T200000Z\r\n"));
    EXPECT_EQ(occurrencesOf(series, "20250101T000000Z", kEver), "20250310T200000Z");
    EXPECT_EQ(firstOccurrence(series, *utcZone(), {})->start, moment("20250310T200000Z"));
    EXPECT_TRUE(occurrenceDueAt(series, moment("20250310T130000Z"), *utcZone(), {}));
}

TEST(Recurrence, lengthByAnEndIsTimeThatPasses)
{
    // From Saturday evening to Sunday morning, a week before the clock is changed and then.
    const IcalSeries series = seriesOf(
        event("DTSTART;TZID=America/New_York:20250301T220000\r\n"
              "DTEND;TZID=America/New_York:20250302T060000\r\nRRULE:FREQ=WEEKLY;COUNT=2\r\n"));
    EXPECT_EQ(occurrencesOf(series, "20250101T000000Z", kEver, Tell::Lengths), "480 480");
}

TEST(Recurrence, lengthInDaysIsCountedOnTheCalendar)
{
    const IcalSeries series = seriesOf(event("DTSTART;TZID=America/New_York:20250301T220000\r\n"
                                             "DURATION:P1D\r\nRRULE:FREQ=WEEKLY;COUNT=2\r\n"));
    EXPECT_EQ(occurrencesOf(series, "20250101T000000Z", kEver, Tell::Lengths), "1440 1380");
    const IcalSeries days =
        seriesOf(event("DTSTART;VALUE=DATE:20250308\r\n"
                       "DTEND;VALUE=DATE:20250310\r\nRRULE:FREQ=DAILY;COUNT=1\r\n"));
    EXPECT_EQ(occurrencesOf(days, "20250101T000000Z", kEver, Tell::Lengths), "2820");
}

TEST(Recurrence, endsThatMakeNoSenseGiveNoLength)
{
    for (const char *end : {"DTEND:20250228T120000Z\r\n", "DURATION:-PT1H\r\n", "DURATION:soon\r\n",
             "DURATION:P99999999W\r\n", "DTEND:later\r\n", ""}) {
        const IcalSeries series = seriesOf(event(QByteArray("DTSTART:20250301T120000Z\r\n") + end));
        EXPECT_EQ(occurrencesOf(series, "20250101T000000Z", kEver, Tell::Lengths), "0") << end;
    }
    const IcalSeries day =
        seriesOf(event("DTSTART;VALUE=DATE:20250301\r\nDTEND;VALUE=DATE:20250301\r\n"));
    EXPECT_EQ(occurrencesOf(day, "20250101T000000Z", kEver, Tell::Lengths), "1440");
}

TEST(Recurrence, eventsWithoutAStartThatCanBeReadAreNone)
{
    for (const char *start : {"", "DTSTART:\r\n", "DTSTART:2025\r\n", "DTSTART:20251301\r\n",
             "DTSTART:20250229T000000Z\r\n", "DTSTART:20250101T250000Z\r\n", "DTSTART:15990101\r\n",
             "DTSTART:22610101T000000Z\r\n", "DTSTART:99991231T000000Z\r\n"}) {
        ZoneBook zones;
        const auto file = readIcal("BEGIN:VCALENDAR\r\n" + event(start) + "END:VCALENDAR\r\n");
        EXPECT_TRUE(seriesOfIcal(*file, QString(), zones).empty()) << start;
    }
}

TEST(Recurrence, eventOfWhichOnlyAPartLiesInTheWindowIsInIt)
{
    const IcalSeries series = seriesOf(event("DTSTART:20250301T120000Z\r\nDURATION:P3D\r\n"
                                             "RRULE:FREQ=WEEKLY;COUNT=3\r\n"));
    EXPECT_EQ(occurrencesOf(series, "20250310T000000Z", "20250310T010000Z"), "20250308T120000Z");
    EXPECT_EQ(occurrencesOf(series, "20250311T120000Z", "20250311T130000Z"), "");
}

TEST(Recurrence, birthdayOfSomebodyWhoseYearIsNotKnownComesEveryYear)
{
    EXPECT_EQ(startsIn2025(event("DTSTART;VALUE=DATE:16040704\r\nRRULE:FREQ=YEARLY\r\n")),
        "20250704T040000Z");
}

TEST(Recurrence, nameOfAnOccurrenceIsReadBackAsItsTime)
{
    for (const char *name : {"20250310T090000Z", "20250310", "20250310T090000"}) {
        const auto due = dueOfOccurrenceName(QString::fromLatin1(name));
        ASSERT_TRUE(due) << name;
        EXPECT_EQ(occurrenceName(*due), QString::fromLatin1(name));
    }
    for (const char *name : {"", "20250310T090000z", "20250310T0900", "20250230", " 20250310"}) {
        EXPECT_FALSE(dueOfOccurrenceName(QString::fromLatin1(name))) << name;
    }
}

TEST(Recurrence, identifierWithAHashSignOfItsOwnIsReadBothWays)
{
    const auto readings = readingsOf(QStringLiteral("a#b#20250310"));
    ASSERT_EQ(readings.size(), 2);
    EXPECT_EQ(readings[0].uid, QStringLiteral("a#b#20250310"));
    EXPECT_EQ(readings[1].uid, QStringLiteral("a#b"));
    EXPECT_EQ(readingsOf(QStringLiteral("#20250310")).size(), 1);
    EXPECT_EQ(readingsOf(QStringLiteral("a#room")).size(), 1);
}

} // namespace

} // namespace velarc
