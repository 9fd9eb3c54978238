#pragma once

// A defaults domain that lasts as long as its object.

#include "store/defaults_domain.h"

#include <QHash>

namespace velarc {

class MemoryDefaultsDomain final : public DefaultsDomain
{
protected:
    [[nodiscard]] std::optional<DefaultsValue> read(QByteArrayView key) override;
    void write(QByteArrayView key, const DefaultsValue &value) override;
    void erase(QByteArrayView key) override;
    void writeUnlessChanged(QByteArrayView key, const std::optional<QByteArray> &seen,
        const QByteArray &proposal) override;

private:
    QHash<QByteArray, DefaultsValue> m_values;
};

} // namespace velarc
