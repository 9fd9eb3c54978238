#pragma once

// What is copied, on its way to a clipboard that another process has. A plain value; any thread.

#include <QByteArray>

namespace velarc {

struct CopiedThing
{
    enum class Kind
    {
        Text, // in UTF-8
        Picture, // as PNG
    };

    Kind kind = Kind::Text;
    QByteArray bytes;

    friend bool operator==(const CopiedThing &, const CopiedThing &) = default;
};

} // namespace velarc
