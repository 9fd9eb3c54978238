#include "entry/share_command.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

template <typename Command> Command parsed(const QStringList &arguments)
{
    const ShareCommand command = parseShareCommand(arguments);
    const auto *wanted = std::get_if<Command>(&command);
    if (wanted == nullptr) {
        ADD_FAILURE() << "another command was read from " << arguments.join(u' ').toStdString();
        return {};
    }
    return *wanted;
}

TEST(ShareCommand, textIsSharedWithItsActionAndItsSource)
{
    const auto share =
        parsed<ShareTextCommand>({u"--action"_s, u"Joke"_s, u"--source=Terminal"_s, u"cats"_s});
    EXPECT_EQ(share.action, u"Joke"_s);
    EXPECT_EQ(share.source, u"Terminal"_s);
    EXPECT_EQ(share.text, u"cats"_s);
}

TEST(ShareCommand, absentTextAndADashStandForStandardInput)
{
    EXPECT_EQ(parsed<ShareTextCommand>({}).text, std::nullopt);
    EXPECT_EQ(parsed<ShareTextCommand>({u"-"_s}).text, std::nullopt);
    EXPECT_EQ(parsed<ShareTextCommand>({u"--"_s, u"--result"_s}).text, u"--result"_s);
}

TEST(ShareCommand, resultHasTheNameOfItsAction)
{
    const auto share =
        parsed<ShareResultCommand>({u"--result"_s, u"--action-name"_s, u"Joke"_s, u"ha"_s});
    EXPECT_EQ(share.actionName, u"Joke"_s);
    EXPECT_EQ(share.text, u"ha"_s);
}

TEST(ShareCommand, helpAndVersionAreAskedForByOptions)
{
    parsed<ShareHelpCommand>({u"-h"_s});
    parsed<ShareVersionCommand>({u"--version"_s, u"text"_s});
}

struct UsageRow
{
    QStringList arguments;
    const char16_t *message;
};

class ShareUsageTest : public ::testing::TestWithParam<UsageRow>
{
};

TEST_P(ShareUsageTest, saysInOneSentenceWhatIsWrong)
{
    EXPECT_EQ(parsed<ShareUsageError>(GetParam().arguments).message,
        QString::fromUtf16(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(EveryMistake, ShareUsageTest,
    ::testing::Values(UsageRow{{u"two"_s, u"words"_s},
                          u"Surplus text: \"words\". Put a text of several words into quotes."},
        UsageRow{{u"--result"_s, u"x"_s}, u"--result needs --action-name NAME."},
        UsageRow{{u"--result"_s, u"--action-name=a"_s, u"--source=b"_s},
            u"--source does not go with --result."},
        UsageRow{{u"--action-name=a"_s}, u"--action-name goes with --result."},
        UsageRow{{u"--frob"_s}, u"Unknown option 'frob'."}));

} // namespace
} // namespace velarc
