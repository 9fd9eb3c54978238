#include "action_samples.h"

#include "actions/action_json.h"
#include "actions/catalogue.h"
#include "base/text.h"
#include "support/printers.h"

#include <QSet>

#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qsizetype kBuiltInCount = 22;

const ActionDestination kShown = ActionDestination::output(OutputDestination::ShowInApp);
const ActionDestination kCopied = ActionDestination::output(OutputDestination::CopyToClipboard);
const ActionDestination kMailed = ActionDestination::system(SystemDestinationKind::MailCompose);

AIAction renamedBy(AIAction action)
{
    return mergeWithCatalogue({action}).first();
}

QList<qint64> ordersOf(const QList<AIAction> &actions)
{
    QList<qint64> orders;
    for (const AIAction &action : actions) {
        orders.append(action.sortOrder);
    }
    return orders;
}

// The list as a name and an order a row, to compare lists whose ids differ.
QStringList rowsOf(const QList<AIAction> &actions)
{
    QStringList rows;
    for (const AIAction &action : actions) {
        rows.append(action.name + u' ' + QString::number(action.sortOrder));
    }
    return rows;
}

} // namespace

TEST(Catalogue, everyFieldOfEveryActionIsAsShipped)
{
    const Json expected = parseJson(fixture("catalogue/built_in_actions.json"));
    const QList<AIAction> actions = builtInActions();
    ASSERT_EQ(expected.size(), 22U);
    ASSERT_EQ(actions.size(), kBuiltInCount);
    for (qsizetype index = 0; index < actions.size(); ++index) {
        Json written = encodeAction(actions[index]);
        ASSERT_EQ(written.erase("id"), 1U);
        EXPECT_EQ(writeJson(written), writeJson(expected.at(static_cast<std::size_t>(index))));
    }
}

TEST(Catalogue, promptsHoldLineFeedsOnly)
{
    for (const AIAction &action : builtInActions()) {
        EXPECT_FALSE(action.systemPrompt.contains(u'\r')) << action.name.toStdString();
        EXPECT_FALSE(action.systemPrompt.contains(u'\\')) << action.name.toStdString();
        EXPECT_EQ(action.systemPrompt, trimmed(action.systemPrompt).toString());
    }
}

TEST(Catalogue, everyListGetsFreshIds)
{
    QSet<QUuid> ids;
    for (const AIAction &action : builtInActions() + builtInActions()) {
        EXPECT_FALSE(action.id.isNull());
        ids.insert(action.id);
    }
    EXPECT_EQ(ids.size(), 2 * kBuiltInCount);
}

TEST(Catalogue, namesDifferInMoreThanCase)
{
    QSet<QString> names;
    for (const AIAction &action : builtInActions()) {
        names.insert(foldedToLower(action.name));
    }
    EXPECT_EQ(names.size(), kBuiltInCount);
}

TEST(Catalogue, ordersRunFromTenInTens)
{
    QList<qint64> expected;
    for (qint64 order = 10; order <= 220; order += 10) {
        expected.append(order);
    }
    EXPECT_EQ(ordersOf(builtInActions()), expected);
}

TEST(CatalogueMerge, emptyListGetsTheWholeCatalogue)
{
    EXPECT_EQ(rowsOf(mergeWithCatalogue({})), rowsOf(builtInActions()));
    EXPECT_EQ(rowsOf(reconciledWithCatalogue({})), rowsOf(builtInActions()));
}

TEST(CatalogueMerge, storedCatalogueStaysAsItIs)
{
    const QList<AIAction> stored = builtInActions();
    EXPECT_EQ(reconciledWithCatalogue(stored), stored);
}

TEST(CatalogueMerge, actionOfTheUserStaysFirstAndKeepsItsOrderOfNought)
{
    const AIAction foo = actionNamed(u"Foo"_s, 0);
    const QList<AIAction> actions = reconciledWithCatalogue({foo});
    ASSERT_EQ(actions.size(), 23);
    EXPECT_EQ(actions.first(), foo);
    EXPECT_EQ(rowsOf(actions.mid(1)), rowsOf(builtInActions()));
}

TEST(CatalogueMerge, missingActionsComeBackInCatalogueOrderAndLeaveTheOrdersOfNought)
{
    const QList<AIAction> stored{actionNamed(u"Priority Matrix"_s), actionNamed(u"Git Ideas"_s),
        actionNamed(u"Tell Me a Joke"_s)};
    const QList<AIAction> actions = reconciledWithCatalogue(stored);
    ASSERT_EQ(actions.size(), kBuiltInCount);
    EXPECT_EQ(actions.first(3), stored);
    QStringList missing = rowsOf(builtInActions());
    missing.removeIf([&](const QString &row) {
        return row == u"Priority Matrix 190" || row == u"Git Ideas 40"
            || row == u"Tell Me a Joke 60";
    });
    EXPECT_EQ(rowsOf(actions.mid(3)), missing);
}

TEST(CatalogueMerge, nameInOtherCaseKeepsTheBuiltInActionOut)
{
    const AIAction shouted = actionNamed(u"DRAFT EMAIL REPLY"_s, 5);
    const QStringList names = namesOf(mergeWithCatalogue({shouted}));
    EXPECT_EQ(names.size(), kBuiltInCount);
    EXPECT_EQ(names.first(), u"DRAFT EMAIL REPLY"_s);
    EXPECT_FALSE(names.contains(u"Draft Email Reply"_s));
}

TEST(CatalogueMerge, nameWithSpacesAroundItIsAnotherName)
{
    const QStringList names = namesOf(mergeWithCatalogue({actionNamed(u"Git Ideas "_s)}));
    EXPECT_TRUE(names.contains(u"Git Ideas"_s));
}

