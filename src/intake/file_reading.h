#pragma once

// Whole files from outside, read so that nothing that stands at a path can hold the reader up.
//
// Any thread but the main one: a slow disk blocks.

#include <QByteArray>

#include <optional>
#include <stop_token>

namespace velarc {

// Bytes that a file may gain while it is read.
inline constexpr qint64 kGrowthBound = qint64(64) * 1024 * 1024;

// The bytes of the regular file at `path`, links followed, as they are on disk. None if it cannot
// be opened or read, is a folder, a pipe, a socket or a device, is larger than the machine's
// memory, or outgrows the bound meanwhile. `path` is in the encoding of the file system.
//
// Stop: CancellationError between two pieces of the file.
[[nodiscard]] std::optional<QByteArray> readRegularFile(
    const QByteArray &path, const std::stop_token &stop);

// Reads on to the end of what `descriptor` gives: `expected` bytes, fewer, or up to `growthBound`
// bytes more; none if there is no end by then, or reading fails.
[[nodiscard]] std::optional<QByteArray> readToEnd(
    int descriptor, qint64 expected, qint64 growthBound, const std::stop_token &stop);

} // namespace velarc
