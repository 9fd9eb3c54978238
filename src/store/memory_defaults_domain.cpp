#include "store/memory_defaults_domain.h"

namespace velarc {

std::optional<DefaultsValue> MemoryDefaultsDomain::read(QByteArrayView key)
{
    const auto found = m_values.constFind(key.toByteArray());
    return found == m_values.constEnd() ? std::nullopt : std::optional(*found);
}

void MemoryDefaultsDomain::write(QByteArrayView key, const DefaultsValue &value)
{
    m_values.insert(key.toByteArray(), value);
}

void MemoryDefaultsDomain::erase(QByteArrayView key)
{
    m_values.remove(key.toByteArray());
}

void MemoryDefaultsDomain::writeUnlessChanged(
    QByteArrayView key, const std::optional<QByteArray> &seen, const QByteArray &proposal)
{
    if (!hasChanged(read(key), seen)) {
        write(key, proposal);
    }
}

} // namespace velarc
