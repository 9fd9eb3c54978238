#include "store/defaults_domain.h"

namespace velarc {

namespace {

std::optional<QByteArray> documentOf(const std::optional<DefaultsValue> &value)
{
    const auto *document = value ? std::get_if<QByteArray>(&*value) : nullptr;
    return document == nullptr ? std::nullopt : std::optional(*document);
}

} // namespace

std::optional<QByteArray> DefaultsDomain::bytes(QByteArrayView key)
{
    return documentOf(read(key));
}

void DefaultsDomain::setBytes(QByteArrayView key, const QByteArray &document)
{
    write(key, document);
}

bool DefaultsDomain::boolean(QByteArrayView key)
{
    const auto value = read(key);
    const bool *flag = value ? std::get_if<bool>(&*value) : nullptr;
    return flag != nullptr && *flag;
}

void DefaultsDomain::setBoolean(QByteArrayView key, bool value)
{
    write(key, value);
}

bool DefaultsDomain::holds(QByteArrayView key)
{
    return read(key).has_value();
}

void DefaultsDomain::remove(QByteArrayView key)
{
    erase(key);
}

QByteArray DefaultsDomain::settle(
    QByteArrayView key, const std::optional<QByteArray> &seen, const QByteArray &proposal)
{
    writeUnlessChanged(key, seen, proposal);
    return bytes(key).value_or(proposal);
}

bool hasChanged(const std::optional<DefaultsValue> &standing, const std::optional<QByteArray> &seen)
{
    const auto document = documentOf(standing);
    return document && document != seen;
}

} // namespace velarc
