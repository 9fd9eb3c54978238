#include "fakes/recorded_sharing.h"
#include "support/app_world.h"
#include "support/wait_until.h"
#include "ui/saved_file.h"
#include "ui/share_presenter.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace velarc {

namespace {

class SharePresenterTest : public AppWorld
{
protected:
    QTemporaryDir folder;
    std::shared_ptr<RecordedSharing> desktop = std::make_shared<RecordedSharing>();
    std::shared_ptr<RecordedDialog> dialog = std::make_shared<RecordedDialog>();
    std::unique_ptr<SharePresenter> presenter;

    SharePresenterTest()
    {
        launch();
        restart(nullptr);
    }

    void restart(std::shared_ptr<FileChoosing> dialogs)
    {
        presenter = std::make_unique<SharePresenter>(*viewModel, std::move(dialogs), desktop);
    }

    ~SharePresenterTest() override
    {
        presenter.reset();
        scope->finish();
    }

    void show(const ResultPayload &payload)
    {
        viewModel->setEngineState(EngineResult{payload, u"OpenAI"_s});
        settle();
    }

    // What was begun is done, or waits at the gate.
    void settle()
    {
        EXPECT_TRUE(
            waitUntil([this] { return scope->running() == 0 || desktop->gate.waiting() > 0; }));
    }

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }
    [[nodiscard]] static QByteArray contentOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("no file");
    }

    void writeFile(const QString &name, const QByteArray &bytes) const
    {
        QFile file(path(name));
        ASSERT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
    }

    [[nodiscard]] PdfPayload pdf() const
    {
        writeFile(u"made.pdf"_s, "%PDF-made");
        return {QUrl::fromLocalFile(path(u"made.pdf"_s)), u"made"_s};
    }

    void saveTo(const QString &typed)
    {
        presenter->saveAs();
        presenter->setSavePath(typed);
        presenter->save();
        settle();
    }
};

TEST_F(SharePresenterTest, thereIsNothingToShareWithoutAResult)
{
    EXPECT_FALSE(presenter->isOffered());
    viewModel->setEngineState(EngineError{u"It failed."_s, std::nullopt});
    settle();
    EXPECT_FALSE(presenter->isOffered());
    EXPECT_FALSE(presenter->canOpen());
    EXPECT_FALSE(presenter->canMail());
}

TEST_F(SharePresenterTest, aTextIsSharedAsTextAndNoFileIsMadeForIt)
{
    show(TextPayload{u"hello"_s});
    EXPECT_TRUE(presenter->isOffered());
    EXPECT_FALSE(presenter->canShowInFolder());
    presenter->mail();
    settle();
    ASSERT_EQ(desktop->mails.size(), 1);
    EXPECT_EQ(desktop->mails.first().text, u"hello"_s);
    EXPECT_FALSE(desktop->mails.first().file);
}

TEST_F(SharePresenterTest, aPictureIsSharedAsAFile)
{
    show(ImagePayload{"png bytes"});
    EXPECT_TRUE(presenter->isOffered());
    EXPECT_TRUE(presenter->canShowInFolder());
    presenter->openWith();
    settle();
    ASSERT_EQ(desktop->opened.size(), 1);
    EXPECT_EQ(desktop->opened.first().second, OpenChoice::Asked);
    EXPECT_EQ(contentOf(desktop->opened.first().first.toLocalFile()), "png bytes");
}

TEST_F(SharePresenterTest, shareIsLeftOutWhereNoFileCanBeMade)
{
    const QByteArray before = qgetenv("TMPDIR");
    qputenv("TMPDIR", path(u"not there"_s).toUtf8());
    show(ImagePayload{"png bytes"});
    EXPECT_FALSE(presenter->isOffered());
    before.isNull() ? qunsetenv("TMPDIR") : qputenv("TMPDIR", before);
}

TEST_F(SharePresenterTest, aTextIsOpenedElsewhereAsAFileOfItsOwn)
{
    show(TextPayload{u"h\u00e9llo"_s});
    presenter->openWith();
    settle();
    ASSERT_EQ(desktop->opened.size(), 1);
    EXPECT_EQ(contentOf(desktop->opened.first().first.toLocalFile()), "h\xc3\xa9llo");
}

TEST_F(SharePresenterTest, aPdfIsSharedAsTheFileThatItIs)
{
    const PdfPayload made = pdf();
    show(made);
    presenter->open();
    presenter->showInFolder();
    presenter->mail();
    settle();
    ASSERT_EQ(desktop->opened.size(), 1);
    EXPECT_EQ(desktop->opened.first(), std::pair(made.url, OpenChoice::Usual));
    EXPECT_EQ(desktop->shown, QList<QUrl>{made.url});
    ASSERT_EQ(desktop->mails.size(), 1);
    EXPECT_EQ(desktop->mails.first().file, made.url);
}

TEST_F(SharePresenterTest, whatTheDesktopDoesNotHaveIsNotOffered)
{
    desktop->offered = {};
    show(pdf());
    EXPECT_TRUE(presenter->isOffered()); // to copy and to save
    EXPECT_FALSE(presenter->canOpen());
    EXPECT_FALSE(presenter->canShowInFolder());
    EXPECT_FALSE(presenter->canMail());
}

TEST_F(SharePresenterTest, aFailureIsToldAndACancelledChoiceIsNot)
{
    show(pdf());
    desktop->outcome = ShareOutcome::Failed;
    presenter->openWith();
    settle();
    EXPECT_EQ(presenter->notice(), u"Could not open the result in another program."_s);
    desktop->outcome = ShareOutcome::Cancelled;
    presenter->openWith();
    settle();
    EXPECT_EQ(presenter->notice(), QString());
}

