#include "actions/action_json.h"
#include "actions/catalogue.h"
#include "run/action_files.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

class ActionFilesTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }

    [[nodiscard]] QString write(const QByteArray &bytes, const QString &name = u"a.json"_s) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    [[nodiscard]] static QByteArray bytesOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    [[nodiscard]] static QString refusalOf(const QString &path)
    {
        try {
            static_cast<void>(loadActionFile(path, {}));
        } catch (const ActionImportError &error) {
            return error.message();
        }
        return u"read"_s;
    }
};

TEST_F(ActionFilesTest, whatIsExportedIsImportedAsItWas)
{
    const QList<AIAction> actions = builtInActions();
    EXPECT_TRUE(saveActionFile(path(u"a.json"_s), actions, IfPresent::Refuse));
    const ActionFile file = loadActionFile(path(u"a.json"_s), {});
    EXPECT_EQ(file.actions, actions);
    EXPECT_TRUE(file.unreadable.isEmpty());
    EXPECT_EQ(bytesOf(path(u"a.json"_s)), writeActions(actions));
}

TEST_F(ActionFilesTest, onlyItsOwnerReadsAnExport)
{
    const QString name = write("old");
    QFile::setPermissions(name,
        QFileDevice::ReadOwner | QFileDevice::WriteOwner | QFileDevice::ReadGroup
            | QFileDevice::ReadOther);
    EXPECT_TRUE(saveActionFile(name, builtInActions(), IfPresent::Replace));
    struct stat status
    {
    };
    ASSERT_EQ(::stat(QFile::encodeName(name).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777U, 0600U);
}

TEST_F(ActionFilesTest, aFileThatStandsThereIsOnlyReplacedWhereItMayBe)
{
    const QString name = write("old");
    EXPECT_FALSE(saveActionFile(name, builtInActions(), IfPresent::Refuse));
    EXPECT_EQ(bytesOf(name), "old");
    EXPECT_TRUE(saveActionFile(name, {}, IfPresent::Replace));
    EXPECT_EQ(bytesOf(name), "[]");
}

TEST_F(ActionFilesTest, anExportThatFailsSaysSoAndLeavesWhatStoodThere)
{
    try {
        saveActionFile(path(u"missing/a.json"_s), builtInActions(), IfPresent::Refuse);
        FAIL();
    } catch (const ActionExportError &error) {
        EXPECT_EQ(error.message(),
            u"The file \u201ca.json\u201d could not be written. Nothing was exported."_s);
    }
    EXPECT_THROW(
        saveActionFile(folder.path(), builtInActions(), IfPresent::Replace), ActionExportError);
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files).size(), 0);
}

TEST_F(ActionFilesTest, anExportIntoAPipeIsRefusedWithoutWaiting)
{
    const QString name = path(u"pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(name).constData(), 0600), 0);
    EXPECT_THROW(saveActionFile(name, builtInActions(), IfPresent::Replace), ActionExportError);
}

TEST_F(ActionFilesTest, aMissingFileIsNamed)
{
    EXPECT_EQ(refusalOf(path(u"b.json"_s)),
        u"There is no file \u201cb.json\u201d. Nothing was imported."_s);
}

TEST_F(ActionFilesTest, aFolderIsNoFile)
{
    EXPECT_TRUE(refusalOf(folder.path()).endsWith(u"is a folder. Nothing was imported."_s));
}

TEST_F(ActionFilesTest, aPipeAndADeviceAreRefusedWithoutReading)
{
    const QString name = path(u"pipe"_s);
    ASSERT_EQ(::mkfifo(QFile::encodeName(name).constData(), 0600), 0);
    EXPECT_EQ(refusalOf(name), u"\u201cpipe\u201d is no regular file. Nothing was imported."_s);
    ASSERT_TRUE(QFile::link(u"/dev/zero"_s, path(u"zero"_s)));
    EXPECT_EQ(refusalOf(path(u"zero"_s)),
        u"\u201czero\u201d is no regular file. Nothing was imported."_s);
}

TEST_F(ActionFilesTest, aFileOfAHundredMegabytesIsRefusedByItsSize)
{
    QFile file(path(u"large"_s));
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    ASSERT_TRUE(file.resize(100 * 1024 * 1024));
    EXPECT_EQ(refusalOf(file.fileName()),
        u"The file is too large to import: 64 MB at most can be read. Nothing was imported."_s);
}

TEST_F(ActionFilesTest, whatIsNoJsonIsRefused)
{
    EXPECT_EQ(
        refusalOf(write("not json")), u"The file is not valid JSON, so nothing was imported."_s);
    EXPECT_EQ(refusalOf(write("")), u"The file is empty, so nothing was imported."_s);
    EXPECT_EQ(
        refusalOf(write("\"text\"")), u"The file holds no actions, so nothing was imported."_s);
}

TEST_F(ActionFilesTest, entriesOfWrongTypesAreNamedBesideTheGoodOnes)
{
    const ActionFile file =
        loadActionFile(write(R"([{"name":"Good"},{"name":"Bad","sortOrder":true},7])"), {});
    ASSERT_EQ(file.actions.size(), 1);
    EXPECT_EQ(file.actions.first().name, u"Good"_s);
    EXPECT_EQ(file.unreadable, (QList<UnreadableAction>{{2, u"Bad"_s}, {3, QString()}}));
}

TEST_F(ActionFilesTest, fiftyThousandActionsAreRefused)
{
    QByteArray bytes = "[{}";
    bytes += QByteArray(",{}").repeated(49'999);
    EXPECT_EQ(refusalOf(write(bytes + ']')),
        u"The file holds 50000 actions, and 10000 at most can be imported at once. Nothing was "
        u"imported."_s);
}

TEST_F(ActionFilesTest, aStoppedReadingEndsWithoutAnAnswer)
{
    std::stop_source stop;
    stop.request_stop();
    EXPECT_THROW(
        static_cast<void>(loadActionFile(write("[{}]"), stop.get_token())), CancellationError);
}

} // namespace

} // namespace velarc
