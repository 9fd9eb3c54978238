// What each kind of output looks like, to the byte. Invoices have a test of their own.

#include "engines/local_engine_call.h"
#include "support/fixture.h"
#include "support/printers.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

constexpr QStringView kWhiteSpace = u" \t\r\n\u0085\u00A0\u2003\u2028 ";

QString summarySentence(QStringView input)
{
    return generateNamed(u"One-Sentence Summary"_qs, input);
}

// The list lines of the section of `output` under its first heading.
QStringList keyPoints(QStringView input)
{
    const QString output = generateNamed(u"Executive Summary"_qs, input);
    const QString list = output.section(u"\n\n"_qs, 0, 0).section(u'\n', 1);
    return list.split(u'\n');
}

QString mergeTitle(QStringView input)
{
    return generateNamed(u"Git"_qs, input).section(u'\n', 1, 1);
}

QStringList tasks(QStringView input)
{
    const QString output = generateNamed(u"Meeting Notes to Tasks"_qs, input);
    return output.section(u"## Action Items\n"_qs, 1).section(u"\n\n"_qs, 0, 0).split(u'\n');
}

QString lineTable(QStringView input)
{
    return generateNamed(u"Translate"_qs, input);
}

} // namespace

struct WholeOutput
{
    const char *name;
    QStringView input;
    const char *fixture;
};

class LocalEngineOutput : public testing::TestWithParam<WholeOutput>
{
};

TEST_P(LocalEngineOutput, isTheFixtureToTheByte)
{
    const QString output = generateNamed(QString::fromUtf8(GetParam().name), GetParam().input);
    EXPECT_EQ(output, fixtureText(GetParam().fixture));
}

INSTANTIATE_TEST_SUITE_P(WithInput, LocalEngineOutput,
    testing::Values( //
        WholeOutput{"Brainstorm", u" a bicycle shop\n", "local_engine/brainstorm.txt"},
        WholeOutput{"Recipe", u"\tno nuts ", "local_engine/meal_plan.txt"},
        WholeOutput{"Advice", u"learning Greek", "local_engine/weekly_plan.txt"},
        WholeOutput{"Joke", u"\r\ntoaster\r\n", "local_engine/joke.txt"},
        WholeOutput{"Email", u"the offer", "local_engine/email_reply.txt"},
        WholeOutput{"Artist", u"\u00A0a paper boat", "local_engine/visual_concept.txt"},
        WholeOutput{"Summary", u"First point. Second point!\n\nThird, over\ntwo lines",
            "local_engine/key_points.txt"},
        WholeOutput{"Git", u"\n \ndiff --git a/main.cpp b/main.cpp\nindex 1..2",
            "local_engine/merge_request.txt"},
        WholeOutput{"Meeting", u"  Call Ana\n\nBook the room\n", "local_engine/action_items.txt"},
        WholeOutput{"Translate", u"Save\nSay \"yes\"\n\nC:\\new", "local_engine/line_table.txt"}));

INSTANTIATE_TEST_SUITE_P(WithoutInput, LocalEngineOutput,
    testing::Values( //
        WholeOutput{"Brainstorm", kWhiteSpace, "local_engine/brainstorm_without_input.txt"},
        WholeOutput{"Meal", kWhiteSpace, "local_engine/meal_plan_without_input.txt"},
        WholeOutput{"Planning", u"", "local_engine/weekly_plan_without_input.txt"},
        WholeOutput{"Joke", {}, "local_engine/joke_without_input.txt"},
        WholeOutput{"Email", kWhiteSpace, "local_engine/email_reply_without_input.txt"},
        WholeOutput{"Icon", kWhiteSpace, "local_engine/visual_concept_without_input.txt"},
        WholeOutput{"Git", kWhiteSpace, "local_engine/merge_request_without_input.txt"},
        WholeOutput{"Tasks", kWhiteSpace, "local_engine/action_items_without_input.txt"}));

TEST(LocalEnginePreview, showsTheNameAsWrittenAndTheTrimmedInput)
{
    EXPECT_EQ(generateNamed(u"  FOCUS Sprint Planner "_qs, u"\n two\nlines \n"),
        u"[Local Preview Response]\nAction:   FOCUS Sprint Planner \n\ntwo\nlines"_qs);
}

TEST(LocalEnginePreview, emptyInputOfCreateCalendarEventIsSaidToBeMissing)
{
    const QString expected = u"[Local Preview Response]\nAction: Create Calendar Event\n\n"
                             u"No input provided."_qs;
    EXPECT_EQ(generateNamed(u"Create Calendar Event"_qs, u""), expected);
    EXPECT_EQ(generateNamed(u"Create Calendar Event"_qs, kWhiteSpace), expected);
}

