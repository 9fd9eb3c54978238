#pragma once

// Actions, documents and locales for the tests of this folder.

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

// While it lives, the process runs in another locale.
class ScopedLocale
{
public:
    explicit ScopedLocale(const char *name);
    ~ScopedLocale();
    ScopedLocale(const ScopedLocale &) = delete;
    ScopedLocale &operator=(const ScopedLocale &) = delete;

private:
    QByteArray m_before;
};

} // namespace velarc
