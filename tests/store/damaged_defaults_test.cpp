// The domain on disk when its files are damaged, in the way, or closed to it.

#include "store_fixture.h"

#include "base/locale_text.h"
#include "support/printers.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/file.h>
#include <unistd.h>

namespace velarc {

namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

constexpr int kDocuments = 200;
constexpr QByteArrayView kKey = "a.key";

QByteArray keyOf(int number)
{
    return "document." + QByteArray::number(number);
}

QByteArray documentOf(int number)
{
    return QByteArray::number(number) + ':' + QByteArray(500, static_cast<char>('a' + number % 26));
}

// Nothing may reach the terminal while it lives.
class ExpectSilence
{
public:
    ExpectSilence()
    {
        ::testing::internal::CaptureStdout();
        ::testing::internal::CaptureStderr();
    }
    ~ExpectSilence()
    {
        EXPECT_EQ(::testing::internal::GetCapturedStderr(), "");
        EXPECT_EQ(::testing::internal::GetCapturedStdout(), "");
    }
};

} // namespace

class DamagedDefaults : public StoreFolder
{
protected:
    // Makes a database of some 40 pages, whose log is settled.
    void makeFilledSuite()
    {
        const auto domain = openDomain();
        for (int number = 0; number < kDocuments; ++number) {
            domain->setBytes(keyOf(number), documentOf(number));
        }
    }

    static int documentsThatAreThere(DefaultsDomain &domain)
    {
        int count = 0;
        for (int number = 0; number < kDocuments; ++number) {
            count += domain.bytes(keyOf(number)) == documentOf(number) ? 1 : 0;
        }
        return count;
    }

    // Opens what stands there, reads and writes, and closes it.
    void expectThatItWorks()
    {
        const ExpectSilence silence;
        {
            const auto domain = openDomain();
            (void)documentsThatAreThere(*domain);
            domain->setBytes(kKey, "new");
            domain->setBoolean("flag", true);
            EXPECT_EQ(domain->bytes(kKey), "new");
            EXPECT_TRUE(domain->boolean("flag"));
        }
        EXPECT_EQ(openDomain()->bytes(kKey), "new");
        EXPECT_FALSE(QFileInfo::exists(standard));
    }
};

TEST_F(DamagedDefaults, truncatedDatabaseIsKeptAsideAndStartedAfresh)
{
    makeFilledSuite();
    const QByteArray whole = contentOf(suite);
    ASSERT_GT(whole.size(), 20 * 4096);
    for (const qsizetype length :
        {qsizetype(2), qsizetype(15), qsizetype(16), qsizetype(99), qsizetype(100), qsizetype(101),
            qsizetype(511), qsizetype(512), qsizetype(4095), qsizetype(4096), qsizetype(4097),
            qsizetype(8192), whole.size() / 2, whole.size() - 8192, whole.size() - 4096}) {
        SCOPED_TRACE(length);
        const auto asideBefore = namesAside().size();
        fill(suite, whole.first(length));
        expectThatItWorks();
        ASSERT_EQ(namesAside().size(), asideBefore + 1);
        bool isKept = false;
        for (const QString &name : namesAside()) {
            isKept |= contentOf(QFileInfo(suite).path() + u'/' + name) == whole.first(length);
        }
        EXPECT_TRUE(isKept);
        clock.advance(1s);
    }
}

TEST_F(DamagedDefaults, databaseWithoutItsLastByteStillWorks)
{
    makeFilledSuite();
    fill(suite, contentOf(suite).chopped(1));
    expectThatItWorks();
}

TEST_F(DamagedDefaults, overwrittenDatabaseIsKeptAsideAndStartedAfresh)
{
    makeFilledSuite();
    const QByteArray whole = contentOf(suite);
    const QByteArray noise = garbage(whole.size());
    struct Damage
    {
        const char *defect;
        QByteArray content;
    };
    for (const Damage &damage : {
             Damage{"noise throughout", noise},
             Damage{"a text", QByteArray("These are my notes, not a database.\n")},
             Damage{"noise behind the first words", whole.first(16) + noise.sliced(16)},
             Damage{"noise behind the header", whole.first(100) + noise.sliced(100)},
             Damage{"noise behind the first page", whole.first(4096) + noise.sliced(4096)},
             Damage{"zeros throughout", QByteArray(whole.size(), '\0')},
             Damage{"zeros behind the first page",
                 whole.first(4096) + QByteArray(whole.size() - 4096, '\0')},
             Damage{"only a header", whole.first(100)},
         }) {
        SCOPED_TRACE(damage.defect);
        const auto asideBefore = namesAside().size();
        fill(suite, damage.content);
        expectThatItWorks();
        EXPECT_EQ(namesAside().size(), asideBefore + 1);
        clock.advance(1s);
    }
}

