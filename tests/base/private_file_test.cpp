#include "base/private_file.h"
#include "support/environment.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
}

class PrivateFileTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"file"_s);
};

TEST_F(PrivateFileTest, holdsTheBytesAndIsItsUsersAlone)
{
    const QByteArray bytes(300'000, 'x');
    ASSERT_TRUE(writeNewPrivateFile(path, bytes));
    EXPECT_EQ(bytesOf(path), bytes);
    EXPECT_EQ(QFileInfo(path).permissions(),
        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadUser
            | QFileDevice::WriteUser);
}

TEST_F(PrivateFileTest, fileThatStandsIsLeftAlone)
{
    ASSERT_TRUE(writeNewPrivateFile(path, "first"));
    EXPECT_FALSE(writeNewPrivateFile(path, "second"));
    EXPECT_EQ(bytesOf(path), "first");
}

TEST_F(PrivateFileTest, linkIsNeverFollowed)
{
    const QString target = folder.filePath(u"target"_s);
    ASSERT_TRUE(QFile::link(target, path));
    EXPECT_FALSE(writeNewPrivateFile(path, "secret"));
    EXPECT_FALSE(QFileInfo::exists(target));
}

TEST_F(PrivateFileTest, folderThatIsNotThereIsAFailure)
{
    EXPECT_FALSE(writeNewPrivateFile(folder.filePath(u"none/file"_s), "x"));
}

TEST_F(PrivateFileTest, temporaryFileLiesInTheFolderThatTheEnvironmentNames)
{
    const ScopedVariable temporary("TMPDIR", folder.path().toStdString());
    EXPECT_EQ(temporaryFilePath(u"file"_s), path);
}

// A bare name would lie in the directory that the program was started in.
TEST_F(PrivateFileTest, withoutATemporaryFolderThereIsNoTemporaryFile)
{
    const ScopedVariable temporary("TMPDIR", folder.filePath(u"none"_s).toStdString());
    EXPECT_EQ(temporaryFilePath(u"file"_s), QString());
    EXPECT_FALSE(writeNewPrivateFile(temporaryFilePath(u"file"_s), "x"));
}

TEST_F(PrivateFileTest, replacingWritesTheWholeFileAndMakesItItsUsersAlone)
{
    ASSERT_TRUE(replacePrivateFile(path, "first"));
    QFile::setPermissions(
        path, QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadOther);
    ASSERT_TRUE(replacePrivateFile(path, "2nd"));
    EXPECT_EQ(bytesOf(path), "2nd");
    EXPECT_FALSE(QFileInfo(path).permission(QFileDevice::ReadOther));
}

TEST_F(PrivateFileTest, replacingFollowsALinkToAFile)
{
    const QString target = folder.filePath(u"target"_s);
    ASSERT_TRUE(writeNewPrivateFile(target, "first"));
    ASSERT_TRUE(QFile::link(target, path));
    ASSERT_TRUE(replacePrivateFile(path, "second"));
    EXPECT_EQ(bytesOf(target), "second");
    EXPECT_TRUE(QFileInfo(path).isSymLink());
}

TEST_F(PrivateFileTest, aReplacementThatFailsLeavesNothingBehind)
{
    EXPECT_FALSE(replacePrivateFile(folder.path(), "x"));
    EXPECT_FALSE(replacePrivateFile(folder.filePath(u"none/file"_s), "x"));
    EXPECT_TRUE(QDir(folder.path()).isEmpty());
}

} // namespace
} // namespace velarc
