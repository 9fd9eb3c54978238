#pragma once

// Actions, documents and surroundings for the tests of this folder.

#include "actions/action.h"

#include <QByteArray>

namespace velarc {

// The bytes of a file below tests/fixtures. A missing file fails the test.
[[nodiscard]] QByteArray fixture(const char *path);

[[nodiscard]] AIAction decodedFrom(const char *json);

[[nodiscard]] AIAction actionNamed(const QString &name, qint64 sortOrder = 0);
[[nodiscard]] AIAction pinned(AIAction action);
[[nodiscard]] AIAction bound(AIAction action, ActionDestination destination);

[[nodiscard]] QStringList namesOf(const QList<AIAction> &actions);

// While it lives, a variable of the environment has another value: LC_ALL for the locale, TZ for
// the time zone.
class ScopedVariable
{
public:
    ScopedVariable(const char *name, const char *value);
    ~ScopedVariable();
    ScopedVariable(const ScopedVariable &) = delete;
    ScopedVariable &operator=(const ScopedVariable &) = delete;

private:
    const char *m_name;
    std::optional<QByteArray> m_before;
};

} // namespace velarc
