#include "engines/text_pieces.h"

#include <QStringList>

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

QStringList linesOf(QStringView text)
{
    QStringList lines;
    TextPieces pieces(text, &isLineFeed);
    while (const auto piece = pieces.next()) {
        lines.append(piece->toString());
    }
    return lines;
}

} // namespace

TEST(TextPieces, areTrimmedAndNeverBlank)
{
    EXPECT_EQ(linesOf(u"\n one \n\n \t\r\n\u00A0two\u2003\n"), QStringList({u"one"_qs, u"two"_qs}));
}

TEST(TextPieces, onlyTheirOwnSeparatorCuts)
{
    EXPECT_EQ(linesOf(u"a\rb\u0085c\u2028d\ve"), QStringList({u"a\rb\u0085c\u2028d\ve"_qs}));
}

TEST(TextPieces, theLastNeedsNoSeparatorBehindIt)
{
    EXPECT_EQ(linesOf(u"one\ntwo"), QStringList({u"one"_qs, u"two"_qs}));
}

TEST(TextPieces, anEmptyTextHasNone)
{
    EXPECT_TRUE(linesOf(u"").isEmpty());
    EXPECT_TRUE(linesOf(QStringView()).isEmpty());
}

TEST(TextPieces, pointIntoTheText)
{
    const QString text = u" a \nb"_qs;
    TextPieces pieces(text, &isLineFeed);
    EXPECT_EQ(pieces.next()->data(), text.constData() + 1);
}

TEST(TextPieces, staysAtTheEnd)
{
    TextPieces pieces(u"a.", &endsSentence);
    EXPECT_TRUE(pieces.next());
    EXPECT_FALSE(pieces.next());
    EXPECT_FALSE(pieces.next());
}

TEST(TextPieces, sentencesEndAtThreeMarks)
{
    TextPieces pieces(u"a?b!c.d,e;f", &endsSentence);
    EXPECT_EQ(*pieces.next(), u"a");
    EXPECT_EQ(*pieces.next(), u"b");
    EXPECT_EQ(*pieces.next(), u"c");
    EXPECT_EQ(*pieces.next(), u"d,e;f");
}

} // namespace velarc
