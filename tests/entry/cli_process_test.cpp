// velarc-cli as a process of its own, as a shell runs it.

#include "support/printers.h"

#include <QProcess>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

struct Ended
{
    int status = -1;
    QString out;
    QString err;
};

class CliProcessTest : public ::testing::Test
{
protected:
    QTemporaryDir home;

    Ended run(const QStringList &arguments, const QByteArray &input = {})
    {
        QProcess process;
        QProcessEnvironment environment;
        environment.insert(u"HOME"_s, home.path());
        environment.insert(u"LC_ALL"_s, u"C"_s);
        process.setProcessEnvironment(environment);
        process.start(QStringLiteral(VELARC_CLI), arguments);
        process.write(input);
        process.closeWriteChannel();
        Ended ended;
        if (!process.waitForFinished() || process.exitStatus() != QProcess::NormalExit) {
            ADD_FAILURE() << "the program did not end by itself";
            return ended;
        }
        ended.status = process.exitCode();
        ended.out = QString::fromUtf8(process.readAllStandardOutput());
        ended.err = QString::fromUtf8(process.readAllStandardError());
        return ended;
    }
};

TEST_F(CliProcessTest, freshUserRunsABuiltInActionOnTextFromAPipe)
{
    const Ended ended = run({u"run"_s, u"One-Sentence Summary"_s}, "Wait! What? Yes.");
    EXPECT_EQ(ended.status, 0) << ended.err.toStdString();
    EXPECT_EQ(ended.out, u"Summarize the user input in exactly one sentence.\n"_s);
    EXPECT_EQ(ended.err, QString());
}

TEST_F(CliProcessTest, listKeepsItsIdentifiersFromOneRunToTheNext)
{
    const Ended first = run({u"actions"_s});
    EXPECT_EQ(first.status, 0);
    EXPECT_EQ(first.out.count(u'\n'), 22);
    EXPECT_EQ(run({u"actions"_s}).out, first.out);
}

TEST_F(CliProcessTest, invalidBytesOnStandardInputAreReplaced)
{
    const Ended ended = run({u"run"_s, u"Focus Sprint Planner"_s}, "a\xFF\xC0 b");
    EXPECT_EQ(ended.status, 0);
    EXPECT_TRUE(ended.out.contains(u"a\uFFFD\uFFFD b"_s)) << ended.out.toStdString();
}

TEST_F(CliProcessTest, actionIsNamedInAnyScriptWhateverTheLocale)
{
    const Ended ended = run({u"run"_s, u"\u00DCbersetzen"_s, u"x"_s});
    EXPECT_EQ(ended.status, 2);
    EXPECT_EQ(ended.err,
        u"velarc-cli: No action is called \"\u00DCbersetzen\". \"velarc-cli actions\" lists "
        u"them.\n"_s);
    EXPECT_EQ(ended.out, QString());
}

TEST_F(CliProcessTest, withoutAnInputItSaysSo)
{
    const Ended ended = run({u"run"_s, u"Tell Me a Joke"_s});
    EXPECT_EQ(ended.status, 3);
    EXPECT_EQ(ended.out, u"Input is empty.\n"_s);
}

TEST_F(CliProcessTest, unusableHomeFolderStopsNothing)
{
    QProcess process;
    QProcessEnvironment environment;
    environment.insert(u"HOME"_s, u"/dev/null/nowhere"_s);
    process.setProcessEnvironment(environment);
    process.start(QStringLiteral(VELARC_CLI), {u"run"_s, u"Tell Me a Joke"_s, u"cats"_s});
    process.closeWriteChannel();
    ASSERT_TRUE(process.waitForFinished());
    EXPECT_EQ(process.exitCode(), 0);
    EXPECT_TRUE(process.readAllStandardError().isEmpty());
}

} // namespace
} // namespace velarc
