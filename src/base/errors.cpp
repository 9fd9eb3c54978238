#include "base/errors.h"

#include <utility>

namespace velarc {

UserFacingError::UserFacingError(QString message)
    : m_message(std::move(message)), m_utf8(m_message.toUtf8())
{
}

QString errorDescription(const std::exception &error)
{
    if (const auto *told = dynamic_cast<const UserFacingError *>(&error)) {
        return told->message();
    }
    return QString::fromUtf8(error.what());
}

} // namespace velarc
