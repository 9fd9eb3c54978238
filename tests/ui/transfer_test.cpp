#include "ui_world.h"

#include "actions/action_json.h"
#include "base/uuid.h"
#include "support/cpu_time.h"
#include "support/wait_until.h"

#include <QDir>
#include <QDragEnterEvent>
#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QTemporaryDir>

#include <sys/stat.h>

namespace velarc {

namespace {

using Stage = TransferPresenter::Stage;

// The sanitizers make everything slower.
#ifdef __SANITIZE_ADDRESS__
constexpr std::chrono::milliseconds kGapLimit = 1s;
#else
constexpr std::chrono::milliseconds kGapLimit = 100ms;
#endif

// Turns the event loop until `holds()`, and tells how long the main thread worked at most without
// coming back to it.
template <typename Predicate> std::chrono::milliseconds longestGapUntil(Predicate holds)
{
    auto longest = std::chrono::nanoseconds(0);
    auto before = threadCpuTime();
    QTimer tick;
    QObject::connect(&tick, &QTimer::timeout, [&] {
        const auto now = threadCpuTime();
        longest = std::max(longest, now - before);
        before = now;
    });
    tick.start(0);
    EXPECT_TRUE(waitUntil(holds, std::chrono::seconds(60)));
    return std::chrono::duration_cast<std::chrono::milliseconds>(longest);
}

class TransferTest : public UiWorld
{
protected:
    QTemporaryDir folder;

    TransferTest()
    {
        fileChooser = std::make_shared<ScriptedFileChooser>();
        fileChooser->choice = {FileChoice::Outcome::Dismissed, {}};
    }

    TransferPresenter &transfer() { return *screens->transfer(); }

    void open()
    {
        openWindow();
        viewModel->setIsActionLibraryPresented(true);
        settle();
    }

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }

    [[nodiscard]] QString write(const QByteArray &bytes, const QString &name = u"in.json"_s) const
    {
        QFile file(path(name));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        EXPECT_EQ(file.write(bytes), bytes.size());
        return file.fileName();
    }

    [[nodiscard]] static QByteArray bytesOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray();
    }

    void choose(const QString &path) { fileChooser->choice = {FileChoice::Outcome::Chosen, path}; }

    void waitForEnd()
    {
        EXPECT_TRUE(waitUntil([this] {
            return transfer().stage() == Stage::Idle || transfer().stage() == Stage::Previewing;
        }));
        settle();
    }

    void readFile(const QString &path)
    {
        choose(path);
        click(u"Import"_s);
        waitForEnd();
    }

    [[nodiscard]] QStringList preview()
    {
        QStringList lines;
        auto *rows = static_cast<RowsOf<ImportRow> *>(transfer().previewRows());
        for (const ImportRow &row : rows->rows()) {
            lines.append(row.section + u": "_s + row.name);
        }
        return lines;
    }

    static AIAction action(const QString &name)
    {
        AIAction made;
        made.id = newUuid();
        made.name = name;
        made.icon = u"bolt.fill"_s;
        made.colorHex = u"2563EB"_s;
        made.systemPrompt = u"{User_Input}"_s;
        return made;
    }
};

TEST_F(TransferTest, exportsAllActionsInTheirStoredForm)
{
    open();
    choose(path(u"out.json"_s));
    click(u"Export"_s);
    click(u"All Actions\u2026"_s);
    waitForEnd();
    EXPECT_EQ(bytesOf(path(u"out.json"_s)), writeActions(viewModel->actions()));
    ASSERT_EQ(fileChooser->wishes.size(), 1);
    EXPECT_EQ(fileChooser->wishes.first().purpose, FileWish::Purpose::Save);
    EXPECT_EQ(fileChooser->wishes.first().suggestedName, u"velarc-actions.json"_s);
    EXPECT_TRUE(shows(u"Exported 22 actions to \u201cout.json\u201d."_s));
    click(u"Dismiss"_s);
    EXPECT_EQ(transfer().message(), QString());
}

