#include "records/intake_records.h"
#include "records/run_errors.h"
#include "records/run_records.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

TEST(RunRecords, inputHasContentWhereATextIsNotBlankOrAnythingIsAttached)
{
    EXPECT_FALSE((PreparedRunInput{u" \n"_s, {}}).hasContent());
    EXPECT_TRUE((PreparedRunInput{u" x "_s, {}}).hasContent());
    EXPECT_TRUE((PreparedRunInput{QString(), {InputAttachment()}}).hasContent());
}

TEST(RunRecords, textOfAPayloadIsItsTextOrWhatThePdfShowsAndAnImageHasNone)
{
    EXPECT_EQ(payloadText(TextPayload{u"a"_s}), u"a"_s);
    EXPECT_EQ(payloadText(PdfPayload{QUrl(), u"b"_s}), u"b"_s);
    EXPECT_EQ(payloadText(ImagePayload{}), std::nullopt);
}

TEST(RunRecords, attachmentsAreEqualOnlyInAllTheirFields)
{
    InputAttachment one;
    one.filename = u"a.png"_s;
    InputAttachment other = one;
    EXPECT_EQ(one, other);
    other.bytes = QByteArrayLiteral("x");
    EXPECT_NE(one, other);
}

TEST(RunRecords, clipboardHasContentForEachOfItsParts)
{
    EXPECT_FALSE(ClipboardPayload().hasContent());
    ClipboardPayload blank;
    blank.text = u" \n"_s;
    EXPECT_FALSE(blank.hasContent());
    ClipboardPayload text;
    text.text = u"x"_s;
    EXPECT_TRUE(text.hasContent());
    ClipboardPayload image;
    image.imagePNGData = QByteArray();
    EXPECT_TRUE(image.hasContent());
    ClipboardPayload pdf;
    pdf.pdfData = QByteArray();
    EXPECT_TRUE(pdf.hasContent());
    ClipboardPayload files;
    files.fileURLs = {QUrl(u"file:///a"_s)};
    EXPECT_TRUE(files.hasContent());
}

TEST(RunRecords, noticesAreJoinedALineEach)
{
    EXPECT_EQ((AttachmentIntake{{}, {u"one"_s, u"two"_s}}).joinedNotices(), u"one\ntwo"_s);
    EXPECT_EQ(AttachmentIntake().joinedNotices(), std::nullopt);
}

TEST(RunErrors, haveTheirSentences)
{
    EXPECT_EQ(ProviderConnectionRequiredError(AIProvider::OpenAI).message(),
        u"OpenAI is not connected yet."_s);
    EXPECT_EQ(UnsupportedOutputProviderError(AIProvider::Gemini, OutputFormat::Image).message(),
        u"Gemini does not support Image output."_s);
    EXPECT_EQ(PDFExportServiceError::contextUnavailable().message(),
        u"Could not initialize PDF context."_s);
}

} // namespace
} // namespace velarc