TEST_F(DamagedDefaults, fileAsideIsNamedForItsTimeAndASecondOneDoesNotReplaceIt)
{
    clock.setNow(Instant(1'771'599'600s));
    fill(suite, "first damage");
    openDomain()->setBytes(kKey, "x");
    fill(suite, "second damage");
    openDomain()->setBytes(kKey, "x");
    EXPECT_EQ(namesAside(),
        (QStringList{u"suite.sqlite.corrupt-20260220T150000Z"_s,
            u"suite.sqlite.corrupt-20260220T150000Z-2"_s}));
    EXPECT_EQ(contentOf(suite + u".corrupt-20260220T150000Z"_s), "first damage");
    EXPECT_EQ(contentOf(suite + u".corrupt-20260220T150000Z-2"_s), "second damage");
}

TEST_F(DamagedDefaults, sideFilesMoveWithTheDatabase)
{
    clock.setNow(Instant(1'771'599'600s));
    fill(suite, garbage(8192));
    fill(suite + u"-wal"_s, "log");
    fill(suite + u"-shm"_s, "index");
    expectThatItWorks();
    EXPECT_EQ(allNamesAside(),
        (QStringList{u"suite.sqlite.corrupt-20260220T150000Z"_s,
            u"suite.sqlite.corrupt-20260220T150000Z-shm"_s,
            u"suite.sqlite.corrupt-20260220T150000Z-wal"_s}));
    EXPECT_EQ(contentOf(suite + u".corrupt-20260220T150000Z-wal"_s), "log");
}

TEST_F(DamagedDefaults, freshFileIsTheUsersAlone)
{
    fill(suite, garbage(8192));
    setMode(suite, 0644);
    openDomain()->setBytes(kKey, "x");
    EXPECT_EQ(modeOf(suite), 0600U);
    EXPECT_EQ(modeOf(QFileInfo(suite).path() + u'/' + namesAside().value(0)), 0600U);
}

TEST_F(DamagedDefaults, damageThatIsMetWhenReadingLaterIsSetAsideToo)
{
    makeFilledSuite();
    const ExpectSilence silence;
    const auto domain = openDomain();
    overwrite(suite, 4096, garbage(QFileInfo(suite).size() - 4096));
    EXPECT_FALSE(domain->holds(keyOf(7)));
    EXPECT_EQ(namesAside().size(), 1);
    domain->setBytes(kKey, "new");
    EXPECT_EQ(domain->bytes(kKey), "new");
    EXPECT_EQ(openDomain()->bytes(kKey), "new");
}

TEST_F(DamagedDefaults, damageThatIsMetWhenWritingLaterIsSetAsideAndTheWriteStands)
{
    makeFilledSuite();
    const ExpectSilence silence;
    const auto domain = openDomain();
    overwrite(suite, 4096, garbage(QFileInfo(suite).size() - 4096));
    domain->setBytes(kKey, "new");
    EXPECT_EQ(namesAside().size(), 1);
    EXPECT_EQ(domain->bytes(kKey), "new");
    EXPECT_EQ(openDomain()->bytes(kKey), "new");
}

TEST_F(DamagedDefaults, damageThatIsMetWhenRemovingOrProposingLaterIsSetAside)
{
    for (const bool isRemoving : {true, false}) {
        makeFilledSuite();
        const auto domain = openDomain();
        overwrite(suite, 4096, garbage(QFileInfo(suite).size() - 4096));
        if (isRemoving) {
            domain->remove(keyOf(7));
        } else {
            EXPECT_EQ(domain->settle(keyOf(7), std::nullopt, "mine"), "mine");
            EXPECT_EQ(openDomain()->bytes(keyOf(7)), "mine");
        }
        EXPECT_EQ(namesAside().size(), isRemoving ? 1 : 2);
        clock.advance(1s);
    }
}

TEST_F(DamagedDefaults, damageToTheFileOnDiskIsKeptAsItIs)
{
    makeFilledSuite();
    auto domain = openDomain();
    domain->setBytes(kKey, "in the log");
    overwrite(suite, 4096, garbage(QFileInfo(suite).size() - 4096));
    const QByteArray damaged = contentOf(suite);
    for (int number = 0; number < kDocuments; ++number) {
        (void)domain->bytes(keyOf(number));
    }
    domain.reset();
    ASSERT_FALSE(namesAside().isEmpty());
    EXPECT_TRUE(contentOf(QFileInfo(suite).path() + u'/' + namesAside().first()) == damaged);
}

TEST_F(DamagedDefaults, processThatFindsTheDamageLaterTakesTheFreshFileOfTheEarlierOne)
{
    makeFilledSuite();
    const auto first = openDomain();
    const auto second = openDomain();
    overwrite(suite, 4096, garbage(QFileInfo(suite).size() - 4096));
    first->setBytes(kKey, "from the first");
    EXPECT_EQ(second->bytes(kKey), "from the first");
    second->setBytes("other", "from the second");
    EXPECT_EQ(first->bytes("other"), "from the second");
    EXPECT_EQ(namesAside().size(), 1);
}

TEST_F(DamagedDefaults, databaseOfAnotherMakeIsSetAside)
{
    struct Make
    {
        const char *feature;
        const char *sql;
    };
    for (const Make &make : {
             Make{"other columns", "CREATE TABLE defaults(name TEXT, content TEXT)"},
             Make{"no primary key", "CREATE TABLE defaults(key TEXT, value)"},
             Make{"a view", "CREATE VIEW defaults AS SELECT 'a' AS key, 'b' AS value"},
         }) {
        SCOPED_TRACE(make.feature);
        const auto asideBefore = namesAside().size();
        QFile::remove(suite);
        fill(suite, QByteArray());
        runSql(suite, make.sql);
        expectThatItWorks();
        EXPECT_EQ(namesAside().size(), asideBefore + 1);
        clock.advance(1s);
    }
}

TEST_F(DamagedDefaults, databaseWithFurtherTablesIsNoneOfAnotherMake)
{
    openDomain()->setBytes(kKey, "x");
    runSql(suite, "CREATE TABLE notes(text TEXT)");
    EXPECT_EQ(openDomain()->bytes(kKey), "x");
    EXPECT_TRUE(namesAside().isEmpty());
}

TEST_F(DamagedDefaults, damagedStandInIsSetAsideToo)
{
    ASSERT_TRUE(QDir().mkpath(suite));
    fill(standard, garbage(5000));
    openDomain()->setBytes(kKey, "x");
    EXPECT_EQ(openDomain()->bytes(kKey), "x");
    EXPECT_EQ(namesAside().size(), 1);
}

TEST_F(DamagedDefaults, damagedFileIsLeftAloneWhileSomebodyElseHoldsTheFolder)
{
    fill(suite, garbage(5000));
    const int folder =
        open(QFile::encodeName(QFileInfo(suite).path()).constData(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(folder, LOCK_EX), 0);
    openDomain(20ms)->setBytes(kKey, "in the stand-in");
    EXPECT_TRUE(namesAside().isEmpty());
    EXPECT_EQ(contentOf(suite), garbage(5000));
    EXPECT_EQ(openDomain(20ms)->bytes(kKey), "in the stand-in");
    close(folder);
    EXPECT_FALSE(openDomain()->holds(kKey));
    EXPECT_EQ(namesAside().size(), 1);
}

TEST_F(DamagedDefaults, healthyFileOpensEvenWhileSomebodyElseHoldsTheFolder)
{
    openDomain()->setBytes(kKey, "x");
    const int folder =
        open(QFile::encodeName(QFileInfo(suite).path()).constData(), O_RDONLY | O_DIRECTORY);
    ASSERT_EQ(flock(folder, LOCK_EX), 0);
    EXPECT_EQ(openDomain(20ms)->bytes(kKey), "x");
    close(folder);
}

class ClosedDefaults : public DamagedDefaults
{
protected:
    // That `domain` keeps things for as long as it lives, and that nothing of it stays.
    void expectOnlyMemory()
    {
        const ExpectSilence silence;
        {
            const auto domain = openDomain();
            domain->setBytes(kKey, "x");
            domain->setBoolean("flag", true);
            EXPECT_EQ(domain->bytes(kKey), "x");
            EXPECT_TRUE(domain->boolean("flag"));
            domain->remove(kKey);
            EXPECT_FALSE(domain->holds(kKey));
        }
        EXPECT_FALSE(openDomain()->holds("flag"));
    }

    void expectStandard()
    {
        const ExpectSilence silence;
        openDomain()->setBytes(kKey, "in the stand-in");
        EXPECT_EQ(openDomain()->bytes(kKey), "in the stand-in");
        EXPECT_TRUE(QFileInfo(standard).isFile());
        EXPECT_EQ(modeOf(standard), 0600U);
        EXPECT_EQ(modeOf(QFileInfo(standard).path()), 0700U);
        EXPECT_TRUE(namesAside().isEmpty());
    }

    // That `domain` shows what was stored and keeps changes for as long as it lives.
    void expectShownButNotWritten()
    {
        const ExpectSilence silence;
        {
            const auto domain = openDomain();
            EXPECT_EQ(documentsThatAreThere(*domain), kDocuments);
            domain->setBytes(keyOf(1), "changed");
            domain->remove(keyOf(2));
            domain->setBytes(kKey, "new");
            EXPECT_EQ(domain->bytes(keyOf(1)), "changed");
            EXPECT_FALSE(domain->holds(keyOf(2)));
            EXPECT_EQ(domain->bytes(kKey), "new");
            EXPECT_EQ(domain->bytes(keyOf(3)), documentOf(3));
            EXPECT_EQ(domain->settle(keyOf(4), std::nullopt, "mine"), documentOf(4));
            EXPECT_EQ(domain->settle("fresh", std::nullopt, "mine"), "mine");
            EXPECT_EQ(domain->settle(keyOf(5), documentOf(5), "mine"), "mine");
        }
        const auto later = openDomain();
        EXPECT_EQ(documentsThatAreThere(*later), kDocuments);
        EXPECT_FALSE(later->holds(kKey));
        EXPECT_FALSE(later->holds("fresh"));
        EXPECT_FALSE(QFileInfo::exists(standard));
        EXPECT_TRUE(namesAside().isEmpty());
    }

    void TearDown() override
    {
        for (const QString &path : {suite, QFileInfo(suite).path()}) {
            if (QFileInfo::exists(path)) {
                setMode(path, 0700);
            }
        }
    }
};

TEST_F(ClosedDefaults, directoryInPlaceOfTheFileGivesWayToTheStandardOne)
{
    ASSERT_TRUE(QDir().mkpath(suite));
    expectStandard();
}

TEST_F(ClosedDefaults, directoryInPlaceOfTheLogGivesWayToTheStandardOne)
{
    makeFilledSuite();
    ASSERT_TRUE(QDir().mkpath(suite + u"-wal/x"_s));
    expectStandard();
}

TEST_F(ClosedDefaults, fileInPlaceOfTheFolderGivesWayToTheStandardOne)
{
    fill(QFileInfo(suite).path(), "not a folder");
    expectStandard();
}

TEST_F(ClosedDefaults, danglingLinkGivesWayToTheStandardOneAndIsNotFollowed)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(suite).path()));
    ASSERT_TRUE(QFile::link(pathOf(u"target.sqlite"_s), suite));
    expectStandard();
    EXPECT_FALSE(QFileInfo::exists(pathOf(u"target.sqlite"_s)));
}

TEST_F(ClosedDefaults, linkToItselfGivesWayToTheStandardOne)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(suite).path()));
    ASSERT_TRUE(QFile::link(suite, suite));
    expectStandard();
}

