#include "action_samples.h"

#include "actions/action_list.h"
#include "base/uuid.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

AIAction hidden(AIAction action)
{
    return bound(std::move(action),
        ActionDestination::system(SystemDestinationKind::CalendarListUpcomingEvents));
}

QStringList displayed(const QList<AIAction> &actions)
{
    return namesOf(sortedForDisplay(actions));
}

QStringList displayedByName(const QStringList &names)
{
    QList<AIAction> actions;
    for (const QString &name : names) {
        actions.append(actionNamed(name, 10));
    }
    return displayed(actions);
}

QList<QUuid> freshIDs(int count)
{
    QList<QUuid> ids;
    for (int index = 0; index < count; ++index) {
        ids.append(newUuid());
    }
    return ids;
}

} // namespace

TEST(VisibleActions, hiddenDestinationsAreLeftOutAndTheOrderStays)
{
    const QList<AIAction> actions{actionNamed(u"C"_s, 3), hidden(actionNamed(u"B"_s, 2)),
        bound(
            actionNamed(u"A"_s, 1), ActionDestination::system(SystemDestinationKind::MailCompose))};
    EXPECT_EQ(visibleActions(actions), (QList<AIAction>{actions[0], actions[2]}));
}

TEST(DisplayOrder, pinnedActionsStandFirst)
{
    EXPECT_EQ(displayed({actionNamed(u"A"_s, 1), pinned(actionNamed(u"B"_s, 9))}),
        (QStringList{u"B"_s, u"A"_s}));
}

TEST(DisplayOrder, lesserOrdersStandFirst)
{
    EXPECT_EQ(
        displayed({actionNamed(u"A"_s, 10), actionNamed(u"B"_s, -10), actionNamed(u"C"_s, 0)}),
        (QStringList{u"B"_s, u"C"_s, u"A"_s}));
}

TEST(DisplayOrder, equalOrdersSortByNameWithoutRegardToCase)
{
    EXPECT_EQ(displayedByName({u"delta"_s, u"Beta"_s, u"alpha"_s, u"CHARLIE"_s}),
        (QStringList{u"alpha"_s, u"Beta"_s, u"CHARLIE"_s, u"delta"_s}));
}

TEST(DisplayOrder, pinStateBeatsOrderAndOrderBeatsName)
{
    const QList<AIAction> actions{actionNamed(u"a"_s, 2), actionNamed(u"z"_s, 1),
        pinned(actionNamed(u"c"_s, 7)), pinned(actionNamed(u"b"_s, 7)),
        pinned(actionNamed(u"y"_s, 6))};
    EXPECT_EQ(displayed(actions), (QStringList{u"y"_s, u"b"_s, u"c"_s, u"z"_s, u"a"_s}));
}

TEST(DisplayOrder, namesThatDifferInCaseOnlyKeepTheirOrder)
{
    EXPECT_EQ(displayedByName({u"same"_s, u"SAME"_s, u"Same"_s}),
        (QStringList{u"same"_s, u"SAME"_s, u"Same"_s}));
    EXPECT_EQ(displayedByName({u"Same"_s, u"same"_s, u"SAME"_s}),
        (QStringList{u"Same"_s, u"same"_s, u"SAME"_s}));
}

TEST(DisplayOrder, sortIsStable)
{
    QList<AIAction> actions;
    for (int index = 0; index < 1000; ++index) {
        actions.append(actionNamed(u"same"_s, 1));
    }
    EXPECT_EQ(sortedForDisplay(actions), actions);
}

TEST(DisplayOrder, accentsStandWithTheirLettersAndCount)
{
    EXPECT_EQ(displayedByName({u"zebra"_s, u"\u00e9clair"_s, u"eclair"_s, u"fable"_s}),
        (QStringList{u"eclair"_s, u"\u00e9clair"_s, u"fable"_s, u"zebra"_s}));
}

TEST(DisplayOrder, namesFollowTheLocale)
{
    const QStringList names{u"Zebra"_s, u"\u00c4pfel"_s, u"Birne"_s, u"apfel"_s};
    {
        const ScopedVariable german("LC_ALL", "de_DE.UTF-8");
        EXPECT_EQ(displayedByName(names),
            (QStringList{u"apfel"_s, u"\u00c4pfel"_s, u"Birne"_s, u"Zebra"_s}));
    }
    const ScopedVariable swedish("LC_ALL", "sv_SE.UTF-8");
    EXPECT_EQ(
        displayedByName(names), (QStringList{u"apfel"_s, u"Birne"_s, u"Zebra"_s, u"\u00c4pfel"_s}));
}

TEST(DisplayOrder, emptyAndOddNamesSortToo)
{
    EXPECT_EQ(displayedByName({u"b"_s, u""_s, QString(QChar(0xD800)), u"a"_s}).first(), u""_s);
    EXPECT_TRUE(sortedForDisplay({}).isEmpty());
}

TEST(PinnedActions, areTheVisiblePinnedOnesInDisplayOrder)
{
    const QList<AIAction> actions{pinned(actionNamed(u"B"_s, 2)), actionNamed(u"C"_s, 0),
        pinned(hidden(actionNamed(u"H"_s, 0))), pinned(actionNamed(u"A"_s, 1))};
    EXPECT_EQ(namesOf(pinnedActions(actions)), (QStringList{u"A"_s, u"B"_s}));
}

