#include "engines/cloud_call.h"
#include "engines/cloud_text.h"

namespace velarc {

namespace {

using namespace Qt::StringLiterals;

constexpr qsizetype kLimit = 400;

QString snippetOf(const QByteArray &body)
{
    return bodySnippet(body, kLimit);
}

} // namespace

TEST(PromptWithAttachedDocuments, pdfTextsFollowThePromptInTheirOrder)
{
    EXPECT_EQ(promptWithAttachedDocuments(u" Hi\n"_s, mixedAttachments()),
        u" Hi\n\n\nAttached documents:\n[PDF a.pdf]\nfirst\n\n[PDF c.pdf]\nthird"_s);
}

TEST(PromptWithAttachedDocuments, ofTwoPDFsTheBlankOneGivesNoBlock)
{
    EXPECT_EQ(promptWithAttachedDocuments(
                  u"Hi"_s, {pdfOf(u"a.pdf"_s, u" \n\t"_s), pdfOf(u"b.pdf"_s, u"two"_s)}),
        u"Hi\n\nAttached documents:\n[PDF b.pdf]\ntwo"_s);
}

TEST(PromptWithAttachedDocuments, withoutTextsThePromptStaysAsItIs)
{
    InputAttachment picture = attachmentOf(
        InputAttachmentKind::Image, u"p.png"_s, u"image/png"_s, "x", u"a text that is not read"_s);
    EXPECT_EQ(promptWithAttachedDocuments(u" Hi "_s, {}), u" Hi "_s);
    EXPECT_EQ(promptWithAttachedDocuments(u" Hi "_s,
                  {pdfOf(u"a.pdf"_s, std::nullopt), pdfOf(u"b.pdf"_s, u" \n"_s), picture}),
        u" Hi "_s);
}

TEST(BodySnippet, aBodyOf401CharactersIsCutAndOneOf400IsNot)
{
    EXPECT_EQ(snippetOf(QByteArray(400, 'x')), QString(400, u'x'));
    EXPECT_EQ(snippetOf(QByteArray(401, 'x')), QString(400, u'x') + u"..."_s);
}

TEST(BodySnippet, charactersAreCountedAsPeopleSeeThem)
{
    const QByteArray family = "\U0001F468\u200D\U0001F469\u200D\U0001F467";
    const QByteArray accented = "e\u0301";
    for (const QByteArray &one : {family, accented, QByteArray("\U0001F1E9\U0001F1EA")}) {
        const QString shown = QString::fromUtf8(one);
        EXPECT_EQ(snippetOf(one.repeated(400)), shown.repeated(400));
        EXPECT_EQ(snippetOf(one.repeated(401)), shown.repeated(400) + u"..."_s);
    }
}

TEST(BodySnippet, aCharacterOfAnyLengthIsNotCut)
{
    const QByteArray accents = QByteArray("\u0301").repeated(100'000);
    EXPECT_EQ(snippetOf("e" + accents), QString::fromUtf8("e" + accents));
    EXPECT_EQ(snippetOf(QByteArray(399, 'x') + "e" + accents + "y"),
        QString::fromUtf8(QByteArray(399, 'x') + "e" + accents) + u"..."_s);
}

TEST(BodySnippet, lineEndsBecomeBlanksBeforeTheyAreCounted)
{
    EXPECT_EQ(snippetOf("a\nb\r\nc\rd"), u"a b  c d"_s);
    EXPECT_EQ(snippetOf(QByteArray("x\r\n").repeated(200)), u"x  "_s.repeated(133) + u"x..."_s);
}

TEST(BodySnippet, whiteSpaceAtBothEndsDoesNotCount)
{
    EXPECT_EQ(snippetOf(" \n\t\u00A0\u3000 a b \u2028\u0085\r\n"), u"a b"_s);
    EXPECT_EQ(
        snippetOf(QByteArray(100'000, ' ') + QByteArray(400, 'x') + QByteArray(100'000, '\n')),
        QString(400, u'x'));
    EXPECT_EQ(snippetOf(" \n "), QString());
    EXPECT_EQ(snippetOf(""), QString());
}

TEST(BodySnippet, aBlankBehindTheLimitIsCutOffButOneInsideStays)
{
    EXPECT_EQ(snippetOf(QByteArray(399, 'x') + " y"), QString(399, u'x') + u" ..."_s);
    EXPECT_EQ(snippetOf(QByteArray(400, 'x') + " y"), QString(400, u'x') + u"..."_s);
}

TEST(BodySnippet, oneInvalidByteAnywhereMakesItNoText)
{
    const QString noText = u"<non-utf8 response body>"_s;
    EXPECT_EQ(snippetOf("\xFF"), noText);
    EXPECT_EQ(snippetOf("caf\xE9"), noText);
    EXPECT_EQ(snippetOf("\xED\xA0\x80"), noText);
    EXPECT_EQ(snippetOf(QByteArray(1'000'000, 'x') + '\x80'), noText);
    EXPECT_EQ(snippetOf("cut \xF0\x9F\x99"), noText);
}

TEST(BodySnippet, aPartOfTheBodyIsNeverCutInsideItsBytes)
{
    // Wherever a first part ends, half an accent would count as one character too many.
    for (int plain = 380; plain < 400; ++plain) {
        const QByteArray body = QByteArray(plain, 'x') + QByteArray("\u00E9").repeated(399 - plain)
            + "e" + QByteArray("\u0301").repeated(5'000);
        EXPECT_EQ(snippetOf(body), QString::fromUtf8(body));
    }
}

TEST(JoinedPieces, areTrimmedAndTheEmptyOnesDropped)
{
    JoinedPieces pieces(u", "_s);
    for (const auto &piece : {QString(), u" a\n"_s, u" "_s, u"b c"_s}) {
        pieces.add(piece);
    }
    EXPECT_EQ(pieces.text(), u"a, b c"_s);
}

} // namespace velarc
