#pragma once

// Pictures for tests: real ones, and ones that claim to be far larger than they are.

#include <QByteArray>
#include <QImage>

namespace velarc {

// A few coloured pixels, some of them half transparent.
[[nodiscard]] QImage samplePicture();

// The same in one of the formats that can be written.
[[nodiscard]] QByteArray pictureAs(const char *format);

// What a PNG's bytes unpack to, in one pixel format so that pictures compare.
[[nodiscard]] QImage unpacked(const QByteArray &bytes);

// Whether both are the same picture, but for what is lost where colours are stored with their
// transparency multiplied in.
[[nodiscard]] bool looksLike(const QImage &picture, const QImage &other);

// Heads of pictures that would take gigabytes.
[[nodiscard]] QByteArray hugePng();
[[nodiscard]] QByteArray hugeBmp();
[[nodiscard]] QByteArray hugeGif();
[[nodiscard]] QByteArray hugeJpeg();
[[nodiscard]] QByteArray hugeTiff();
[[nodiscard]] QByteArray hugeWebp();

} // namespace velarc