TEST(SelectedAction, isTheVisibleActionOfTheSelectedId)
{
    const QList<AIAction> actions{pinned(actionNamed(u"A"_s)), actionNamed(u"B"_s)};
    EXPECT_EQ(selectedAction(actions, actions[1].id), actions[1]);
}

TEST(SelectedAction, withoutSelectionIsTheFirstInDisplayOrder)
{
    const QList<AIAction> actions{actionNamed(u"B"_s, 1), actionNamed(u"a"_s, 1),
        pinned(actionNamed(u"P"_s, 9)), pinned(actionNamed(u"Q"_s, 9))};
    EXPECT_EQ(selectedAction(actions, std::nullopt), actions[2]);
    EXPECT_EQ(selectedAction(actions.first(2), std::nullopt), actions[1]);
}

TEST(SelectedAction, selectionOfADeletedActionFallsToTheFirstInDisplayOrder)
{
    const QList<AIAction> actions{actionNamed(u"B"_s, 2), actionNamed(u"A"_s, 1)};
    EXPECT_EQ(selectedAction(actions, newUuid()), actions[1]);
}

TEST(SelectedAction, selectionOfAHiddenActionFallsToTheFirstInDisplayOrder)
{
    const QList<AIAction> actions{hidden(actionNamed(u"H"_s, 0)), actionNamed(u"A"_s, 1)};
    EXPECT_EQ(selectedAction(actions, actions[0].id), actions[1]);
}

TEST(SelectedAction, hiddenTwinOfTheSelectedIdIsPassedOver)
{
    QList<AIAction> actions{
        hidden(actionNamed(u"H"_s)), actionNamed(u"A"_s, 2), actionNamed(u"B"_s, 1)};
    actions[0].id = actions[1].id;
    EXPECT_EQ(selectedAction(actions, actions[1].id), actions[1]);
}

TEST(SelectedAction, isNoneWhereOnlyHiddenActionsAre)
{
    const QList<AIAction> actions{hidden(actionNamed(u"H"_s))};
    EXPECT_EQ(selectedAction(actions, actions[0].id), std::nullopt);
    EXPECT_EQ(selectedAction(actions, std::nullopt), std::nullopt);
    EXPECT_EQ(selectedAction({}, std::nullopt), std::nullopt);
}

TEST(SelectedAction, withoutSelectionIsTheOneThatTheSortPutsFirst)
{
    QList<AIAction> actions;
    for (const QStringView name : {u"c", u"B", u"b", u"a", u"A"}) {
        actions.append(actionNamed(name.toString(), 1));
    }
    EXPECT_EQ(selectedAction(actions, std::nullopt), sortedForDisplay(actions).first());
    EXPECT_EQ(selectedAction(actions, std::nullopt), actions[3]);
}

TEST(RecentActions, noteMovesTheIdToTheHead)
{
    const QList<QUuid> ids = freshIDs(3);
    EXPECT_EQ(withRecentAction(ids, ids[2]), (QList<QUuid>{ids[2], ids[0], ids[1]}));
}

TEST(RecentActions, notingTheFirstOneLeavesTheListAsItWas)
{
    const QList<QUuid> ids = freshIDs(3);
    EXPECT_EQ(withRecentAction(ids, ids[0]), ids);
}

TEST(RecentActions, nineDifferentOnesLeaveEightWithTheFirstOneGone)
{
    const QList<QUuid> noted = freshIDs(9);
    QList<QUuid> ids;
    for (const QUuid &id : noted) {
        ids = withRecentAction(ids, id);
    }
    QList<QUuid> expected(noted.crbegin(), noted.crend());
    expected.removeLast();
    EXPECT_EQ(ids, expected);
}

TEST(RecentActions, everyOccurrenceOfTheIdGoes)
{
    const QList<QUuid> ids = freshIDs(2);
    EXPECT_EQ(withRecentAction({ids[0], ids[1], ids[0]}, ids[0]), ids);
}

TEST(RecentActions, storedListThatIsTooLongIsCutWhenOneIsNoted)
{
    const QList<QUuid> ids = freshIDs(20);
    EXPECT_EQ(withRecentAction(ids, ids[19]), (QList<QUuid>{ids[19]} + ids.first(7)));
}

TEST(RecentActions, visibleActionsStandInTheOrderOfTheIds)
{
    const QList<AIAction> actions{actionNamed(u"A"_s), actionNamed(u"B"_s), actionNamed(u"C"_s)};
    EXPECT_EQ(namesOf(recentActions(actions, {actions[2].id, actions[0].id})),
        (QStringList{u"C"_s, u"A"_s}));
}

TEST(RecentActions, idsWithoutAVisibleActionAreSkipped)
{
    const QList<AIAction> actions{hidden(actionNamed(u"H"_s)), actionNamed(u"A"_s)};
    EXPECT_EQ(namesOf(recentActions(actions, {newUuid(), actions[0].id, actions[1].id})),
        QStringList{u"A"_s});
    EXPECT_TRUE(recentActions(actions, {}).isEmpty());
    EXPECT_TRUE(recentActions({}, freshIDs(2)).isEmpty());
}

TEST(RecentActions, ofTwoActionsOfOneIdTheFirstVisibleOneIsTaken)
{
    QList<AIAction> actions{hidden(actionNamed(u"H"_s)), actionNamed(u"A"_s), actionNamed(u"B"_s)};
    actions[0].id = actions[2].id = actions[1].id;
    EXPECT_EQ(namesOf(recentActions(actions, {actions[1].id})), QStringList{u"A"_s});
}

} // namespace velarc
