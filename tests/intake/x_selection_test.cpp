#include "scripted_selection_owner.h"

#include "base/errors.h"
#include "intake/x_selection.h"
#include "support/environment.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;
using ::testing::IsEmpty;
using Behaviour = ScriptedSelectionOwner::Behaviour;
using SteadyClock = std::chrono::steady_clock;

// Bounds that no test may reach unless it is about that bound.
constexpr SelectionBounds kPatient{10min, 10min, 1'000'000'000};

SelectionBounds patientBut(std::chrono::milliseconds silence)
{
    SelectionBounds bounds = kPatient;
    bounds.silence = silence;
    return bounds;
}

TEST(XSelection, clipboardWithoutAnOwnerHasNoForms)
{
    XSelection selection({}, kPatient);
    EXPECT_THAT(selection.names(), IsEmpty());
    EXPECT_FALSE(selection.bytes(u"UTF8_STRING"_s));
}

TEST(XSelection, withoutAServerThereAreNoForms)
{
    const ScopedVariable display("DISPLAY", ":987654");
    XSelection selection({}, kPatient);
    EXPECT_THAT(selection.names(), IsEmpty());
    EXPECT_FALSE(selection.bytes(u"UTF8_STRING"_s));
}

TEST(XSelection, formThatComesInPiecesIsPutTogether)
{
    const ScriptedSelectionOwner owner(Behaviour::SendsPieces);
    XSelection selection({}, kPatient);
    EXPECT_TRUE(selection.names().contains(u"UTF8_STRING"_s));
    EXPECT_EQ(selection.bytes(u"UTF8_STRING"_s), "one two three");
    EXPECT_EQ(selection.bytes(u"UTF8_STRING"_s), "one two three") << "again";
}

TEST(XSelection, ownerThatRefusesHasNoForms)
{
    const ScriptedSelectionOwner owner(Behaviour::Refuses);
    XSelection selection({}, kPatient);
    EXPECT_THAT(selection.names(), IsEmpty());
    EXPECT_FALSE(selection.bytes(u"UTF8_STRING"_s));
}

TEST(XSelection, listOfFormsThatIsNoListIsEmpty)
{
    const ScriptedSelectionOwner owner(Behaviour::OffersNonsense);
    XSelection selection({}, kPatient);
    EXPECT_THAT(selection.names(), IsEmpty());
}

TEST(XSelection, ownerThatNeverAnswersIsAskedOnce)
{
    const ScriptedSelectionOwner owner(Behaviour::NeverAnswers);
    XSelection selection({}, patientBut(200ms));
    const auto start = SteadyClock::now();
    EXPECT_THAT(selection.names(), IsEmpty());
    EXPECT_GE(SteadyClock::now() - start, 200ms);
    const auto afterwards = SteadyClock::now();
    EXPECT_FALSE(selection.bytes(u"UTF8_STRING"_s));
    EXPECT_FALSE(selection.bytes(u"image/png"_s));
    EXPECT_LT(SteadyClock::now() - afterwards, 200ms);
}

TEST(XSelection, ownerThatStopsInTheMiddleGivesNothing)
{
    const ScriptedSelectionOwner owner(Behaviour::StopsAfterOnePiece);
    XSelection selection({}, patientBut(200ms));
    EXPECT_FALSE(selection.bytes(u"UTF8_STRING"_s));
}

TEST(XSelection, ownerThatDiesInTheMiddleIsNotWaitedFor)
{
    const ScriptedSelectionOwner owner(Behaviour::DiesAfterOnePiece);
    XSelection selection({}, kPatient);
    EXPECT_FALSE(selection.bytes(u"UTF8_STRING"_s));
    EXPECT_FALSE(selection.bytes(u"UTF8_STRING"_s));
}

TEST(XSelection, ownerThatNeverEndsStopsAtTheBoundOfBytes)
{
    const ScriptedSelectionOwner owner(Behaviour::NeverEnds);
    SelectionBounds bounds = kPatient;
    bounds.bytes = 1000;
    XSelection selection({}, bounds);
    EXPECT_FALSE(selection.bytes(u"UTF8_STRING"_s));
}

TEST(XSelection, ownerThatNeverEndsStopsAtTheBoundOfTime)
{
    const ScriptedSelectionOwner owner(Behaviour::NeverEnds);
    SelectionBounds bounds = kPatient;
    bounds.form = 300ms;
    XSelection selection({}, bounds);
    EXPECT_FALSE(selection.bytes(u"UTF8_STRING"_s));
}

TEST(XSelection, stopEndsTheWaitForAnOwnerThatHangs)
{
    const ScriptedSelectionOwner owner(Behaviour::NeverAnswers);
    std::stop_source stop;
    XSelection selection(stop.get_token(), kPatient);
    std::jthread stopper([&stop] { stop.request_stop(); });
    EXPECT_THROW((void)selection.names(), CancellationError);
}

} // namespace
} // namespace velarc
