#pragma once

// Values that tell their own number and whether they are whole.

#include <QByteArray>

#include <optional>

namespace velarc {

// Of different lengths, from a few bytes to several pages of a database.
inline QByteArray numberedValue(qint64 number)
{
    const QByteArray text = QByteArray::number(number) + ';';
    return text.repeated(1 + static_cast<qsizetype>(number * 7919 % 5000));
}

// The number of a whole value; none for one that is torn.
inline std::optional<qint64> numberOf(const QByteArray &value)
{
    bool isNumber = false;
    const qint64 number = value.left(value.indexOf(';')).toLongLong(&isNumber);
    return isNumber && value == numberedValue(number) ? std::optional(number) : std::nullopt;
}

} // namespace velarc
