#include "action_samples.h"

#include "actions/action_json.h"
#include "base/uuid.h"

#include <QFile>

#include <gtest/gtest.h>

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

ScopedVariable::ScopedVariable(const char *name, const char *value) : m_name(name)
{
    if (qEnvironmentVariableIsSet(name)) {
        m_before = qgetenv(name);
    }
    qputenv(name, value);
}

ScopedVariable::~ScopedVariable()
{
    if (m_before) {
        qputenv(m_name, *m_before);
    } else {
        qunsetenv(m_name);
    }
}

} // namespace velarc
