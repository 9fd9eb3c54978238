#include "base/text.h"
#include "support/cpu_time.h"
#include "support/environment.h"
#include "support/printers.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

constexpr QStringView kFamily = u"\U0001F468\u200D\U0001F469\u200D\U0001F467";
constexpr QStringView kFlag = u"\U0001F1E9\U0001F1EA";
constexpr QStringView kAccented = u"e\u0301";
constexpr QStringView kThumb = u"\U0001F44D\U0001F3FD";
constexpr QStringView kKeycap = u"1\uFE0F\u20E3";

QStringList linesOf(QStringView text)
{
    QStringList lines;
    for (const QStringView line : splitLines(text)) {
        lines.append(line.toString());
    }
    return lines;
}

// How `text` is taken apart by prefixes of one character.
QStringList charactersOf(QStringView text)
{
    QStringList characters;
    while (!text.isEmpty()) {
        const QStringView first = characterPrefix(text, 1);
        characters.append(first.toString());
        text = text.mid(first.size());
    }
    return characters;
}

} // namespace

TEST(Trimmed, takesWhiteSpaceAndLineEndsFromBothEnds)
{
    EXPECT_EQ(
        trimmed(
            u" \t\n\v\f\r\u0085\u00A0\u1680\u2003\u2028\u2029\u202F\u205F\u3000 a \n b\u3000\t"),
        u"a \n b");
}

TEST(Trimmed, leavesWhatIsNoWhiteSpace)
{
    EXPECT_EQ(trimmed(u"\u200Ba\uFEFF"), u"\u200Ba\uFEFF");
    EXPECT_EQ(trimmed(u"\u0001\u001F"), u"\u0001\u001F");
}

TEST(Trimmed, ofNothingIsNothing)
{
    EXPECT_TRUE(trimmed(u"").isEmpty());
    EXPECT_TRUE(trimmed(QStringView()).isEmpty());
    EXPECT_TRUE(trimmed(u" \r\n ").isEmpty());
}

TEST(Trimmed, pointsIntoItsArgument)
{
    const QString text = u"  x "_qs;
    EXPECT_EQ(trimmed(text).data(), text.constData() + 2);
}

TEST(Blank, isWhatTrimsToNothing)
{
    EXPECT_TRUE(isBlank(u""));
    EXPECT_TRUE(isBlank(QStringView()));
    EXPECT_TRUE(isBlank(u" \t\r\n\u0085\u00A0\u2028"));
    EXPECT_FALSE(isBlank(u" . "));
    EXPECT_FALSE(isBlank(u"\u200B"));
    for (char32_t point = 0; point < 0x10000; ++point) {
        const QChar character(static_cast<char16_t>(point));
        EXPECT_EQ(
            isBlank(QStringView(&character, 1)), trimmed(QStringView(&character, 1)).isEmpty());
    }
}

TEST(Folding, lowersTheCaseOfEveryScript)
{
    EXPECT_EQ(foldedToLower(u"SEND Ünïcode ÄÖ ДОМ"), u"send ünïcode äö дом"_qs);
    EXPECT_EQ(foldedToLower(u"\U00010400"), u"\U00010428"_qs);
    EXPECT_EQ(foldedToLower(u"ß \u1E9E"), u"ß ß"_qs);
}

TEST(Folding, keepsTheDotOfTheTurkishCapitalI)
{
    EXPECT_EQ(foldedToLower(u"\u0130"), u"i\u0307"_qs);
    EXPECT_EQ(foldedToLower(u"I\u0131"), u"i\u0131"_qs);
}

TEST(Folding, writesTheSigmaThatEndsAWordInItsFinalForm)
{
    EXPECT_EQ(foldedToLower(u"ΟΔΟΣ ΣΑΣ"), u"οδος σας"_qs);
}

TEST(Folding, isTheSameInEveryLanguage)
{
    const ScopedVariable turkish("LC_ALL", "tr_TR.UTF-8");
    EXPECT_EQ(foldedToLower(u"INVOICE"), u"invoice"_qs);
}

TEST(Folding, ofNothingIsNothing)
{
    EXPECT_TRUE(foldedToLower(u"").isEmpty());
    EXPECT_TRUE(foldedToLower(QStringView()).isEmpty());
}

TEST(Folding, leavesLoneSurrogates)
{
    const QString lone = QString(QChar(0xD800)) + u'a';
    EXPECT_EQ(foldedToLower(lone), lone);
}

TEST(Characters, areWhatTheUserSees)
{
    EXPECT_EQ(characterCount(kFamily), 1);
    EXPECT_EQ(characterCount(kFlag), 1);
    EXPECT_EQ(characterCount(kAccented), 1);
    EXPECT_EQ(characterCount(kThumb), 1);
    EXPECT_EQ(characterCount(kKeycap), 1);
    EXPECT_EQ(characterCount(u"\r\n"), 1);
    EXPECT_EQ(characterCount(u"\n\r"), 2);
    EXPECT_EQ(characterCount(u"\uD55C\u1112\u1161\u11AB"), 2);
    EXPECT_EQ(characterCount(u"abc"), 3);
}

TEST(Characters, ofTwoFlagsAndAHalfAreThree)
{
    const QString flags = kFlag.toString() + kFlag.toString() + u"\U0001F1E9"_qs;
    EXPECT_EQ(characterCount(flags), 3);
    EXPECT_EQ(charactersOf(u"a"_qs + flags).size(), 4);
}

