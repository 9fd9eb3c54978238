#include "actions/catalogue.h"
#include "base/uuid.h"
#include "entry/share_program.h"
#include "store/memory_defaults_domain.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

struct FileCloser
{
    void operator()(FILE *file) const { std::fclose(file); }
};

class ShareProgramTest : public ::testing::Test
{
protected:
    std::shared_ptr<MemoryDefaultsDomain> domain = std::make_shared<MemoryDefaultsDomain>();
    std::shared_ptr<const LocalStore> store =
        std::make_shared<const LocalStore>(domain, &builtInActions);
    std::unique_ptr<FILE, FileCloser> out{std::tmpfile()};
    std::unique_ptr<FILE, FileCloser> err{std::tmpfile()};
    QList<QUrl> opened;
    bool opens = true;
    bool forgets = false; // the store keeps nothing from one opening to the next
    bool inputIsTerminal = false;
    QByteArray standardInput;
    const Instant now{1'771'599'600s + 250ms};

    ShareExit perform(const QStringList &arguments)
    {
        ShareSurroundings surroundings;
        surroundings.openStore = [this] {
            return forgets ? std::make_shared<const LocalStore>(
                       std::make_shared<MemoryDefaultsDomain>(), &builtInActions)
                           : store;
        };
        surroundings.openUrl = [this](const QUrl &url) {
            opened.append(url);
            return opens;
        };
        surroundings.standardInputIsTerminal = [this] { return inputIsTerminal; };
        surroundings.readStandardInput = [this] { return standardInput; };
        surroundings.now = [this] { return now; };
        surroundings.out = out.get();
        surroundings.err = err.get();
        surroundings.version = u"1.2.3"_s;
        return performShareCommand(parseShareCommand(arguments), surroundings);
    }

    [[nodiscard]] QString complained() const
    {
        QByteArray bytes;
        std::rewind(err.get());
        for (int byte = std::fgetc(err.get()); byte != EOF; byte = std::fgetc(err.get())) {
            bytes.append(static_cast<char>(byte));
        }
        return QString::fromUtf8(bytes);
    }

    void expectNothingLeft() const
    {
        EXPECT_EQ(store->loadPendingHandoff(), std::nullopt);
        EXPECT_EQ(store->loadLatestResult(), std::nullopt);
        EXPECT_TRUE(opened.isEmpty());
    }
};

TEST_F(ShareProgramTest, textIsLeftAsItIsGivenBeforeTheAddressIsOpened)
{
    EXPECT_EQ(perform({u"--source"_s, u"Terminal"_s, u"  two\nlines "_s}), ShareExit::Done);
    const auto request = store->loadPendingHandoff();
    ASSERT_TRUE(request);
    EXPECT_EQ(request->inputText, u"  two\nlines "_s);
    EXPECT_EQ(request->sourceApp, u"Terminal"_s);
    EXPECT_EQ(request->actionID, std::nullopt);
    EXPECT_EQ(request->createdAt, Instant(1'771'599'600s));
    EXPECT_EQ(opened, QList<QUrl>{QUrl(u"velarc://share-handoff"_s)});
}

TEST_F(ShareProgramTest, textComesFromStandardInput)
{
    standardInput = "caf\xC3\xA9 \xFF";
    EXPECT_EQ(perform({}), ShareExit::Done);
    EXPECT_EQ(store->loadPendingHandoff()->inputText, u"caf\u00E9 \uFFFD"_s);
}

TEST_F(ShareProgramTest, actionIsNamedByItsTitleOrItsIdentifier)
{
    const AIAction joke = store->loadActions().at(3);
    EXPECT_EQ(perform({u"--action"_s, joke.name.toUpper(), u"x"_s}), ShareExit::Done);
    EXPECT_EQ(store->loadPendingHandoff()->actionID, joke.id);
    const QUuid unknown = newUuid();
    EXPECT_EQ(perform({u"--action"_s, uuidText(unknown), u"x"_s}), ShareExit::Done);
    EXPECT_EQ(store->loadPendingHandoff()->actionID, unknown);
}

TEST_F(ShareProgramTest, titleOfNoActionLeavesNothing)
{
    EXPECT_EQ(perform({u"--action"_s, u"Nope"_s, u"x"_s}), ShareExit::Usage);
    EXPECT_EQ(complained(),
        u"velarc-share: No action is called \"Nope\". \"velarc-cli actions\" lists them.\n"_s);
    expectNothingLeft();
}

TEST_F(ShareProgramTest, blankTextIsRefused)
{
    EXPECT_EQ(perform({u" \n\t"_s}), ShareExit::Usage);
    EXPECT_EQ(perform({u"--result"_s, u"--action-name=a"_s, QString()}), ShareExit::Usage);
    EXPECT_EQ(complained(), u"velarc-share: The text is blank.\n"_s.repeated(2));
    expectNothingLeft();
}

TEST_F(ShareProgramTest, noTextAtAllIsAUsageError)
{
    inputIsTerminal = true;
    EXPECT_EQ(perform({}), ShareExit::Usage);
    expectNothingLeft();
}

TEST_F(ShareProgramTest, resultIsLeftWithTheNameOfItsAction)
{
    EXPECT_EQ(perform({u"--result"_s, u"--action-name"_s, u"Joke"_s, u"ha\n"_s}), ShareExit::Done);
    const auto result = store->loadLatestResult();
    ASSERT_TRUE(result);
    EXPECT_EQ(result->actionName, u"Joke"_s);
    EXPECT_EQ(result->output, u"ha\n"_s);
    EXPECT_EQ(opened, QList<QUrl>{QUrl(u"velarc://share-result"_s)});
}

TEST_F(ShareProgramTest, laterTextTakesThePlaceOfTheEarlier)
{
    EXPECT_EQ(perform({u"one"_s}), ShareExit::Done);
    EXPECT_EQ(perform({u"two"_s}), ShareExit::Done);
    EXPECT_EQ(store->loadPendingHandoff()->inputText, u"two"_s);
}

TEST_F(ShareProgramTest, windowThatDoesNotOpenIsAFailureThatLosesNothing)
{
    opens = false;
    EXPECT_EQ(perform({u"x"_s}), ShareExit::Failed);
    EXPECT_EQ(complained(),
        u"velarc-share: The window could not be opened. The text is kept until "
        u"velarc://share-handoff is.\n"_s);
    EXPECT_TRUE(store->loadPendingHandoff());
}

TEST_F(ShareProgramTest, storeThatKeepsNothingIsAFailureAndOpensNothing)
{
    forgets = true;
    EXPECT_EQ(perform({u"x"_s}), ShareExit::Failed);
    EXPECT_EQ(complained(), u"velarc-share: The text could not be left for the window.\n"_s);
    EXPECT_TRUE(opened.isEmpty());
}

TEST_F(ShareProgramTest, usageErrorPointsToTheHelp)
{
    EXPECT_EQ(perform({u"--frob"_s}), ShareExit::Usage);
    EXPECT_EQ(
        complained(), u"velarc-share: Unknown option 'frob'.\nTry \"velarc-share --help\".\n"_s);
}

} // namespace
} // namespace velarc
