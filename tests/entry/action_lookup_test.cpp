#include "base/uuid.h"
#include "entry/action_lookup.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

const VelarcActionEntity kSummary{newUuid(), u"Summary"_s};
const VelarcActionEntity kShouted{newUuid(), u"SUMMARY"_s};
const VelarcActionEntity kJoke{newUuid(), u"Tell Me a Joke"_s};

TEST(ActionLookup, exactTitleWinsOverOneThatDiffersInCase)
{
    const auto lookup = lookUpAction({kShouted, kSummary}, u"Summary"_s);
    EXPECT_EQ(std::get<QUuid>(lookup), kSummary.id);
}

TEST(ActionLookup, titleIsFoundWithoutRegardToCase)
{
    const auto lookup = lookUpAction({kShouted, kJoke}, u"tell me A joke"_s);
    EXPECT_EQ(std::get<QUuid>(lookup), kJoke.id);
}

TEST(ActionLookup, severalTitlesThatFitAreAllNamed)
{
    const auto lookup = lookUpAction({kShouted, kSummary, kJoke}, u"summary"_s);
    EXPECT_EQ(std::get<AmbiguousAction>(lookup).candidates,
        (QList<VelarcActionEntity>{kShouted, kSummary}));
}

TEST(ActionLookup, twoActionsOfOneExactTitleAreAmbiguousToo)
{
    const VelarcActionEntity twin{newUuid(), kJoke.title};
    const auto lookup = lookUpAction({kJoke, twin}, kJoke.title);
    EXPECT_EQ(std::get<AmbiguousAction>(lookup).candidates.size(), 2);
}

TEST(ActionLookup, unknownTitleIsNoAction)
{
    EXPECT_TRUE(std::holds_alternative<NoSuchAction>(lookUpAction({kJoke}, u"Tell Me"_s)));
    EXPECT_TRUE(std::holds_alternative<NoSuchAction>(lookUpAction({kJoke}, QString())));
}

TEST(ActionLookup, uuidStandsForItselfWhetherOrNotAnActionHasIt)
{
    const QUuid unknown = newUuid();
    EXPECT_EQ(std::get<QUuid>(lookUpAction({kJoke}, uuidText(unknown).toLower())), unknown);
}

} // namespace
} // namespace velarc