TEST_F(TransferTest, exportsTheOneActionThatIsPressed)
{
    open();
    choose(path(u"one.json"_s));
    click(u"Export"_s);
    click(u"One Action\u2026"_s);
    EXPECT_TRUE(shows(u"Choose the action to export."_s));
    press(Qt::Key_Backtab);
    screens->library()->setQuery(u"git"_s);
    settle();
    QQuickItem *sheet = itemCalled(u"Manage Actions"_s)->parentItem()->parentItem();
    click(u"Git Ideas"_s, sheet->parentItem());
    waitForEnd();
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
    EXPECT_EQ(bytesOf(path(u"one.json"_s)), writeActions({actionNamed(u"Git Ideas"_s)}));
    EXPECT_EQ(fileChooser->wishes.first().suggestedName, u"Git-Ideas.json"_s);
    EXPECT_TRUE(shows(u"Exported 1 action to \u201cone.json\u201d."_s));
}

TEST_F(TransferTest, escapeLeavesTheChoiceOfAnActionBeforeTheSheet)
{
    open();
    transfer().chooseActionToExport();
    settle();
    press(Qt::Key_Escape);
    EXPECT_EQ(transfer().stage(), Stage::Idle);
    EXPECT_TRUE(viewModel->isActionLibraryPresented());
    press(Qt::Key_Escape);
    EXPECT_FALSE(viewModel->isActionLibraryPresented());
}

TEST_F(TransferTest, aDismissedDialogChangesNothing)
{
    open();
    click(u"Import"_s);
    waitForEnd();
    EXPECT_EQ(transfer().stage(), Stage::Idle);
    EXPECT_EQ(transfer().message(), QString());
}

TEST_F(TransferTest, nothingChangesBeforeAnImportIsConfirmed)
{
    open();
    const auto before = viewModel->actions();
    AIAction changed = before.at(0);
    changed.name = u"Changed"_s;
    const AIAction fresh = action(u"Fresh"_s);
    readFile(write(writeActions({fresh, changed, before.at(1)}).chopped(1) + ",7]"));
    ASSERT_EQ(transfer().stage(), Stage::Previewing);
    EXPECT_EQ(viewModel->actions(), before);
    EXPECT_TRUE(shows(u"Import \u201cin.json\u201d?"_s));
    EXPECT_TRUE(shows(u"1 new, 1 replaced, 1 unchanged, 1 unreadable"_s));
    EXPECT_EQ(preview(),
        (QStringList{u"Cannot Be Read: Entry 4 of the file"_s, u"Replaces: Changed"_s,
            u"New: Fresh"_s, u"Unchanged: "_s + before.at(1).name}));
    click(u"Cancel"_s);
    EXPECT_EQ(viewModel->actions(), before);
    EXPECT_EQ(transfer().stage(), Stage::Idle);
}

TEST_F(TransferTest, aConfirmedImportReplacesAndAdds)
{
    open();
    AIAction changed = viewModel->actions().at(0);
    changed.name = u"Changed"_s;
    const AIAction fresh = action(u"Fresh"_s);
    readFile(write(writeActions({fresh, changed})));
    press(Qt::Key_Return); // the command has the focus
    EXPECT_EQ(viewModel->actions().at(0), changed);
    EXPECT_EQ(viewModel->actions().constLast(), fresh);
    EXPECT_EQ(store->loadActions(), viewModel->actions());
    EXPECT_TRUE(shows(u"Imported \u201cin.json\u201d: 1 new, 1 replaced."_s));
    EXPECT_TRUE(shows(u"Search actions"_s));
}

TEST_F(TransferTest, aDetailNamesTheActionThatIsReplaced)
{
    open();
    AIAction renamed = viewModel->actions().at(0);
    const QString before = renamed.name;
    renamed.name = u"Changed"_s;
    readFile(write(writeActions({renamed})));
    auto *rows = static_cast<RowsOf<ImportRow> *>(transfer().previewRows());
    EXPECT_EQ(rows->rows().constFirst().details, u"Replaces \u201c"_s + before + u'\u201d');
}

TEST_F(TransferTest, aFileWithNothingNewCannotBeImported)
{
    open();
    readFile(write(writeActions({viewModel->actions().at(0)})));
    EXPECT_TRUE(shows(u"1 unchanged"_s));
    EXPECT_FALSE(transfer().canImport());
    EXPECT_FALSE(itemCalled(u"Import"_s)->isEnabled());
    transfer().confirmImport();
    EXPECT_EQ(transfer().stage(), Stage::Previewing);
}

TEST_F(TransferTest, thePreviewFollowsTheLibraryWhileItStands)
{
    open();
    const AIAction first = viewModel->actions().at(0);
    readFile(write(writeActions({first})));
    EXPECT_EQ(transfer().previewSummary(), u"1 unchanged"_s);
    viewModel->library().deleteAction(first);
    settle();
    EXPECT_EQ(transfer().previewSummary(), u"1 new"_s);
    transfer().confirmImport();
    EXPECT_EQ(viewModel->actions().constLast().id, first.id);
}

