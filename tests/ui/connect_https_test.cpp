// The connect sheet over the real cloud clients and a provider on loopback.

#include "connect_fixture.h"

#include "engines/http_client.h"
#include "store/sqlite_defaults_domain.h"
#include "support/cloud_services.h"
#include "support/environment.h"
#include "support/fixture.h"
#include "support/process_memory.h"
#include "support/scripted_https_server.h"
#include "support/wait_until.h"

#include <QDirIterator>
#include <QLoggingCategory>
#include <QTemporaryDir>

namespace velarc {

namespace {

constexpr const char *kKey = "sk-canary-9f27c1d4e85b60a3";

class ConnectHttpsTest : public ConnectWorld
{
protected:
    static TestAuthority &authority()
    {
        static TestAuthority shared;
        return shared;
    }

    ScopedTrust trust{authority()};
    ScopedVariable proxy{"https_proxy", std::nullopt};
    ScopedVariable allProxy{"all_proxy", std::nullopt};
    ScopedVariable httpProxy{"http_proxy", std::nullopt};
    ScriptedHttpsServer server{authority().issue()};
    QTemporaryDir folder;

    ConnectHttpsTest()
    {
        const auto onDisk = std::make_shared<SqliteDefaultsDomain>(
            QStringList{folder.filePath(u"store.sqlite"_s)}, *clock);
        store = std::make_shared<const LocalStore>(onDisk, &builtInActions);
        viewModel = std::make_unique<AppViewModel>(overCloudClients(
            services(), std::make_shared<HttpClient>(HttpLimits()), server.url({})));
    }

    void TearDown() override
    {
        ConnectWorld::TearDown();
        viewModel.reset();
        EXPECT_TRUE(scope->finish());
    }

    // Key by key, so that nothing but the field puts the whole key together.
    void typeKey()
    {
        for (const char character : std::string_view(kKey)) {
            type(QString(QChar::fromLatin1(character)));
        }
    }

    [[nodiscard]] bool waitForConnection()
    {
        return waitUntil([this] { return scope->running() == 0; });
    }

    [[nodiscard]] QByteArray storeFiles() const
    {
        QByteArray bytes;
        QDirIterator files(folder.path(), QDir::Files);
        while (files.hasNext()) {
            QFile file(files.next());
            EXPECT_TRUE(file.open(QIODevice::ReadOnly));
            bytes += file.readAll();
        }
        return bytes;
    }
};

// Notes every line that is logged, of every category and level.
class EveryLine
{
public:
    EveryLine()
    {
        lines().clear();
        QLoggingCategory::setFilterRules(u"*.debug=true\n*.info=true"_s);
        m_before = qInstallMessageHandler([](QtMsgType, const QMessageLogContext &,
                                              const QString &message) { lines().append(message); });
    }
    ~EveryLine()
    {
        qInstallMessageHandler(m_before);
        QLoggingCategory::setFilterRules({});
    }
    EveryLine(const EveryLine &) = delete;
    EveryLine &operator=(const EveryLine &) = delete;

    [[nodiscard]] static QStringList &lines()
    {
        static QStringList lines;
        return lines;
    }

private:
    QtMessageHandler m_before = nullptr;
};

TEST_F(ConnectHttpsTest, aGoodKeyConnectsTheEngine)
{
    server.answer(reply(200, fixtureBytes("wire/openai_reply_reasoning_before_message.json")));
    openSheet(AIProvider::OpenAI);
    typeKey();
    press(Qt::Key_Return);
    ASSERT_TRUE(waitForConnection());
    settle();
    EXPECT_FALSE(isSheetOpen());
    EXPECT_TRUE(shows(u"OpenAI connected successfully."_s));
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), QByteArray(kKey));
    ASSERT_EQ(server.requests().size(), 1);
    EXPECT_EQ(server.requests().first().values("Authorization"),
        QList<QByteArray>{QByteArray("Bearer ") + kKey});
}

