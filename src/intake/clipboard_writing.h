#pragma once

// Writing to the clipboard, as whoever has something to copy sees it.

#include <QByteArray>
#include <QString>

namespace velarc {

// Main thread only. What is written replaces everything that stood there.
class ClipboardWriting
{
public:
    virtual ~ClipboardWriting() = default;

    virtual void writeText(const QString &text) = 0;

    // As an image where the bytes make one, else as the raw bytes of type PNG.
    virtual void writeImage(const QByteArray &png) = 0;
};

} // namespace velarc
