#include "base/locale_text.h"
#include "support/environment.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

// 2026-03-31T16:00:00Z, noon in New York.
constexpr Instant kNow{std::chrono::seconds(1'774'972'800)};

struct AgoRow
{
    std::chrono::seconds ago;
    const char16_t *text;
};

class RelativeDateTest : public ::testing::TestWithParam<AgoRow>
{
};

TEST_P(RelativeDateTest, isToldInTheLargestUnitOfWhichOneHasPassedWhole)
{
    EXPECT_EQ(relativeShort(kNow - GetParam().ago, kNow), QString::fromUtf16(GetParam().text));
}

INSTANTIATE_TEST_SUITE_P(EveryUnit, RelativeDateTest,
    ::testing::Values(AgoRow{0s, u"0 sec. ago"}, AgoRow{59s, u"59 sec. ago"},
        AgoRow{60s, u"1 min. ago"}, AgoRow{3599s, u"59 min. ago"}, AgoRow{3600s, u"1 hr. ago"},
        AgoRow{23h, u"23 hr. ago"}, AgoRow{24h, u"1 day ago"}, AgoRow{24h * 6, u"6 days ago"},
        AgoRow{24h * 7, u"1 wk. ago"}, AgoRow{24h * 27, u"3 wk. ago"},
        AgoRow{24h * 62, u"2 mo. ago"}, AgoRow{24h * 365, u"1 yr. ago"}, AgoRow{-2h, u"in 2 hr."}));

TEST(RelativeDate, isToldInTheUsersLanguage)
{
    const ScopedVariable german("LC_ALL", "de_DE.UTF-8");
    EXPECT_EQ(relativeShort(kNow - 2h, kNow), u"vor 2 Std."_s);
}

} // namespace
} // namespace velarc