TEST_F(ConnectHttpsTest, aBadKeyShowsWhatTheProviderAnswered)
{
    server.answer(reply(401, R"({"error":{"message":"Incorrect API key provided."}})"));
    openSheet(AIProvider::OpenAI);
    typeKey();
    press(Qt::Key_Return);
    ASSERT_TRUE(waitForConnection());
    settle();
    EXPECT_TRUE(shows(u"Connection error"_s));
    EXPECT_TRUE(sheet().errorText().contains(u"Incorrect API key provided."_s));
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), std::nullopt);
    EXPECT_EQ(server.requests().size(), 1);
}

TEST_F(ConnectHttpsTest, closedWhileItVerifiesItConnectsAllTheSame)
{
    openSheet(AIProvider::OpenAI);
    server.answer({}); // a stall
    typeKey();
    press(Qt::Key_Return);
    ASSERT_TRUE(waitUntil([this] { return server.requests().size() == 1; }));
    EXPECT_TRUE(shows(u"Connecting..."_s));
    click(u"Close"_s);
    ASSERT_TRUE(waitUntil([this] { return !shows(u"Connect OpenAI"_s); }));
    server.sendMore(
        reply(200, fixtureBytes("wire/openai_reply_reasoning_before_message.json")).bytes);
    ASSERT_TRUE(waitForConnection());
    settle();
    EXPECT_TRUE(shows(u"OpenAI connected successfully."_s));
    EXPECT_EQ(keys->storedKey(AIProvider::OpenAI), QByteArray(kKey));
}

TEST_F(ConnectHttpsTest, theKeyStandsInNoLogNoAccessibleTextNoTitleAndNoFileOfTheStore)
{
    const EveryLine log;
    // A provider that repeats the key in its answer.
    server.answer(
        reply(401, QByteArray(R"({"error":{"message":"Incorrect API key: )") + kKey + R"(."}})"));
    server.answer(reply(200, fixtureBytes("wire/openai_reply_reasoning_before_message.json")));
    openSheet(AIProvider::OpenAI);
    const QString key = QString::fromLatin1(kKey);
    const auto look = [&](const char *when) {
        SCOPED_TRACE(when);
        const QStringList texts = accessibleTexts(*window);
        EXPECT_GT(texts.size(), 20);
        EXPECT_FALSE(texts.join(u'\n').contains(key));
        EXPECT_FALSE(window->title().contains(key));
        EXPECT_FALSE(storeFiles().contains(kKey));
        EXPECT_FALSE(note().contains(key));
    };
    typeKey();
    look("typed");
    press(Qt::Key_Return);
    look("on its way");
    ASSERT_TRUE(waitForConnection());
    settle();
    ASSERT_TRUE(sheet().hasError());
    look("refused");
    click(u"Copy Error"_s);
    EXPECT_FALSE(copied->texts.join(u'\n').contains(key));
    press(Qt::Key_Tab);
    click(u"Verify & Connect"_s);
    ASSERT_TRUE(waitForConnection());
    settle();
    EXPECT_FALSE(isSheetOpen());
    look("connected");
    EXPECT_GT(EveryLine::lines().size(), 0);
    EXPECT_FALSE(EveryLine::lines().join(u'\n').contains(key));
}

TEST_F(ConnectHttpsTest, aClosedSheetLeavesNoTypedKeyInMemory)
{
    openSheet(AIProvider::OpenAI);
    typeKey();
    EXPECT_TRUE(standsInMemoryAsUtf16(kKey)); // the look finds one that is there
    press(Qt::Key_Escape);
    ASSERT_TRUE(waitUntil([this] { return !shows(u"Connect OpenAI"_s); }));
    EXPECT_FALSE(standsInMemoryAsUtf16(kKey));
}

TEST_F(ConnectHttpsTest, aConnectLeavesNoTypedKeyInMemory)
{
    server.answer(reply(200, fixtureBytes("wire/openai_reply_reasoning_before_message.json")));
    openSheet(AIProvider::OpenAI);
    typeKey();
    press(Qt::Key_Return);
    ASSERT_TRUE(waitForConnection());
    ASSERT_TRUE(waitUntil([this] { return !shows(u"Connect OpenAI"_s); }));
    EXPECT_FALSE(standsInMemoryAsUtf16(kKey));
}

} // namespace

} // namespace velarc
