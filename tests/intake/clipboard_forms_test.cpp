#include "picture_samples.h"

#include "intake/clipboard_forms.h"

#include <QUrl>

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::UnorderedElementsAre;

ClipboardPayload payloadOf(QHash<QString, QByteArray> forms)
{
    HeldClipboardForms held;
    held.forms = std::move(forms);
    return payloadFrom(held);
}

QString textOf(QHash<QString, QByteArray> forms)
{
    HeldClipboardForms held;
    held.forms = std::move(forms);
    return textFrom(held);
}

QList<QUrl> filesOf(const QByteArray &list)
{
    return payloadOf({{u"text/uri-list"_s, list}}).fileURLs;
}

TEST(ClipboardForms, emptyClipboardIsAnEmptyPayload)
{
    EXPECT_FALSE(payloadOf({}).hasContent());
    EXPECT_EQ(textOf({}), QString());
}

TEST(ClipboardForms, textImagePdfAreTakenTogether)
{
    const auto payload = payloadOf({{u"text/plain"_s, "caption"},
        {u"image/png"_s, pictureAs("png")}, {u"application/pdf"_s, "%PDF"}});
    EXPECT_EQ(payload.text, u"caption"_s);
    EXPECT_EQ(payload.imagePNGData, pictureAs("png"));
    EXPECT_EQ(payload.pdfData, "%PDF");
    EXPECT_THAT(payload.fileURLs, IsEmpty());
}

TEST(ClipboardForms, textIsTakenAsItStands)
{
    EXPECT_EQ(payloadOf({{u"text/plain"_s, "  a\r\n\tb  "}}).text, u"  a\r\n\tb  "_s);
    EXPECT_EQ(textOf({{u"UTF8_STRING"_s, "\xf0\x9f\x98\x80 \xc3\xa4"}}), u"\U0001f600 \u00e4"_s);
    EXPECT_EQ(textOf({{u"STRING"_s, "\xe4"}}), u"\u00e4"_s);
    EXPECT_EQ(textOf({{u"text/plain"_s, "caf\xe9"}}), u"caf\u00e9"_s) << "no UTF-8";
}

TEST(ClipboardForms, textInUnicodeComesBeforeTextInLatin1)
{
    EXPECT_EQ(textOf({{u"STRING"_s, "?"}, {u"UTF8_STRING"_s, "\xe4\xb8\xad"}}), u"\u4e2d"_s);
}

TEST(ClipboardForms, zerosThatEndATextAreNoPartOfIt)
{
    EXPECT_EQ(textOf({{u"UTF8_STRING"_s, QByteArray("a\0b\0\0", 5)}}), u"a\0b"_s);
}

TEST(ClipboardForms, clipboardOfMarkupAloneHasNoText)
{
    EXPECT_FALSE(payloadOf({{u"text/html"_s, "<b>bold</b>"}}).hasContent());
}

TEST(ClipboardForms, addressOfAFileIsNoText)
{
    const auto payload =
        payloadOf({{u"text/uri-list"_s, "file:///a.png\r\n"}, {u"text/plain"_s, "/a.png"}});
    EXPECT_EQ(payload.text, QString());
    EXPECT_THAT(payload.fileURLs, ElementsAre(QUrl(u"file:///a.png"_s)));
    EXPECT_EQ(
        textOf({{u"text/uri-list"_s, "file:///a.png"}, {u"text/plain"_s, "/a.png"}}), QString());
}

TEST(ClipboardForms, addressOfAPageKeepsItsText)
{
    const auto payload =
        payloadOf({{u"text/uri-list"_s, "https://example.org/\r\n"}, {u"text/plain"_s, "a page"}});
    EXPECT_EQ(payload.text, u"a page"_s);
    EXPECT_THAT(payload.fileURLs, IsEmpty());
}

TEST(ClipboardForms, sameFileTwiceOnTheClipboardIsOne)
{
    EXPECT_THAT(filesOf("file:///a/b.png\r\nfile:///c.png\r\nfile:///a/b.png\r\n"
                        "file:///a/./b.png\r\nfile:///x/../a//b.png\r\nfile:///d.png"),
        ElementsAre(
            QUrl(u"file:///a/b.png"_s), QUrl(u"file:///c.png"_s), QUrl(u"file:///d.png"_s)));
}

