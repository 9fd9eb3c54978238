#include "records/attachment_summary.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

InputAttachment attachment(InputAttachmentKind kind, const QString &name,
    const std::optional<QString> &text = std::nullopt)
{
    InputAttachment made;
    made.kind = kind;
    made.filename = name;
    made.extractedText = text;
    return made;
}

TEST(AttachmentSummary, withoutAttachmentsTheTextStandsAsItIs)
{
    EXPECT_EQ(textWithAttachmentSummary(u" x "_s, {}), u" x "_s);
}

TEST(AttachmentSummary, twoPicturesAreCounted)
{
    EXPECT_EQ(textWithAttachmentSummary(u"x"_s,
                  {attachment(InputAttachmentKind::Image, u"a.png"_s),
                      attachment(InputAttachmentKind::Svg, u"b.svg"_s)}),
        u"x\n\nAttached images: 2."_s);
}

TEST(AttachmentSummary, documentStandsUnderItsKindAndNameAndThePictureIsCounted)
{
    EXPECT_EQ(textWithAttachmentSummary(u"x"_s,
                  {attachment(InputAttachmentKind::Pdf, u"a.pdf"_s, u" hello\n"_s),
                      attachment(InputAttachmentKind::Image, u"b.png"_s)}),
        u"x\n\nAttached documents:\n[PDF a.pdf]\nhello\n\nAttached images: 1."_s);
}

TEST(AttachmentSummary, severalDocumentsAreSetApartByABlankLine)
{
    EXPECT_EQ(textWithAttachmentSummary(u"x"_s,
                  {attachment(InputAttachmentKind::Pdf, u"a.pdf"_s, u"one"_s),
                      attachment(InputAttachmentKind::Pdf, u"b.pdf"_s, u"two"_s)}),
        u"x\n\nAttached documents:\n[PDF a.pdf]\none\n\n[PDF b.pdf]\ntwo"_s);
}

TEST(AttachmentSummary, pdfWithoutTextIsNeitherADocumentNorAPicture)
{
    EXPECT_EQ(textWithAttachmentSummary(u"x"_s,
                  {attachment(InputAttachmentKind::Pdf, u"a.pdf"_s),
                      attachment(InputAttachmentKind::Pdf, u"b.pdf"_s, u" \n"_s)}),
        u"x"_s);
}

TEST(AttachmentSummary, everyKindHasItsLabel)
{
    EXPECT_EQ(label(InputAttachmentKind::Image), u"Image"_s);
    EXPECT_EQ(label(InputAttachmentKind::Pdf), u"PDF"_s);
    EXPECT_EQ(label(InputAttachmentKind::Svg), u"SVG"_s);
}

} // namespace
} // namespace velarc
