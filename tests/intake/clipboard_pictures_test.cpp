#include "picture_samples.h"

#include "intake/clipboard_pictures.h"

#include <QImageReader>

#include <gtest/gtest.h>

namespace velarc {

using ::testing::Test;

struct Format
{
    const char *name;
    bool isExact; // keeps every pixel
};

class EveryFormat : public ::testing::TestWithParam<Format>
{
};

TEST_P(EveryFormat, becomesAPngOfTheSamePicture)
{
    const auto png = pngFromBitmap(pictureAs(GetParam().name));
    ASSERT_TRUE(png);
    EXPECT_TRUE(png->startsWith("\x89PNG"));
    EXPECT_EQ(unpacked(*png).size(), samplePicture().size());
    if (GetParam().isExact) {
        EXPECT_TRUE(looksLike(unpacked(*png), samplePicture()));
    }
}

INSTANTIATE_TEST_SUITE_P(Written, EveryFormat,
    ::testing::Values(Format{"png", true}, Format{"tiff", true}, Format{"webp", false},
        Format{"bmp", false}, Format{"jpg", false}),
    [](const auto &format) { return std::string(format.param.name); });

namespace {

TEST(ClipboardPictures, gifBecomesAPng)
{
    const QByteArray gif("GIF89a\x01\x00\x01\x00\x80\x00\x00\x01\x02\x03\xff\xff\xff"
                         "\x2c\x00\x00\x00\x00\x01\x00\x01\x00\x00\x02\x02\x44\x01\x00\x3b",
        35);
    const auto png = pngFromBitmap(gif);
    ASSERT_TRUE(png);
    EXPECT_EQ(unpacked(*png).pixelColor(0, 0), QColor(1, 2, 3));
}

TEST(ClipboardPictures, pictureThatIsTurnedInItsFileStandsUprightAfterwards)
{
    // Says that it is to be turned by a quarter.
    QByteArray jpeg = pictureAs("jpg");
    const QByteArray exif("\xff\xe1\x00\x22"
                          "Exif\0\0MM\0*\0\0\0\x08\0\x01\x01\x12\0\x03\0\0\0\x01\0\x06\0\0\0\0\0\0",
        36);
    jpeg.insert(2, exif);
    const auto png = pngFromBitmap(jpeg);
    ASSERT_TRUE(png);
    EXPECT_EQ(unpacked(*png).size(), samplePicture().size().transposed());
}

TEST(ClipboardPictures, drawingsAreNeverRead)
{
    ASSERT_TRUE(QImageReader::supportedImageFormats().contains("xpm"));
    EXPECT_FALSE(pngFromBitmap("<svg xmlns='http://www.w3.org/2000/svg' width='9' height='9'/>"));
    EXPECT_FALSE(pngFromBitmap("/* XPM */\nstatic char *x[] = {\"1 1 1 1\",\"a c red\",\"a\"};"));
    EXPECT_FALSE(pngFromBitmap("P3 1 1 255 1 2 3\n"));
}

TEST(ClipboardPictures, damagedAndEmptyBytesGiveNone)
{
    EXPECT_FALSE(pngFromBitmap(""));
    EXPECT_FALSE(pngFromBitmap("BM"));
    EXPECT_FALSE(pngFromBitmap("RIFF1234WEB"));
    EXPECT_FALSE(pngFromBitmap(pictureAs("tiff").first(60)));
    EXPECT_FALSE(pngFromBitmap(pictureAs("png").first(30)));
}

TEST(ClipboardPictures, pictureThatWouldTakeGigabytesStopsAtTheBound)
{
    const QList<QByteArray> bombs{
        hugePng(), hugeBmp(), hugeGif(), hugeJpeg(), hugeTiff(), hugeWebp()};
    for (const QByteArray &bomb : bombs) {
        EXPECT_FALSE(isPicture(bomb)) << bomb.first(12).toHex().constData();
        EXPECT_FALSE(pngFromBitmap(bomb)) << bomb.first(12).toHex().constData();
    }
}

TEST(ClipboardPictures, pictureWithinTheBoundIsNotTooLarge)
{
    EXPECT_TRUE(isPictureTooLarge(hugePng()));
    for (const char *format : {"png", "tiff", "bmp", "jpg", "webp"}) {
        EXPECT_FALSE(isPictureTooLarge(pictureAs(format))) << format;
        EXPECT_TRUE(isPicture(pictureAs(format))) << format;
    }
    EXPECT_FALSE(isPictureTooLarge("no picture"));
    EXPECT_FALSE(isPicture("no picture"));
}

TEST(ClipboardPictures, qtsOwnReadersKeepTheBoundToo)
{
    limitPictureMemory();
    EXPECT_EQ(QImageReader::allocationLimit(), kPictureMiB);
}

} // namespace
} // namespace velarc
