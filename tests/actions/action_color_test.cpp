#include "actions/action_color.h"
#include "support/printers.h"

#include <QSet>

#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

ActionColor ofBytes(int red, int green, int blue)
{
    return ActionColor{red / 255.0, green / 255.0, blue / 255.0};
}

const ActionColor kFallback = ofBytes(37, 99, 235);
const ActionColor kBlack = ofBytes(0, 0, 0);

} // namespace

TEST(ColorFromHex, readsSixDigitsAsRedGreenAndBlue)
{
    EXPECT_EQ(colorFromHex(u"EA580C"), ofBytes(234, 88, 12));
    EXPECT_EQ(colorFromHex(u"ea580c"), ofBytes(234, 88, 12));
    EXPECT_EQ(colorFromHex(u"FFFFFF"), ofBytes(255, 255, 255));
    EXPECT_EQ(colorFromHex(u"000000"), kBlack);
}

TEST(ColorFromHex, markBeforeTheDigitsFallsAway)
{
    EXPECT_EQ(colorFromHex(u"#2563EB"), colorFromHex(u"2563EB"));
    EXPECT_EQ(colorFromHex(u"2563EB"), ofBytes(37, 99, 235));
}

TEST(ColorFromHex, whatIsNeitherLetterNorDigitFallsAwayAtBothEnds)
{
    EXPECT_EQ(colorFromHex(u" (#EA580C);\n"), ofBytes(234, 88, 12));
    EXPECT_EQ(colorFromHex(u"\U0001F3A8EA580C\U0001F3A8"), ofBytes(234, 88, 12));
}

TEST(ColorFromHex, marksBetweenTheDigitsCount)
{
    EXPECT_EQ(colorFromHex(u"EA-58-0C"), kFallback);
    EXPECT_EQ(colorFromHex(u"EA-58C"), ofBytes(0, 0, 0xEA));
}

TEST(ColorFromHex, textOfAnotherLengthGivesTheFallback)
{
    for (const QStringView text : {u"", u"#", u"FFF", u"FFFFF", u"FFFFFFF", u"FFFFFFFF", u"red",
             u"FFFFFFFFFFFFFFFFFFFFFFFFFFFFFFFF"}) {
        EXPECT_EQ(colorFromHex(text), kFallback) << text.toUtf8().toStdString();
    }
}

TEST(ColorFromHex, letterBeyondTheFirstPlaneIsNoMark)
{
    EXPECT_EQ(colorFromHex(u"\U0001D400EA580C"), kFallback);
    EXPECT_EQ(colorFromHex(u"EA580C\U0001D400"), kFallback);
}

TEST(ColorFromHex, digitsCountUpToTheFirstBadOne)
{
    EXPECT_EQ(colorFromHex(u"ZZZZZZ"), kBlack);
    EXPECT_EQ(colorFromHex(u"12G456"), ofBytes(0, 0, 0x12));
    EXPECT_EQ(colorFromHex(u"12345G"), ofBytes(0x01, 0x23, 0x45));
    EXPECT_EQ(colorFromHex(u"G12345"), kBlack);
}

TEST(ColorFromHex, hexadecimalPrefixIsRead)
{
    EXPECT_EQ(colorFromHex(u"0x1234"), ofBytes(0, 0x12, 0x34));
    EXPECT_EQ(colorFromHex(u"0X1234"), ofBytes(0, 0x12, 0x34));
    EXPECT_EQ(colorFromHex(u"0xZZZZ"), kBlack);
}

TEST(ColorFromHex, digitsOfOtherScriptsAreLettersToTheScanner)
{
    EXPECT_EQ(colorFromHex(u"\u0661\u0662\u0663\u0664\u0665\u0666"), kBlack);
}

TEST(ActionColorPalette, holdsItsSevenColoursInOrder)
{
    const QList<std::pair<QString, QString>> expected{{u"Ocean"_s, u"2563EB"_s},
        {u"Emerald"_s, u"059669"_s}, {u"Sunset"_s, u"EA580C"_s}, {u"Crimson"_s, u"DC2626"_s},
        {u"Purple"_s, u"9333EA"_s}, {u"Teal"_s, u"0D9488"_s}, {u"Slate"_s, u"334155"_s}};
    QList<std::pair<QString, QString>> found;
    for (const ActionColorOption &option : actionColorPalette()) {
        found.append({option.name, option.hex});
    }
    EXPECT_EQ(found, expected);
}

TEST(ActionColorPalette, rowsHaveIdsOfTheirOwnThatLast)
{
    QSet<QUuid> ids;
    for (const ActionColorOption &option : actionColorPalette()) {
        EXPECT_FALSE(option.id.isNull());
        ids.insert(option.id);
    }
    EXPECT_EQ(ids.size(), actionColorPalette().size());
    EXPECT_EQ(actionColorPalette().first().id, actionColorPalette().first().id);
}

} // namespace velarc
