#include "actions/action_json.h"
#include "base/uuid.h"
#include "entry/cli_programs.h"
#include "entry/window_import.h"
#include "support/app_world.h"
#include "support/wait_until.h"

#include <QTemporaryDir>

namespace velarc {
namespace {

struct FileCloser
{
    void operator()(FILE *file) const { std::fclose(file); }
};

class CliTransferTest : public AppWorld
{
protected:
    std::unique_ptr<FILE, FileCloser> out{std::tmpfile()};
    std::unique_ptr<FILE, FileCloser> err{std::tmpfile()};
    QTemporaryDir folder;
    QByteArray standardInput;
    bool inputIsTerminal = false;
    ImportReply reply{WindowReply::NoBus, QString()}; // of the window
    QByteArrayList handedOver;

    [[nodiscard]] CliSurroundings surroundings()
    {
        CliSurroundings made;
        made.openStore = [this] { return store; };
        made.makeViewModel = [this] { return std::make_unique<AppViewModel>(services()); };
        made.readStandardInput = [this] { return standardInput; };
        made.standardInputIsTerminal = [this] { return inputIsTerminal; };
        made.importInWindow = [this](const QByteArray &json) {
            handedOver.append(json);
            return reply;
        };
        made.out = out.get();
        made.err = err.get();
        return made;
    }

    static QCoro::Task<void> keep(
        QCoro::Task<CliExit> task, std::shared_ptr<std::optional<CliExit>> exit)
    {
        *exit = co_await task;
    }

    CliExit perform(const QStringList &arguments)
    {
        const auto exit = std::make_shared<std::optional<CliExit>>();
        static_cast<void>(
            keep(performCliCommand(parseCliCommand(arguments), surroundings(), {}), exit));
        EXPECT_TRUE(waitUntil([&] { return exit->has_value(); }));
        return exit->value_or(CliExit::ClosedPipe);
    }

    [[nodiscard]] static QByteArray written(FILE *file)
    {
        QByteArray bytes;
        std::rewind(file);
        for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) {
            bytes.append(static_cast<char>(byte));
        }
        return bytes;
    }

    [[nodiscard]] QByteArray said() const { return written(out.get()); }
    [[nodiscard]] QString complained() const { return QString::fromUtf8(written(err.get())); }

    [[nodiscard]] QString write(const QByteArray &bytes) const
    {
        QFile file(folder.filePath(u"a.json"_s));
        EXPECT_TRUE(file.open(QIODevice::WriteOnly));
        file.write(bytes);
        return file.fileName();
    }

    // A library of two actions.
    QList<AIAction> storeTwo()
    {
        QList<AIAction> actions{testAction(u"One"_s), testAction(u"Two"_s)};
        store->saveActions(actions);
        return store->loadActions();
    }

