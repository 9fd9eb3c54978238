#include "ui/secret_line.h"

#include <QString>

#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

using Select = SecretLine::Select;

SecretLine lineOf(QStringView text)
{
    SecretLine line;
    line.insert(text);
    return line;
}

QString textOf(const SecretLine &line)
{
    return QString::fromUtf8(line.secret().bytes());
}

} // namespace

TEST(SecretLine, takesTextAtItsCursor)
{
    SecretLine line = lineOf(u"sk-3");
    line.moveBy(-1, Select::Nothing);
    line.insert(u"12");
    EXPECT_EQ(textOf(line), u"sk-123"_s);
    EXPECT_EQ(line.cursor(), 5);
}

TEST(SecretLine, takesTextInThePlaceOfItsSelection)
{
    SecretLine line = lineOf(u"old-key");
    line.selectAll();
    line.insert(u"new");
    EXPECT_EQ(textOf(line), u"new"_s);
    EXPECT_FALSE(line.hasSelection());
}

TEST(SecretLine, dropsLineEndsAndOtherControlCharacters)
{
    EXPECT_EQ(textOf(lineOf(u"sk-1\r\n23\t\u2028 4")), u"sk-123 4"_s);
}

TEST(SecretLine, dropsWhatComesBeyondItsMaximumLength)
{
    SecretLine line = lineOf(QString(SecretLine::kMaximumLength - 1, u'a'));
    line.insert(u"bcd");
    EXPECT_EQ(line.length(), SecretLine::kMaximumLength);
    EXPECT_TRUE(textOf(line).endsWith(u"ab"));
    line.insert(u"e");
    EXPECT_EQ(line.length(), SecretLine::kMaximumLength);
}

TEST(SecretLine, removesOneCharacterOrTheSelection)
{
    SecretLine line = lineOf(u"abcdef");
    line.removeBackward();
    EXPECT_EQ(textOf(line), u"abcde"_s);
    line.moveTo(0, Select::Nothing);
    line.removeBackward();
    EXPECT_EQ(textOf(line), u"abcde"_s);
    line.removeForward();
    EXPECT_EQ(textOf(line), u"bcde"_s);
    line.moveBy(2, Select::UpToCursor);
    line.removeForward();
    EXPECT_EQ(textOf(line), u"de"_s);
    line.moveTo(1, Select::Nothing);
    line.removeToStart();
    EXPECT_EQ(textOf(line), u"e"_s);
    line.moveTo(1, Select::Nothing);
    line.removeForward();
    EXPECT_EQ(textOf(line), u"e"_s);
}

TEST(SecretLine, neverStandsWithinACharacterOfTwoHalves)
{
    SecretLine line = lineOf(u"a\U0001F511b");
    line.moveTo(2, Select::Nothing);
    EXPECT_EQ(line.cursor(), 3);
    line.removeBackward();
    EXPECT_EQ(textOf(line), u"ab"_s);
    line = lineOf(u"\U0001F511b");
    line.moveTo(0, Select::Nothing);
    line.moveBy(1, Select::Nothing);
    EXPECT_EQ(line.cursor(), 2);
    line.moveBy(-1, Select::Nothing);
    line.removeForward();
    EXPECT_EQ(textOf(line), u"b"_s);
}

TEST(SecretLine, selectsBetweenWhereItWasAndItsCursor)
{
    SecretLine line = lineOf(u"abcdef");
    line.moveTo(4, Select::Nothing);
    line.moveTo(1, Select::UpToCursor);
    EXPECT_EQ(line.selectionStart(), 1);
    EXPECT_EQ(line.selectionEnd(), 4);
    line.moveTo(100, Select::Nothing);
    EXPECT_EQ(line.cursor(), 6);
    EXPECT_FALSE(line.hasSelection());
}

TEST(SecretLine, isEmptyOnceCleared)
{
    SecretLine line = lineOf(u"sk-1");
    line.clear();
    EXPECT_EQ(line.length(), 0);
    EXPECT_TRUE(line.secret().isEmpty());
    line.insert(u"sk-2");
    EXPECT_EQ(textOf(line), u"sk-2"_s);
}

} // namespace velarc