TEST_F(TransferTest, duplicateIdsOfAFileBecomeActionsOfTheirOwn)
{
    open();
    const qsizetype before = viewModel->actions().size();
    const AIAction fresh = action(u"Twin"_s);
    readFile(write(writeActions({fresh, fresh})));
    EXPECT_EQ(transfer().previewSummary(), u"2 new"_s);
    transfer().confirmImport();
    ASSERT_EQ(viewModel->actions().size(), before + 2);
    EXPECT_NE(viewModel->actions().at(before).id, viewModel->actions().at(before + 1).id);
}

TEST_F(TransferTest, closingTheLibraryEndsAnImport)
{
    open();
    readFile(write(writeActions({action(u"Fresh"_s)})));
    viewModel->setIsActionLibraryPresented(false);
    EXPECT_EQ(transfer().stage(), Stage::Idle);
    transfer().confirmImport();
    EXPECT_FALSE(hasActionNamed(u"Fresh"_s));
}

TEST_F(TransferTest, aFileIsImportedByADropOnTheLibrary)
{
    open();
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile(write(writeActions({action(u"Dropped"_s)})))});
    const QPointF at(window->width() / 2.0, window->height() / 2.0);
    QDragEnterEvent enter(at.toPoint(), Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &enter);
    settle();
    EXPECT_TRUE(shows(u"Drop to import actions"_s));
    QDropEvent drop(at, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(window.get(), &drop);
    waitForEnd();
    ASSERT_EQ(transfer().stage(), Stage::Previewing);
    EXPECT_EQ(preview(), QStringList{u"New: Dropped"_s});
}

TEST_F(TransferTest, severalFilesAreNotDroppedAtOnce)
{
    open();
    const QUrl url = QUrl::fromLocalFile(write("[{}]"));
    transfer().importDropped({url, url});
    settle();
    EXPECT_TRUE(shows(u"Drop one file at a time to import it. Nothing was imported."_s));
    transfer().importDropped({QUrl(u"https://example.org/a.json"_s)});
    settle();
    EXPECT_TRUE(shows(u"Only files on this computer can be imported. Nothing was imported."_s));
}

TEST_F(TransferTest, whereTheDesktopHasNoDialogThePathIsAskedForInTheSheet)
{
    fileChooser->choice = {FileChoice::Outcome::NoDialog, {}};
    open();
    click(u"Export"_s);
    click(u"All Actions\u2026"_s);
    EXPECT_EQ(transfer().stage(), Stage::AskingPath);
    EXPECT_EQ(itemCalled(u"Path of the file"_s)->property("text").toString(),
        QDir::home().absoluteFilePath(u"velarc-actions.json"_s));
    press(Qt::Key_A, Qt::ControlModifier);
    type(path(u"typed.json"_s));
    press(Qt::Key_Return);
    waitForEnd();
    EXPECT_EQ(bytesOf(path(u"typed.json"_s)), writeActions(viewModel->actions()));
}

TEST_F(TransferTest, aFileThatStandsAtATypedPathIsOnlyReplacedAfterAWord)
{
    fileChooser->choice = {FileChoice::Outcome::NoDialog, {}};
    const QString name = write("old");
    open();
    transfer().exportAll();
    settle();
    transfer().setPath(name);
    transfer().acceptPath();
    EXPECT_TRUE(waitUntil([this] { return transfer().stage() == Stage::AskingPath; }));
    settle();
    EXPECT_EQ(bytesOf(name), "old");
    EXPECT_TRUE(shows(u"\u201cin.json\u201d exists already. Press Replace to write over it."_s));
    click(u"Replace"_s);
    waitForEnd();
    EXPECT_EQ(bytesOf(name), writeActions(viewModel->actions()));
}

TEST_F(TransferTest, anotherPathIsAskedAboutAnew)
{
    fileChooser->choice = {FileChoice::Outcome::NoDialog, {}};
    const QString first = write("old");
    const QString second = write("older", u"second.json"_s);
    open();
    transfer().exportAll();
    settle();
    transfer().setPath(first);
    transfer().acceptPath();
    EXPECT_TRUE(waitUntil([this] { return transfer().pathCommand() == u"Replace"_s; }));
    transfer().setPath(second);
    EXPECT_EQ(transfer().pathCommand(), u"Export"_s);
    transfer().acceptPath();
    EXPECT_TRUE(waitUntil([this] { return transfer().pathCommand() == u"Replace"_s; }));
    EXPECT_EQ(bytesOf(second), "older");
}

