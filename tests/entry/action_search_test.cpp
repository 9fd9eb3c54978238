#include "base/uuid.h"
#include "entry/action_search.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

AIAction action(const QString &name, const QStringList &skills = {})
{
    AIAction made;
    made.id = newUuid();
    made.name = name;
    made.skills = skills;
    return made;
}

const QList<AIAction> kLibrary{action(u"One-Sentence Summary"_s, {u"prose"_s, u"summary"_s}),
    action(u"Tell Me a Joke"_s, {u"humor"_s}), action(u"R\u00E9sum\u00E9 Review"_s)};

QStringList found(const QStringList &terms)
{
    QStringList names;
    for (const ActionHit &hit : searchActions(kLibrary, terms)) {
        names.append(hit.action.name);
    }
    return names;
}

QStringList everyName()
{
    QStringList names;
    for (const AIAction &each : kLibrary) {
        names.append(each.name);
    }
    return names;
}

TEST(ActionSearch, nameIsFoundByAnyPartOfIt)
{
    EXPECT_EQ(found({u"joke"_s}), QStringList{u"Tell Me a Joke"_s});
    EXPECT_EQ(found({u"TELL"_s, u"jo"_s}), QStringList{u"Tell Me a Joke"_s});
    EXPECT_EQ(found({u"sentence"_s}), QStringList{u"One-Sentence Summary"_s});
}

TEST(ActionSearch, skillIsFoundToo)
{
    EXPECT_EQ(found({u"humor"_s}), QStringList{u"Tell Me a Joke"_s});
}

TEST(ActionSearch, accentsDoNotCount)
{
    EXPECT_EQ(found({u"resume"_s}), QStringList{u"R\u00E9sum\u00E9 Review"_s});
    EXPECT_EQ(found({u"R\u00C9SUM\u00C9"_s}), QStringList{u"R\u00E9sum\u00E9 Review"_s});
}

TEST(ActionSearch, everyTermMustFit)
{
    EXPECT_EQ(found({u"joke"_s, u"summary"_s}), QStringList());
    EXPECT_EQ(found({u"nothing"_s}), QStringList());
}

TEST(ActionSearch, phrasesFindEveryAction)
{
    EXPECT_EQ(found({u"Run"_s, u"action"_s, u"in"_s, u"Velarc"_s}), everyName());
    EXPECT_EQ(found({u"Use"_s, u"Velarc"_s, u"action"_s}), everyName());
    EXPECT_EQ(found({u"vel"_s}), everyName());
}

TEST(ActionSearch, phraseAndNameTogetherFindTheNamedAction)
{
    EXPECT_EQ(found({u"velarc"_s, u"joke"_s}), QStringList{u"Tell Me a Joke"_s});
}

TEST(ActionSearch, wordsOfThePhrasesThatTellNothingFindNothing)
{
    EXPECT_EQ(found({u"in"_s}), QStringList());
    EXPECT_EQ(found({u"use"_s}), QStringList());
}

TEST(ActionSearch, noTermsFindNothing)
{
    EXPECT_EQ(found({}), QStringList());
    EXPECT_EQ(found({u" "_s, QString()}), QStringList());
}

TEST(ActionSearch, wholeNameIsMoreRelevantThanItsBeginningThanAPartThanASkill)
{
    const auto relevance = [](const QStringList &terms) {
        const QList<ActionHit> hits = searchActions({kLibrary.at(1)}, terms);
        return hits.isEmpty() ? -1.0 : hits.first().relevance;
    };
    EXPECT_EQ(relevance({u"tell"_s, u"me"_s, u"a"_s, u"joke"_s}), 1.0);
    EXPECT_LT(relevance({u"tell"_s}), 1.0);
    EXPECT_LT(relevance({u"joke"_s}), relevance({u"tell"_s}));
    EXPECT_LT(relevance({u"humor"_s}), relevance({u"joke"_s}));
    EXPECT_LT(relevance({u"velarc"_s}), relevance({u"humor"_s}));
    EXPECT_GT(relevance({u"velarc"_s}), 0.0);
}

TEST(ActionSearch, absurdQueryIsCheap)
{
    const QStringList terms(100'000, QString(1'000, u'x'));
    EXPECT_EQ(found(terms), QStringList());
}

TEST(ActionSearch, lineUnderTheNameIsTheSkills)
{
    EXPECT_EQ(searchSubtitle(kLibrary.at(0)), u"prose, summary"_s);
    EXPECT_EQ(searchSubtitle(kLibrary.at(2)), u"Open this action in Velarc"_s);
}

} // namespace
} // namespace velarc
