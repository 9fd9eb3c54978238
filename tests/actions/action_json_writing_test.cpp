#include "action_samples.h"

#include "actions/action_json.h"
#include "base/uuid.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <limits>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

AIAction fullAction()
{
    AIAction action;
    action.id = *uuidFromText(u"6f9619ff-8b86-d011-b42d-00cf4fc964ff");
    action.name = u"Na\"me"_s;
    action.icon = u"bolt.fill"_s;
    action.colorHex = u"059669"_s;
    action.systemPrompt = u"Line\n{User_Input}"_s;
    action.provider = AIProvider::OpenAI;
    action.outputFormat = OutputFormat::Json;
    action.destination = ActionDestination::output(OutputDestination::CopyToClipboard);
    action.modelOverrideID = u"gpt-5"_s;
    action.skills = {u"a"_s, u"b c"_s};
    action.isPinned = true;
    action.sortOrder = 120;
    return action;
}

} // namespace

TEST(ActionWriting, keysStandInOrderAndNothingElseIsWritten)
{
    const QByteArray expected =
        R"({"id":"6F9619FF-8B86-D011-B42D-00CF4FC964FF","name":"Na\"me","icon":"bolt.fill",)"
        R"("colorHex":"059669","systemPrompt":"Line\n{User_Input}","provider":"openAI",)"
        R"("outputFormat":"json","actionDestination":{"type":"output","output":"copyToClipboard"},)"
        R"("modelOverrideID":"gpt-5","skills":["a","b c"],"isPinned":true,"sortOrder":120})";
    EXPECT_EQ(writeJson(encodeAction(fullAction())), expected);
}

TEST(ActionWriting, absentOverrideIsANullAndNoSkillsAreAnEmptyList)
{
    AIAction action = fullAction();
    action.modelOverrideID.reset();
    action.skills.clear();
    action.destination = ActionDestination::system(SystemDestinationKind::MailCompose);
    action.outputFormat = OutputFormat::Text;
    const QByteArray written = writeJson(encodeAction(action));
    const QByteArray expected =
        R"("outputFormat":"text","actionDestination":{"type":"system","system":"mailCompose"},)"
        R"("modelOverrideID":null,"skills":[],"isPinned":true,"sortOrder":120})";
    EXPECT_TRUE(written.endsWith(expected)) << written.toStdString();
}

TEST(ActionWriting, destinationsAreWrittenWithTheirType)
{
    for (const OutputDestination value : allOutputDestinations()) {
        EXPECT_EQ(writeJson(encodeDestination(ActionDestination::output(value))),
            R"({"type":"output","output":")" + storedSpelling(value).toUtf8() + R"("})");
    }
    for (const SystemDestinationKind kind : allSystemDestinationKinds()) {
        EXPECT_EQ(writeJson(encodeDestination(ActionDestination::system(kind))),
            R"({"type":"system","system":")" + storedSpelling(kind).toUtf8() + R"("})");
    }
}

TEST(ActionWriting, readingWhatWasWrittenGivesTheSameAction)
{
    QList<AIAction> actions;
    for (const AIProvider provider : allProviders()) {
        for (const OutputFormat format : allOutputFormats()) {
            AIAction action = fullAction();
            action.provider = provider;
            action.outputFormat = format;
            actions.append(action);
        }
    }
    actions[0].modelOverrideID = u""_s;
    actions[1].name = u"\U0001F600 e\u0301 \u2028"_s + QChar(0) + u"\t\\"_s;
    actions[2].sortOrder = std::numeric_limits<qint64>::min();
    actions[3].sortOrder = std::numeric_limits<qint64>::max();
    actions[4].skills = {u""_s, u" "_s};
    EXPECT_EQ(decodeActions(parseJson(writeJson(encodeActions(actions)))), actions);
}

TEST(ActionWriting, halfAPairInATextIsWrittenAsAQuestionMark)
{
    AIAction action = fullAction();
    action.name = u"a"_s + QChar(0xD800) + u"b"_s;
    EXPECT_EQ(decodeAction(parseJson(writeJson(encodeAction(action)))).name, u"a?b"_s);
}

TEST(ActionWriting, libraryIsOneList)
{
    EXPECT_EQ(writeJson(encodeActions({})), "[]");
    const QByteArray one = writeJson(encodeAction(fullAction()));
    EXPECT_EQ(writeJson(encodeActions({fullAction(), fullAction()})), "[" + one + "," + one + "]");
}

TEST(ActionWriting, libraryIsWrittenAlikeWholeAndActionByAction)
{
    AIAction other = fullAction();
    other.destination = ActionDestination::system(SystemDestinationKind::MessagesCompose);
    for (const QList<AIAction> &actions :
        {QList<AIAction>{}, {fullAction()}, {fullAction(), other, fullAction()}}) {
        EXPECT_EQ(writeActions(actions), writeJson(encodeActions(actions)));
    }
}

} // namespace velarc
