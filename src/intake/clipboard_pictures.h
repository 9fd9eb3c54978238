#pragma once

// Pictures as other programs put them on the clipboard.
//
// Any thread. Only what the first bytes show to be PNG, JPEG, BMP, GIF, TIFF or WebP is read:
// other formats, drawings above all, may name files or addresses that would be opened.

#include <QByteArray>

#include <optional>

namespace velarc {

// What a picture may take in memory once it is unpacked.
inline constexpr int kPictureMiB = 256;

// Lets Qt's readers of this process unpack pictures of that size and no larger ones. Once, before
// other threads read pictures.
void limitPictureMemory();

// Whether `bytes` begin as a picture of one of those formats that can be unpacked.
[[nodiscard]] bool isPicture(const QByteArray &bytes);

// Whether `bytes` begin as a picture that would take more memory than that.
[[nodiscard]] bool isPictureTooLarge(const QByteArray &bytes);

// The first picture in `bytes`, upright, as a PNG; none if it cannot be read or is too large.
[[nodiscard]] std::optional<QByteArray> pngFromBitmap(const QByteArray &bytes);

} // namespace velarc
