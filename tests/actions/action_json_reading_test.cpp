#include "action_samples.h"

#include "actions/action_json.h"
#include "base/uuid.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <array>
#include <limits>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using Kind = SystemDestinationKind;

ActionDestination output(OutputDestination destination)
{
    return ActionDestination::output(destination);
}

std::string errorOf(const char *json)
{
    try {
        (void)decodedFrom(json);
    } catch (const JsonError &error) {
        return error.what();
    }
    return "no error";
}

void expectRefused(const char *json)
{
    EXPECT_THROW((void)decodedFrom(json), JsonError) << json;
}

constexpr std::array kAllKeys{"id", "name", "icon", "colorHex", "systemPrompt", "provider",
    "outputFormat", "actionDestination", "destination", "executionKind", "systemAction",
    "modelOverrideID", "skills", "isPinned", "sortOrder"};

void expectAllDefaults(const AIAction &action)
{
    EXPECT_FALSE(action.id.isNull());
    EXPECT_EQ(action.name, u"Untitled Action"_s);
    EXPECT_EQ(action.icon, u"bolt.fill"_s);
    EXPECT_EQ(action.colorHex, u"2563EB"_s);
    EXPECT_EQ(action.systemPrompt, u"{User_Input}"_s);
    EXPECT_EQ(action.provider, AIProvider::UseDefault);
    EXPECT_EQ(action.outputFormat, OutputFormat::Text);
    EXPECT_EQ(action.destination, output(OutputDestination::ShowInApp));
    EXPECT_EQ(action.modelOverrideID, std::nullopt);
    EXPECT_TRUE(action.skills.isEmpty());
    EXPECT_FALSE(action.isPinned);
    EXPECT_EQ(action.sortOrder, 0);
}

} // namespace

TEST(ActionReading, emptyObjectGivesAllDefaults)
{
    expectAllDefaults(decodedFrom("{}"));
}

TEST(ActionReading, missingIdIsAFreshOneEachTime)
{
    EXPECT_NE(decodedFrom("{}").id, decodedFrom("{}").id);
}

TEST(ActionReading, nullReadsAsAbsentUnderEveryKey)
{
    Json object = Json::object();
    for (const char *key : kAllKeys) {
        object[key] = nullptr;
    }
    expectAllDefaults(decodeAction(object));
}

TEST(ActionReading, unknownKeysAreIgnored)
{
    const AIAction action = decodedFrom(R"({"colour":1,"name":"A","version":{"x":[]}})");
    EXPECT_EQ(action.name, u"A"_s);
}

TEST(ActionReading, everyKeyIsRead)
{
    const AIAction action = decodedFrom(R"({"sortOrder":-7,"isPinned":true,"skills":["a",""],
        "modelOverrideID":"gpt-5","outputFormat":"image","provider":"localFallback",
        "actionDestination":{"type":"output","output":"copyToClipboard"},"systemPrompt":"P",
        "colorHex":"#fff","icon":"star","name":" N ","id":"6f9619ff-8b86-d011-b42d-00cf4fc964ff"})");
    EXPECT_EQ(uuidText(action.id), u"6F9619FF-8B86-D011-B42D-00CF4FC964FF"_s);
    EXPECT_EQ(action.name, u" N "_s);
    EXPECT_EQ(action.icon, u"star"_s);
    EXPECT_EQ(action.colorHex, u"#fff"_s);
    EXPECT_EQ(action.systemPrompt, u"P"_s);
    EXPECT_EQ(action.provider, AIProvider::LocalFallback);
    EXPECT_EQ(action.outputFormat, OutputFormat::Image);
    EXPECT_EQ(action.destination, output(OutputDestination::CopyToClipboard));
    EXPECT_EQ(action.modelOverrideID, u"gpt-5"_s);
    EXPECT_EQ(action.skills, (QStringList{u"a"_s, u""_s}));
    EXPECT_TRUE(action.isPinned);
    EXPECT_EQ(action.sortOrder, -7);
}

TEST(ActionReading, emptyTextsAreNotAbsent)
{
    const AIAction action = decodedFrom(
        R"({"name":"","icon":"","colorHex":"","systemPrompt":"","modelOverrideID":""})");
    EXPECT_EQ(action.name, u""_s);
    EXPECT_EQ(action.icon, u""_s);
    EXPECT_EQ(action.colorHex, u""_s);
    EXPECT_EQ(action.systemPrompt, u""_s);
    EXPECT_EQ(action.modelOverrideID, u""_s);
}

TEST(ActionReading, textsAreReadToTheLastCharacter)
{
    const AIAction action = decodedFrom(R"({"name":"a\u0000b\ud83d\ude00","icon":"é\n"})");
    EXPECT_EQ(action.name, u"a"_s + QChar(0) + u"b\U0001F600"_s);
    EXPECT_EQ(action.icon, u"\u00e9\n"_s);
}

