// The domain on disk in good health: its files, their rights, and other processes beside it.

#include "store_fixture.h"

#include "support/printers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <sqlite3.h>
#include <sys/stat.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr QByteArrayView kKey = "a.key";

// What the shell shows of one value: its type, and the value as SQL.
QByteArray storedForm(const QString &path, QByteArrayView key)
{
    sqlite3 *connection = nullptr;
    sqlite3_stmt *statement = nullptr;
    EXPECT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &connection), SQLITE_OK);
    EXPECT_EQ(sqlite3_prepare_v2(connection,
                  "SELECT typeof(value) || ' ' || quote(value) FROM defaults WHERE key = ?1", -1,
                  &statement, nullptr),
        SQLITE_OK);
    sqlite3_bind_text(statement, 1, key.data(), static_cast<int>(key.size()), SQLITE_STATIC);
    QByteArray form;
    if (sqlite3_step(statement) == SQLITE_ROW) {
        form = reinterpret_cast<const char *>(sqlite3_column_text(statement, 0));
    }
    sqlite3_finalize(statement);
    sqlite3_close(connection);
    return form;
}

// Everything that is made gets the rights that its maker asked for.
class AllowEverything
{
public:
    AllowEverything() : m_before(umask(0)) {}
    ~AllowEverything() { umask(m_before); }

private:
    mode_t m_before;
};

class Variable
{
public:
    Variable(const char *name, const QString &value)
        : m_name(name), m_before(qgetenv(name)), m_wasSet(qEnvironmentVariableIsSet(name))
    {
        value.isNull() ? qunsetenv(name) : qputenv(name, QFile::encodeName(value));
    }
    ~Variable() { m_wasSet ? qputenv(m_name, m_before) : qunsetenv(m_name); }

private:
    const char *m_name;
    QByteArray m_before;
    bool m_wasSet;
};

} // namespace

class SqliteDefaultsDomainTest : public StoreFolder
{
};

TEST_F(SqliteDefaultsDomainTest, valuesOutliveTheProcess)
{
    openDomain()->setBytes(kKey, "kept");
    openDomain()->setBoolean("flag", true);
    EXPECT_EQ(openDomain()->bytes(kKey), "kept");
    EXPECT_TRUE(openDomain()->boolean("flag"));
    openDomain()->remove(kKey);
    EXPECT_FALSE(openDomain()->holds(kKey));
    EXPECT_FALSE(QFileInfo::exists(standard));
}

TEST_F(SqliteDefaultsDomainTest, documentIsABlobAndABooleanIsAnInteger)
{
    const auto domain = openDomain();
    domain->setBytes(kKey, "{}");
    domain->setBoolean("on", true);
    domain->setBoolean("off", false);
    EXPECT_EQ(storedForm(suite, kKey), "blob X'7B7D'");
    EXPECT_EQ(storedForm(suite, "on"), "integer 1");
    EXPECT_EQ(storedForm(suite, "off"), "integer 0");
}

TEST_F(SqliteDefaultsDomainTest, valueOfAnotherTypeStandsThereButIsNeitherDocumentNorTrue)
{
    const auto domain = openDomain();
    for (const char *value : {"'{}'", "1.5", "'true'"}) {
        SCOPED_TRACE(value);
        runSql(suite, QByteArray("REPLACE INTO defaults VALUES('a.key', ") + value + ")");
        EXPECT_TRUE(domain->holds(kKey));
        EXPECT_EQ(domain->bytes(kKey), std::nullopt);
        EXPECT_FALSE(domain->boolean(kKey));
    }
    EXPECT_EQ(domain->settle(kKey, std::nullopt, "mine"), "mine");
}

TEST_F(SqliteDefaultsDomainTest, whatAnotherProcessWritesIsSeenAtOnce)
{
    const auto domain = openDomain();
    const auto other = openDomain();
    EXPECT_FALSE(domain->holds(kKey));
    other->setBytes(kKey, "first");
    EXPECT_EQ(domain->bytes(kKey), "first");
    other->setBytes(kKey, "second");
    EXPECT_EQ(domain->bytes(kKey), "second");
    other->remove(kKey);
    EXPECT_FALSE(domain->holds(kKey));
}

