// The dates that are read, and those that are not, in several time zones.

#include "base/local_time.h"
#include "base/locale_text.h"
#include "support/environment.h"
#include "support/fixture.h"
#include "support/printers.h"
#include "system_actions/calendar_parser.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono;

struct DateRow
{
    QString value;
    QStringList instants; // one a zone
};

QList<DateRow> dateRows()
{
    QList<DateRow> rows;
    for (const QString &line : fixtureText("calendar/dates.tsv").split(u'\n')) {
        if (!line.startsWith(u'#')) {
            const QStringList cells = line.split(u'\t');
            rows.append({cells.first(), cells.mid(1)});
        }
    }
    return rows;
}

QString written(std::optional<Instant> instant)
{
    if (!instant) {
        return u"-"_s;
    }
    const auto fraction = duration_cast<milliseconds>(*instant - floor<seconds>(*instant)).count();
    return fraction == 0
        ? iso8601(*instant)
        : iso8601(*instant).chopped(1) + QString::asprintf(".%03dZ", static_cast<int>(fraction));
}

struct Zone
{
    const char *name;
    int column;
};

class CalendarDateIn : public ::testing::TestWithParam<Zone>
{
};

TEST_P(CalendarDateIn, everyValueGivesItsInstantOrNone)
{
    const ScopedVariable zone("TZ", GetParam().name);
    const QList<DateRow> rows = dateRows();
    ASSERT_GE(rows.size(), 290);
    for (const DateRow &row : rows) {
        ASSERT_EQ(row.instants.size(), 4) << row.value.toStdString();
        EXPECT_EQ(written(parseCalendarDate(row.value)), row.instants.at(GetParam().column))
            << row.value.toStdString();
    }
}

INSTANTIATE_TEST_SUITE_P(Zones, CalendarDateIn,
    ::testing::Values(Zone{"America/New_York", 0}, Zone{"Europe/Berlin", 1},
        Zone{"Asia/Kathmandu", 2}, Zone{"America/Sao_Paulo", 3}),
    [](const auto &zone) {
        return QString::fromUtf8(zone.param.name).replace(u'/', u'_').toStdString();
    });

TEST(CalendarDate, absentAndBlankValuesAreNoDates)
{
    EXPECT_EQ(parseCalendarDate(std::nullopt), std::nullopt);
    EXPECT_EQ(parseCalendarDate(QString()), std::nullopt);
    EXPECT_EQ(parseCalendarDate(u" \t\u2003"_s), std::nullopt);
}

TEST(CalendarDate, monthsAreEnglishWhateverTheUsersLanguage)
{
    const ScopedVariable language("LC_ALL", "de_DE.UTF-8");
    EXPECT_EQ(written(parseCalendarDate(u"May 1 2025 9:00 AM"_s)), u"2025-05-01T13:00:00Z"_s);
    EXPECT_EQ(parseCalendarDate(u"Mai 1 2025 9:00 AM"_s), std::nullopt);
}

TEST(CalendarDate, changedTimeZoneIsFollowed)
{
    const QString value = u"2025-05-01 09:00"_s;
    const ScopedVariable berlin("TZ", "Europe/Berlin");
    EXPECT_EQ(written(parseCalendarDate(value)), u"2025-05-01T07:00:00Z"_s);
    const ScopedVariable tokyo("TZ", "Asia/Tokyo");
    EXPECT_EQ(written(parseCalendarDate(value)), u"2025-05-01T00:00:00Z"_s);
}

TEST(CalendarDate, lineEndsInsideAValueAreWhiteSpace)
{
    EXPECT_EQ(parseCalendarDate(u"2025-05-01 09:00\n"_s), std::nullopt);
    EXPECT_EQ(parseCalendarDate(u"\n2025-05-01"_s), std::nullopt);
}

// --- Days of the calendar ------------------------------------------------------------------------

TEST(LocalTime, dayOfTheCalendarKeepsTheTimeOfDayWhenTheClocksChange)
{
    const auto noon = instantAtWallTime(WallTime(local_days(year(2025) / 3 / 8) + 12h));
    EXPECT_EQ(*addingDays(*noon, days(1)) - *noon, 23h);
    EXPECT_EQ(*addingDays(*noon, days(2)) - *noon, 47h);
    EXPECT_EQ(*addingDays(*noon, days(365)) - *noon, 365 * 24h - 1h);
}

TEST(LocalTime, dayThatEndsInASkippedHourEndsAfterIt)
{
    const auto night = instantAtWallTime(WallTime(local_days(year(2025) / 3 / 8) + 2h + 30min));
    EXPECT_EQ(written(addingDays(*night, days(1))), u"2025-03-09T07:30:00Z"_s);
}

TEST(LocalTime, fractionsOfAMillisecondAreKept)
{
    const Instant instant = Instant(sys_days(year(2025) / 5 / 1)) + 13h + 123456789ns;
    EXPECT_EQ(*addingDays(instant, days(-1)), instant - 24h);
}

TEST(LocalTime, whatAnInstantCannotHoldIsAbsent)
{
    EXPECT_EQ(instantAtWallTime(WallTime(local_days(year(2300) / 1 / 1))), std::nullopt);
    EXPECT_EQ(instantAtWallTime(WallTime(local_days(year(1600) / 1 / 1))), std::nullopt);
    const Instant late = Instant(sys_days(year(2261) / 12 / 31));
    EXPECT_EQ(addingDays(late, days(90)), std::nullopt);
}

} // namespace
} // namespace velarc
