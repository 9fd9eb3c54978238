#include "base/uuid.h"

namespace velarc {

namespace {

constexpr qsizetype kCanonicalLength = 36;

bool isHyphenPlace(qsizetype index)
{
    return index == 8 || index == 13 || index == 18 || index == 23;
}

bool isHexDigit(QChar character)
{
    const char16_t unit = character.unicode();
    return (unit >= u'0' && unit <= u'9') || (unit >= u'a' && unit <= u'f')
        || (unit >= u'A' && unit <= u'F');
}

} // namespace

QUuid newUuid()
{
    return QUuid::createUuid();
}

QString uuidText(const QUuid &uuid)
{
    return uuid.toString(QUuid::WithoutBraces).toUpper();
}

std::optional<QUuid> uuidFromText(QStringView text)
{
    if (text.size() != kCanonicalLength) {
        return std::nullopt;
    }
    for (qsizetype index = 0; index < text.size(); ++index) {
        const bool good =
            isHyphenPlace(index) ? text[index] == QLatin1Char('-') : isHexDigit(text[index]);
        if (!good) {
            return std::nullopt;
        }
    }
    return QUuid::fromString(text);
}

} // namespace velarc
