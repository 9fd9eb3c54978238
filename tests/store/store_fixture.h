#pragma once

// A home folder of its own for each test of the store, and what tests do to files behind its back.

#include "fakes/fake_clock.h"
#include "store/local_store.h"
#include "store/sqlite_defaults_domain.h"

#include <QByteArray>
#include <QString>
#include <QStringList>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <memory>

namespace velarc {

class StoreFolder : public ::testing::Test
{
private:
    QTemporaryDir m_folder;

protected:
    StoreFolder();
    ~StoreFolder() override;

    [[nodiscard]] QString pathOf(const QString &name) const { return m_folder.filePath(name); }

    // A domain over the two files, as another process would open it too.
    [[nodiscard]] std::unique_ptr<SqliteDefaultsDomain> openDomain(
        std::chrono::milliseconds patience = std::chrono::seconds(5)) const;

    // The databases that were moved aside, without and with their side files.
    [[nodiscard]] QStringList namesAside() const;
    [[nodiscard]] QStringList allNamesAside() const;

    const QString suite = pathOf(QStringLiteral("data/velarc/suite.sqlite"));
    const QString standard = pathOf(QStringLiteral("config/velarc/standard.sqlite"));
    FakeClock clock;
};

// While it lives, file modes hold for the superuser too.
class WithoutSuperuserRights
{
public:
    WithoutSuperuserRights();
    ~WithoutSuperuserRights();
    WithoutSuperuserRights(const WithoutSuperuserRights &) = delete;
    WithoutSuperuserRights &operator=(const WithoutSuperuserRights &) = delete;
};

[[nodiscard]] QByteArray contentOf(const QString &path);
void fill(const QString &path, const QByteArray &content);
void overwrite(const QString &path, qint64 from, const QByteArray &bytes);
[[nodiscard]] unsigned modeOf(const QString &path); // 0600; 0 if nothing is there
void setMode(const QString &path, unsigned mode);

// Runs SQL on a database by a connection of its own, as another program would.
void runSql(const QString &path, const QByteArray &sql);

// `length` bytes that are no database.
[[nodiscard]] QByteArray garbage(qsizetype length);

// A library of numbered actions.
[[nodiscard]] QList<AIAction> numberedActions(int count);

} // namespace velarc
