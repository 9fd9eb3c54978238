#include "entry/cli_output.h"
#include "support/printers.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <unistd.h>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;

class CliOutputTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;

    [[nodiscard]] QString path(const QString &name) const { return folder.filePath(name); }

    [[nodiscard]] static QByteArray bytesOf(const QString &path)
    {
        QFile file(path);
        return file.open(QIODevice::ReadOnly) ? file.readAll() : QByteArray("unreadable");
    }

    [[nodiscard]] QStringList names() const
    {
        return QDir(folder.path())
            .entryList(QDir::AllEntries | QDir::Hidden | QDir::System | QDir::NoDotAndDotDot);
    }
};

TEST_F(CliOutputTest, fileGetsTheBytesAndNothingElseIsLeft)
{
    writeOutputFile(path(u"new"_s), QByteArrayLiteral("a\0b"));
    EXPECT_EQ(bytesOf(path(u"new"_s)), QByteArrayLiteral("a\0b"));
    EXPECT_EQ(names(), QStringList{u"new"_s});
}

TEST_F(CliOutputTest, fileThatStoodThereKeepsItsPermissions)
{
    writeOutputFile(path(u"f"_s), "old");
    ASSERT_EQ(::chmod(QFile::encodeName(path(u"f"_s)).constData(), 0640), 0);
    writeOutputFile(path(u"f"_s), "new");
    EXPECT_EQ(bytesOf(path(u"f"_s)), "new");
    struct stat status = {};
    ASSERT_EQ(::stat(QFile::encodeName(path(u"f"_s)).constData(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);
}

TEST_F(CliOutputTest, linkIsFollowedAndStays)
{
    writeOutputFile(path(u"target"_s), "old");
    ASSERT_TRUE(QFile::link(path(u"target"_s), path(u"link"_s)));
    writeOutputFile(path(u"link"_s), "new");
    EXPECT_EQ(bytesOf(path(u"target"_s)), "new");
    EXPECT_TRUE(QFileInfo(path(u"link"_s)).isSymLink());
}

TEST_F(CliOutputTest, deviceStaysADevice)
{
    EXPECT_EQ(obstacleToWriting(u"/dev/null"_s), std::nullopt);
    writeOutputFile(u"/dev/null"_s, "gone");
    EXPECT_FALSE(QFileInfo(u"/dev/null"_s).isFile());
}

TEST_F(CliOutputTest, fullDeviceIsTold)
{
    try {
        writeOutputFile(u"/dev/full"_s, "x");
        ADD_FAILURE() << "it was written";
    } catch (const OutputError &error) {
        EXPECT_EQ(
            error.message(), u"\"/dev/full\" could not be written: No space left on device."_s);
    }
}

TEST_F(CliOutputTest, obstaclesAreSeenBeforehand)
{
    EXPECT_EQ(obstacleToWriting(path(u"new"_s)), std::nullopt);
    EXPECT_EQ(obstacleToWriting(folder.path()), u"\""_s + folder.path() + u"\" is a folder."_s);
    EXPECT_EQ(obstacleToWriting(path(u"no/such"_s)),
        u"There is no folder \""_s + path(u"no"_s) + u"\"."_s);
}

TEST_F(CliOutputTest, pdfIsReadFromItsFile)
{
    writeOutputFile(path(u"a.pdf"_s), "%PDF-1.7");
    EXPECT_EQ(
        payloadBytes(PdfPayload{QUrl::fromLocalFile(path(u"a.pdf"_s)), u"text"_s}), "%PDF-1.7");
    EXPECT_THROW(static_cast<void>(
                     payloadBytes(PdfPayload{QUrl::fromLocalFile(path(u"gone.pdf"_s)), u"text"_s})),
        OutputError);
}

TEST_F(CliOutputTest, pdfIsNamedInJson)
{
    const ShortcutRun run{
        PdfPayload{QUrl(u"file:///tmp/a%20b.pdf"_s), u"text"_s}, AIProvider::Anthropic, {}};
    EXPECT_EQ(outcomeJson({IntentOutcome::Kind::Done, u"PDF generated."_s, run}),
        u"{\"dialog\":\"PDF generated.\",\"provider\":\"anthropic\",\"model\":null,\"payload\":"
        u"{\"type\":\"pdf\",\"file\":\"/tmp/a b.pdf\",\"text\":\"text\"}}"_s);
}

} // namespace
} // namespace velarc