TEST_F(ClosedDefaults, unreadableFileGivesWayToTheStandardOne)
{
    makeFilledSuite();
    setMode(suite, 0000);
    const WithoutSuperuserRights asUser;
    expectStandard();
}

TEST_F(ClosedDefaults, folderThatCannotBeEnteredGivesWayToTheStandardOne)
{
    makeFilledSuite();
    setMode(QFileInfo(suite).path(), 0000);
    const WithoutSuperuserRights asUser;
    expectStandard();
}

TEST_F(ClosedDefaults, folderThatCannotBeMadeGivesWayToTheStandardOne)
{
    ASSERT_TRUE(QDir().mkpath(pathOf(u"data"_s)));
    setMode(pathOf(u"data"_s), 0500);
    const WithoutSuperuserRights asUser;
    expectStandard();
    setMode(pathOf(u"data"_s), 0700);
}

TEST_F(ClosedDefaults, whereNeitherFileCanBeOpenedMemoryServes)
{
    ASSERT_TRUE(QDir().mkpath(suite));
    ASSERT_TRUE(QDir().mkpath(standard));
    expectOnlyMemory();
}

TEST_F(ClosedDefaults, withoutAnyFileMemoryServes)
{
    SqliteDefaultsDomain domain({}, clock);
    domain.setBytes(kKey, "x");
    EXPECT_EQ(domain.bytes(kKey), "x");
    EXPECT_FALSE(SqliteDefaultsDomain({}, clock).holds(kKey));
}

