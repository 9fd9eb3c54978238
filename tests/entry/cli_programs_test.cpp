#include "base/uuid.h"
#include "entry/cli_programs.h"
#include "support/app_world.h"
#include "support/wait_until.h"

#include <QDir>
#include <QTemporaryDir>

namespace velarc {
namespace {

struct FileCloser
{
    void operator()(FILE *file) const { std::fclose(file); }
};

QByteArray bytesOf(const QString &path)
{
    QFile file(path);
    return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
}

void writeBytes(const QString &path, const QByteArray &bytes)
{
    QFile file(path);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly) && file.write(bytes) == bytes.size());
}

class CliProgramsTest : public AppWorld
{
protected:
    std::unique_ptr<FILE, FileCloser> out{std::tmpfile()};
    std::unique_ptr<FILE, FileCloser> err{std::tmpfile()};
    QByteArray standardInput;
    bool inputIsTerminal = false;
    std::shared_ptr<std::optional<CliExit>> exit = std::make_shared<std::optional<CliExit>>();

    [[nodiscard]] CliSurroundings surroundings()
    {
        CliSurroundings made;
        made.openStore = [this] { return store; };
        made.makeViewModel = [this] { return std::make_unique<AppViewModel>(services()); };
        made.standardInputIsTerminal = [this] { return inputIsTerminal; };
        made.readStandardInput = [this] { return standardInput; };
        made.finishCopying = [this](std::stop_token) { return copying(); };
        made.serve = [this](std::stop_token) { return serving(); };
        made.out = out.get();
        made.err = err.get();
        made.version = u"1.2.3"_s;
        return made;
    }

    CopyOutcome copyOutcome = CopyOutcome::NothingToCopy;
    bool serves = true;
    int copiesFinished = 0;

    QCoro::Task<CopyOutcome> copying()
    {
        ++copiesFinished;
        co_return copyOutcome;
    }
    QCoro::Task<bool> serving() { co_return serves; }

    // A library of one action that a scripted engine answers.
    void storeCloudAction(OutputFormat format, const ResultPayload &answer)
    {
        AIAction action = testAction(u"Cloud"_s);
        action.provider = AIProvider::OpenAI;
        action.outputFormat = format;
        store->saveActions({action});
        keys->keys[AIProvider::OpenAI] = "sk";
        openAI->answer.result.payload = answer;
        openAI->answer.result.modelID = u"gpt-x"_s;
    }

    static QCoro::Task<void> keep(
        QCoro::Task<CliExit> task, std::shared_ptr<std::optional<CliExit>> exit)
    {
        *exit = co_await task;
    }

    CliExit perform(const QStringList &arguments)
    {
        static_cast<void>(
            keep(performCliCommand(parseCliCommand(arguments), surroundings(), {}), exit));
        EXPECT_TRUE(waitUntil([this] { return exit->has_value(); }));
        return exit->value_or(CliExit::RunFailed);
    }

    [[nodiscard]] static QString written(FILE *file)
    {
        QByteArray bytes;
        std::rewind(file);
        for (int byte = std::fgetc(file); byte != EOF; byte = std::fgetc(file)) {
            bytes.append(static_cast<char>(byte));
        }
        return QString::fromUtf8(bytes);
    }

    [[nodiscard]] QString said() const { return written(out.get()); }
    [[nodiscard]] QString complained() const { return written(err.get()); }

    AIAction storeOne(const QString &name)
    {
        AIAction action = testAction(name);
        action.provider = AIProvider::LocalFallback;
        store->saveActions({action});
        return action;
    }
};

TEST_F(CliProgramsTest, listsIdentifierTabAndTitleALine)
{
    const AIAction action = storeOne(u"One\tLine\nOnly"_s);
    EXPECT_EQ(perform({u"actions"_s}), CliExit::Done);
    EXPECT_EQ(said(), uuidText(action.id) + u"\tOne Line Only\n"_s);
}

TEST_F(CliProgramsTest, listsAsJson)
{
    const AIAction action = storeOne(u"Say \"hi\""_s);
    EXPECT_EQ(perform({u"actions"_s, u"--json"_s}), CliExit::Done);
    EXPECT_EQ(
        said(), u"[{\"id\":\""_s + uuidText(action.id) + u"\",\"title\":\"Say \\\"hi\\\"\"}]\n"_s);
}

TEST_F(CliProgramsTest, answerGoesToStandardOutputWithOneLineFeed)
{
    storeOne(u"Tell Me a Joke"_s);
    EXPECT_EQ(perform({u"run"_s, u"tell me a joke"_s, u"cats"_s}), CliExit::Done);
    EXPECT_TRUE(said().startsWith(u"I asked my cats assistant"_s));
    EXPECT_TRUE(said().endsWith(u"leftovers.\n"_s));
    EXPECT_EQ(complained(), QString());
}

