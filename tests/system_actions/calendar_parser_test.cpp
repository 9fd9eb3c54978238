#include "support/printers.h"
#include "system_actions/calendar_parser.h"

#include <gtest/gtest.h>

#include <limits>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::string_view_literals;
using namespace std::chrono_literals;

// Nine in the morning of a day in May, in New York.
Instant morningOf(int day)
{
    const std::chrono::sys_days midnight = std::chrono::year(2025) / 5 / day;
    return Instant(midnight + 13h);
}

TEST(CalendarParser, emptyTextLeavesEveryFieldAbsent)
{
    EXPECT_EQ(parseCalendarInput(u""), ParsedCalendarInput());
    EXPECT_EQ(parseCalendarInput(QStringView()), ParsedCalendarInput());
}

TEST(CalendarParser, whiteSpaceLeavesEveryFieldAbsent)
{
    EXPECT_EQ(parseCalendarInput(u" \t\n\u00A0\u2028\n "), ParsedCalendarInput());
}

TEST(CalendarParser, everyFieldHasItsKey)
{
    const ParsedCalendarInput input = parseCalendarInput(
        u"title: Budget\nstart: 2025-05-01 09:00\nend: 2025-05-02 09:00\nlocation: Room 4\n"
        u"notes: Bring the plan\ncalendar: Work\neventid: X-1\nlimit: 12\ndays: 30");
    EXPECT_EQ(input.title, u"Budget"_s);
    EXPECT_EQ(input.startDate, morningOf(1));
    EXPECT_EQ(input.endDate, morningOf(2));
    EXPECT_EQ(input.location, u"Room 4"_s);
    EXPECT_EQ(input.notes, u"Bring the plan"_s);
    EXPECT_EQ(input.calendarName, u"Work"_s);
    EXPECT_EQ(input.eventID, u"X-1"_s);
    EXPECT_EQ(input.limit, 12);
    EXPECT_EQ(input.days, 30);
}

TEST(CalendarParser, fourFieldsHaveASecondKey)
{
    const ParsedCalendarInput input = parseCalendarInput(
        u"startdate: 2025-05-01 09:00\nenddate: 2025-05-02 09:00\nbody: Plan\nid: X-1");
    EXPECT_EQ(input.startDate, morningOf(1));
    EXPECT_EQ(input.endDate, morningOf(2));
    EXPECT_EQ(input.notes, u"Plan"_s);
    EXPECT_EQ(input.eventID, u"X-1"_s);
}

TEST(CalendarParser, keyIsTrimmedAndLowerCased)
{
    EXPECT_EQ(parseCalendarInput(u"TITLE : Budget review").title, u"Budget review"_s);
}

TEST(CalendarParser, keyOfTwoWordsIsAnotherKey)
{
    const ParsedCalendarInput input = parseCalendarInput(u"Start Date: 2025-05-01");
    EXPECT_EQ(input.startDate, std::nullopt);
    EXPECT_EQ(input.title, std::nullopt);
    EXPECT_EQ(input.limit, 2025);
}

TEST(CalendarParser, titleWithoutAValueIsNoTitle)
{
    EXPECT_EQ(parseCalendarInput(u"title:\nDentist").title, std::nullopt);
}

TEST(CalendarParser, lastLineOfAKeyCounts)
{
    EXPECT_EQ(parseCalendarInput(u"start: 2025-05-01 09:00\nstart: 2025-05-02 09:00").startDate,
        morningOf(2));
}

TEST(CalendarParser, emptyValueErasesNoEarlierOne)
{
    EXPECT_EQ(
        parseCalendarInput(u"location: Room 4\nlocation:\nlocation:  ").location, u"Room 4"_s);
}

TEST(CalendarParser, unreadableDateIsAbsent)
{
    EXPECT_EQ(parseCalendarInput(u"start: tomorrow").startDate, std::nullopt);
}

TEST(CalendarParser, firstKeyOfAFieldWins)
{
    EXPECT_EQ(parseCalendarInput(u"start: 2025-05-01 09:00\nstartdate: 2025-06-01 09:00").startDate,
        morningOf(1));
    EXPECT_EQ(parseCalendarInput(u"startdate: 2025-06-01 09:00\nstart: 2025-05-01 09:00").startDate,
        morningOf(1));
    EXPECT_EQ(parseCalendarInput(u"body: b\nnotes: n\nid: i\neventid: e").notes, u"n"_s);
    EXPECT_EQ(parseCalendarInput(u"body: b\nnotes: n\nid: i\neventid: e").eventID, u"e"_s);
}

TEST(CalendarParser, firstKeyWinsEvenWhereItsDateIsUnreadable)
{
    EXPECT_EQ(
        parseCalendarInput(u"start: soon\nstartdate: 2025-06-01 09:00").startDate, std::nullopt);
}

TEST(CalendarParser, unreadableLimitStopsTheSearchForANumber)
{
    EXPECT_EQ(parseCalendarInput(u"limit: ten\nin 3 days").limit, std::nullopt);
}

TEST(CalendarParser, negativeLimitIsKept)
{
    EXPECT_EQ(parseCalendarInput(u"limit: -3").limit, -3);
    EXPECT_EQ(parseCalendarInput(u"limit: 0").limit, 0);
}

TEST(CalendarParser, signBeforeTheFirstNumberIsPassedOver)
{
    EXPECT_EQ(parseCalendarInput(u"-7 items").limit, 7);
}

TEST(CalendarParser, laterColonsStayInTheValue)
{
    EXPECT_EQ(parseCalendarInput(u"id: ABC:123").eventID, u"ABC:123"_s);
}

