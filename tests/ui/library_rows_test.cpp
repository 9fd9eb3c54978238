#include "actions/catalogue.h"
#include "base/uuid.h"
#include "ui/library_rows.h"

#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

QStringList namesIn(const QList<LibraryRow> &rows, const QString &section)
{
    QStringList names;
    for (const LibraryRow &row : rows) {
        if (row.section == section) {
            names.append(row.name);
        }
    }
    return names;
}

QStringList namesFor(const QString &query)
{
    QStringList names;
    for (const LibraryRow &row : LibraryIndex(builtInActions()).rows(query, {}, std::nullopt)) {
        names.append(row.name);
    }
    return names;
}

AIAction named(const QString &name, qint64 order)
{
    AIAction action;
    action.id = newUuid();
    action.name = name;
    action.sortOrder = order;
    return action;
}

TEST(LibraryRows, theTrimmedQueryMatchesTheInvoiceActionsByName)
{
    EXPECT_EQ(namesFor(u"  INVOICE "_s),
        (QStringList{u"Extract Invoice Info"_s, u"Invoice Follow-Up Message"_s}));
}

TEST(LibraryRows, eisenhowerMatchesPriorityMatrixThroughItsPrompt)
{
    EXPECT_EQ(namesFor(u"eisenhower"_s), QStringList{u"Priority Matrix"_s});
}

TEST(LibraryRows, billingMatchesTheFollowUpThroughItsSkills)
{
    EXPECT_TRUE(namesFor(u"billing"_s).contains(u"Invoice Follow-Up Message"_s));
}

TEST(LibraryRows, aQueryMaySpanTwoTags)
{
    EXPECT_FALSE(namesFor(u"email-drafting client-communication"_s).isEmpty());
    AIAction action = named(u"a"_s, 0);
    action.skills = {u"One"_s, u"Two"_s};
    EXPECT_EQ(LibraryIndex({action}).rows(u"ne tw", {}, std::nullopt).size(), 1);
    EXPECT_EQ(LibraryIndex({action}).rows(u"onetwo", {}, std::nullopt).size(), 0);
}

TEST(LibraryRows, hiddenActionsAreNeverListedEvenWhereTheQueryMatches)
{
    AIAction hidden = named(u"Search Mail"_s, 0);
    hidden.destination = ActionDestination::system(SystemDestinationKind::MailSearchMessages);
    EXPECT_TRUE(LibraryIndex({hidden}).rows(u"search", {}, std::nullopt).isEmpty());
    EXPECT_TRUE(LibraryIndex({hidden}).rows(u"", {hidden.id}, std::nullopt).isEmpty());
}

TEST(LibraryRows, aPinnedActionThatIsAlsoRecentStandsOnlyUnderPinned)
{
    AIAction pinned = named(u"pinned"_s, 30);
    pinned.isPinned = true;
    const AIAction recent = named(u"recent"_s, 20);
    const AIAction other = named(u"other"_s, 10);
    const auto rows =
        LibraryIndex({other, recent, pinned}).rows(u"", {pinned.id, recent.id}, std::nullopt);
    ASSERT_EQ(rows.size(), 3);
    EXPECT_EQ(namesIn(rows, u"Pinned"_s), QStringList{u"pinned"_s});
    EXPECT_EQ(namesIn(rows, u"Recent"_s), QStringList{u"recent"_s});
    EXPECT_EQ(namesIn(rows, u"All Actions"_s), QStringList{u"other"_s});
}

TEST(LibraryRows, recentOnesStandInTheOrderOfRecencyAndOnlyWhereTheQueryFindsThem)
{
    const AIAction first = named(u"first ab"_s, 10);
    const AIAction second = named(u"second ab"_s, 20);
    const AIAction third = named(u"third"_s, 30);
    const LibraryIndex index({first, second, third});
    const auto rows = index.rows(u"AB", {third.id, second.id, first.id, newUuid()}, std::nullopt);
    EXPECT_EQ(namesIn(rows, u"Recent"_s), (QStringList{u"second ab"_s, u"first ab"_s}));
    EXPECT_EQ(rows.size(), 2);
}

TEST(LibraryRows, onlyTheChosenActionIsMarked)
{
    const AIAction first = named(u"first"_s, 10);
    const AIAction second = named(u"second"_s, 20);
    const auto rows = LibraryIndex({first, second}).rows(u"", {}, second.id);
    EXPECT_FALSE(rows.at(0).isChosen);
    EXPECT_TRUE(rows.at(1).isChosen);
}

TEST(LibraryRows, eachEngineHasItsShortWord)
{
    QStringList tags;
    for (const AIProvider provider : allProviders()) {
        tags.append(engineTag(provider));
    }
    EXPECT_EQ(tags,
        (QStringList{
            u"Default"_s, u"Apple"_s, u"OpenAI"_s, u"Gemini"_s, u"Anthropic"_s, u"Local"_s}));
}

} // namespace

} // namespace velarc