TEST(Characters, ofNothingAreNone)
{
    EXPECT_EQ(characterCount(u""), 0);
    EXPECT_EQ(characterCount(QStringView()), 0);
    EXPECT_TRUE(characterPrefix(u"", 5).isEmpty());
    EXPECT_TRUE(characterPrefix(QStringView(), 5).isEmpty());
}

TEST(Characters, prefixOfNoneIsEmpty)
{
    EXPECT_TRUE(characterPrefix(u"abc", 0).isEmpty());
    EXPECT_TRUE(characterPrefix(kFamily, 0).isEmpty());
    EXPECT_TRUE(characterPrefix(kAccented, 0).isEmpty());
}

TEST(Characters, prefixOfAShorterTextIsAllOfIt)
{
    EXPECT_EQ(characterPrefix(u"abc", 3), u"abc");
    EXPECT_EQ(characterPrefix(u"abc", 1000), u"abc");
    EXPECT_EQ(characterPrefix(u"ab\u0301", 1000), u"ab\u0301");
}

TEST(Characters, mixedTextComesApartBetweenThem)
{
    const QStringList parts{u"a"_qs, kAccented.toString(), u"\r\n"_qs, kFamily.toString(), u"b"_qs,
        kFlag.toString(), u"\n"_qs, kKeycap.toString(), u"\r"_qs, u"c"_qs};
    EXPECT_EQ(charactersOf(parts.join(QString())), parts);
}

TEST(Characters, anAccentBehindAsciiStaysWithItAroundTheLimit)
{
    const QString text = u"abcde\u0301fg"_qs;
    EXPECT_EQ(characterPrefix(text, 3), u"abc");
    EXPECT_EQ(characterPrefix(text, 4), u"abcd");
    EXPECT_EQ(characterPrefix(text, 5), u"abcde\u0301");
    EXPECT_EQ(characterPrefix(text, 6), u"abcde\u0301f");
    EXPECT_EQ(characterPrefix(text, 7), text);
    EXPECT_EQ(characterCount(text), 7);
}

TEST(Characters, aCarriageReturnAtTheLimitTakesItsLineFeedAlong)
{
    EXPECT_EQ(characterPrefix(u"ab\r\ncd", 2), u"ab");
    EXPECT_EQ(characterPrefix(u"ab\r\ncd", 3), u"ab\r\n");
    EXPECT_EQ(characterPrefix(u"ab\r\ncd", 4), u"ab\r\nc");
    EXPECT_EQ(characterPrefix(u"ab\rcd", 3), u"ab\r");
    EXPECT_EQ(characterPrefix(u"\r\n\r\n", 1), u"\r\n");
}

TEST(Characters, anEmojiIsNeverCut)
{
    const QString text = u"ab"_qs + kFamily.toString() + kThumb.toString();
    EXPECT_EQ(characterPrefix(text, 2), u"ab");
    EXPECT_EQ(characterPrefix(text, 3), u"ab"_qs + kFamily.toString());
    EXPECT_EQ(characterPrefix(text, 4), text);
}

TEST(Characters, loneSurrogatesCountForThemselves)
{
    const QString text = QString(QChar(0xDC00)) + QChar(0xD800) + u'a';
    EXPECT_EQ(characterCount(text), 3);
    EXPECT_EQ(characterPrefix(text, 2).size(), 2);
}

TEST(Characters, aShortPrefixOfALongTextCostsLittle)
{
    const QString text = kFamily.toString().repeated(1'000'000);
    constexpr int kCalls = 1000;
    constexpr double kSeconds = 1;
    const auto spent = cpuTime([&] {
        for (int call = 0; call < kCalls; ++call) {
            EXPECT_EQ(characterPrefix(text, 72).size(), 72 * kFamily.size());
        }
    });
    EXPECT_LT(spent.count(), kSeconds);
}

TEST(Lines, endAtEachOfTheSeparators)
{
    EXPECT_EQ(linesOf(u"a\nb\vc\fd\re\u0085f\u2028g\u2029h"),
        QStringList({u"a"_qs, u"b"_qs, u"c"_qs, u"d"_qs, u"e"_qs, u"f"_qs, u"g"_qs, u"h"_qs}));
}

TEST(Lines, endAtNothingElse)
{
    EXPECT_EQ(
        linesOf(u"a\tb\u001Cc\u200Bd e\u00A0f"), QStringList({u"a\tb\u001Cc\u200Bd e\u00A0f"_qs}));
}

TEST(Lines, emptyOnesAreLeftOutButBlankOnesStay)
{
    EXPECT_EQ(linesOf(u"\n\na\r\n\r\nb\n\r \n"), QStringList({u"a"_qs, u"b"_qs, u" "_qs}));
    EXPECT_TRUE(linesOf(u"").isEmpty());
    EXPECT_TRUE(linesOf(QStringView()).isEmpty());
    EXPECT_TRUE(linesOf(u"\r\n\u2028").isEmpty());
}

TEST(Lines, pointIntoTheText)
{
    const QString text = u"\na\n"_qs;
    EXPECT_EQ(splitLines(text).first().data(), text.constData() + 1);
}

} // namespace velarc
