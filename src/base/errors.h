#pragma once

// The base of every failure that a person may get to read.

#include <QString>

#include <exception>

namespace velarc {

// A failure with a sentence for the user. Each service derives one type of its own from it.
//
// Any thread; a plain value once built.
class UserFacingError : public std::exception
{
public:
    explicit UserFacingError(QString message);

    // The sentence as it is shown: whole, never cut, never holding a key.
    [[nodiscard]] const QString &message() const noexcept { return m_message; }

    // The same sentence in UTF-8.
    [[nodiscard]] const char *what() const noexcept override { return m_utf8.constData(); }

private:
    QString m_message;
    QByteArray m_utf8;
};

// A run, a pause or a transfer was stopped. Nobody is told of it as a failure: whoever catches it
// ends in silence or resets the screen.
class CancellationError : public std::exception
{
public:
    [[nodiscard]] const char *what() const noexcept override { return "cancelled"; }
};

// The sentence for `error`: its own where it has one, else what() read as UTF-8.
[[nodiscard]] QString errorDescription(const std::exception &error);

} // namespace velarc
