#include "base/locale_text.h"
#include "support/environment.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono;

// The test program's own locale, wherever a test names no other.
constexpr const char *kUS = "en_US.UTF-8";

Instant at(year_month_day day, seconds time = {})
{
    return sys_days(day) + time;
}

const Instant kAfternoon = at(2026y / 2 / 20, 15h);

// Some versions of the locale data part time and half of the day by a narrow no-break space.
QString longDateIn(const char *zone, const char *locale, Instant instant)
{
    const ScopedVariable timeZone("TZ", zone);
    const ScopedVariable language("LC_ALL", locale);
    return longDateShortTime(instant).replace(QChar(0x202F), u' ');
}

QString dayKeyIn(const char *zone, Instant instant)
{
    const ScopedVariable timeZone("TZ", zone);
    return localDayKey(instant);
}

} // namespace

TEST(LongDateShortTime, isInTheUsersLanguage)
{
    EXPECT_EQ(longDateIn("UTC", kUS, kAfternoon), u"February 20, 2026 at 3:00 PM"_qs);
    EXPECT_EQ(longDateIn("UTC", "de_DE.UTF-8", kAfternoon), u"20. Februar 2026 um 15:00"_qs);
}

TEST(ShortTime, isTheTimeAloneInTheUsersLanguageAndZone)
{
    const ScopedVariable timeZone("TZ", "America/New_York");
    EXPECT_EQ(shortTime(kAfternoon).replace(QChar(0x202F), u' '), u"10:00 AM"_qs);
    const ScopedVariable language("LC_ALL", "de_DE.UTF-8");
    EXPECT_EQ(shortTime(kAfternoon), u"10:00"_qs);
}

TEST(LongDateShortTime, followsTheTimeZoneAtEachCall)
{
    EXPECT_EQ(longDateIn("America/New_York", kUS, kAfternoon), u"February 20, 2026 at 10:00 AM"_qs);
    EXPECT_EQ(longDateIn("Asia/Kolkata", kUS, kAfternoon), u"February 20, 2026 at 8:30 PM"_qs);
    EXPECT_EQ(longDateIn("Asia/Tokyo", kUS, kAfternoon), u"February 21, 2026 at 12:00 AM"_qs);
}

TEST(LongDateShortTime, crossesTheChangeToSummerTime)
{
    const Instant change = at(2026y / 3 / 8, 7h);
    EXPECT_EQ(longDateIn("America/New_York", kUS, change - 1s), u"March 8, 2026 at 1:59 AM"_qs);
    EXPECT_EQ(longDateIn("America/New_York", kUS, change), u"March 8, 2026 at 3:00 AM"_qs);
    const Instant back = at(2026y / 11 / 1, 6h);
    EXPECT_EQ(longDateIn("America/New_York", kUS, back - 1s), u"November 1, 2026 at 1:59 AM"_qs);
    EXPECT_EQ(longDateIn("America/New_York", kUS, back), u"November 1, 2026 at 1:00 AM"_qs);
}

TEST(LongDateShortTime, plainLocaleOfTheSystemReadsAsEnglish)
{
    EXPECT_EQ(longDateIn("UTC", "C", kAfternoon), u"February 20, 2026 at 3:00 PM"_qs);
    EXPECT_EQ(longDateIn("UTC", "C.UTF-8", kAfternoon), u"February 20, 2026 at 3:00 PM"_qs);
    EXPECT_EQ(longDateIn("UTC", "POSIX", kAfternoon), u"February 20, 2026 at 3:00 PM"_qs);
}

TEST(LongDateShortTime, aLocaleThatNobodyKnowsStillGivesADate)
{
    for (const char *unknown : {"xx_YY.UTF-8", "no such locale", "@", "____", "\xFF\xFE"}) {
        EXPECT_TRUE(longDateIn("UTC", unknown, kAfternoon).contains(u"2026")) << unknown;
    }
}

TEST(LongDateShortTime, variablesAreAskedInTheirRank)
{
    const ScopedVariable zone("TZ", "UTC");
    const ScopedVariable none("LC_ALL", std::nullopt);
    const ScopedVariable german("LANG", "de_DE.UTF-8");
    {
        const ScopedVariable noTime("LC_TIME", std::nullopt);
        EXPECT_TRUE(longDateShortTime(kAfternoon).contains(u"Februar 2026"));
    }
    const ScopedVariable french("LC_TIME", "fr_FR.UTF-8");
    EXPECT_TRUE(longDateShortTime(kAfternoon).contains(u"20 f\u00E9vrier 2026"));
    const ScopedVariable emptyOnesAreNone("LC_ALL", "");
    EXPECT_TRUE(longDateShortTime(kAfternoon).contains(u"20 f\u00E9vrier 2026"));
}

TEST(LocalDayKey, changesAtLocalMidnight)
{
    const Instant newYorkMidnight = at(2026y / 2 / 20, 5h);
    EXPECT_EQ(dayKeyIn("America/New_York", newYorkMidnight - 1s), u"2026-02-19"_qs);
    EXPECT_EQ(dayKeyIn("America/New_York", newYorkMidnight), u"2026-02-20"_qs);
    const Instant tokyoMidnight = at(2026y / 2 / 19, 15h);
    EXPECT_EQ(dayKeyIn("Asia/Tokyo", tokyoMidnight - 1ms), u"2026-02-19"_qs);
    EXPECT_EQ(dayKeyIn("Asia/Tokyo", tokyoMidnight), u"2026-02-20"_qs);
    const Instant kolkataMidnight = at(2026y / 2 / 19, 18h + 30min);
    EXPECT_EQ(dayKeyIn("Asia/Kolkata", kolkataMidnight - 1s), u"2026-02-19"_qs);
    EXPECT_EQ(dayKeyIn("Asia/Kolkata", kolkataMidnight), u"2026-02-20"_qs);
}

TEST(LocalDayKey, readsAZoneThatIsWrittenAsARule)
{
    EXPECT_EQ(dayKeyIn("EST5EDT,M3.2.0,M11.1.0", at(2026y / 7 / 1, 3h + 59min)), u"2026-06-30"_qs);
    EXPECT_EQ(dayKeyIn("EST5EDT,M3.2.0,M11.1.0", at(2026y / 7 / 1, 4h)), u"2026-07-01"_qs);
}

TEST(LocalDayKey, isTheSameInEveryLanguage)
{
    for (const char *locale : {"th_TH.UTF-8", "ar_EG.UTF-8", "fa_IR.UTF-8", "C"}) {
        const ScopedVariable language("LC_ALL", locale);
        EXPECT_EQ(dayKeyIn("UTC", kAfternoon), u"2026-02-20"_qs) << locale;
    }
}

TEST(Iso8601, isInUtcToTheSecond)
{
    const ScopedVariable zone("TZ", "Asia/Tokyo");
    EXPECT_EQ(iso8601(kAfternoon), u"2026-02-20T15:00:00Z"_qs);
    EXPECT_EQ(iso8601(kAfternoon + 999ms), u"2026-02-20T15:00:00Z"_qs);
    EXPECT_EQ(iso8601(Instant()), u"1970-01-01T00:00:00Z"_qs);
}

TEST(Iso8601, readsTheClockDownwardsBefore1970)
{
    EXPECT_EQ(iso8601(Instant() - 1ms), u"1969-12-31T23:59:59Z"_qs);
    EXPECT_EQ(iso8601(at(1815y / 6 / 18, 11h + 35min)), u"1815-06-18T11:35:00Z"_qs);
}

} // namespace velarc