TEST_F(SqliteDefaultsDomainTest, databaseKeepsAWriteAheadLog)
{
    const auto domain = openDomain();
    domain->setBytes(kKey, "x");
    EXPECT_GT(QFileInfo(suite + u"-wal"_s).size(), 0);
    EXPECT_EQ(contentOf(suite).mid(18, 2), QByteArray("\2\2"));
}

TEST_F(SqliteDefaultsDomainTest, foldersAndFilesAreTheUsersAlone)
{
    const AllowEverything allow;
    const auto domain = openDomain();
    domain->setBytes(kKey, "x");
    EXPECT_EQ(modeOf(pathOf(u"data"_s)), 0700U);
    EXPECT_EQ(modeOf(pathOf(u"data/velarc"_s)), 0700U);
    EXPECT_EQ(modeOf(suite), 0600U);
    EXPECT_EQ(modeOf(suite + u"-wal"_s), 0600U);
    EXPECT_EQ(modeOf(suite + u"-shm"_s), 0600U);
}

TEST_F(SqliteDefaultsDomainTest, folderThatIsThereKeepsItsRights)
{
    ASSERT_TRUE(QDir().mkpath(pathOf(u"data"_s)));
    setMode(pathOf(u"data"_s), 0755);
    openDomain()->setBytes(kKey, "x");
    EXPECT_EQ(modeOf(pathOf(u"data"_s)), 0755U);
    EXPECT_EQ(modeOf(pathOf(u"data/velarc"_s)), 0700U);
}

TEST_F(SqliteDefaultsDomainTest, fileThatOthersCanReadIsClosedToThem)
{
    const auto keepsSideFiles = openDomain();
    keepsSideFiles->setBytes(kKey, "x");
    for (const QString &path : {suite, suite + u"-wal"_s, suite + u"-shm"_s}) {
        setMode(path, 0664);
    }
    EXPECT_EQ(openDomain()->bytes(kKey), "x");
    for (const QString &path : {suite, suite + u"-wal"_s, suite + u"-shm"_s}) {
        EXPECT_EQ(modeOf(path), 0600U) << path.toStdString();
    }
}

TEST_F(SqliteDefaultsDomainTest, emptyFileIsAnEmptyDomain)
{
    // SQLite takes one byte for none: it has left such files itself.
    for (const char *content : {"", "S"}) {
        fill(suite, content);
        EXPECT_FALSE(openDomain()->holds(kKey));
        openDomain()->setBytes(kKey, "x");
        EXPECT_EQ(openDomain()->bytes(kKey), "x");
        EXPECT_TRUE(namesAside().isEmpty());
    }
}

TEST_F(SqliteDefaultsDomainTest, linkToADatabaseIsFollowed)
{
    openDomain()->setBytes(kKey, "x");
    const QString elsewhere = pathOf(u"elsewhere.sqlite"_s);
    ASSERT_TRUE(QFile::rename(suite, elsewhere));
    ASSERT_TRUE(QFile::link(elsewhere, suite));
    openDomain()->setBytes("more", "y");
    EXPECT_EQ(storedForm(elsewhere, kKey), "blob X'78'");
    EXPECT_EQ(storedForm(elsewhere, "more"), "blob X'79'");
}

TEST_F(SqliteDefaultsDomainTest, fileThatIsRemovedUnderARunningProcessIsMadeAgain)
{
    const auto domain = openDomain();
    domain->setBytes(kKey, "x");
    for (const QString &path : {suite, suite + u"-wal"_s, suite + u"-shm"_s}) {
        ASSERT_TRUE(QFile::remove(path));
    }
    EXPECT_FALSE(domain->holds(kKey));
    domain->setBytes(kKey, "y");
    EXPECT_EQ(openDomain()->bytes(kKey), "y");
}

TEST_F(SqliteDefaultsDomainTest, wholeFolderThatIsRemovedUnderARunningProcessIsMadeAgain)
{
    const auto domain = openDomain();
    ASSERT_TRUE(QDir(pathOf(u"data"_s)).removeRecursively());
    domain->setBytes(kKey, "y");
    EXPECT_EQ(openDomain()->bytes(kKey), "y");
}