TEST_F(CliProgramsTest, textIsReadFromStandardInputAndBadBytesAreReplaced)
{
    storeOne(u"Plain"_s);
    standardInput = "caf\xC3\xA9 \xFF!";
    EXPECT_EQ(perform({u"run"_s, u"Plain"_s}), CliExit::Done);
    EXPECT_TRUE(said().endsWith(u"caf\u00E9 \uFFFD!\n"_s)) << said().toStdString();
}

TEST_F(CliProgramsTest, noInputAtAllIsAUsageError)
{
    storeOne(u"Plain"_s);
    inputIsTerminal = true;
    EXPECT_EQ(perform({u"run"_s, u"Plain"_s}), CliExit::Usage);
    EXPECT_EQ(said(), QString());
    EXPECT_EQ(complained(),
        u"velarc-cli: There is no input. Give a text behind the action, or pipe one in.\n"_s);
}

TEST_F(CliProgramsTest, blankInputIsRefusedAndTheAnswerSaysWhy)
{
    storeOne(u"Plain"_s);
    EXPECT_EQ(perform({u"run"_s, u"Plain"_s, u"  "_s}), CliExit::Refused);
    EXPECT_EQ(said(), u"Input is empty.\n"_s);
}

TEST_F(CliProgramsTest, unknownTitleIsAUsageErrorAndAnUnknownIdentifierARefusal)
{
    storeOne(u"Plain"_s);
    EXPECT_EQ(perform({u"run"_s, u"Nope"_s, u"x"_s}), CliExit::Usage);
    EXPECT_EQ(complained(),
        u"velarc-cli: No action is called \"Nope\". \"velarc-cli actions\" lists them.\n"_s);
    exit->reset();
    EXPECT_EQ(perform({u"run"_s, uuidText(newUuid()), u"x"_s}), CliExit::Refused);
    EXPECT_EQ(said(), u"Action no longer exists.\n"_s);
}

TEST_F(CliProgramsTest, ambiguousTitleListsItsActionsAndRunsNone)
{
    const AIAction one = testAction(u"Twin"_s);
    const AIAction other = testAction(u"Twin"_s);
    store->saveActions({one, other});
    EXPECT_EQ(perform({u"run"_s, u"twin"_s, u"x"_s}), CliExit::Usage);
    EXPECT_EQ(said(), QString());
    EXPECT_TRUE(complained().contains(uuidText(one.id)));
    EXPECT_TRUE(complained().contains(uuidText(other.id)));
}

TEST_F(CliProgramsTest, failedRunIsToldOnStandardErrorAlone)
{
    AIAction action = testAction(u"Cloud"_s);
    action.provider = AIProvider::OpenAI;
    store->saveActions({action});
    EXPECT_EQ(perform({u"run"_s, u"Cloud"_s, u"x"_s}), CliExit::RunFailed);
    EXPECT_EQ(said(), QString());
    EXPECT_EQ(complained(), u"velarc-cli: OpenAI is not connected yet.\n"_s);
}

TEST_F(CliProgramsTest, usageErrorPointsToTheHelp)
{
    EXPECT_EQ(perform({u"frob"_s}), CliExit::Usage);
    EXPECT_EQ(
        complained(), u"velarc-cli: Unknown command: \"frob\".\nTry \"velarc-cli --help\".\n"_s);
    EXPECT_EQ(said(), QString());
}

TEST_F(CliProgramsTest, helpAndVersionAreAnswers)
{
    EXPECT_EQ(perform({u"--version"_s}), CliExit::Done);
    EXPECT_EQ(said(), u"velarc-cli 1.2.3\n"_s);
    exit->reset();
    EXPECT_EQ(perform({u"--help"_s}), CliExit::Done);
    EXPECT_TRUE(said().contains(u"Usage: velarc-cli actions"_s));
}

TEST_F(CliProgramsTest, jsonAnswerHoldsTheEngineThatRanAndTheResult)
{
    storeCloudAction(OutputFormat::Text, TextPayload{u" two\nlines "_s});
    EXPECT_EQ(perform({u"run"_s, u"Cloud"_s, u"x"_s, u"--json"_s}), CliExit::Done);
    const Json answer = parseJson(said().toUtf8());
    EXPECT_EQ(answer,
        parseJson(R"({"dialog":" two\nlines ","provider":"openAI","model":"gpt-x",)"
                  R"("payload":{"type":"text","text":" two\nlines "}})"));
    EXPECT_TRUE(said().endsWith(u"}\n"_s));
    EXPECT_EQ(said().count(u'\n'), 1);
}

TEST_F(CliProgramsTest, jsonAnswerHoldsAPictureInBase64)
{
    storeCloudAction(OutputFormat::Image, ImagePayload{QByteArrayLiteral("\x89PNG\0")});
    EXPECT_EQ(perform({u"run"_s, u"Cloud"_s, u"x"_s, u"--json"_s}), CliExit::Done);
    const Json answer = parseJson(said().toUtf8());
    EXPECT_EQ(answer["dialog"], "Image generated.");
    EXPECT_EQ(answer["payload"], parseJson(R"({"type":"image","png":"iVBORwA="})"));
}