TEST(LocalEngineTemplates, whiteSpaceOnlyInputGivesTheJokeAboutAnAIAssistant)
{
    EXPECT_TRUE(generateNamed(u"Tell Me a Joke"_qs, u" \t\r\n ")
                    .startsWith(u"I asked my AI assistant for a break"));
}

TEST(LocalEngineTemplates, inputOfManyLinesIsSplicedInWhole)
{
    const QString input = u"one\n\ntwo \\ \"three\" \U0001F600\n"_qs.repeated(1000) + u'.';
    EXPECT_TRUE(generateNamed(u"Brainstorm"_qs, input)
                    .startsWith(u"## Brainstorm Ideas for "_qs + input + u"\n- Quick win"_qs));
    EXPECT_EQ(generateNamed(u"Artist"_qs, input).count(input), 2);
}

TEST(LocalEngineOneSentence, emptyInputIsSaidToBeMissing)
{
    EXPECT_EQ(summarySentence(u""), u"No content provided to summarize."_qs);
    EXPECT_EQ(summarySentence(kWhiteSpace), u"No content provided to summarize."_qs);
    EXPECT_EQ(summarySentence(u" .!? . \n"), u"No content provided to summarize."_qs);
}

TEST(LocalEngineOneSentence, endsInAFullStopWhateverMarkEndedTheSentence)
{
    EXPECT_EQ(summarySentence(u"Wait! What? Yes."), u"Wait."_qs);
    EXPECT_EQ(summarySentence(u"No mark"), u"No mark."_qs);
}

TEST(LocalEngineOneSentence, firstPresentPieceIsTaken)
{
    EXPECT_EQ(summarySentence(u"... ! \n ?  Here it is. And more."), u"Here it is."_qs);
}

TEST(LocalEngineOneSentence, goesOnOverLineFeedsAndJoinsWordsWithOneSpace)
{
    EXPECT_EQ(summarySentence(u"  one\ntwo \n\n  three  four "), u"one two three four."_qs);
}

TEST(LocalEngineOneSentence, onlyTheSpaceAndTheLineFeedPartWords)
{
    EXPECT_EQ(summarySentence(u"a\tb\u00A0c\r\nd \t e"), u"a\tb\u00A0c\r d \t e."_qs);
}

TEST(LocalEngineOneSentence, isCutBehindTwentyFourWordsWithNoFurtherMark)
{
    QStringList words;
    for (int number = 1; number <= 25; ++number) {
        words.append(u"w"_qs + QString::number(number));
    }
    EXPECT_EQ(summarySentence(words.first(24).join(u' ')), words.first(24).join(u' ') + u'.');
    EXPECT_EQ(summarySentence(words.join(u"  "_qs)), words.first(24).join(u' ') + u'.');
}

TEST(LocalEngineOneSentence, aTabBetweenSpacesIsAWord)
{
    const QString tabs = QStringList(25, u"\t"_qs).join(u' ');
    EXPECT_EQ(summarySentence(u"a "_qs + tabs + u" b"_qs),
        u"a "_qs + QStringList(23, u"\t"_qs).join(u' ') + u'.');
}

TEST(LocalEngineKeyPoints, listsFiveAtMost)
{
    EXPECT_EQ(keyPoints(u"a.b.c.d.e.f.g"),
        QStringList({u"- a"_qs, u"- b"_qs, u"- c"_qs, u"- d"_qs, u"- e"_qs}));
}

TEST(LocalEngineKeyPoints, withoutTextThereIsOneLineOnly)
{
    EXPECT_EQ(generateNamed(u"summar"_qs, u""), u"- No text detected to summarize."_qs);
    EXPECT_EQ(generateNamed(u"summar"_qs, u" . \n!?"), u"- No text detected to summarize."_qs);
}

TEST(LocalEngineKeyPoints, eachLineFeedWithinAPointBecomesOneSpace)
{
    EXPECT_EQ(keyPoints(u"\na\n\nb\r\nc\n.d"), QStringList({u"- a  b\r c"_qs, u"- d"_qs}));
}

TEST(LocalEngineKeyPoints, blankPiecesDoNotCountAmongTheFive)
{
    EXPECT_EQ(keyPoints(u"a.. .!b?\n.c...d.\u00A0.e.f").size(), 5);
    EXPECT_EQ(keyPoints(u"a.. .!b?\n.c...d.\u00A0.e.f").last(), u"- e"_qs);
}

