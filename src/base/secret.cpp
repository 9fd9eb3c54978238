#include "base/secret.h"

#include "base/text.h"

#include <cstring>
#include <utility>

namespace velarc {

Secret::Secret(QByteArrayView utf8)
    : m_bytes(utf8.isEmpty() ? nullptr : new char[static_cast<std::size_t>(utf8.size())])
    , m_size(static_cast<std::size_t>(utf8.size()))
{
    if (m_size > 0) {
        std::memcpy(m_bytes.get(), utf8.data(), m_size);
    }
}

Secret Secret::fromText(QStringView text)
{
    QByteArray utf8 = text.toUtf8();
    Secret secret(utf8);
    wipe(utf8);
    return secret;
}

Secret::Secret(const Secret &other) : Secret(other.bytes()) {}

Secret::Secret(Secret &&other) noexcept
    : m_bytes(std::move(other.m_bytes)), m_size(std::exchange(other.m_size, 0))
{
}

Secret &Secret::operator=(Secret other) noexcept
{
    std::swap(m_bytes, other.m_bytes);
    std::swap(m_size, other.m_size);
    return *this;
}

Secret::~Secret()
{
    if (m_bytes) {
        explicit_bzero(m_bytes.get(), m_size);
    }
}

Secret Secret::trimmed() const
{
    QString text = QString::fromUtf8(bytes());
    Secret result = fromText(velarc::trimmed(text));
    wipe(text);
    return result;
}

void wipe(QByteArray &array)
{
    if (!array.isEmpty() && array.isDetached()) {
        explicit_bzero(array.data(), static_cast<std::size_t>(array.size()));
    }
    array.clear();
}

void wipe(QString &text)
{
    if (!text.isEmpty() && text.isDetached()) {
        explicit_bzero(text.data(), static_cast<std::size_t>(text.size()) * sizeof(QChar));
    }
    text.clear();
}

} // namespace velarc