TEST_F(SqliteDefaultsDomainTest, writeIsDroppedWhenTheDatabaseStaysLockedAndTheValueStands)
{
    const auto domain = openDomain(20ms);
    domain->setBytes(kKey, "before");
    sqlite3 *holder = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(suite).constData(), &holder), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(holder, "BEGIN IMMEDIATE", nullptr, nullptr, nullptr), SQLITE_OK);

    domain->setBytes(kKey, "dropped");
    domain->remove(kKey);
    EXPECT_EQ(domain->bytes(kKey), "before");
    EXPECT_EQ(domain->settle(kKey, "before", "mine"), "before");
    EXPECT_EQ(openDomain(20ms)->bytes(kKey), "before");

    sqlite3_close(holder);
    domain->setBytes(kKey, "after");
    EXPECT_EQ(openDomain()->bytes(kKey), "after");
}

TEST_F(SqliteDefaultsDomainTest, databaseThatNobodyElseMayEvenReadGivesWayToTheStandardOne)
{
    openDomain()->setBytes(kKey, "suite");
    sqlite3 *holder = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(suite).constData(), &holder), SQLITE_OK);
    ASSERT_EQ(sqlite3_exec(holder,
                  "PRAGMA locking_mode=EXCLUSIVE; BEGIN IMMEDIATE; COMMIT; SELECT * FROM defaults",
                  nullptr, nullptr, nullptr),
        SQLITE_OK);
    {
        const auto domain = openDomain(20ms);
        EXPECT_FALSE(domain->holds(kKey));
        domain->setBytes(kKey, "standard");
        EXPECT_EQ(domain->bytes(kKey), "standard");
    }
    sqlite3_close(holder);
    EXPECT_EQ(openDomain()->bytes(kKey), "suite");
    EXPECT_TRUE(namesAside().isEmpty());
}

TEST_F(SqliteDefaultsDomainTest, nothingIsLeftBesideTheDatabaseWhenItIsClosed)
{
    openDomain()->setBytes(kKey, "x");
    EXPECT_EQ(QDir(QFileInfo(suite).path())
                  .entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot),
        QStringList{u"suite.sqlite"_s});
}

TEST_F(SqliteDefaultsDomainTest, suiteLivesInTheDataFolderAndItsStandInInTheConfigurationFolder)
{
    const Variable home("HOME", pathOf(QString()));
    const Variable data("XDG_DATA_HOME", u"/somewhere/data"_s);
    const Variable config("XDG_CONFIG_HOME", u"/somewhere/config"_s);
    EXPECT_EQ(defaultsFiles(),
        (QStringList{u"/somewhere/data/velarc/group.com.tolmar.velarc.sqlite"_s,
            u"/somewhere/config/velarc/standard.sqlite"_s}));
}

TEST_F(SqliteDefaultsDomainTest, foldersThatAreUnsetEmptyOrRelativeAreTheUsualOnesOfTheHomeFolder)
{
    const QString folder = QFileInfo(pathOf(u"x"_s)).path();
    const Variable home("HOME", folder);
    const QStringList usual{folder + u"/.local/share/velarc/group.com.tolmar.velarc.sqlite"_s,
        folder + u"/.config/velarc/standard.sqlite"_s};
    for (const QString &value : {QString(), u""_s, u"relative/folder"_s}) {
        const Variable data("XDG_DATA_HOME", value);
        const Variable config("XDG_CONFIG_HOME", value);
        EXPECT_EQ(defaultsFiles(), usual);
    }
}

TEST_F(SqliteDefaultsDomainTest, withoutAHomeFolderNothingIsKeptOnDisk)
{
    const Variable data("XDG_DATA_HOME", QString());
    const Variable config("XDG_CONFIG_HOME", QString());
    for (const QString &value : {QString(), u""_s, u"relative"_s, pathOf(u"missing"_s)}) {
        const Variable home("HOME", value);
        EXPECT_EQ(defaultsFiles(), QStringList());
    }
}

} // namespace velarc