TEST(ClipboardForms, filesAreListedWithAnyLineEndsAndRemarks)
{
    EXPECT_THAT(filesOf("# made by hand\nfile:///a%20b.png\n\nfile:///c.png\0"_ba),
        ElementsAre(QUrl::fromLocalFile(u"/a b.png"_s), QUrl(u"file:///c.png"_s)));
}

TEST(ClipboardForms, addressesElsewhereAreNoFiles)
{
    EXPECT_THAT(filesOf("https://example.org/a.png\r\nfile:///b.png\r\nsmb://host/c.png\r\nd.png"),
        ElementsAre(QUrl(u"file:///b.png"_s)));
}

TEST(ClipboardForms, pngIsTakenByteForByteWhateverItHolds)
{
    EXPECT_EQ(payloadOf({{u"image/png"_s, "no PNG"}}).imagePNGData, "no PNG");
}

TEST(ClipboardForms, pngComesBeforeEveryOtherPicture)
{
    const auto payload =
        payloadOf({{u"image/tiff"_s, pictureAs("tiff")}, {u"image/png"_s, "as it is"}});
    EXPECT_EQ(payload.imagePNGData, "as it is");
}

TEST(ClipboardForms, emptyPngGivesWayToAnotherPicture)
{
    const auto payload = payloadOf({{u"image/png"_s, ""}, {u"image/tiff"_s, pictureAs("tiff")}});
    ASSERT_TRUE(payload.imagePNGData);
    EXPECT_TRUE(looksLike(unpacked(*payload.imagePNGData), samplePicture()));
}

TEST(ClipboardForms, everyBitmapBecomesPng)
{
    for (const auto &[name, format] :
        {std::pair("image/tiff", "tiff"), std::pair("image/bmp", "bmp"),
            std::pair("image/jpeg", "jpg"), std::pair("image/webp", "webp")}) {
        const auto payload = payloadOf({{QLatin1StringView(name), pictureAs(format)}});
        ASSERT_TRUE(payload.imagePNGData) << name;
        EXPECT_TRUE(payload.imagePNGData->startsWith("\x89PNG")) << name;
    }
}

TEST(ClipboardForms, bitmapThatCannotBeReadIsAbsent)
{
    EXPECT_FALSE(payloadOf({{u"image/bmp"_s, "no picture"}}).imagePNGData);
    EXPECT_FALSE(payloadOf({{u"image/bmp"_s, "<svg/>"}}).imagePNGData);
    EXPECT_FALSE(payloadOf({{u"image/svg+xml"_s, "<svg/>"}}).hasContent());
}

TEST(ClipboardForms, pictureThatWouldTakeGigabytesIsAbsentAndTheTextStays)
{
    const auto payload = payloadOf({{u"image/png"_s, hugePng()}, {u"text/plain"_s, "beside it"}});
    EXPECT_FALSE(payload.imagePNGData);
    EXPECT_EQ(payload.text, u"beside it"_s);
    EXPECT_FALSE(payloadOf({{u"image/tiff"_s, hugeTiff()}}).imagePNGData);
}

TEST(ClipboardForms, onlyTheFormsThatAreNeededAreWanted)
{
    EXPECT_THAT(wantedForms({u"text/html"_s, u"text/plain"_s, u"UTF8_STRING"_s, u"image/png"_s,
                    u"image/tiff"_s, u"image/bmp"_s, u"application/pdf"_s, u"text/uri-list"_s}),
        UnorderedElementsAre(
            u"text/uri-list"_s, u"UTF8_STRING"_s, u"image/png"_s, u"application/pdf"_s));
    EXPECT_THAT(wantedForms({u"image/bmp"_s, u"image/jpeg"_s}), ElementsAre(u"image/bmp"_s));
    EXPECT_THAT(wantedTextForms({u"text/plain"_s, u"image/png"_s}), ElementsAre(u"text/plain"_s));
}

} // namespace
} // namespace velarc
