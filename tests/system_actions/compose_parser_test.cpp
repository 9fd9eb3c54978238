#include "support/printers.h"
#include "system_actions/compose_parser.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::string_view_literals;

ComposeDraft mailOf(QStringView text)
{
    return parseComposeInput(text, ComposeSubject::Included);
}

ComposeDraft messageOf(QStringView text)
{
    return parseComposeInput(text, ComposeSubject::Absent);
}

TEST(ComposeParser, mailHasRecipientsASubjectAndABody)
{
    const ComposeDraft draft = mailOf(u"to: a, b; c\nsubject: Hi\nbody: Hello\nSecond line");
    EXPECT_EQ(draft.recipients, (QStringList{u"a"_s, u"b"_s, u"c"_s}));
    EXPECT_EQ(draft.subject, u"Hi"_s);
    EXPECT_EQ(draft.body, u"Hello\nSecond line"_s);
}

TEST(ComposeParser, plainParagraphIsTheBody)
{
    const ComposeDraft draft = mailOf(u"  The meeting moved to Monday. ");
    EXPECT_EQ(draft, (ComposeDraft{{}, std::nullopt, u"The meeting moved to Monday."_s}));
}

TEST(ComposeParser, withoutABodyTheWholeTextIsIt)
{
    const ComposeDraft draft = mailOf(u"to: a\nsubject: Hi");
    EXPECT_EQ(draft.recipients, QStringList{u"a"_s});
    EXPECT_EQ(draft.subject, u"Hi"_s);
    EXPECT_EQ(draft.body, u"to: a\nsubject: Hi"_s);
}

TEST(ComposeParser, markersMatchInAnyCaseAndValuesKeepTheirCapitals)
{
    const ComposeDraft draft = mailOf(u"TO: Ann@Example.org\nSubJect: HELLO\nBODY: Dear ANN");
    EXPECT_EQ(draft.recipients, QStringList{u"Ann@Example.org"_s});
    EXPECT_EQ(draft.subject, u"HELLO"_s);
    EXPECT_EQ(draft.body, u"Dear ANN"_s);
}

TEST(ComposeParser, emptyLineOfTheBodyVanishes)
{
    EXPECT_EQ(mailOf(u"body: Dear Sam,\n\nThanks").body, u"Dear Sam,\nThanks"_s);
}

TEST(ComposeParser, lineOfBlanksStaysInTheBodyAsAnEmptyOne)
{
    EXPECT_EQ(mailOf(u"body: Dear Sam,\n  \nThanks").body, u"Dear Sam,\n\nThanks"_s);
}

TEST(ComposeParser, messageHasNoSubject)
{
    EXPECT_EQ(messageOf(u"subject: Hi\nbody: Hello"), (ComposeDraft{{}, std::nullopt, u"Hello"_s}));
}

TEST(ComposeParser, subjectLineInTheBodyOfAMessageIsText)
{
    EXPECT_EQ(messageOf(u"body: Hello\nsubject: Hi"),
        (ComposeDraft{{}, std::nullopt, u"Hello\nsubject: Hi"_s}));
}

TEST(ComposeParser, emptyTextIsAnEmptyDraft)
{
    EXPECT_EQ(mailOf(u""), ComposeDraft());
    EXPECT_EQ(messageOf(u" \n\t"), ComposeDraft());
}

TEST(ComposeParser, recipientLineInTheBodyIsLostFromIt)
{
    const ComposeDraft draft = mailOf(u"to: a\nbody: Hello\nTo: b\nBye");
    EXPECT_EQ(draft.recipients, QStringList{u"b"_s});
    EXPECT_EQ(draft.body, u"Hello\nBye"_s);
}

TEST(ComposeParser, subjectLineInTheBodyOfAMailIsTheSubject)
{
    const ComposeDraft draft = mailOf(u"subject: One\nbody: Hello\nsubject: Two");
    EXPECT_EQ(draft.subject, u"Two"_s);
    EXPECT_EQ(draft.body, u"Hello"_s);
}

TEST(ComposeParser, laterRecipientLineReplacesTheEarlierOneEvenWithNobody)
{
    EXPECT_EQ(mailOf(u"to: a\nto:\nbody: x").recipients, QStringList());
}

TEST(ComposeParser, emptySubjectIsThereButEmpty)
{
    EXPECT_EQ(mailOf(u"subject:\nbody: x").subject, QString(u""_s));
}

TEST(ComposeParser, secondBodyMarkerAddsItsLine)
{
    EXPECT_EQ(mailOf(u"body: one\nbody: two\nbody:\nthree").body, u"one\ntwo\nthree"_s);
}

TEST(ComposeParser, linesBeforeTheBodyAreDropped)
{
    EXPECT_EQ(mailOf(u"Here is your mail.\n \nbody:\nHello").body, u"Hello"_s);
}

TEST(ComposeParser, bodyLinesAreTrimmedAndFallbackLinesAreNot)
{
    EXPECT_EQ(mailOf(u"body: one\n   two  ").body, u"one\ntwo"_s);
    EXPECT_EQ(mailOf(u"one\n   two  \n\nthree").body, u"one\n   two  \nthree"_s);
}

TEST(ComposeParser, bodyOfBlanksFallsBackToTheWholeText)
{
    EXPECT_EQ(mailOf(u"to: a\nbody:\n   ").body, u"to: a\nbody:"_s);
}

TEST(ComposeParser, markerIsComparedInItsLowerCaseForm)
{
    EXPECT_EQ(mailOf(u"\u017Fubject: Hi\nbody: x").subject, std::nullopt); // a long s
    EXPECT_EQ(mailOf(u"  to: a\nbody: x").recipients, QStringList{u"a"_s});
    EXPECT_EQ(mailOf(u"to : a\nbody: x").recipients, QStringList());
    EXPECT_EQ(mailOf(u"tomorrow: a\nbody: x").recipients, QStringList());
}

TEST(ComposeParser, everyLineEndSeparatesLines)
{
    for (const char16_t end : u"\n\v\f\r\u0085\u2028\u2029"sv) {
        const QString text = u"to: a"_s + QChar(end) + u"body: x"_s + QChar(end) + u"y"_s;
        EXPECT_EQ(mailOf(text), (ComposeDraft{{u"a"_s}, std::nullopt, u"x\ny"_s}))
            << std::hex << static_cast<int>(end);
    }
}

TEST(SplitRecipients, commasAndSemicolonsSeparate)
{
    EXPECT_EQ(splitRecipients(u" a ,, b;c;; ,d"), (QStringList{u"a"_s, u"b"_s, u"c"_s, u"d"_s}));
}

TEST(SplitRecipients, orderIsKeptAndDuplicatesStay)
{
    EXPECT_EQ(splitRecipients(u"b,a,b"), (QStringList{u"b"_s, u"a"_s, u"b"_s}));
}

TEST(SplitRecipients, nothingGivesNobody)
{
    EXPECT_EQ(splitRecipients(u""), QStringList());
    EXPECT_EQ(splitRecipients(u" , ; "), QStringList());
}

TEST(SplitRecipients, nameWithAnAddressStaysOnePiece)
{
    EXPECT_EQ(splitRecipients(u"Ann Lee <ann@example.org>; +1 555 1234"),
        (QStringList{u"Ann Lee <ann@example.org>"_s, u"+1 555 1234"_s}));
}

} // namespace
} // namespace velarc