TEST_F(ClosedDefaults, fileThatCannotBeWrittenIsShownAndChangesLastForTheProcess)
{
    makeFilledSuite();
    setMode(suite, 0400);
    const WithoutSuperuserRights asUser;
    expectShownButNotWritten();
}

TEST_F(ClosedDefaults, folderThatCannotBeWrittenIsShownAndChangesLastForTheProcess)
{
    makeFilledSuite();
    setMode(QFileInfo(suite).path(), 0500);
    const WithoutSuperuserRights asUser;
    expectShownButNotWritten();
}

TEST_F(ClosedDefaults, fileAndFolderThatCannotBeWrittenAreShownAndChangesLastForTheProcess)
{
    makeFilledSuite();
    setMode(suite, 0400);
    setMode(QFileInfo(suite).path(), 0500);
    const WithoutSuperuserRights asUser;
    expectShownButNotWritten();
}

TEST_F(ClosedDefaults, logOfAKilledProcessIsReadEvenWhereNothingCanBeWritten)
{
    makeFilledSuite();
    {
        const auto alive = openDomain();
        alive->setBytes(keyOf(0), "from the log");
        // As after a kill: the log and its index stay beside the database.
        const QString folder = QFileInfo(suite).path();
        ASSERT_TRUE(QDir().mkpath(pathOf(u"copy"_s)));
        for (const QString &name : QDir(folder).entryList(QDir::Files)) {
            ASSERT_TRUE(QFile::copy(folder + u'/' + name, pathOf(u"copy/"_s) + name));
        }
    }
    for (const QString &name : QDir(pathOf(u"copy"_s)).entryList(QDir::Files)) {
        setMode(pathOf(u"copy/"_s) + name, 0400);
    }
    setMode(pathOf(u"copy"_s), 0500);
    {
        const WithoutSuperuserRights asUser;
        SqliteDefaultsDomain domain({pathOf(u"copy/suite.sqlite"_s)}, clock);
        EXPECT_EQ(domain.bytes(keyOf(0)), "from the log");
        EXPECT_EQ(domain.bytes(keyOf(1)), documentOf(1));
    }
    setMode(pathOf(u"copy"_s), 0700);
}

