#pragma once

// The actions in the searches of the desktops: GNOME Shell's search provider, KRunner's runner.
//
// They list the offered actions by name and skill and never start the window for that; choosing a
// hit opens the window on its action. Main thread only.

#include "entry/service_parts.h"

#include <QDBusAbstractAdaptor>
#include <QDBusArgument>
#include <QVariantMap>

namespace velarc {

using VariantMaps = QList<QVariantMap>;

class GnomeSearchProvider final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.gnome.Shell.SearchProvider2")

public:
    GnomeSearchProvider(QObject *parent, ServiceParts parts, Activity &activity);

public Q_SLOTS:
    QStringList GetInitialResultSet(const QStringList &terms);
    QStringList GetSubsearchResultSet(const QStringList &previous, const QStringList &terms);
    velarc::VariantMaps GetResultMetas(const QStringList &identifiers);
    void ActivateResult(const QString &identifier, const QStringList &terms, uint timestamp);
    void LaunchSearch(const QStringList &terms, uint timestamp);

private:
    ServiceParts m_parts;
    Activity &m_activity;
};

// (sssida{sv}) on the bus.
struct RunnerMatch
{
    QString id;
    QString text;
    QString icon;
    int type = 0;
    double relevance = 0;
    QVariantMap properties;
};
using RunnerMatches = QList<RunnerMatch>;

// (sss) on the bus.
struct RunnerAction
{
    QString id;
    QString text;
    QString icon;
};
using RunnerActions = QList<RunnerAction>;

class KRunnerRunner final : public QDBusAbstractAdaptor
{
    Q_OBJECT
    Q_CLASSINFO("D-Bus Interface", "org.kde.krunner1")

public:
    KRunnerRunner(QObject *parent, ServiceParts parts, Activity &activity);

public Q_SLOTS:
    velarc::RunnerActions Actions();
    velarc::RunnerMatches Match(const QString &query);
    void SetActivationToken(const QString &token); // good for the next Run
    void Run(const QString &match, const QString &action);
    void Teardown();

private:
    ServiceParts m_parts;
    Activity &m_activity;
    QString m_activationToken;
};

} // namespace velarc
