#include "action_samples.h"

#include "actions/action_json.h"
#include "base/uuid.h"

#include <QFile>

#include <gtest/gtest.h>

#include <cstdlib>

namespace velarc {

QByteArray fixture(const char *path)
{
    QFile file(QStringLiteral(VELARC_FIXTURES "/") + QString::fromUtf8(path));
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path;
    return file.readAll();
}

AIAction decodedFrom(const char *json)
{
    return decodeAction(parseJson(json));
}

AIAction actionNamed(const QString &name, qint64 sortOrder)
{
    AIAction action;
    action.id = newUuid();
    action.name = name;
    action.sortOrder = sortOrder;
    return action;
}

AIAction pinned(AIAction action)
{
    action.isPinned = true;
    return action;
}

AIAction bound(AIAction action, ActionDestination destination)
{
    action.destination = destination;
    return action;
}

QStringList namesOf(const QList<AIAction> &actions)
{
    QStringList names;
    for (const AIAction &action : actions) {
        names.append(action.name);
    }
    return names;
}

ScopedLocale::ScopedLocale(const char *name) : m_before(qgetenv("LC_ALL"))
{
    setenv("LC_ALL", name, 1);
}

ScopedLocale::~ScopedLocale()
{
    setenv("LC_ALL", m_before.constData(), 1);
}

} // namespace velarc