TEST_F(ClosedDefaults, damagedFileThatCannotBeMovedGivesWayToTheStandardOne)
{
    fill(suite, garbage(8192));
    setMode(QFileInfo(suite).path(), 0500);
    const WithoutSuperuserRights asUser;
    expectStandard();
}

TEST_F(ClosedDefaults, damageThatIsMetLaterAndCannotBeMovedGivesWayToTheStandardOne)
{
    makeFilledSuite();
    const auto domain = openDomain();
    overwrite(suite, 4096, garbage(QFileInfo(suite).size() - 4096));
    setMode(QFileInfo(suite).path(), 0500);
    const WithoutSuperuserRights asUser;
    domain->setBytes(kKey, "x");
    EXPECT_EQ(domain->bytes(kKey), "x");
    EXPECT_TRUE(namesAside().isEmpty());
    EXPECT_EQ(SqliteDefaultsDomain({standard}, clock).bytes(kKey), "x");
}

TEST_F(ClosedDefaults, unwritableFileOfAnotherProcessIsFollowedAsItChanges)
{
    makeFilledSuite();
    const auto writer = openDomain();
    writer->setBytes(kKey, "first");
    setMode(suite, 0400);
    const WithoutSuperuserRights asUser;
    const auto reader = openDomain();
    EXPECT_EQ(reader->bytes(kKey), "first");
    writer->setBytes(kKey, "second");
    EXPECT_EQ(reader->bytes(kKey), "second");
    reader->setBytes(kKey, "mine");
    EXPECT_EQ(writer->bytes(kKey), "second");
    EXPECT_EQ(reader->bytes(kKey), "mine");
}

} // namespace velarc
