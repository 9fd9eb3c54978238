#pragma once

#include <QtGlobal>

#include <chrono>

namespace velarc {

// How long, and for how much, the owner of a clipboard is waited for.
struct SelectionBounds
{
    std::chrono::milliseconds silence = std::chrono::seconds(3); // without any sign of it
    std::chrono::milliseconds form = std::chrono::seconds(60); // for all of one form
    qint64 bytes = qint64(512) * 1024 * 1024; // of one form
};

} // namespace velarc