TEST_F(SharePresenterTest, aFailureThatBringsItsSentenceIsToldInIt)
{
    show(TextPayload{u"hello"_s});
    desktop->sentence = u"Text is too long to hand to the mail program."_s;
    presenter->mail();
    settle();
    EXPECT_EQ(presenter->notice(), *desktop->sentence);
}

TEST_F(SharePresenterTest, anotherResultEndsWhatWasBegunForTheLast)
{
    show(pdf());
    desktop->outcome = ShareOutcome::Failed;
    desktop->gate.close();
    presenter->mail();
    settle();
    show(TextPayload{u"hello"_s});
    desktop->gate.open();
    settle();
    EXPECT_EQ(presenter->notice(), QString());
    EXPECT_TRUE(presenter->isOffered());
}

TEST_F(SharePresenterTest, thePresenterMayGoWhileTheDesktopStillAsks)
{
    show(pdf());
    desktop->gate.close();
    presenter->openWith();
    settle();
    presenter.reset();
    desktop->gate.open();
    EXPECT_TRUE(waitUntil([this] { return scope->running() == 0; }));
}

TEST_F(SharePresenterTest, theDesktopsDialogDecidesWhereAResultIsSaved)
{
    dialog->choice = {FileChoice::Outcome::Chosen, path(u"kept.txt"_s)};
    restart(dialog);
    writeFile(u"kept.txt"_s, "what was there"); // which the dialog has asked about
    show(TextPayload{u"hello"_s});
    presenter->saveAs();
    settle();
    EXPECT_EQ(dialog->names, QStringList{u"Velarc Result.txt"_s});
    EXPECT_EQ(contentOf(path(u"kept.txt"_s)), "hello");
    EXPECT_EQ(presenter->notice(), u"Saved kept.txt in "_s + folder.path() + u'.');
    EXPECT_FALSE(presenter->isSaveSheetPresented());
}

TEST_F(SharePresenterTest, aCancelledDialogSavesNothing)
{
    dialog->choice.outcome = FileChoice::Outcome::Dismissed;
    restart(dialog);
    show(TextPayload{u"hello"_s});
    presenter->saveAs();
    settle();
    EXPECT_FALSE(presenter->isSaveSheetPresented());
    EXPECT_EQ(presenter->notice(), QString());
}

TEST_F(SharePresenterTest, aDialogThatDoesNotComeUpGivesWayToTheSheet)
{
    dialog->choice.outcome = FileChoice::Outcome::NoDialog;
    restart(dialog);
    show(ImagePayload{"png bytes"});
    presenter->saveAs();
    settle();
    EXPECT_TRUE(presenter->isSaveSheetPresented());
    EXPECT_TRUE(presenter->savePath().endsWith(u"/Velarc Image.png"_s));
}

TEST_F(SharePresenterTest, theSheetSavesWhatIsShown)
{
    show(TextPayload{u"hello"_s});
    saveTo(path(u"text.txt"_s));
    EXPECT_EQ(contentOf(path(u"text.txt"_s)), "hello");
    EXPECT_FALSE(presenter->isSaveSheetPresented());
    show(ImagePayload{"png bytes"});
    saveTo(path(u"picture.png"_s));
    EXPECT_EQ(contentOf(path(u"picture.png"_s)), "png bytes");
    show(pdf());
    saveTo(path(u"copy.pdf"_s));
    EXPECT_EQ(contentOf(path(u"copy.pdf"_s)), "%PDF-made");
}

TEST_F(SharePresenterTest, aFileIsReplacedOnlyAfterTheUserWasAsked)
{
    writeFile(u"there.txt"_s, "mine");
    show(TextPayload{u"hello"_s});
    saveTo(path(u"there.txt"_s));
    EXPECT_EQ(contentOf(path(u"there.txt"_s)), "mine");
    EXPECT_TRUE(presenter->isSaveSheetPresented());
    EXPECT_TRUE(presenter->replacesFile());
    EXPECT_EQ(presenter->saveProblem(), u"There is a file of that name already. Replace it?"_s);
    presenter->setSavePath(path(u"other.txt"_s)); // another name is another question
    EXPECT_FALSE(presenter->replacesFile());
    saveTo(path(u"there.txt"_s));
    presenter->save();
    settle();
    EXPECT_EQ(contentOf(path(u"there.txt"_s)), "hello");
}

TEST_F(SharePresenterTest, aPathThatCannotBeSavedToSaysWhyAndLosesNothing)
{
    show(TextPayload{u"hello"_s});
    saveTo(u"  "_s);
    EXPECT_EQ(presenter->saveProblem(), u"Give the file a name."_s);
    saveTo(folder.path());
    EXPECT_EQ(presenter->saveProblem(), u"That is a folder. Add a file name."_s);
    saveTo(path(u"no/such/folder.txt"_s));
    EXPECT_TRUE(presenter->saveProblem().startsWith(u"Could not save the result: "_s));
    EXPECT_TRUE(presenter->isSaveSheetPresented());
    EXPECT_EQ(presenter->savePath(), path(u"no/such/folder.txt"_s));
}

TEST(SavedFile, aTypedPathBeginsAtHomeUnlessItBeginsAtTheRoot)
{
    EXPECT_EQ(absolutePath(u" /tmp/a.txt "_s), u"/tmp/a.txt"_s);
    EXPECT_EQ(absolutePath(u"~/a.txt"_s), QDir::homePath() + u"/a.txt"_s);
    EXPECT_EQ(absolutePath(u"a.txt"_s), QDir::homePath() + u"/a.txt"_s);
    EXPECT_EQ(absolutePath(u"~b/a.txt"_s), QDir::homePath() + u"/~b/a.txt"_s);
}

} // namespace

} // namespace velarc
