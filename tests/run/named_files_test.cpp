#include "run/named_files.h"
#include "support/app_world.h"
#include "support/wait_until.h"

#include <QTemporaryDir>

namespace velarc {
namespace {

class NamedFiles : public AppWorld
{
protected:
    NamedFiles()
    {
        EXPECT_TRUE(QDir(folder.path()).mkdir(u"sub"_s));
        first = made(u"first.pdf"_s);
        second = made(u"second file.png"_s);
        launch();
    }

    QString made(const QString &name)
    {
        QFile file(folder.filePath(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        return file.fileName();
    }

    // One hop to the file system and one to the files.
    void change(const QString &text)
    {
        viewModel->setQuickInput(text);
        for (int hop = 0; hop < 2; ++hop) {
            turnEventLoop();
            ASSERT_TRUE(waitUntil([this] { return scope->running() == 0; }));
        }
    }

    [[nodiscard]] bool wasTaken() const { return viewModel->quickInput().isEmpty(); }

    QTemporaryDir folder;
    QString first;
    QString second;
};

} // namespace

TEST_F(NamedFiles, pastedPathInAnEmptyEditorIsADrop)
{
    change(first);
    EXPECT_TRUE(wasTaken());
    ASSERT_EQ(files->drops.size(), 1);
    EXPECT_EQ(files->drops.first(), QList<QUrl>{QUrl::fromLocalFile(first)});
}

TEST_F(NamedFiles, eightTypedCharactersBehindOtherTextAreNoFileThoughTheyMakeAPath)
{
    const QString path = folder.filePath(u"12345678"_s);
    const QString before = path.chopped(8);
    made(u"12345678"_s);
    EXPECT_TRUE(filesNamedBy(before, path).isEmpty());
    EXPECT_FALSE(filesNamedBy(before.chopped(1), path).isEmpty());
    EXPECT_FALSE(filesNamedBy(QString(), path).isEmpty());
    EXPECT_FALSE(filesNamedBy(u"  \n"_s, path).isEmpty());
}

TEST_F(NamedFiles, twoPastedLinesOfWhichOneIsNoFileStayAsText)
{
    const QString text = first + u'\n' + folder.filePath(u"missing.pdf"_s);
    change(text);
    EXPECT_EQ(viewModel->quickInput(), text);
    EXPECT_TRUE(files->drops.isEmpty());
}

TEST_F(NamedFiles, quotesAroundAPathWithSpacesAreRemoved)
{
    change(u'"' + second + u'"');
    ASSERT_EQ(files->drops.size(), 1);
    EXPECT_EQ(files->drops.first(), QList<QUrl>{QUrl::fromLocalFile(second)});
}

TEST_F(NamedFiles, pathOfAFolderStaysAsText)
{
    change(folder.filePath(u"sub"_s));
    EXPECT_FALSE(wasTaken());
    EXPECT_TRUE(files->drops.isEmpty());
}

TEST_F(NamedFiles, eachFileIsTakenOnceInTheOrderOfItsFirstLine)
{
    change(second + u"\r\n\n  "_s + first + u"\n"_s + folder.filePath(u"sub/../second file.png"_s));
    ASSERT_EQ(files->drops.size(), 1);
    EXPECT_EQ(files->drops.first(),
        (QList<QUrl>{QUrl::fromLocalFile(second), QUrl::fromLocalFile(first)}));
}

TEST_F(NamedFiles, textThatWasEditedWhileTheFileSystemWasAskedStays)
{
    viewModel->setQuickInput(first);
    turnEventLoop();
    const QString edited = first + u" and more"_s;
    viewModel->setQuickInput(edited);
    ASSERT_TRUE(waitUntil([this] { return scope->running() == 0; }));
    turnEventLoop();
    EXPECT_EQ(viewModel->quickInput(), edited);
    EXPECT_TRUE(files->drops.isEmpty());
}

TEST(FileNamedBy, takesPathsFromTheRootTheHomeFolderAndAddresses)
{
    EXPECT_EQ(fileNamedBy(u"/a//b/./c/../d"), QUrl::fromLocalFile(u"/a/b/d"_s));
    EXPECT_EQ(fileNamedBy(u"~/x y"), QUrl::fromLocalFile(QDir::homePath() + u"/x y"_s));
    EXPECT_EQ(fileNamedBy(u"file:///a%20b"), QUrl::fromLocalFile(u"/a b"_s));
    EXPECT_EQ(fileNamedBy(u"file://localhost/a"), QUrl::fromLocalFile(u"/a"_s));
    EXPECT_EQ(fileNamedBy(u"\"/a b\""), QUrl::fromLocalFile(u"/a b"_s));
}

TEST(FileNamedBy, declinesWhatNamesNoPlaceOnThisMachine)
{
    for (const QStringView line : {u"", u"\"", u"\"\"", u"notes.txt", u"~other/file",
             u"https://a/b", u"file://server/share", u"file://", u"file://%zz/a", u"say /tmp"}) {
        EXPECT_EQ(fileNamedBy(line), QUrl()) << line.toString().toStdString();
    }
    EXPECT_EQ(fileNamedBy(u'/' + QString(5000, u'a')), QUrl());
}

TEST(FilesNamedBy, unchangedTextAndOrdinaryTextNameNothing)
{
    EXPECT_TRUE(filesNamedBy(u"/etc/hostname"_s, u" /etc/hostname "_s).isEmpty());
    EXPECT_TRUE(filesNamedBy({}, u"for the record"_s).isEmpty());
    EXPECT_TRUE(filesNamedBy({}, u" \n "_s).isEmpty());
    EXPECT_TRUE(filesNamedBy({}, u"/ is the root\n/etc is below"_s).size() == 2);
    EXPECT_FALSE(areFiles(filesNamedBy({}, u"/ is the root\n/etc is below"_s)));
}

} // namespace velarc
