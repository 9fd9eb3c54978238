#include "entry/window_command.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

TEST(WindowCommand, takesOneAddressAtMost)
{
    EXPECT_TRUE(std::get<ShowWindow>(parseWindowCommand({})).addresses.isEmpty());
    EXPECT_EQ(std::get<ShowWindow>(parseWindowCommand({u"velarc://share-result"_s})).addresses,
        QStringList{u"velarc://share-result"_s});
    EXPECT_EQ(std::get<WindowUsageError>(parseWindowCommand({u"a"_s, u"b"_s})).message,
        u"Surplus argument: \"b\"."_s);
}

TEST(WindowCommand, busStartsItWithoutAWindow)
{
    EXPECT_TRUE(std::holds_alternative<AwaitRequests>(parseWindowCommand({u"--service"_s})));
    EXPECT_TRUE(std::holds_alternative<WindowUsageError>(
        parseWindowCommand({u"--service"_s, u"velarc://share-result"_s})));
}

TEST(WindowCommand, helpVersionAndMistakesAreTold)
{
    EXPECT_TRUE(std::holds_alternative<WindowHelp>(parseWindowCommand({u"-h"_s})));
    EXPECT_TRUE(std::holds_alternative<WindowVersion>(parseWindowCommand({u"--version"_s})));
    EXPECT_EQ(std::get<WindowUsageError>(parseWindowCommand({u"--frob"_s})).message,
        u"Unknown option 'frob'."_s);
    EXPECT_TRUE(windowHelp().startsWith(u"Usage: velarc [URL]"_s));
}

} // namespace
} // namespace velarc