TEST(ActionReading, everySpellingIsRead)
{
    for (const AIProvider provider : allProviders()) {
        Json object = Json::object();
        object["provider"] = jsonFromText(storedSpelling(provider));
        EXPECT_EQ(decodeAction(object).provider, provider);
    }
    for (const OutputFormat format : allOutputFormats()) {
        Json object = Json::object();
        object["outputFormat"] = jsonFromText(storedSpelling(format));
        EXPECT_EQ(decodeAction(object).outputFormat, format);
    }
}

TEST(ActionReading, valueThatIsNoObjectIsRefused)
{
    for (const char *json : {"null", "[]", "\"{}\"", "3", "true"}) {
        expectRefused(json);
    }
}

TEST(ActionReading, idOfAnotherTypeOrShapeIsRefused)
{
    expectRefused(R"({"id":42})");
    expectRefused(R"({"id":""})");
    expectRefused(R"({"id":"{6F9619FF-8B86-D011-B42D-00CF4FC964FF}"})");
    expectRefused(R"({"id":"6F9619FF8B86D011B42D00CF4FC964FF"})");
    expectRefused(R"({"id":"6F9619FF-8B86-D011-B42D-00CF4FC964FG"})");
}

TEST(ActionReading, textsOfAnotherTypeAreRefused)
{
    for (const char *key : {"name", "icon", "colorHex", "systemPrompt", "modelOverrideID"}) {
        for (const Json &value : {Json(42), Json(true), Json::array(), Json::object()}) {
            Json object = Json::object();
            object[key] = value;
            EXPECT_THROW((void)decodeAction(object), JsonError) << object;
        }
    }
}

TEST(ActionReading, providerOfAnotherTypeOrSpellingIsRefused)
{
    expectRefused(R"({"provider":2})");
    expectRefused(R"({"provider":"OpenAI"})");
    expectRefused(R"({"provider":"openai"})");
    expectRefused(R"({"provider":""})");
}

TEST(ActionReading, formatOfAnotherTypeOrSpellingIsRefused)
{
    expectRefused(R"({"outputFormat":true})");
    expectRefused(R"({"outputFormat":"JSON"})");
    expectRefused(R"({"outputFormat":"html"})");
    EXPECT_THROW(
        (void)decodeAction(parseJson(fixture("actions/action_unknown_format.json"))), JsonError);
}

TEST(ActionReading, skillsThatAreNoListOfTextsAreRefused)
{
    expectRefused(R"({"skills":"planning"})");
    expectRefused(R"({"skills":{}})");
    expectRefused(R"({"skills":["planning",1]})");
    expectRefused(R"({"skills":[null]})");
}

TEST(ActionReading, pinThatIsNoBooleanIsRefused)
{
    expectRefused(R"({"isPinned":1})");
    expectRefused(R"({"isPinned":0})");
    expectRefused(R"({"isPinned":"true"})");
}

TEST(ActionReading, orderIsAnIntegerHoweverItIsWritten)
{
    const std::array<std::pair<const char *, qint64>, 7> cases{{
        {R"({"sortOrder":3})", 3},
        {R"({"sortOrder":3.0})", 3},
        {R"({"sortOrder":3e2})", 300},
        {R"({"sortOrder":-3.0})", -3},
        {R"({"sortOrder":-0.0})", 0},
        {R"({"sortOrder":9223372036854775807})", std::numeric_limits<qint64>::max()},
        {R"({"sortOrder":-9223372036854775808})", std::numeric_limits<qint64>::min()},
    }};
    for (const auto &[json, order] : cases) {
        EXPECT_EQ(decodedFrom(json).sortOrder, order) << json;
    }
}

TEST(ActionReading, orderThatIsNoIntegerIsRefused)
{
    expectRefused(R"({"sortOrder":3.5})");
    expectRefused(R"({"sortOrder":true})");
    expectRefused(R"({"sortOrder":"3"})");
    expectRefused(R"({"sortOrder":1e300})");
    expectRefused(R"({"sortOrder":9223372036854775808})");
    expectRefused(R"({"sortOrder":[3]})");
}

TEST(ActionReading, ofEqualKeysTheLastStands)
{
    const AIAction action = decodedFrom(
        R"({"name":"First","sortOrder":"bad","name":"Second","sortOrder":4,"name":"Third"})");
    EXPECT_EQ(action.name, u"Third"_s);
    EXPECT_EQ(action.sortOrder, 4);
}

TEST(ActionReading, systemDestinationTurnsItsFormatToText)
{
    for (const char *format : {"json", "pdf", "image", "text"}) {
        Json object = Json::object();
        object["actionDestination"] = "mailCompose";
        object["outputFormat"] = format;
        EXPECT_EQ(decodeAction(object).outputFormat, OutputFormat::Text) << format;
    }
}

TEST(ActionReading, systemDestinationKeepsMarkdown)
{
    const AIAction action = decodedFrom(
        R"({"actionDestination":{"type":"system","system":"messagesCompose"},
            "outputFormat":"markdown"})");
    EXPECT_EQ(action.destination, ActionDestination::system(Kind::MessagesCompose));
    EXPECT_EQ(action.outputFormat, OutputFormat::Markdown);
}

