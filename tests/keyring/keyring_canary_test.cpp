// A key is nowhere but in the keyring's own encrypted file.

#include "keyring_fixture.h"

#include <QDirIterator>
#include <QFile>

namespace velarc {

namespace {

QByteArray contents(const QString &path)
{
    QFile file(path);
    EXPECT_TRUE(file.open(QIODevice::ReadOnly)) << path.toStdString();
    return file.readAll();
}

QStringList filesBelow(const QString &folder)
{
    QStringList files;
    QDirIterator walk(
        folder, QDir::Files | QDir::Hidden | QDir::NoSymLinks, QDirIterator::Subdirectories);
    while (walk.hasNext()) {
        files.append(walk.next());
    }
    return files;
}

// In any of the forms in which a careless program writes a text.
QStringList filesThatHold(const QByteArray &key)
{
    const QString text = QString::fromUtf8(key);
    const QByteArray utf16(
        reinterpret_cast<const char *>(text.utf16()), text.size() * qsizetype(sizeof(char16_t)));
    QStringList holding;
    for (const QString &file : filesBelow(qEnvironmentVariable("HOME"))) {
        const QByteArray bytes = contents(file);
        if (bytes.contains(key) || bytes.contains(utf16) || bytes.contains(key.toBase64())) {
            holding.append(file);
        }
    }
    return holding;
}

class KeyringCanary : public KeyringTest
{
};

} // namespace

TEST_F(KeyringCanary, standsInNoFileBelowTheHome)
{
    const QByteArray key = canaryKey();
    ASSERT_EQ(save(canaryKey()), QString());
    ASSERT_EQ(save(key), QString());
    ASSERT_EQ(saveNow(key, AIProvider::Gemini), QString());
    ASSERT_EQ(read(AIProvider::OpenAI), key);
    EXPECT_EQ(filesThatHold(key), QStringList());
    EXPECT_TRUE(
        QFile::exists(qEnvironmentVariable("XDG_DATA_HOME") + u"/keyrings/login.keyring"_s));
}

TEST_F(KeyringCanary, wouldBeFoundInAFile)
{
    const QByteArray key = canaryKey();
    QFile file(qEnvironmentVariable("XDG_CACHE_HOME") + u"/note"_s);
    ASSERT_TRUE(file.open(QIODevice::WriteOnly));
    file.write("key=" + key + '\n');
    file.close();
    EXPECT_EQ(filesThatHold(key), QStringList(file.fileName()));
    file.remove();
}

TEST_F(KeyringCanary, standsInNoArgumentAndNoVariableOfTheProcess)
{
    const QByteArray key = canaryKey();
    ASSERT_EQ(save(key), QString());
    ASSERT_EQ(read(AIProvider::OpenAI), key);
    EXPECT_FALSE(contents(u"/proc/self/cmdline"_s).contains(key));
    EXPECT_FALSE(contents(u"/proc/self/environ"_s).contains(key));
    for (char **variable = environ; *variable != nullptr; ++variable) {
        EXPECT_FALSE(QByteArray(*variable).contains(key));
    }
}

} // namespace velarc
