#include "action_samples.h"

#include "actions/action_json.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using Kind = SystemDestinationKind;

AIAction readFixture(const char *path)
{
    return decodeAction(parseJson(fixture(path)));
}

ActionDestination destinationOf(const char *json)
{
    return decodedFrom(json).destination;
}

void expectRefused(const char *json)
{
    EXPECT_THROW((void)decodedFrom(json), JsonError) << json;
}

const ActionDestination kShown = ActionDestination::output(OutputDestination::ShowInApp);
const ActionDestination kCopied = ActionDestination::output(OutputDestination::CopyToClipboard);
const ActionDestination kMailed = ActionDestination::system(Kind::MailCompose);

} // namespace

TEST(OlderActionForms, destinationUnderItsFirstKeyIsRead)
{
    const AIAction action = readFixture("actions/action_destination_under_its_first_key.json");
    EXPECT_EQ(action.name, u"Copy It"_s);
    EXPECT_EQ(action.destination, kCopied);
    EXPECT_EQ(action.outputFormat, OutputFormat::Markdown);
    EXPECT_EQ(action.modelOverrideID, u"gpt-4o"_s);
    EXPECT_EQ(destinationOf(R"({"destination":"copyToClipboard"})"), kCopied);
}

TEST(OlderActionForms, systemActionBesideAnOutputIsRead)
{
    EXPECT_EQ(readFixture("actions/action_system_action_beside_output.json").destination, kMailed);
}

TEST(OlderActionForms, destinationAsBareTextIsRead)
{
    const AIAction action = readFixture("actions/action_destination_as_bare_text.json");
    EXPECT_EQ(action.destination, ActionDestination::system(Kind::CalendarEditEvent));
    EXPECT_EQ(action.outputFormat, OutputFormat::Text);
    EXPECT_EQ(destinationOf(R"({"actionDestination":"mailCompose"})"), kMailed);
    EXPECT_EQ(destinationOf(R"({"actionDestination":"showInApp"})"), kShown);
}

TEST(OlderActionForms, destinationWithoutTypeIsRead)
{
    EXPECT_EQ(readFixture("actions/action_destination_without_type.json").destination,
        ActionDestination::output(OutputDestination::ShareImmediately));
}

TEST(OlderActionForms, todaysKeyBeatsTheFirstOne)
{
    EXPECT_EQ(destinationOf(R"({"destination":"copyToClipboard","actionDestination":"showInApp"})"),
        kShown);
}

TEST(OlderActionForms, nullUnderTodaysKeyLeavesTheFirstOne)
{
    EXPECT_EQ(
        destinationOf(R"({"actionDestination":null,"destination":"copyToClipboard"})"), kCopied);
}

TEST(OlderActionForms, systemActionBeatsTodaysKey)
{
    EXPECT_EQ(destinationOf(R"({"actionDestination":{"type":"output","output":"showInApp"},
                  "systemAction":{"kind":"mailCompose"}})"),
        kMailed);
    EXPECT_EQ(destinationOf(R"({"actionDestination":{"type":"output","output":"showInApp"},
                  "executionKind":"system","systemAction":{"kind":"mailCompose"}})"),
        kMailed);
}

TEST(OlderActionForms, systemActionOfAPromptIsIgnored)
{
    EXPECT_EQ(destinationOf(R"({"actionDestination":{"type":"output","output":"showInApp"},
                  "executionKind":"llm","systemAction":{"kind":"mailCompose"}})"),
        kShown);
    EXPECT_EQ(readFixture("actions/action_llm_beside_system_action.json").destination,
        ActionDestination::output(OutputDestination::ShareImmediately));
}

TEST(OlderActionForms, executionKindAloneChangesNothing)
{
    EXPECT_EQ(destinationOf(R"({"executionKind":"system"})"), kShown);
    EXPECT_EQ(
        destinationOf(R"({"executionKind":"system","destination":"copyToClipboard"})"), kCopied);
    EXPECT_EQ(
        destinationOf(R"({"executionKind":"llm","actionDestination":"mailCompose"})"), kMailed);
}

TEST(OlderActionForms, systemActionTurnsTheFormatToText)
{
    const AIAction action =
        decodedFrom(R"({"systemAction":{"kind":"calendarCreateEvent"},"outputFormat":"pdf"})");
    EXPECT_EQ(action.destination, ActionDestination::system(Kind::CalendarCreateEvent));
    EXPECT_EQ(action.outputFormat, OutputFormat::Text);
}

TEST(OlderActionForms, ignoredSystemActionLeavesTheFormat)
{
    const AIAction action = decodedFrom(
        R"({"executionKind":"llm","systemAction":{"kind":"mailCompose"},"outputFormat":"pdf"})");
    EXPECT_EQ(action.outputFormat, OutputFormat::Pdf);
}

TEST(OlderActionForms, olderKeysOfTheWrongTypeOrSpellingAreRefused)
{
    expectRefused(R"({"destination":42})");
    expectRefused(R"({"destination":"mailCompose"})");
    expectRefused(R"({"destination":{"type":"output","output":"showInApp"}})");
    expectRefused(R"({"executionKind":1})");
    expectRefused(R"({"executionKind":"LLM"})");
    expectRefused(R"({"systemAction":"mailCompose"})");
    expectRefused(R"({"systemAction":[]})");
    expectRefused(R"({"systemAction":{}})");
    expectRefused(R"({"systemAction":{"kind":null}})");
    expectRefused(R"({"systemAction":{"kind":3}})");
    expectRefused(R"({"systemAction":{"kind":"showInApp"}})");
}

TEST(OlderActionForms, badKeyFailsTheActionWhereAnotherKeyDecides)
{
    expectRefused(R"({"actionDestination":"showInApp","destination":"nowhere"})");
    expectRefused(R"({"actionDestination":42,"systemAction":{"kind":"mailCompose"}})");
    expectRefused(R"({"destination":42,"systemAction":{"kind":"mailCompose"}})");
    expectRefused(R"({"executionKind":"llm","systemAction":{"kind":"nothing"}})");
    expectRefused(R"({"actionDestination":"showInApp","executionKind":"other"})");
}

TEST(OlderActionForms, writingAnyOfThemUsesTodaysKeyAlone)
{
    for (const char *path : {"actions/action_destination_under_its_first_key.json",
             "actions/action_system_action_beside_output.json",
             "actions/action_llm_beside_system_action.json",
             "actions/action_destination_as_bare_text.json",
             "actions/action_destination_without_type.json"}) {
        SCOPED_TRACE(path);
        const AIAction action = readFixture(path);
        const Json written = encodeAction(action);
        EXPECT_TRUE(written.at("actionDestination").is_object());
        EXPECT_FALSE(written.contains("destination"));
        EXPECT_FALSE(written.contains("executionKind"));
        EXPECT_FALSE(written.contains("systemAction"));
        EXPECT_EQ(decodeAction(written), action);
    }
}

} // namespace velarc