TEST(ActionReading, hiddenKindsStayReadable)
{
    for (const Kind kind : allSystemDestinationKinds()) {
        Json destination = Json::object();
        destination["type"] = "system";
        destination["system"] = jsonFromText(storedSpelling(kind));
        EXPECT_EQ(decodeDestination(destination), ActionDestination::system(kind));
    }
}

TEST(DestinationReading, typedObjectGivesTheArmOfItsType)
{
    EXPECT_EQ(decodedFrom(R"({"actionDestination":{"output":"copyToClipboard","type":"output"}})")
                  .destination,
        output(OutputDestination::CopyToClipboard));
    EXPECT_EQ(decodedFrom(R"({"actionDestination":{"type":"system","system":"mailCompose"}})")
                  .destination,
        ActionDestination::system(Kind::MailCompose));
}

TEST(DestinationReading, typeDecidesWhereBothValuesStand)
{
    EXPECT_EQ(decodedFrom(R"({"actionDestination":
                  {"type":"system","output":42,"system":"mailCompose"}})")
                  .destination,
        ActionDestination::system(Kind::MailCompose));
    EXPECT_EQ(decodedFrom(R"({"actionDestination":
                  {"type":"output","output":"showInApp","system":42}})")
                  .destination,
        output(OutputDestination::ShowInApp));
}

TEST(DestinationReading, objectWithoutTypeGivesTheArmThatItHolds)
{
    EXPECT_EQ(decodedFrom(R"({"actionDestination":{"output":"shareImmediately"}})").destination,
        output(OutputDestination::ShareImmediately));
    EXPECT_EQ(decodedFrom(R"({"actionDestination":{"system":"mailCompose"}})").destination,
        ActionDestination::system(Kind::MailCompose));
    EXPECT_EQ(decodedFrom(R"({"actionDestination":
                  {"type":null,"system":"mailCompose","output":"showInApp"}})")
                  .destination,
        output(OutputDestination::ShowInApp));
}

TEST(DestinationReading, bareTextIsASpellingOfEitherArm)
{
    for (const OutputDestination value : allOutputDestinations()) {
        EXPECT_EQ(decodeDestination(jsonFromText(storedSpelling(value))), output(value));
    }
    for (const Kind kind : allSystemDestinationKinds()) {
        EXPECT_EQ(
            decodeDestination(jsonFromText(storedSpelling(kind))), ActionDestination::system(kind));
    }
}

TEST(DestinationReading, whatIsOfNoKnownFormIsUnsupported)
{
    for (const char *json : {R"({"actionDestination":42})", R"({"actionDestination":true})",
             R"({"actionDestination":[]})", R"({"actionDestination":{}})",
             R"({"actionDestination":{"output":null}})", R"({"actionDestination":{"kind":"x"}})",
             R"({"actionDestination":""})", R"({"actionDestination":"nowhere"})",
             R"({"actionDestination":"output.showInApp"})"}) {
        EXPECT_EQ(errorOf(json), "Unsupported destination payload.") << json;
    }
}

TEST(DestinationReading, valueThatTheTypeAsksForMustBeThere)
{
    expectRefused(R"({"actionDestination":{"type":"output"}})");
    expectRefused(R"({"actionDestination":{"type":"output","system":"mailCompose"}})");
    expectRefused(R"({"actionDestination":{"type":"system","system":null}})");
}

TEST(DestinationReading, unknownSpellingsAndTypesAreRefused)
{
    expectRefused(R"({"actionDestination":{"type":"prompt","output":"showInApp"}})");
    expectRefused(R"({"actionDestination":{"type":1,"output":"showInApp"}})");
    expectRefused(R"({"actionDestination":{"type":"output","output":"mailCompose"}})");
    expectRefused(R"({"actionDestination":{"type":"system","system":"showInApp"}})");
    expectRefused(R"({"actionDestination":{"output":"nowhere","system":"mailCompose"}})");
    expectRefused(R"({"actionDestination":{"output":3}})");
}

TEST(LibraryReading, elementsAreReadInOrder)
{
    const QList<AIAction> actions = decodeActions(parseJson(R"([{"name":"B"},{"name":"A"}])"));
    EXPECT_EQ(namesOf(actions), (QStringList{u"B"_s, u"A"_s}));
    EXPECT_TRUE(decodeActions(parseJson("[]")).isEmpty());
}

TEST(LibraryReading, oneBadActionFailsTheLibrary)
{
    EXPECT_THROW(
        (void)decodeActions(parseJson(fixture("actions/library_with_one_bad_action.json"))),
        JsonError);
    EXPECT_THROW((void)decodeActions(parseJson("[{},null]")), JsonError);
}

TEST(LibraryReading, valueThatIsNoListIsRefused)
{
    EXPECT_THROW((void)decodeActions(parseJson("{}")), JsonError);
    EXPECT_THROW((void)decodeActions(parseJson("null")), JsonError);
}

} // namespace velarc