    [[nodiscard]] bool storeHas(const AIAction &action) const
    {
        return store->loadActions().contains(action);
    }
};

TEST_F(CliTransferTest, exportWritesTheWholeLibraryInItsStoredForm)
{
    const QList<AIAction> actions = storeTwo();
    EXPECT_EQ(perform({u"export"_s}), CliExit::Done);
    EXPECT_EQ(said(), writeActions(actions) + '\n');
    EXPECT_EQ(complained(), QString());
}

TEST_F(CliTransferTest, exportOfOneActionHoldsThatOneAlone)
{
    const QList<AIAction> actions = storeTwo();
    const QString file = folder.filePath(u"out.json"_s);
    EXPECT_EQ(perform({u"export"_s, u"two"_s, u"--output"_s, file}), CliExit::Done);
    QFile exported(file);
    ASSERT_TRUE(exported.open(QIODevice::ReadOnly));
    EXPECT_EQ(exported.readAll(), writeActions({actions.at(1)}));
    EXPECT_EQ(exported.permissions() & (QFileDevice::ReadGroup | QFileDevice::ReadOther),
        QFileDevice::Permissions());
    EXPECT_EQ(said(), QByteArray());
}

TEST_F(CliTransferTest, exportOfAnUnknownActionIsRefused)
{
    storeTwo();
    EXPECT_EQ(perform({u"export"_s, u"Three"_s}), CliExit::Usage);
    EXPECT_EQ(perform({u"export"_s, uuidText(newUuid())}), CliExit::Usage);
    EXPECT_TRUE(complained().contains(u"No action is called \"Three\""_s));
    EXPECT_TRUE(complained().contains(u"No action has that identifier."_s));
}

TEST_F(CliTransferTest, exportThatCannotBeWrittenSaysSo)
{
    storeTwo();
    EXPECT_EQ(
        perform({u"export"_s, u"-o"_s, folder.filePath(u"none/a.json"_s)}), CliExit::RunFailed);
    EXPECT_TRUE(complained().contains(u"could not be written"_s));
}

TEST_F(CliTransferTest, importWithoutAWindowGoesThroughTheStore)
{
    QList<AIAction> actions = storeTwo();
    actions[0].systemPrompt = u"Other words."_s;
    const AIAction fresh = testAction(u"Fresh"_s);
    EXPECT_EQ(perform({u"import"_s, write(writeActions({actions.at(0), fresh}))}), CliExit::Done);
    EXPECT_EQ(said(), QByteArray("1 new, 1 replaced\n"));
    EXPECT_TRUE(storeHas(actions.at(0)));
    EXPECT_TRUE(storeHas(actions.at(1)));
    EXPECT_TRUE(storeHas(fresh));
}

TEST_F(CliTransferTest, importWithAWindowGoesThroughItAndLeavesTheStoreAlone)
{
    storeTwo();
    reply = {WindowReply::Done, u"1 new"_s};
    const AIAction fresh = testAction(u"Fresh"_s);
    standardInput = writeActions({fresh});
    EXPECT_EQ(perform({u"import"_s, u"-"_s}), CliExit::Done);
    EXPECT_EQ(handedOver, QByteArrayList{writeActions({fresh})});
    EXPECT_EQ(said(), QByteArray("1 new\n"));
    EXPECT_FALSE(storeHas(fresh));
}

TEST_F(CliTransferTest, importWithoutAFileTakesWhatIsPipedIn)
{
    standardInput = writeActions({testAction(u"Fresh"_s)});
    EXPECT_EQ(perform({u"import"_s}), CliExit::Done);
    EXPECT_EQ(said(), QByteArray("1 new\n"));
}

TEST_F(CliTransferTest, importWithoutAFileDoesNotWaitForATerminal)
{
    inputIsTerminal = true;
    EXPECT_EQ(perform({u"import"_s}), CliExit::Usage);
    EXPECT_EQ(
        complained(), u"velarc-cli: Name a file: velarc-cli import FILE, or pipe one in.\n"_s);
}

TEST_F(CliTransferTest, importThatTheWindowRefusesFailsWithItsSentence)
{
    reply = {WindowReply::Failed, u"No."_s};
    standardInput = "[{}]";
    EXPECT_EQ(perform({u"import"_s, u"-"_s}), CliExit::RunFailed);
    EXPECT_EQ(complained(), u"velarc-cli: No.\n"_s);
}

TEST_F(CliTransferTest, dryRunTellsOfEachActionAndChangesNothing)
{
    QList<AIAction> actions = storeTwo();
    AIAction renamed = actions.at(0);
    renamed.name = u"Uno"_s;
    const AIAction fresh = testAction(u"Fresh\tone"_s);
    standardInput = writeActions({fresh, renamed, actions.at(1)}).chopped(1) + ",{\"name\":7}]";
    EXPECT_EQ(perform({u"import"_s, u"--dry-run"_s, u"-"_s}), CliExit::Done);
    EXPECT_EQ(said(),
        QByteArray("new\tFresh one\nreplaces\tUno\tOne\nunchanged\tTwo\n"
                   "1 new, 1 replaced, 1 unchanged, 1 unreadable\n"));
    EXPECT_EQ(complained(), u"velarc-cli: entry 4 is no action and was left out.\n"_s);
    EXPECT_EQ(store->loadActions(), actions);
    EXPECT_TRUE(handedOver.isEmpty());
}

TEST_F(CliTransferTest, fileOfNoActionsIsRefusedAndChangesNothing)
{
    const QList<AIAction> actions = storeTwo();
    for (const QByteArray &bytes : {QByteArray("not json"), QByteArray("[]"), QByteArray("[7]")}) {
        EXPECT_EQ(perform({u"import"_s, write(bytes)}), CliExit::RunFailed);
    }
    EXPECT_EQ(perform({u"import"_s, folder.filePath(u"none"_s)}), CliExit::RunFailed);
    EXPECT_EQ(said(), QByteArray());
    EXPECT_EQ(store->loadActions(), actions);
    EXPECT_TRUE(handedOver.isEmpty());
}

class WindowImportTest : public AppWorld
{
protected:
    std::optional<ImportAnswer> given;

    WindowImportTest() { launch(); }

    void import(const QByteArray &json)
    {
        static_cast<void>(importActions(
            viewModel.get(), json, [this](const ImportAnswer &answer) { given = answer; }));
    }

    void waitForAnswer()
    {
        EXPECT_TRUE(waitUntil([this] { return given.has_value(); }));
    }
};

TEST_F(WindowImportTest, actionsMeetTheLibraryAsItIsWhenTheFileIsRead)
{
    const AIAction fresh = testAction(u"Fresh"_s);
    import(writeActions({fresh}));
    viewModel->library().duplicateAction(actionNamed(u"Git Ideas"_s)); // meanwhile
    waitForAnswer();
    EXPECT_EQ(given->text, u"1 new"_s);
    EXPECT_TRUE(hasActionNamed(u"Fresh"_s));
    EXPECT_TRUE(hasActionNamed(u"Git Ideas Copy"_s));
    EXPECT_EQ(store->loadActions(), viewModel->actions());
}

TEST_F(WindowImportTest, fileThatCannotBeReadIsRefusedWithItsSentence)
{
    import("not json");
    waitForAnswer();
    EXPECT_EQ(given->outcome, ImportAnswer::Outcome::Refused);
    EXPECT_EQ(given->text, u"The file is not valid JSON, so nothing was imported."_s);
}

TEST_F(WindowImportTest, importEndsWithTheProgramAndWithoutAnAnswer)
{
    import("[{}]");
    scope->finish();
    viewModel.reset();
    turnEventLoop();
    EXPECT_EQ(given, std::nullopt);
}

} // namespace
} // namespace velarc
