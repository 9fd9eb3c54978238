#include "intake/clipboard_pictures.h"

#include <QBuffer>
#include <QImage>
#include <QImageReader>
#include <QImageWriter>

#include <array>
#include <string_view>

namespace velarc {

using namespace std::string_view_literals;

namespace {

struct Signature
{
    const char *format; // as Qt's plugins name it
    std::string_view start;
    std::string_view atEight; // what follows eight bytes in
};
constexpr std::array kSignatures{
    Signature{"png", "\x89PNG\r\n\x1a\n"sv, ""sv},
    Signature{"jpeg", "\xff\xd8\xff"sv, ""sv},
    Signature{"bmp", "BM"sv, ""sv},
    Signature{"gif", "GIF87a"sv, ""sv},
    Signature{"gif", "GIF89a"sv, ""sv},
    Signature{"tiff", "II*\0"sv, ""sv},
    Signature{"tiff", "MM\0*"sv, ""sv},
    Signature{"webp", "RIFF"sv, "WEBP"sv},
};

// The least compression: a third of the time of the usual one for a tenth more bytes.
constexpr int kQuickCompression = 11;

constexpr qint64 kBytesPerPixel = 4;

std::string_view viewOf(const QByteArray &bytes)
{
    return {bytes.constData(), static_cast<std::size_t>(bytes.size())};
}

QByteArray formatOf(const QByteArray &bytes)
{
    const std::string_view view = viewOf(bytes);
    for (const Signature &signature : kSignatures) {
        if (view.starts_with(signature.start)
            && (signature.atEight.empty()
                || (view.size() > 8 && view.substr(8).starts_with(signature.atEight)))) {
            return signature.format;
        }
    }
    return {};
}

// A reader that tries no format but the one that the bytes show.
class PictureReader
{
public:
    explicit PictureReader(const QByteArray &bytes) : m_bytes(bytes), m_format(formatOf(bytes))
    {
        m_buffer.setData(m_bytes);
        m_buffer.open(QIODevice::ReadOnly);
        m_reader.setAutoDetectImageFormat(false);
        m_reader.setFormat(m_format);
        m_reader.setDevice(&m_buffer);
        m_reader.setAutoTransform(true);
    }

    [[nodiscard]] QSize size() { return m_format.isEmpty() ? QSize() : m_reader.size(); }
    [[nodiscard]] QImage read() { return m_reader.read(); }

private:
    QByteArray m_bytes;
    QByteArray m_format;
    QBuffer m_buffer;
    QImageReader m_reader;
};

bool fits(QSize size)
{
    return qint64(size.width()) * size.height() * kBytesPerPixel
        <= qint64(kPictureMiB) * 1024 * 1024;
}

} // namespace

void limitPictureMemory()
{
    QImageReader::setAllocationLimit(kPictureMiB);
}

bool isPicture(const QByteArray &bytes)
{
    const QSize size = PictureReader(bytes).size();
    return !size.isEmpty() && fits(size);
}

bool isPictureTooLarge(const QByteArray &bytes)
{
    return !fits(PictureReader(bytes).size());
}

std::optional<QByteArray> pngFromBitmap(const QByteArray &bytes)
{
    PictureReader reader(bytes);
    const QSize size = reader.size();
    if (size.isEmpty() || !fits(size)) {
        return std::nullopt;
    }
    const QImage picture = reader.read();
    QByteArray png;
    QBuffer buffer(&png);
    buffer.open(QIODevice::WriteOnly);
    QImageWriter writer(&buffer, "png");
    writer.setCompression(kQuickCompression);
    if (picture.isNull() || !writer.write(picture)) {
        return std::nullopt;
    }
    return png;
}

} // namespace velarc
