#pragma once

#include <QByteArray>
#include <QString>

#include <memory>
#include <optional>

namespace velarc {

// The program that the user's desktop opens addresses of one scheme with. Blocks; any thread.
class UriHandler
{
public:
    // None where no program is registered for the scheme, as "mailto", or it is not installed.
    [[nodiscard]] static std::optional<UriHandler> forScheme(const QByteArray &scheme);

    // Has the program open `uri`; does not wait for it. Returns the desktop's reason why it could
    // not be started, or none.
    [[nodiscard]] std::optional<QString> open(QByteArray uri) const;

private:
    explicit UriHandler(std::shared_ptr<void> program) : m_program(std::move(program)) {}

    std::shared_ptr<void> m_program;
};

} // namespace velarc
