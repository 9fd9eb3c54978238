#include "picture_samples.h"

#include <QBuffer>
#include <QDataStream>

#include <array>
#include <cstdlib>

namespace velarc {

namespace {

constexpr quint16 kHugeSide = 60000;

quint32 checksumOf(const QByteArray &bytes)
{
    quint32 sum = 0xffffffff;
    for (const char byte : bytes) {
        sum ^= static_cast<quint8>(byte);
        for (int bit = 0; bit < 8; ++bit) {
            sum = (sum >> 1) ^ ((sum & 1) != 0 ? 0xedb88320 : 0);
        }
    }
    return ~sum;
}

QByteArray pngChunk(const QByteArray &kindAndContent)
{
    QByteArray chunk;
    QDataStream out(&chunk, QIODevice::WriteOnly);
    out << quint32(kindAndContent.size() - 4);
    out.writeRawData(kindAndContent.constData(), static_cast<int>(kindAndContent.size()));
    out << checksumOf(kindAndContent);
    return chunk;
}

} // namespace

QImage samplePicture()
{
    QImage picture(7, 5, QImage::Format_ARGB32);
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            picture.setPixelColor(x, y, QColor(x * 30, y * 50, 100, x == 3 ? 128 : 255));
        }
    }
    return picture;
}

QByteArray pictureAs(const char *format)
{
    QByteArray bytes;
    QBuffer buffer(&bytes);
    buffer.open(QIODevice::WriteOnly);
    samplePicture().save(&buffer, format, 100);
    return bytes;
}

QImage unpacked(const QByteArray &bytes)
{
    return QImage::fromData(bytes).convertToFormat(QImage::Format_ARGB32);
}

bool looksLike(const QImage &picture, const QImage &other)
{
    if (picture.size() != other.size()) {
        return false;
    }
    const auto isNear = [](int one, int two) { return std::abs(one - two) <= 2; };
    for (int y = 0; y < picture.height(); ++y) {
        for (int x = 0; x < picture.width(); ++x) {
            const QColor one = picture.pixelColor(x, y);
            const QColor two = other.pixelColor(x, y);
            if (!isNear(one.red(), two.red()) || !isNear(one.green(), two.green())
                || !isNear(one.blue(), two.blue()) || !isNear(one.alpha(), two.alpha())) {
                return false;
            }
        }
    }
    return true;
}

QByteArray hugePng()
{
    QByteArray header("IHDR");
    QDataStream out(&header, QIODevice::Append);
    out << quint32(kHugeSide) << quint32(kHugeSide) << quint8(8) << quint8(6) << quint8(0)
        << quint8(0) << quint8(0);
    return "\x89PNG\r\n\x1a\n" + pngChunk(header) + pngChunk("IDAT") + pngChunk("IEND");
}

QByteArray hugeBmp()
{
    QByteArray bytes("BM");
    QDataStream out(&bytes, QIODevice::Append);
    out.setByteOrder(QDataStream::LittleEndian);
    out << quint32(154) << quint32(0) << quint32(54); // file header
    out << quint32(40) << qint32(kHugeSide) << qint32(kHugeSide) << quint16(1) << quint16(24);
    out << quint32(0) << quint32(0) << qint32(2835) << qint32(2835) << quint32(0) << quint32(0);
    return bytes + QByteArray(100, 'x');
}

QByteArray hugeGif()
{
    QByteArray bytes("GIF89a");
    QDataStream out(&bytes, QIODevice::Append);
    out.setByteOrder(QDataStream::LittleEndian);
    out << kHugeSide << kHugeSide << quint8(0x80) << quint8(0) << quint8(0);
    bytes += QByteArray("\x00\x00\x00\xff\xff\xff", 6); // two colours
    QDataStream frame(&bytes, QIODevice::Append);
    frame.setByteOrder(QDataStream::LittleEndian);
    frame << quint8(0x2c) << quint16(0) << quint16(0) << kHugeSide << kHugeSide << quint8(0);
    return bytes + QByteArray("\x02\x02\x44\x01\x00\x3b", 6);
}

QByteArray hugeJpeg()
{
    QByteArray bytes("\xff\xd8");
    QDataStream out(&bytes, QIODevice::Append);
    out << quint16(0xffc0) << quint16(17) << quint8(8) << kHugeSide << kHugeSide << quint8(3);
    for (const auto component : {quint8(1), quint8(2), quint8(3)}) {
        out << component << quint8(0x11) << quint8(0);
    }
    return bytes
        + QByteArray("\xff\xda\x00\x0c\x03\x01\x00\x02\x11\x03\x11\x00\x3f\x00\xff\xd9", 16);
}

QByteArray hugeTiff()
{
    struct Entry
    {
        quint16 tag;
        quint32 value;
    };
    constexpr std::array entries{Entry{256, kHugeSide}, Entry{257, kHugeSide}, Entry{258, 8},
        Entry{259, 1}, Entry{262, 1}, Entry{273, 8}, Entry{277, 1}, Entry{278, kHugeSide},
        Entry{279, 100}};
    QByteArray bytes("II*\0", 4);
    QDataStream out(&bytes, QIODevice::Append);
    out.setByteOrder(QDataStream::LittleEndian);
    out << quint32(8) << quint16(entries.size());
    for (const Entry &entry : entries) {
        out << entry.tag << quint16(4) << quint32(1) << entry.value;
    }
    out << quint32(0);
    return bytes + QByteArray(100, 'x');
}

QByteArray hugeWebp()
{
    constexpr quint32 widest = 16383; // the format has 14 bits for a side, less one
    QByteArray picture("\x2f");
    QDataStream bits(&picture, QIODevice::Append);
    bits.setByteOrder(QDataStream::LittleEndian);
    bits << quint32(widest | widest << 14);
    picture += QByteArray(101, 'x');
    QByteArray bytes("RIFF");
    QDataStream out(&bytes, QIODevice::Append);
    out.setByteOrder(QDataStream::LittleEndian);
    out << quint32(picture.size() + 12);
    bytes += "WEBPVP8L";
    QDataStream length(&bytes, QIODevice::Append);
    length.setByteOrder(QDataStream::LittleEndian);
    length << quint32(picture.size());
    return bytes + picture;
}

} // namespace velarc