TEST_F(CliProgramsTest, refusalIsJsonToo)
{
    storeOne(u"Plain"_s);
    EXPECT_EQ(perform({u"run"_s, u"Plain"_s, u" "_s, u"--json"_s}), CliExit::Refused);
    EXPECT_EQ(said(),
        u"{\"dialog\":\"Input is empty.\",\"provider\":null,\"model\":null,"
        u"\"payload\":null}\n"_s);
}

TEST_F(CliProgramsTest, resultGoesToTheFileToTheByteAndTheAnswerToStandardOutput)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"result"_s);
    storeCloudAction(OutputFormat::Image, ImagePayload{QByteArrayLiteral("\x89PNG\0\n")});
    EXPECT_EQ(perform({u"run"_s, u"Cloud"_s, u"x"_s, u"-o"_s, file}), CliExit::Done);
    EXPECT_EQ(bytesOf(file), QByteArrayLiteral("\x89PNG\0\n"));
    EXPECT_EQ(said(), u"Image generated.\n"_s);
    EXPECT_EQ(complained(), QString());
}

TEST_F(CliProgramsTest, dashAsTheFileTakesThePlaceOfTheAnswer)
{
    storeCloudAction(OutputFormat::Text, TextPayload{u"no line feed"_s});
    EXPECT_EQ(perform({u"run"_s, u"Cloud"_s, u"x"_s, u"-o"_s, u"-"_s}), CliExit::Done);
    EXPECT_EQ(said(), u"no line feed"_s);
}

TEST_F(CliProgramsTest, fileThatCannotBeWrittenIsToldBeforeTheEngineIsAsked)
{
    storeCloudAction(OutputFormat::Text, TextPayload{u"x"_s});
    EXPECT_EQ(
        perform({u"run"_s, u"Cloud"_s, u"x"_s, u"-o"_s, u"/nowhere/result"_s}), CliExit::Usage);
    EXPECT_EQ(complained(), u"velarc-cli: There is no folder \"/nowhere\".\n"_s);
    EXPECT_EQ(openAI->textRequests.size(), 0);
}

TEST_F(CliProgramsTest, failedRunLeavesTheFileAsItWas)
{
    const QTemporaryDir folder;
    const QString file = folder.filePath(u"result"_s);
    writeBytes(file, "before");
    storeCloudAction(OutputFormat::Text, TextPayload{u"x"_s});
    openAI->answer.failure = failureOf(std::runtime_error("no"));
    EXPECT_EQ(perform({u"run"_s, u"Cloud"_s, u"x"_s, u"-o"_s, file}), CliExit::RunFailed);
    EXPECT_EQ(bytesOf(file), "before");
    EXPECT_EQ(QDir(folder.path()).entryList(QDir::Files | QDir::Hidden).size(), 1);
}

TEST_F(CliProgramsTest, placeOfAResultThatTheAnswerOnlySpeaksOfIsToldOnStandardError)
{
    storeCloudAction(OutputFormat::Pdf, TextPayload{u"x"_s});
    EXPECT_EQ(perform({u"run"_s, u"Cloud"_s, u"x"_s}), CliExit::Done);
    EXPECT_EQ(said(), u"PDF generated.\n"_s);
    EXPECT_TRUE(complained().startsWith(u"velarc-cli: The PDF is \"/"_s));
}

TEST_F(CliProgramsTest, copyThatNobodyTakesIsTold)
{
    storeOne(u"Plain"_s);
    copyOutcome = CopyOutcome::NoClipboard;
    EXPECT_EQ(perform({u"run"_s, u"Plain"_s, u"x"_s}), CliExit::Done);
    EXPECT_EQ(complained(), u"velarc-cli: There is no clipboard to copy the result to.\n"_s);
    EXPECT_EQ(copiesFinished, 1);
}

TEST_F(CliProgramsTest, serviceThatCannotServeIsAFailure)
{
    EXPECT_EQ(perform({u"serve"_s}), CliExit::Done);
    exit->reset();
    serves = false;
    EXPECT_EQ(perform({u"serve"_s}), CliExit::RunFailed);
    EXPECT_EQ(complained(),
        u"velarc-cli: There is no session bus, or another process serves on it already.\n"_s);
}

TEST_F(CliProgramsTest, outputThatTakesNothingIsAFailedRun)
{
    storeOne(u"Plain"_s);
    out.reset(std::fopen("/dev/full", "w"));
    ASSERT_TRUE(out);
    EXPECT_EQ(perform({u"run"_s, u"Plain"_s, u"x"_s}), CliExit::RunFailed);
    EXPECT_EQ(complained(), u"velarc-cli: the answer could not be written.\n"_s);
}

} // namespace
} // namespace velarc
