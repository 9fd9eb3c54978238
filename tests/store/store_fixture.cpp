#include "store_fixture.h"

#include "base/uuid.h"

#include <QDir>
#include <QDirIterator>
#include <QFile>

#include <linux/capability.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <unistd.h>

namespace velarc {

namespace {

constexpr unsigned kIgnoreModes = (1U << CAP_DAC_OVERRIDE) | (1U << CAP_DAC_READ_SEARCH);

// Only the rights in use change, so that they can be taken up again.
template <typename Change> void changeRights(Change change)
{
    __user_cap_header_struct header{_LINUX_CAPABILITY_VERSION_3, 0};
    __user_cap_data_struct rights[_LINUX_CAPABILITY_U32S_3]{};
    ASSERT_EQ(syscall(SYS_capget, &header, rights), 0);
    change(rights[0]);
    ASSERT_EQ(syscall(SYS_capset, &header, rights), 0);
}

} // namespace

StoreFolder::StoreFolder() = default;
StoreFolder::~StoreFolder() = default;

std::unique_ptr<SqliteDefaultsDomain> StoreFolder::openDomain(
    std::chrono::milliseconds patience) const
{
    return std::make_unique<SqliteDefaultsDomain>(QStringList{suite, standard}, clock, patience);
}

QStringList StoreFolder::namesAside() const
{
    QStringList names = allNamesAside();
    names.removeIf([](const QString &name) {
        return name.endsWith(QStringLiteral("-wal")) || name.endsWith(QStringLiteral("-shm"));
    });
    return names;
}

QStringList StoreFolder::allNamesAside() const
{
    QStringList names;
    QDirIterator files(m_folder.path(), {QStringLiteral("*.corrupt-*")}, QDir::AllEntries,
        QDirIterator::Subdirectories);
    while (files.hasNext()) {
        files.next();
        names.append(files.fileName());
    }
    names.sort();
    return names;
}

WithoutSuperuserRights::WithoutSuperuserRights()
{
    changeRights([](__user_cap_data_struct &rights) { rights.effective &= ~kIgnoreModes; });
}

WithoutSuperuserRights::~WithoutSuperuserRights()
{
    changeRights([](__user_cap_data_struct &rights) {
        rights.effective |= rights.permitted & kIgnoreModes;
    });
}

QByteArray contentOf(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

void fill(const QString &path, const QByteArray &content)
{
    ASSERT_TRUE(QDir().mkpath(QFileInfo(path).path()));
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly | QIODevice::Truncate)) << path.toStdString();
    ASSERT_EQ(file.write(content), content.size());
}

void overwrite(const QString &path, qint64 from, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::ReadWrite)) << path.toStdString();
    ASSERT_TRUE(file.seek(from));
    ASSERT_EQ(file.write(bytes), bytes.size());
}

unsigned modeOf(const QString &path)
{
    struct stat found = {};
    return stat(QFile::encodeName(path).constData(), &found) == 0 ? found.st_mode & 07777 : 0;
}

void setMode(const QString &path, unsigned mode)
{
    ASSERT_EQ(chmod(QFile::encodeName(path).constData(), mode), 0) << path.toStdString();
}

void runSql(const QString &path, const QByteArray &sql)
{
    sqlite3 *connection = nullptr;
    ASSERT_EQ(sqlite3_open(QFile::encodeName(path).constData(), &connection), SQLITE_OK);
    EXPECT_EQ(sqlite3_exec(connection, sql.constData(), nullptr, nullptr, nullptr), SQLITE_OK)
        << sqlite3_errmsg(connection);
    sqlite3_close(connection);
}

QByteArray garbage(qsizetype length)
{
    QByteArray bytes(length, Qt::Uninitialized);
    unsigned state = 12345;
    for (char &byte : bytes) {
        state = state * 1103515245U + 12345U;
        byte = static_cast<char>(state >> 16);
    }
    return bytes;
}

QList<AIAction> numberedActions(int count)
{
    QList<AIAction> actions;
    for (int number = 1; number <= count; ++number) {
        AIAction action;
        action.id = newUuid();
        action.name = QStringLiteral("Action %1").arg(number);
        action.sortOrder = number * 10;
        actions.append(action);
    }
    return actions;
}

} // namespace velarc
