#include "ui/long_text_layout.h"

#include <QGuiApplication>

#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

QString joined(const TextBlocks &blocks)
{
    QString text;
    for (qsizetype index = 0; index < blocks.count(); ++index) {
        text += blocks.text().sliced(blocks.at(index).start, blocks.at(index).length);
    }
    return text;
}

QString paragraphs(int count)
{
    QString text;
    for (int number = 0; number < count; ++number) {
        text += u"Paragraph %1: the harbour ferry was late again, and the crew blamed the tide.\n"_s
                    .arg(number);
    }
    return text;
}

TEST(TextBlocks, blocksAreTheWholeTextInOrder)
{
    for (const QString &text : {QString(), u"one"_s, u"\n"_s, u"one\n\ntwo\n"_s, paragraphs(500),
             QString(100'000, u'x'), u"word "_s.repeated(20'000), QString(50'000, u'\n')}) {
        EXPECT_EQ(joined(TextBlocks(text)), text);
    }
}

TEST(TextBlocks, noBlockIsTooLongToBeLaidOutAtOnce)
{
    for (const QString &text : {paragraphs(500), QString(100'000, u'x'),
             u"word "_s.repeated(20'000), QString(50'000, u'\n')}) {
        const TextBlocks blocks(text);
        for (qsizetype index = 0; index < blocks.count(); ++index) {
            EXPECT_LE(blocks.at(index).length, 8'192);
        }
    }
}

TEST(TextBlocks, aParagraphWithoutAnEndIsCutBetweenWords)
{
    const TextBlocks blocks(u"word "_s.repeated(20'000));
    for (qsizetype index = 1; index < blocks.count(); ++index) {
        EXPECT_EQ(blocks.text().at(blocks.at(index).start - 1), u' ');
    }
}

TEST(TextBlocks, noCharacterIsCutInTwo)
{
    const QString family =
        u"\U0001F468\u200D\U0001F469\u200D\U0001F467"_s; // one to see, eight units
    const TextBlocks blocks(u'x' + family.repeated(5'000));
    ASSERT_GT(blocks.count(), 2);
    for (qsizetype index = 1; index < blocks.count(); ++index) {
        EXPECT_EQ((blocks.at(index).start - 1) % family.size(), 0);
    }
}

TEST(TextBlocks, aPositionIsFoundInItsBlock)
{
    const TextBlocks blocks(paragraphs(500));
    for (const qsizetype position : {qsizetype(0), qsizetype(1'000), blocks.text().size() - 1}) {
        const TextBlock &block = blocks.at(blocks.indexOf(position));
        EXPECT_LE(block.start, position);
        EXPECT_GT(block.end(), position);
    }
    EXPECT_EQ(blocks.indexOf(blocks.text().size()), blocks.count() - 1);
}

class LongTextLayoutTest : public ::testing::Test
{
protected:
    LongTextLayout layout;

    LongTextLayoutTest()
    {
        layout.setFont(QGuiApplication::font(), 1.2);
        layout.setWidth(400);
    }

    void layOutAll()
    {
        layout.layOut(0, 1e9);
        layout.layOut(0, layout.height());
    }
};

TEST_F(LongTextLayoutTest, aTextIsAsHighAsItsLines)
{
    layout.setText(u"one\ntwo\nthree"_s);
    layOutAll();
    EXPECT_EQ(layout.height(), 3 * layout.lineHeight());
    layout.setText(u"one\ntwo\nthree\n"_s); // as an editor shows it: the last line is empty
    layOutAll();
    EXPECT_EQ(layout.height(), 4 * layout.lineHeight());
    layout.setText(u"one\r\ntwo\rthree\u2029four"_s);
    layOutAll();
    EXPECT_EQ(layout.height(), 4 * layout.lineHeight());
}

TEST_F(LongTextLayoutTest, aLimitCutsAndSaysSo)
{
    layout.setLineLimit(6);
    layout.setText(u"1\n2\n3\n4\n5\n6"_s);
    EXPECT_FALSE(layout.isCut());
    EXPECT_EQ(layout.height(), 6 * layout.lineHeight());
    layout.setText(u"1\n2\n3\n4\n5\n6\n7"_s);
    EXPECT_TRUE(layout.isCut());
    EXPECT_EQ(layout.height(), 6 * layout.lineHeight());
    layout.setText(QString(5'000, u'x')); // a paragraph that wraps
    EXPECT_TRUE(layout.isCut());
    EXPECT_EQ(layout.height(), 6 * layout.lineHeight());
    layout.setText(u"short"_s);
    EXPECT_FALSE(layout.isCut());
    EXPECT_EQ(layout.height(), layout.lineHeight());
}

TEST_F(LongTextLayoutTest, onlyWhatIsLookedAtIsLaidOut)
{
    layout.setText(paragraphs(60'000));
    layout.layOut(0, 800);
    EXPECT_LT(layout.partInView().end, 10'000);
    layout.layOut(100'000, 100'800);
    const TextSelection part = layout.partInView();
    EXPECT_GT(part.start, 10'000);
    EXPECT_LT(part.end - part.start, 10'000);
}

TEST_F(LongTextLayoutTest, theEstimatedHeightIsCloseToTheMeasuredOne)
{
    layout.setText(paragraphs(2'000));
    const qreal estimated = layout.height();
    layOutAll();
    EXPECT_NEAR(estimated / layout.height(), 1, 0.3);
}

TEST_F(LongTextLayoutTest, whatIsSeenMovesByAsMuchAsIsTold)
{
    layout.setText(paragraphs(5'000));
    layout.layOut(50'000, 50'800);
    const qsizetype seen = layout.positionAt({0, 50'400});
    const qreal before = layout.caretAt(seen).top();
    const qreal moved = layout.layOut(47'000, 50'800); // blocks above it are measured
    EXPECT_EQ(layout.caretAt(seen).top(), before + moved);
}

TEST_F(LongTextLayoutTest, aCaretAndThePointUnderItAgree)
{
    layout.setText(paragraphs(300));
    layOutAll();
    for (qsizetype position = 0; position < layout.text().size(); position += 97) {
        const QRectF caret = layout.caretAt(position);
        EXPECT_EQ(layout.positionAt(caret.center()), position);
    }
}

TEST_F(LongTextLayoutTest, aPointBesideTheTextMeansTheNearestPosition)
{
    layout.setText(u"one\ntwo"_s);
    layOutAll();
    EXPECT_EQ(layout.positionAt({-10, -10}), 0);
    EXPECT_EQ(layout.positionAt({390, 1}), 3);
    EXPECT_EQ(layout.positionAt({390, 1'000}), 7);
}

TEST_F(LongTextLayoutTest, stepsGoByCharactersAsTheyAreSeen)
{
    const QString family = u"\U0001F468\u200D\U0001F469"_s;
    layout.setText(family + u"\nx"_s);
    EXPECT_EQ(layout.positionBehind(0), family.size());
    EXPECT_EQ(layout.positionBehind(family.size()), family.size() + 1);
    EXPECT_EQ(layout.positionBefore(family.size() + 1), family.size());
    EXPECT_EQ(layout.positionBefore(family.size()), 0);
    EXPECT_EQ(layout.positionBefore(0), 0);
    EXPECT_EQ(layout.positionBehind(layout.text().size()), layout.text().size());
}

TEST_F(LongTextLayoutTest, aChangeLeavesTheHeightsBeforeItAsTheyWere)
{
    QString text = paragraphs(3'000);
    layout.setText(text);
    layOutAll();
    const qsizetype far = text.size() / 2;
    const qreal top = layout.caretAt(far).top();
    text.insert(text.size() - 10, u"more "_s);
    layout.setText(text);
    EXPECT_EQ(layout.caretAt(far).top(), top);
}

TEST_F(LongTextLayoutTest, rightToLeftTextBeginsAtTheRight)
{
    layout.setText(u"\u05E9\u05DC\u05D5\u05DD\nhello"_s);
    layOutAll();
    EXPECT_GT(layout.caretAt(0).left(), 300);
    EXPECT_LT(layout.caretAt(5).left(), 10);
}

} // namespace

} // namespace velarc
