#include "action_samples.h"

#include "actions/prompt_template.h"
#include "base/locale_text.h"
#include "support/printers.h"

#include <gtest/gtest.h>

#include <chrono>
#include <random>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

// 2026-02-20T15:00:00Z, 10 in the morning in New York.
constexpr Instant kNow{std::chrono::seconds(1'771'599'600)};

QString rendered(
    const QString &promptTemplate, const QString &input, const QString &clipboardText = QString())
{
    return renderPrompt(promptTemplate, input, PromptMoment{kNow, clipboardText});
}

// The best of three, so that a pause of the machine is not counted.
template <typename Work> double secondsOf(Work work)
{
    double best = 1e9;
    for (int round = 0; round < 3; ++round) {
        const auto start = std::chrono::steady_clock::now();
        work();
        const std::chrono::duration<double> taken = std::chrono::steady_clock::now() - start;
        best = std::min(best, taken.count());
    }
    return best;
}

// Eight times the length in eight times the time, with room for a busy machine; squared it is
// sixty-four.
template <typename Work> void expectLinear(Work workOfLength)
{
    constexpr qsizetype kShort = 128 * 1024;
    constexpr qsizetype kLong = 8 * kShort;
    const double shortTime = secondsOf([&] { workOfLength(kShort); });
    const double longTime = secondsOf([&] { workOfLength(kLong); });
    EXPECT_LT(longTime / shortTime, 30);
}

} // namespace

TEST(PromptTemplate, inputTakesThePlaceOfItsVariable)
{
    EXPECT_EQ(rendered(u"{User_Input}"_s, u"hello"_s), u"hello"_s);
}

TEST(PromptTemplate, everyOccurrenceOfTheVariableIsFilled)
{
    EXPECT_EQ(rendered(u"A {User_Input} B {User_Input}"_s, u"x"_s), u"A x B x"_s);
}

TEST(PromptTemplate, templateWithoutVariableGetsTheInputBehindIt)
{
    EXPECT_EQ(rendered(u"Summarize."_s, u"hello"_s), u"Summarize.\n\nInput:\nhello"_s);
}

TEST(PromptTemplate, emptyInputAlwaysEndsInTheInputLine)
{
    EXPECT_EQ(rendered(u"Say {User_Input}"_s, u""_s), u"Say \n\nInput:\n"_s);
    EXPECT_EQ(rendered(u""_s, u""_s), u"\n\nInput:\n"_s);
}

TEST(PromptTemplate, templateWithTheDateAloneGetsTheInputBehindIt)
{
    EXPECT_EQ(rendered(u"Today: {Current_Date}"_s, u"hi"_s),
        u"Today: "_s + longDateShortTime(kNow) + u"\n\nInput:\nhi"_s);
}

TEST(PromptTemplate, inputThatStandsInThePromptAlreadyIsNotAppended)
{
    EXPECT_EQ(rendered(u"Quote: hello"_s, u"hello"_s), u"Quote: hello"_s);
}

TEST(PromptTemplate, inputIsLookedForWithRegardToCase)
{
    EXPECT_EQ(rendered(u"Quote: Hello"_s, u"hello"_s), u"Quote: Hello\n\nInput:\nhello"_s);
}

TEST(PromptTemplate, inputThatTheClipboardHoldsIsNotAppended)
{
    EXPECT_EQ(
        rendered(u"See {Clipboard}."_s, u"hello"_s, u"oh hello you"_s), u"See oh hello you."_s);
}

TEST(PromptTemplate, clipboardVariableInsideTheInputIsFilledAndTheInputAppended)
{
    EXPECT_EQ(rendered(u"{User_Input}"_s, u"see {Clipboard}"_s, u"this"_s),
        u"see this\n\nInput:\nsee {Clipboard}"_s);
}

TEST(PromptTemplate, dateVariableInsideTheInputIsFilled)
{
    EXPECT_EQ(rendered(u"{User_Input}"_s, u"on {Current_Date}"_s),
        u"on "_s + longDateShortTime(kNow) + u"\n\nInput:\non {Current_Date}"_s);
}

TEST(PromptTemplate, inputVariableInsideTheInputIsNotFilledAgain)
{
    EXPECT_EQ(rendered(u"A {User_Input}"_s, u"{User_Input}!"_s), u"A {User_Input}!"_s);
}

TEST(PromptTemplate, whatTheClipboardBringsIsNotLookedAtAgain)
{
    EXPECT_EQ(rendered(u"{User_Input} {Clipboard}"_s, u"x"_s,
                  u"{Clipboard} {Current_Date} {User_Input}"_s),
        u"x {Clipboard} {Current_Date} {User_Input}"_s);
}

TEST(PromptTemplate, emptyClipboardLeavesNothing)
{
    EXPECT_EQ(rendered(u"[{Clipboard}] {User_Input}"_s, u"x"_s), u"[] x"_s);
}

TEST(PromptTemplate, variableThatComesTogetherFromTwoPartsIsFilled)
{
    EXPECT_EQ(
        rendered(u"{Clip{User_Input}"_s, u"board}"_s, u"this"_s), u"this\n\nInput:\nboard}"_s);
}

TEST(PromptTemplate, variablesAreSpelledWithRegardToCase)
{
    EXPECT_EQ(rendered(u"{user_input}"_s, u"hi"_s), u"{user_input}\n\nInput:\nhi"_s);
    EXPECT_EQ(rendered(u"{current_date} {CLIPBOARD} {User_Input}"_s, u"hi"_s, u"c"_s),
        u"{current_date} {CLIPBOARD} hi"_s);
}

TEST(PromptTemplate, otherBracesStayAsTheyAre)
{
    EXPECT_EQ(rendered(u"{Name} {{User_Input}} {User_Input {} \\{User_Input}"_s, u"x"_s),
        u"{Name} {x} {User_Input {} \\x"_s);
}

TEST(PromptTemplate, backslashAndNStayTwoCharacters)
{
    EXPECT_EQ(rendered(uR"(Hi.\n\n{User_Input})"_s, u"x"_s), uR"(Hi.\n\nx)"_s);
}

TEST(PromptTemplate, inputIsFoundAtTheEndAndAcrossFalseStarts)
{
    EXPECT_EQ(rendered(u"aaab"_s, u"aab"_s), u"aaab"_s);
    EXPECT_EQ(rendered(u"abacababacabac"_s, u"abacabac"_s), u"abacababacabac"_s);
    EXPECT_EQ(rendered(u"aaaa"_s, u"aaaaa"_s), u"aaaa\n\nInput:\naaaaa"_s);
    EXPECT_EQ(rendered(u"abab"_s, u"abb"_s), u"abab\n\nInput:\nabb"_s);
    EXPECT_EQ(rendered(u"bbabbbabbbbb"_s, u"bbabbbb"_s), u"bbabbbabbbbb"_s);
}

TEST(PromptTemplate, inputIsAppendedExactlyWhenAPlainSearchDoesNotFindIt)
{
    std::mt19937 random(1); // always the same texts
    const auto textOfAAndB = [&](int length) {
        QString text;
        for (int index = 0; index < length; ++index) {
            text += random() % 2 == 0 ? u'a' : u'b';
        }
        return text;
    };
    for (int round = 0; round < 2000; ++round) {
        const QString promptTemplate = textOfAAndB(40);
        const QString input = textOfAAndB(1 + round % 9);
        const bool isFound = promptTemplate.contains(input);
        EXPECT_EQ(rendered(promptTemplate, input) == promptTemplate, isFound)
            << promptTemplate.toStdString() << ' ' << input.toStdString();
    }
}

TEST(PromptTemplate, dateIsToldInTheLongFormOfTheLocale)
{
    const ScopedVariable newYork("TZ", "America/New_York");
    // The space before AM is a narrow one that does not break.
    EXPECT_EQ(rendered(u"{User_Input}: {Current_Date}"_s, u"x"_s),
        u"x: February 20, 2026 at 10:00\u202FAM"_s);
}

TEST(PromptTemplate, dateFollowsTheTimeZone)
{
    const ScopedVariable tokyo("TZ", "Asia/Tokyo");
    EXPECT_EQ(rendered(u"{User_Input}: {Current_Date}"_s, u"x"_s),
        u"x: February 21, 2026 at 12:00\u202FAM"_s);
}

TEST(PromptTemplate, dateFollowsAnotherLocale)
{
    const ScopedVariable newYork("TZ", "America/New_York");
    const ScopedVariable german("LC_ALL", "de_DE.UTF-8");
    EXPECT_EQ(
        rendered(u"{User_Input}: {Current_Date}"_s, u"x"_s), u"x: 20. Februar 2026 um 10:00"_s);
}

TEST(PromptTemplateCost, manyVariablesCostNoMoreThanTheirLength)
{
    expectLinear([](qsizetype length) {
        const QString promptTemplate = u"{User_Input}"_s.repeated(length / 12);
        EXPECT_EQ(rendered(promptTemplate, u"x"_s).size(), length / 12);
    });
}

TEST(PromptTemplateCost, variablesInsideTheInputCostNoMoreThanTheirLength)
{
    expectLinear([](qsizetype length) {
        const QString input = u"{Clipboard}"_s.repeated(length / 11);
        EXPECT_FALSE(rendered(u"{User_Input}"_s, input, u"some text"_s).isEmpty());
    });
}

TEST(PromptTemplateCost, longInputThatIsNearlyFoundEverywhereCostsNoMoreThanItsLength)
{
    expectLinear([](qsizetype length) {
        const QString alike(length, u'a');
        EXPECT_TRUE(rendered(alike, u'b' + alike.left(length / 2)).endsWith(u'a'));
        EXPECT_TRUE(rendered(alike, alike.left(length / 2) + u'b').endsWith(u'b'));
    });
}

TEST(PromptTemplateCost, aMegabyteOfInputIsRendered)
{
    const QString input = u"words and more words\n"_s.repeated(50'000);
    EXPECT_EQ(rendered(u"Start {User_Input} end"_s, input), u"Start "_s + input + u" end"_s);
}

} // namespace velarc
