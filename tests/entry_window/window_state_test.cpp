#include "entry/window_state.h"
#include "support/environment.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace velarc {

using namespace Qt::StringLiterals;

namespace {

class WindowStateTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    QString path = folder.filePath(u"velarc/window.json"_s);

    void write(const QByteArray &content)
    {
        QDir().mkpath(folder.filePath(u"velarc"_s));
        QFile file(path);
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(content);
    }
};

TEST_F(WindowStateTest, whatWasSavedComesBack)
{
    const WindowState state{QSize(900, 640), true};
    saveWindowState(state, path);
    EXPECT_EQ(loadWindowState(path), state);
}

TEST_F(WindowStateTest, aWindowThatNeverClosedRemembersNothing)
{
    EXPECT_EQ(loadWindowState(path), WindowState());
}

TEST_F(WindowStateTest, aFileThatCannotBeReadRemembersNothing)
{
    for (const QByteArray &content : {QByteArray(), QByteArray("nonsense"), QByteArray("[]"),
             QByteArray("{\"width\":\"900\",\"height\":640}"), QByteArray(100'000, '[')}) {
        write(content);
        EXPECT_EQ(loadWindowState(path), WindowState()) << content.left(40).toStdString();
    }
    QFile::remove(path);
    QDir().mkpath(path);
    EXPECT_EQ(loadWindowState(path), WindowState()) << "a folder";
}

TEST_F(WindowStateTest, aSizeThatNoScreenHasIsNone)
{
    for (const QByteArray &size :
        {QByteArray("{\"width\":0,\"height\":640}"), QByteArray("{\"width\":900,\"height\":-1}"),
            QByteArray("{\"width\":900}"), QByteArray("{\"width\":32768,\"height\":640}")}) {
        write(size);
        EXPECT_EQ(loadWindowState(path).size, std::nullopt) << size.toStdString();
    }
}

TEST_F(WindowStateTest, aFolderThatCannotBeWrittenStopsNothing)
{
    saveWindowState({QSize(900, 640), false}, u"/proc/nowhere/window.json"_s);
    EXPECT_EQ(loadWindowState(u"/proc/nowhere/window.json"_s), WindowState());
}

TEST_F(WindowStateTest, itLiesAmongTheUsersStateBesideTheProgramsData)
{
    {
        const ScopedVariable state("XDG_STATE_HOME", "/tmp/state");
        EXPECT_EQ(windowStatePath(), u"/tmp/state/velarc/window.json"_s);
    }
    for (const std::optional<std::string> &useless : {std::optional<std::string>("relative"), {}}) {
        const ScopedVariable state("XDG_STATE_HOME", useless);
        EXPECT_EQ(windowStatePath(), QDir::homePath() + u"/.local/state/velarc/window.json"_s);
    }
}

} // namespace

} // namespace velarc