TEST(LocalEngineMergeRequest, firstDiffLineIsTheTitle)
{
    EXPECT_EQ(mergeTitle(u"diff --git a/x b/x"), u"Refactor a/x b/x"_qs);
    EXPECT_EQ(mergeTitle(u"diff --git a/x b/x\r\nindex 83db48f..bf2a1c9"), u"Refactor a/x b/x"_qs);
}

TEST(LocalEngineMergeRequest, everyDiffMarkOfTheLineIsReplacedCaseSensitively)
{
    EXPECT_EQ(mergeTitle(u"diff --gitdiff --git x Diff --git diff  --git diff --gi"),
        u"RefactorRefactor x Diff --git diff  --git diff --gi"_qs);
}

TEST(LocalEngineMergeRequest, firstPresentLineIsTakenWithoutItsMargins)
{
    EXPECT_EQ(mergeTitle(u"\n\u00A0\n\t\r\n \u2003 Fix it \t\nmore"), u"Fix it"_qs);
}

TEST(LocalEngineMergeRequest, lineOfAHundredCharactersGivesATitleOfSeventyTwo)
{
    EXPECT_EQ(mergeTitle(QString(100, u'x')), QString(72, u'x'));
    EXPECT_EQ(mergeTitle(QString(72, u'x')), QString(72, u'x'));
}

TEST(LocalEngineMergeRequest, charactersOfTheTitleAreThoseThatTheUserSees)
{
    const QString family = u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_qs;
    EXPECT_EQ(mergeTitle(family.repeated(80)), family.repeated(72));
    const QString accented = u"e\u0301"_qs;
    EXPECT_EQ(mergeTitle(QString(71, u'x') + accented + u"yz"_qs), QString(71, u'x') + accented);
}

TEST(LocalEngineMergeRequest, titleIsCutBehindTheReplacement)
{
    EXPECT_EQ(
        mergeTitle(u"diff --git "_qs + QString(80, u'y')), u"Refactor "_qs + QString(63, u'y'));
}

TEST(LocalEngineMergeRequest, aSpaceAtTheCutStays)
{
    EXPECT_EQ(mergeTitle(QString(71, u'x') + u" y"_qs), QString(71, u'x') + u' ');
}

TEST(LocalEngineActionItems, sixLinesOfNotesGiveFiveTasks)
{
    EXPECT_EQ(tasks(u"one\n two\n\nthree\r\n\tfour\n \nfive\nsix"),
        QStringList({u"- [ ] Task 1: one"_qs, u"- [ ] Task 2: two"_qs, u"- [ ] Task 3: three"_qs,
            u"- [ ] Task 4: four"_qs, u"- [ ] Task 5: five"_qs}));
}

TEST(LocalEngineActionItems, onlyLineFeedsEndALine)
{
    EXPECT_EQ(tasks(u"a\rb\u0085c\u2028d"), QStringList({u"- [ ] Task 1: a\rb\u0085c\u2028d"_qs}));
}

TEST(LocalEngineLineTable, withoutInputHasOneEmptyEntry)
{
    EXPECT_EQ(lineTable(u""), u"{\n  \"empty_input\": \"\"\n}"_qs);
    EXPECT_EQ(lineTable(u"\n \r\n\u00A0"), u"{\n  \"empty_input\": \"\"\n}"_qs);
}

TEST(LocalEngineLineTable, numbersEveryPresentLine)
{
    EXPECT_EQ(lineTable(u"one"), u"{\n  \"text_1\": \"one\"\n}"_qs);
    const QString twelve = lineTable(u"x\n\n"_qs.repeated(12));
    EXPECT_EQ(twelve.count(u'\n'), 13);
    EXPECT_TRUE(twelve.endsWith(u"\"x\",\n  \"text_12\": \"x\"\n}"));
}

TEST(LocalEngineLineTable, escapesQuotesAndNothingElse)
{
    EXPECT_EQ(lineTable(u"\"a\"\\\"\tb\\"), u"{\n  \"text_1\": \"\\\"a\\\"\\\\\"\tb\\\"\n}"_qs);
}

TEST(LocalEngineLineTable, onlyLineFeedsEndALine)
{
    EXPECT_EQ(lineTable(u"a\r\nb\rc\u0085d\u2029e"),
        u"{\n  \"text_1\": \"a\",\n  \"text_2\": \"b\rc\u0085d\u2029e\"\n}"_qs);
}

} // namespace velarc
