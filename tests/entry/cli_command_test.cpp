#include "entry/cli_command.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

template <typename Command> Command parsed(const QStringList &arguments)
{
    const CliCommand command = parseCliCommand(arguments);
    const auto *wanted = std::get_if<Command>(&command);
    if (wanted == nullptr) {
        ADD_FAILURE() << "another command was read from " << arguments.join(u' ').toStdString();
        return {};
    }
    return *wanted;
}

TEST(CliCommand, actionsAreListedAsLinesOrAsJson)
{
    EXPECT_EQ(parsed<ListCommand>({u"actions"_s}).form, AnswerForm::Lines);
    EXPECT_EQ(parsed<ListCommand>({u"actions"_s, u"--json"_s}).form, AnswerForm::Json);
}

TEST(CliCommand, runTakesAnActionAndAText)
{
    const auto run = parsed<RunCommand>({u"run"_s, u"Joke"_s, u"cats and dogs"_s});
    EXPECT_EQ(run.action, u"Joke"_s);
    EXPECT_EQ(run.text, u"cats and dogs"_s);
}

TEST(CliCommand, absentTextAndADashStandForStandardInput)
{
    EXPECT_EQ(parsed<RunCommand>({u"run"_s, u"Joke"_s}).text, std::nullopt);
    EXPECT_EQ(parsed<RunCommand>({u"run"_s, u"Joke"_s, u"-"_s}).text, std::nullopt);
}

TEST(CliCommand, emptyTextIsATextNotStandardInput)
{
    EXPECT_EQ(parsed<RunCommand>({u"run"_s, u"Joke"_s, QString()}).text, QString());
}

TEST(CliCommand, twoDashesEndTheOptions)
{
    const auto run = parsed<RunCommand>({u"run"_s, u"--"_s, u"--json"_s, u"-5 degrees"_s});
    EXPECT_EQ(run.action, u"--json"_s);
    EXPECT_EQ(run.text, u"-5 degrees"_s);
}

TEST(CliCommand, runAnswersAsJsonAndWritesItsResultToAFile)
{
    const auto run =
        parsed<RunCommand>({u"run"_s, u"Joke"_s, u"cats"_s, u"--json"_s, u"-o"_s, u"joke.txt"_s});
    EXPECT_EQ(run.form, AnswerForm::Json);
    EXPECT_EQ(run.outputFile, u"joke.txt"_s);
    EXPECT_EQ(parsed<RunCommand>({u"run"_s, u"--output=x"_s, u"Joke"_s}).outputFile, u"x"_s);
    EXPECT_EQ(parsed<RunCommand>({u"run"_s, u"Joke"_s}).outputFile, QString());
}

TEST(CliCommand, namesOfStandardOutputAreOne)
{
    for (const QString &name : {u"-"_s, u"/dev/stdout"_s, u"/dev/fd/1"_s}) {
        EXPECT_EQ(parsed<RunCommand>({u"run"_s, u"Joke"_s, u"-o"_s, name}).outputFile, u"-"_s);
    }
}

TEST(CliCommand, serviceIsStartedByAVerb)
{
    parsed<ServeCommand>({u"serve"_s});
}

TEST(CliCommand, helpAndVersionAreAskedForByOptions)
{
    parsed<HelpCommand>({u"--help"_s});
    parsed<HelpCommand>({u"-h"_s});
    parsed<HelpCommand>({u"run"_s, u"--help"_s});
    parsed<VersionCommand>({u"--version"_s});
}

struct UsageRow
{
    QStringList arguments;
    const char16_t *message;
};

class CliUsageTest : public ::testing::TestWithParam<UsageRow>
{
};

TEST_P(CliUsageTest, saysInOneSentenceWhatIsWrong)
{
    EXPECT_EQ(
        parsed<UsageError>(GetParam().arguments).message, QString::fromUtf16(GetParam().message));
}

INSTANTIATE_TEST_SUITE_P(EveryMistake, CliUsageTest,
    ::testing::Values(
        UsageRow{{}, u"Say what to do: \"actions\", \"run\", \"export\" or \"import\"."},
        UsageRow{{u"frobnicate"_s}, u"Unknown command: \"frobnicate\"."},
        UsageRow{{u"run"_s}, u"Name an action: velarc-cli run ACTION [TEXT]."},
        UsageRow{{u"run"_s, u"A"_s, u"two"_s, u"words"_s},
            u"Surplus text: \"words\". Put a text of several words into quotes."},
        UsageRow{{u"actions"_s, u"x"_s}, u"Surplus argument: \"x\"."},
        UsageRow{{u"actions"_s, u"-o"_s, u"f"_s}, u"--output goes with \"run\" and \"export\"."},
        UsageRow{{u"run"_s, u"A"_s, u"-o"_s, QString()}, u"--output names no file."},
        UsageRow{{u"run"_s, u"A"_s, u"-o"_s, u"-"_s, u"--json"_s},
            u"Standard output takes --json or --output -, not both."},
        UsageRow{{u"serve"_s, u"--json"_s}, u"\"serve\" takes no options."},
        UsageRow{{u"serve"_s, u"now"_s}, u"Surplus argument: \"now\"."},
        UsageRow{{u"actions"_s, u"--jason"_s}, u"Unknown option 'jason'."}));

TEST(CliCommand, exportTakesAnActionOrTheWholeLibrary)
{
    const auto all = parsed<ExportCommand>({u"export"_s});
    EXPECT_EQ(all.action, std::nullopt);
    EXPECT_EQ(all.outputFile, u"-"_s);
    const auto one = parsed<ExportCommand>({u"export"_s, u"Joke"_s, u"-o"_s, u"joke.json"_s});
    EXPECT_EQ(one.action, u"Joke"_s);
    EXPECT_EQ(one.outputFile, u"joke.json"_s);
}

TEST(CliCommand, importTakesAFileAndMayOnlyTell)
{
    EXPECT_EQ(parsed<ImportCommand>({u"import"_s, u"a.json"_s}).mode, ImportMode::Perform);
    const auto dry = parsed<ImportCommand>({u"import"_s, u"--dry-run"_s, u"-"_s});
    EXPECT_EQ(dry.file, u"-"_s);
    EXPECT_EQ(dry.mode, ImportMode::DryRun);
    EXPECT_EQ(parsed<ImportCommand>({u"import"_s}).file, u"-"_s);
}

TEST(CliCommand, whatDoesNotGoWithAnExportOrImportIsAUsageError)
{
    for (const QStringList &arguments :
        {QStringList{u"export"_s, u"a"_s, u"b"_s}, QStringList{u"export"_s, u"--json"_s},
            QStringList{u"export"_s, u"--output="_s}, QStringList{u"export"_s, u"--dry-run"_s},
            QStringList{u"import"_s, QString()}, QStringList{u"import"_s, u"a"_s, u"b"_s},
            QStringList{u"import"_s, u"a"_s, u"--json"_s},
            QStringList{u"import"_s, u"a"_s, u"-o"_s, u"b"_s},
            QStringList{u"run"_s, u"a"_s, u"--dry-run"_s}}) {
        EXPECT_FALSE(parsed<UsageError>(arguments).message.isEmpty());
    }
}

} // namespace
} // namespace velarc
