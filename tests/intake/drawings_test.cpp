// Drawings beside what a browser makes of them. tests/long/drawings_and_browser.py asks the browser
// itself and writes its colours down, so that none is needed here.

#include "document_helper.h"

#include "support/fixture.h"
#include "support/printers.h"

#include <QDir>
#include <QHash>
#include <QImage>
#include <QRegularExpression>

#include <gtest/gtest.h>
#include <zlib.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

constexpr int kSide = 1024;
constexpr int kFields = 8; // in each direction
constexpr int kFieldSide = kSide / kFields;

// The steps of 255 by which the mean colour of a field may differ: edges are smoothed in other
// ways.
constexpr double kTolerance = 5;

struct Colour
{
    double red = 0;
    double green = 0;
    double blue = 0;
};

double farthest(const Colour &a, const Colour &b)
{
    return std::max(
        {std::abs(a.red - b.red), std::abs(a.green - b.green), std::abs(a.blue - b.blue)});
}

Colour meanOf(const QImage &image, const QRect &field)
{
    Colour sum;
    for (int y = field.top(); y <= field.bottom(); ++y) {
        for (int x = field.left(); x <= field.right(); ++x) {
            const QRgb pixel = image.pixel(x, y);
            sum.red += qRed(pixel);
            sum.green += qGreen(pixel);
            sum.blue += qBlue(pixel);
        }
    }
    const double count = double(field.width()) * field.height();
    return {sum.red / count, sum.green / count, sum.blue / count};
}

// The colours that the browser shows, by the name of the drawing, row by row.
QHash<QString, std::vector<Colour>> browserColours()
{
    QHash<QString, std::vector<Colour>> all;
    for (const QString &line : fixtureText("drawings/samples.txt").split(u'\n')) {
        const QByteArray colours = QByteArray::fromHex(line.section(u' ', 1).toLatin1());
        std::vector<Colour> fields;
        for (qsizetype at = 0; at + 2 < colours.size(); at += 3) {
            fields.push_back({double(quint8(colours[at])), double(quint8(colours[at + 1])),
                double(quint8(colours[at + 2]))});
        }
        all.insert(line.section(u' ', 0, 0), fields);
    }
    return all;
}

QByteArray drawing(const QString &name)
{
    return fixtureBytes(("drawings/"_L1 + name + ".svg"_L1).toUtf8().constData());
}

QImage pictureOf(const QByteArray &svg)
{
    const DocumentOutcome outcome = drawn(svg);
    EXPECT_EQ(outcome.end, DocumentEnd::Done) << outcome.message.toStdString();
    return QImage::fromData(outcome.output, "PNG");
}

QStringList drawingNames()
{
    QStringList names;
    for (const QString &file :
        QDir(QStringLiteral(VELARC_FIXTURES "/drawings")).entryList({u"*.svg"_s})) {
        names.append(file.chopped(4));
    }
    return names;
}

TEST(Drawings, eachLooksAsInABrowser)
{
    const auto expected = browserColours();
    EXPECT_GE(expected.size(), 100);
    for (auto entry = expected.cbegin(); entry != expected.cend(); ++entry) {
        SCOPED_TRACE(entry.key().toStdString());
        ASSERT_EQ(entry->size(), std::size_t(kFields) * kFields);
        const QImage picture = pictureOf(drawing(entry.key()));
        ASSERT_EQ(picture.size(), QSize(kSide, kSide));
        double worst = 0;
        for (int field = 0; field < kFields * kFields; ++field) {
            const QRect area(
                field % kFields * kFieldSide, field / kFields * kFieldSide, kFieldSide, kFieldSide);
            worst = std::max(
                worst, farthest(meanOf(picture, area), (*entry)[static_cast<std::size_t>(field)]));
        }
        EXPECT_LE(worst, kTolerance);
    }
}