TEST_F(TransferTest, hostileFilesGetAClearSentenceAndLoseNothing)
{
    open();
    const auto before = viewModel->actions();
    ASSERT_EQ(::mkfifo(QFile::encodeName(path(u"pipe"_s)).constData(), 0600), 0);
    QFile large(path(u"large"_s));
    ASSERT_TRUE(large.open(QIODevice::WriteOnly) && large.resize(100 * 1024 * 1024));
    const QByteArray many = "[{}" + QByteArray(",{}").repeated(49'999) + ']';
    const QList<std::pair<QString, QString>> cases{
        {write("not json", u"text"_s), u"The file is not valid JSON, so nothing was imported."_s},
        {write("{\"a\":", u"cut"_s), u"The file is not valid JSON, so nothing was imported."_s},
        {write("[]", u"empty"_s), u"The file holds no actions, so nothing was imported."_s},
        {write(many, u"many"_s),
            u"The file holds 50000 actions, and 10000 at most can be imported at once. Nothing "
            u"was imported."_s},
        {large.fileName(),
            u"The file is too large to import: 64 MB at most can be read. Nothing was imported."_s},
        {path(u"pipe"_s), u"\u201cpipe\u201d is no regular file. Nothing was imported."_s},
        {u"/dev/zero"_s, u"\u201czero\u201d is no regular file. Nothing was imported."_s},
        {path(u"none"_s), u"There is no file \u201cnone\u201d. Nothing was imported."_s}};
    for (const auto &[file, sentence] : cases) {
        readFile(file);
        EXPECT_EQ(transfer().message().toStdString(), sentence.toStdString());
        EXPECT_TRUE(transfer().isFailure());
        EXPECT_TRUE(shows(sentence));
        EXPECT_EQ(viewModel->actions(), before);
    }
}

// Lists of wrong types are read, and their entries named.
TEST_F(TransferTest, aFileOfWrongTypesIsShownAsUnreadable)
{
    open();
    readFile(write(R"([{"name":7},{"name":"Odd","isPinned":"yes"},null,[[]]])"));
    EXPECT_EQ(transfer().previewSummary(), u"4 unreadable"_s);
    EXPECT_FALSE(transfer().canImport());
}

TEST_F(TransferTest, readingALargeFileNeverHoldsTheWindow)
{
    open();
    // As much as is read at all, in as many entries as are taken.
    const QByteArray entry = "{\"name\":\"" + QByteArray("n").repeated(6000) + "\"}";
    QByteArray bytes = "[" + entry;
    for (int count = 1; count < kImportedActionLimit; ++count) {
        bytes += ',' + entry;
    }
    choose(write(bytes + ']'));
    transfer().importFile();
    const auto longest =
        longestGapUntil([this] { return transfer().stage() == Stage::Previewing; });
    EXPECT_EQ(transfer().previewSummary(), u"10000 new"_s);
    EXPECT_LT(longest.count(), kGapLimit.count());
    transfer().cancel();
}

TEST_F(TransferTest, refusingFiftyThousandActionsNeverHoldsTheWindow)
{
    open();
    choose(write("[{}" + QByteArray(",{\"skills\":[\"a\",\"b\"]}").repeated(49'999) + ']'));
    transfer().importFile();
    const auto longest = longestGapUntil([this] { return transfer().isFailure(); });
    EXPECT_LT(longest.count(), kGapLimit.count());
}

TEST_F(TransferTest, cancellingAReadingLeavesItsFileAlone)
{
    open();
    const QByteArray entry = "{\"name\":\"" + QByteArray("n").repeated(6000) + "\"},";
    choose(write("[" + entry.repeated(5000) + "{}]"));
    transfer().importFile();
    EXPECT_TRUE(waitUntil([this] { return transfer().stage() == Stage::Working; }));
    settle();
    EXPECT_TRUE(shows(u"Working on the file\u2026"_s));
    press(Qt::Key_Escape);
    EXPECT_EQ(transfer().stage(), Stage::Idle);
    EXPECT_TRUE(waitUntil([this] { return scope->running() == 0; }));
    EXPECT_EQ(transfer().stage(), Stage::Idle);
}

} // namespace

} // namespace velarc
