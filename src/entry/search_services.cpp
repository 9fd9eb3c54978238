#include "entry/search_services.h"

#include "base/uuid.h"
#include "entry/action_search.h"
#include "entry/desktop_names.h"

#include <QDBusMetaType>

#include <utility>

namespace velarc {

using namespace Qt::StringLiterals;

QDBusArgument &operator<<(QDBusArgument &argument, const RunnerMatch &match)
{
    argument.beginStructure();
    argument << match.id << match.text << match.icon << match.type << match.relevance
             << match.properties;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerMatch &match)
{
    argument.beginStructure();
    argument >> match.id >> match.text >> match.icon >> match.type >> match.relevance
        >> match.properties;
    argument.endStructure();
    return argument;
}

QDBusArgument &operator<<(QDBusArgument &argument, const RunnerAction &action)
{
    argument.beginStructure();
    argument << action.id << action.text << action.icon;
    argument.endStructure();
    return argument;
}

const QDBusArgument &operator>>(const QDBusArgument &argument, RunnerAction &action)
{
    argument.beginStructure();
    argument >> action.id >> action.text >> action.icon;
    argument.endStructure();
    return argument;
}

namespace {

// How sure a match is, as KRunner counts it.
constexpr int kPossibleMatch = 30;
constexpr int kExactMatch = 100;

// The startup notification of a click at that time; 0 is a time that nobody knows.
ActivationContext contextOf(uint timestamp)
{
    ActivationContext context;
    if (timestamp != 0) {
        context.startupId = u"velarc-search_TIME"_s + QString::number(timestamp);
    }
    return context;
}

} // namespace

GnomeSearchProvider::GnomeSearchProvider(QObject *parent, ServiceParts parts, Activity &activity)
    : QDBusAbstractAdaptor(parent), m_parts(std::move(parts)), m_activity(activity)
{
    qDBusRegisterMetaType<VariantMaps>();
}

QStringList GnomeSearchProvider::GetInitialResultSet(const QStringList &terms)
{
    m_activity.note();
    QStringList identifiers;
    for (const ActionHit &hit : searchActions(loadOfferedActions(*m_parts.openStore()), terms)) {
        identifiers.append(uuidText(hit.action.id));
    }
    return identifiers;
}

QStringList GnomeSearchProvider::GetSubsearchResultSet(
    const QStringList &previous, const QStringList &terms)
{
    QStringList narrowed = GetInitialResultSet(terms);
    narrowed.removeIf([&](const QString &identifier) { return !previous.contains(identifier); });
    return narrowed;
}

VariantMaps GnomeSearchProvider::GetResultMetas(const QStringList &identifiers)
{
    m_activity.note();
    const QList<AIAction> offered = loadOfferedActions(*m_parts.openStore());
    QHash<QString, QVariantMap> metas;
    for (const AIAction &action : offered) {
        const QString id = uuidText(action.id);
        metas.insert(id,
            {{u"id"_s, id}, {u"name"_s, busText(action.name)},
                {u"description"_s, busText(searchSubtitle(action))},
                {u"gicon"_s, QString(kApplicationId)}});
    }
    VariantMaps found;
    for (const QString &identifier : identifiers) {
        if (const auto meta = metas.constFind(identifier); meta != metas.constEnd()) {
            found.append(*meta);
        }
    }
    return found;
}

void GnomeSearchProvider::ActivateResult(
    const QString &identifier, const QStringList &, uint timestamp)
{
    m_activity.note();
    m_parts.openWindow(uuidFromText(identifier), contextOf(timestamp));
}

void GnomeSearchProvider::LaunchSearch(const QStringList &, uint timestamp)
{
    m_activity.note();
    m_parts.openWindow(std::nullopt, contextOf(timestamp));
}

KRunnerRunner::KRunnerRunner(QObject *parent, ServiceParts parts, Activity &activity)
    : QDBusAbstractAdaptor(parent), m_parts(std::move(parts)), m_activity(activity)
{
    qDBusRegisterMetaType<RunnerMatch>();
    qDBusRegisterMetaType<RunnerMatches>();
    qDBusRegisterMetaType<RunnerAction>();
    qDBusRegisterMetaType<RunnerActions>();
}

RunnerActions KRunnerRunner::Actions()
{
    m_activity.note();
    return {};
}

RunnerMatches KRunnerRunner::Match(const QString &query)
{
    m_activity.note();
    const QStringList terms = query.simplified().split(u' ', Qt::SkipEmptyParts);
    RunnerMatches matches;
    for (const ActionHit &hit : searchActions(loadOfferedActions(*m_parts.openStore()), terms)) {
        const bool isExact = hit.relevance >= 1;
        matches.append({uuidText(hit.action.id), busText(hit.action.name), kApplicationId,
            isExact ? kExactMatch : kPossibleMatch, hit.relevance,
            {{u"subtext"_s, busText(searchSubtitle(hit.action))}}});
    }
    return matches;
}

void KRunnerRunner::SetActivationToken(const QString &token)
{
    m_activity.note();
    m_activationToken = token;
}

void KRunnerRunner::Run(const QString &match, const QString &)
{
    m_activity.note();
    m_parts.openWindow(uuidFromText(match), {std::exchange(m_activationToken, {}), {}});
}

void KRunnerRunner::Teardown()
{
    m_activity.note();
}

} // namespace velarc
