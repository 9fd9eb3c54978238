#include "ui/result_picture.h"

#include <QBuffer>
#include <QImageReader>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

constexpr qint64 kMostBytes = 256LL * 1024 * 1024; // of a decoded picture
constexpr qint64 kMostBytesPerPixel = 8;
constexpr int kLargestEdge = 2048; // of what is kept for the screen

} // namespace

QImage decodedPng(const QByteArray &bytes)
{
    QBuffer buffer;
    buffer.setData(bytes);
    QImageReader reader(&buffer, "png");
    reader.setAutoDetectImageFormat(false);
    const QSize size = reader.size();
    if (size.isEmpty() || qint64(size.width()) * size.height() * kMostBytesPerPixel > kMostBytes) {
        return {};
    }
    QImage picture = reader.read();
    if (picture.width() > kLargestEdge || picture.height() > kLargestEdge) {
        picture = picture.scaled(
            kLargestEdge, kLargestEdge, Qt::KeepAspectRatio, Qt::SmoothTransformation);
    }
    return picture.convertToFormat(QImage::Format_ARGB32_Premultiplied);
}

QUrl ShownPicture::show(QImage picture)
{
    const QMutexLocker lock(&m_mutex);
    m_picture = std::move(picture);
    return QUrl(u"image://result/"_s + QString::number(++m_count));
}

void ShownPicture::clear()
{
    const QMutexLocker lock(&m_mutex);
    m_picture = {};
}

QImage ShownPicture::picture() const
{
    const QMutexLocker lock(&m_mutex);
    return m_picture;
}

QImage ResultPictureProvider::requestImage(
    const QString & /*id*/, QSize *size, const QSize &requestedSize)
{
    QImage picture = m_shown->picture();
    if (size != nullptr) {
        *size = picture.size();
    }
    if (requestedSize.isEmpty() || picture.isNull()) {
        return picture;
    }
    return picture.scaled(requestedSize, Qt::KeepAspectRatio, Qt::SmoothTransformation);
}

} // namespace velarc