TEST(CatalogueMerge, storedActionsAreNeverOverwrittenOrDropped)
{
    AIAction edited = actionNamed(u"Git Ideas"_s, 7);
    edited.systemPrompt = u"Mine"_s;
    edited.icon = u"star"_s;
    edited.provider = AIProvider::Gemini;
    const AIAction twin = actionNamed(u"Git Ideas"_s, 8);
    const QList<AIAction> actions = mergeWithCatalogue({edited, twin});
    EXPECT_EQ(actions.first(2), (QList<AIAction>{edited, twin}));
    EXPECT_EQ(actions.size(), kBuiltInCount + 1);
}

TEST(CatalogueMerge, mailActionOfEarlierVersionsIsRenamed)
{
    AIAction stored = bound(actionNamed(u"Compose Email"_s, 4), kMailed);
    stored.systemPrompt = u"Mine"_s;
    const QList<AIAction> actions = mergeWithCatalogue({stored});
    EXPECT_EQ(actions.size(), kBuiltInCount);
    stored.name = u"Compose Email (Mail App)"_s;
    EXPECT_EQ(actions.first(), stored);
}

TEST(CatalogueMerge, replyActionOfEarlierVersionsIsRenamed)
{
    const AIAction stored = bound(actionNamed(u"Email Reply Draft"_s, 4), kShown);
    EXPECT_EQ(renamedBy(stored).name, u"Draft Email Reply"_s);
    EXPECT_EQ(mergeWithCatalogue({stored}).size(), kBuiltInCount);
}

TEST(CatalogueMerge, replyActionOnAnotherDestinationKeepsItsNameAndTheBuiltInOneIsAdded)
{
    const AIAction stored = bound(actionNamed(u"Email Reply Draft"_s, 4), kCopied);
    const QList<AIAction> actions = mergeWithCatalogue({stored});
    EXPECT_EQ(actions.size(), kBuiltInCount + 1);
    EXPECT_EQ(actions.first(), stored);
    EXPECT_TRUE(namesOf(actions).contains(u"Draft Email Reply"_s));
}

TEST(CatalogueMerge, oldNamesAreKnownToTheLetterAndOnTheirDestinationOnly)
{
    EXPECT_EQ(renamedBy(bound(actionNamed(u"compose email"_s), kMailed)).name, u"compose email"_s);
    EXPECT_EQ(renamedBy(bound(actionNamed(u"Compose Email"_s), kShown)).name, u"Compose Email"_s);
    EXPECT_EQ(
        renamedBy(bound(actionNamed(u"email reply draft"_s), kShown)).name, u"email reply draft"_s);
    EXPECT_EQ(renamedBy(bound(actionNamed(u"Email Reply Draft"_s), kMailed)).name,
        u"Email Reply Draft"_s);
}

TEST(CatalogueMerge, renamedActionBesideTodaysNameStays)
{
    const QList<AIAction> actions = mergeWithCatalogue(
        {bound(actionNamed(u"Email Reply Draft"_s), kShown), actionNamed(u"Draft Email Reply"_s)});
    EXPECT_EQ(namesOf(actions).count(u"Draft Email Reply"_s), 2);
    EXPECT_EQ(actions.size(), kBuiltInCount + 1);
}

TEST(CatalogueMerge, mergingTwiceIsMergingOnce)
{
    const QList<AIAction> once = reconciledWithCatalogue({actionNamed(u"Foo"_s)});
    EXPECT_EQ(reconciledWithCatalogue(once), once);
}

TEST(SortOrders, listWithoutOrdersIsNumberedInTens)
{
    const QList<AIAction> actions =
        assignSortOrdersIfNeeded({actionNamed(u"B"_s), actionNamed(u"A"_s), actionNamed(u"C"_s)});
    EXPECT_EQ(rowsOf(actions), (QStringList{u"B 10"_s, u"A 20"_s, u"C 30"_s}));
}

TEST(SortOrders, oneOrderLeavesTheListAsItIs)
{
    for (const qint64 order : {1, -1}) {
        const QList<AIAction> actions{
            actionNamed(u"A"_s), actionNamed(u"B"_s, order), actionNamed(u"C"_s)};
        EXPECT_EQ(assignSortOrdersIfNeeded(actions), actions);
    }
}

TEST(SortOrders, emptyListStaysEmpty)
{
    EXPECT_TRUE(assignSortOrdersIfNeeded({}).isEmpty());
}

TEST(FormatRepair, systemActionInAnotherFormatBecomesText)
{
    AIAction stored = bound(actionNamed(u"Mail"_s, 3), kMailed);
    stored.outputFormat = OutputFormat::Pdf;
    const QList<AIAction> actions = reconciledWithCatalogue({stored});
    EXPECT_EQ(actions.first().outputFormat, OutputFormat::Text);
    stored.outputFormat = OutputFormat::Text;
    EXPECT_EQ(actions.first(), stored);
}

TEST(FormatRepair, hiddenSystemActionIsRepairedToo)
{
    AIAction stored = bound(actionNamed(u"Search"_s, 3),
        ActionDestination::system(SystemDestinationKind::MailSearchMessages));
    stored.outputFormat = OutputFormat::Image;
    EXPECT_EQ(withFormatsRepaired({stored}).first().outputFormat, OutputFormat::Text);
}

TEST(FormatRepair, allElseKeepsItsFormat)
{
    AIAction mail = bound(actionNamed(u"Mail"_s), kMailed);
    mail.outputFormat = OutputFormat::Markdown;
    AIAction picture = actionNamed(u"Picture"_s);
    picture.provider = AIProvider::Gemini;
    picture.outputFormat = OutputFormat::Image;
    const QList<AIAction> actions{mail, picture};
    EXPECT_EQ(withFormatsRepaired(actions), actions);
}

} // namespace velarc
