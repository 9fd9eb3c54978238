#pragma once

// The picture that a run made, on its way from bytes to the screen.

#include <QByteArray>
#include <QImage>
#include <QMutex>
#include <QQuickImageProvider>
#include <QUrl>

#include <memory>

namespace velarc {

// Decodes a PNG, whatever else the bytes may be being no picture, and makes it as small as a screen
// needs it. A null image if that cannot be done in 256 MiB. Any thread; takes as long as it takes.
[[nodiscard]] QImage decodedPng(const QByteArray &bytes);

// The one picture that is shown. Any thread.
class ShownPicture
{
public:
    // Takes the place of the one before. The address is another one each time.
    [[nodiscard]] QUrl show(QImage picture);
    void clear();
    [[nodiscard]] QImage picture() const;

private:
    mutable QMutex m_mutex;
    QImage m_picture;
    quint64 m_count = 0;
};

// "image://result/NUMBER": whatever is shown; nothing is decoded here.
class ResultPictureProvider final : public QQuickImageProvider
{
public:
    explicit ResultPictureProvider(std::shared_ptr<const ShownPicture> shown)
        : QQuickImageProvider(QQuickImageProvider::Image), m_shown(std::move(shown))
    {
    }
    QImage requestImage(const QString &id, QSize *size, const QSize &requestedSize) override;

private:
    std::shared_ptr<const ShownPicture> m_shown;
};

} // namespace velarc
