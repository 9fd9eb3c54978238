#pragma once

#include <QByteArray>
#include <QString>

namespace velarc {

// The bytes of a file under tests/fixtures. Ends the program if it cannot be read.
[[nodiscard]] QByteArray fixtureBytes(const char *path);

// The text of a file under tests/fixtures without the line feed that ends the file.
[[nodiscard]] QString fixtureText(const char *path);

} // namespace velarc