TEST(CalendarParser, firstNumberOfTheTextIsTheLimit)
{
    EXPECT_EQ(parseCalendarInput(u"show me the next 3 meetings").limit, 3);
    EXPECT_EQ(parseCalendarInput(u"\n  page 12 of 40").limit, 12);
}

TEST(CalendarParser, daysAreReadAsTheLimitToo)
{
    const ParsedCalendarInput input = parseCalendarInput(u"days: 14");
    EXPECT_EQ(input.days, 14);
    EXPECT_EQ(input.limit, 14);
}

TEST(CalendarParser, daysAreNotSearchedFor)
{
    EXPECT_EQ(parseCalendarInput(u"the next 14 days").days, std::nullopt);
}

TEST(CalendarParser, wholeNumbersAreDigitsWithOneSignAtMost)
{
    const auto days = [](QStringView value) {
        return parseCalendarInput(u"days: "_s + value.toString()).days;
    };
    EXPECT_EQ(days(u"+5"), 5);
    EXPECT_EQ(days(u"007"), 7);
    EXPECT_EQ(days(u"9223372036854775807"), std::numeric_limits<qint64>::max());
    EXPECT_EQ(days(u"-9223372036854775808"), std::numeric_limits<qint64>::min());
    for (const QStringView value : {u"9223372036854775808", u"-9223372036854775809", u"+", u"-",
             u"--5", u"+-5", u"- 5", u"5 days", u"5.0", u"1 000", u"1,000", u"0x10", u"٥"}) {
        EXPECT_EQ(days(value), std::nullopt) << value.toString().toStdString();
    }
}

TEST(CalendarParser, numberBeyond64BitsIsTheLargest)
{
    EXPECT_EQ(firstNumberInText(u"no. 99999999999999999999"), u"9223372036854775807"_s);
    EXPECT_EQ(firstNumberInText(u"9223372036854775808"), u"9223372036854775807"_s);
    EXPECT_EQ(
        parseCalendarInput(u"99999999999999999999").limit, std::numeric_limits<qint64>::max());
}

TEST(CalendarParser, firstNumberEndsWithItsRunOfDigits)
{
    EXPECT_EQ(firstNumberInText(u"a0012b34"), u"12"_s);
    EXPECT_EQ(firstNumberInText(u"3.5"), u"3"_s);
    EXPECT_EQ(firstNumberInText(u"none at all"), std::nullopt);
    EXPECT_EQ(firstNumberInText(u""), std::nullopt);
}

TEST(CalendarParser, firstNumberMayBeWrittenInAnyScript)
{
    EXPECT_EQ(firstNumberInText(u"أظهر ١٢ حدثا"), u"12"_s);
    EXPECT_EQ(firstNumberInText(u"\U0001D7DA days"), u"2"_s);
    EXPECT_EQ(firstNumberInText(u"x² in Ⅻ"), std::nullopt);
}

TEST(CalendarParser, freeFirstLineIsTheTitle)
{
    ParsedCalendarInput expected;
    expected.title = u"Dentist appointment"_s;
    EXPECT_EQ(parseCalendarInput(u"  Dentist appointment \nbring the forms"), expected);
}

TEST(CalendarParser, firstLineWithAColonGivesNoTitle)
{
    EXPECT_EQ(parseCalendarInput(u"Lunch at 12:30\nDentist").title, std::nullopt);
}

TEST(CalendarParser, blankFirstLineGivesNoTitle)
{
    EXPECT_EQ(parseCalendarInput(u"   \nDentist").title, std::nullopt);
    EXPECT_EQ(parseCalendarInput(u"\n\r\nDentist").title, u"Dentist"_s);
}

TEST(CalendarParser, titleOfAKeyWinsOverTheFirstLine)
{
    EXPECT_EQ(parseCalendarInput(u"Please add\ntitle: Dentist").title, u"Dentist"_s);
}

TEST(CalendarParser, everyLineEndSeparatesLines)
{
    for (const char16_t end : u"\n\v\f\r\u0085\u2028\u2029"sv) {
        const QString text = u"location: Room 4"_s + QChar(end) + u"notes: Plan"_s;
        EXPECT_EQ(parseCalendarInput(text).location, u"Room 4"_s)
            << std::hex << static_cast<int>(end);
        EXPECT_EQ(parseCalendarInput(text).notes, u"Plan"_s) << std::hex << static_cast<int>(end);
    }
    EXPECT_EQ(parseCalendarKeyValues(u"a: 1\r\nb: 2").size(), 2);
}

TEST(CalendarParser, keyAndValueAreBothNeeded)
{
    EXPECT_TRUE(parseCalendarKeyValues(u": value\nkey:\nno colon\n :\n::").isEmpty());
    EXPECT_EQ(parseCalendarKeyValues(u"::x").size(), 0);
    EXPECT_EQ(parseCalendarKeyValues(u"a::x").value(u"a"_s), u":x"_s);
}

TEST(CalendarParser, unknownKeysAreKeptAndHarmless)
{
    EXPECT_EQ(parseCalendarKeyValues(u"Mood: fine").value(u"mood"_s), u"fine"_s);
    EXPECT_EQ(parseCalendarInput(u"Mood: fine"), ParsedCalendarInput());
}

TEST(CalendarParser, megabyteOfOneLineIsReadAtOnce)
{
    const QString line(1'000'000, u'7');
    EXPECT_EQ(parseCalendarInput(u"start: "_s + line).startDate, std::nullopt);
    EXPECT_EQ(parseCalendarInput(line).limit, std::numeric_limits<qint64>::max());
}

} // namespace
} // namespace velarc
