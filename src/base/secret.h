#pragma once

// A text that must not linger: an API key between the secret store and a request header.

#include <QByteArray>
#include <QByteArrayView>
#include <QString>
#include <QStringView>

#include <cstddef>
#include <memory>

namespace velarc {

// Owns the UTF-8 bytes of a secret alone and overwrites them when it goes. It is never shown,
// logged, stored or compared in messages. Any thread; copies are deep.
//
// Copies that libraries make of what bytes() hands them are beyond its reach.
class Secret
{
public:
    Secret() = default;
    explicit Secret(QByteArrayView utf8);
    [[nodiscard]] static Secret fromText(QStringView text);

    Secret(const Secret &other);
    Secret(Secret &&other) noexcept;
    Secret &operator=(Secret other) noexcept;
    ~Secret();

    // Without white space and line ends at both ends.
    [[nodiscard]] Secret trimmed() const;

    [[nodiscard]] bool isEmpty() const { return m_size == 0; }
    [[nodiscard]] QByteArrayView bytes() const
    {
        return QByteArrayView(m_bytes.get(), static_cast<qsizetype>(m_size));
    }

private:
    std::unique_ptr<char[]> m_bytes;
    std::size_t m_size = 0;
};

// Overwrites the bytes of `array` with zeros if nobody else shares them.
void wipe(QByteArray &array);

// The same for a text.
void wipe(QString &text);

} // namespace velarc