TEST(Drawings, whatTheRendererCannotDrawLeavesAPictureAllTheSame)
{
    const auto known = browserColours();
    int others = 0;
    for (const QString &name : drawingNames()) {
        if (!known.contains(name)) {
            EXPECT_FALSE(pictureOf(drawing(name)).isNull()) << name.toStdString();
            ++others;
        }
    }
    EXPECT_GT(others, 0);
}

TEST(Drawings, groundIsWhiteWithoutATransparentPixel)
{
    const QImage picture = pictureOf("<svg xmlns='http://www.w3.org/2000/svg'/>");
    EXPECT_FALSE(picture.hasAlphaChannel());
    EXPECT_EQ(picture.pixel(0, 0), qRgb(255, 255, 255));
    EXPECT_EQ(picture.pixel(kSide - 1, kSide - 1), qRgb(255, 255, 255));
}

TEST(Drawings, pictureHasExactlyTheSizeAskedForEvenInThin)
{
    const auto outcome = converted({u"svg-png"_s, u"--width"_s, u"300"_s, u"--height"_s, u"40"_s},
        "<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 1 1'><rect width='1' "
        "height='1'/></svg>");
    const QImage picture = QImage::fromData(outcome.output, "PNG");
    ASSERT_EQ(picture.size(), QSize(300, 40));
    EXPECT_EQ(picture.pixel(150, 20), qRgb(0, 0, 0)) << "in the middle, as high as there is room";
    EXPECT_EQ(picture.pixel(129, 20), qRgb(255, 255, 255));
    EXPECT_EQ(picture.pixel(171, 20), qRgb(255, 255, 255));
}

QByteArray gzipped(const QByteArray &bytes)
{
    z_stream stream = {};
    deflateInit2(&stream, 9, Z_DEFLATED, 15 + 16, 9, Z_DEFAULT_STRATEGY);
    QByteArray out(static_cast<qsizetype>(deflateBound(&stream, bytes.size())) + 64, '\0');
    stream.next_in = reinterpret_cast<Bytef *>(const_cast<char *>(bytes.data()));
    stream.avail_in = static_cast<uInt>(bytes.size());
    stream.next_out = reinterpret_cast<Bytef *>(out.data());
    stream.avail_out = static_cast<uInt>(out.size());
    deflate(&stream, Z_FINISH);
    out.truncate(static_cast<qsizetype>(stream.total_out));
    deflateEnd(&stream);
    return out;
}

TEST(Drawings, compressedDrawingIsDrawnAsItIsWithout)
{
    const QByteArray svg = drawing(u"shapes"_s);
    EXPECT_EQ(drawn(gzipped(svg)).output, drawn(svg).output);
}

TEST(Drawings, compressedDrawingThatIsHugeUnpackedIsRefusedInATellingSentence)
{
    const QByteArray start("<svg xmlns='http://www.w3.org/2000/svg'><!--");
    const DocumentOutcome outcome = drawn(gzipped(start + QByteArray(200'000'000, ' ')));
    EXPECT_EQ(outcome.end, DocumentEnd::Failed);
    EXPECT_EQ(outcome.message, u"the drawing is too large once it is inflated"_s);
}

TEST(Drawings, drawingCompressedTwiceIsABlankPicture)
{
    EXPECT_EQ(drawn(gzipped(gzipped(drawing(u"shapes"_s)))).output, drawn("no drawing").output);
}

TEST(Drawings, equalDrawingsGiveEqualBytes)
{
    EXPECT_EQ(drawn(drawing(u"text"_s)).output, drawn(drawing(u"text"_s)).output);
}

TEST(Drawings, animationShowsItsFirstMomentAndScriptsDoNothing)
{
    EXPECT_EQ(drawn("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'><rect width='5' "
                    "height='5'><animate attributeName='width' to='9' dur='1s'/></rect></svg>")
                  .output,
        drawn("<svg xmlns='http://www.w3.org/2000/svg' viewBox='0 0 9 9'><rect width='5' "
              "height='5'/></svg>")
            .output);
}

} // namespace
} // namespace velarc
