#include "base/json.h"
#include "entry/single_instance.h"
#include "support/environment.h"
#include "support/wait_until.h"

#include <QFileInfo>
#include <QLocalSocket>
#include <QTemporaryDir>
#include <QThread>

#include <gtest/gtest.h>

#include <future>

namespace velarc {
namespace {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

class LocalInstanceTest : public ::testing::Test
{
protected:
    QTemporaryDir folder;
    ScopedVariable runtime{"XDG_RUNTIME_DIR", folder.path().toStdString()};
    QStringList asked;
    WindowRequests requests{
        {[this](const ActivationContext &context) { asked.append(context.activationToken); },
            [this](const QUrl &url) { asked.append(url.toString()); }, [](const QUuid &) {},
            [](const CopiedThing &) {}}};
    LocalInstance first{requests};

    // Hands over from another thread, as another process does, while this one turns its loop.
    [[nodiscard]] static HandOver handOverMeanwhile(const StartRequest &request)
    {
        auto outcome = std::async(std::launch::async, [&] { return handOverLocally(request); });
        EXPECT_TRUE(waitUntil([&] { return outcome.wait_for(1ms) == std::future_status::ready; }));
        return outcome.get();
    }

    [[nodiscard]] bool aStrangerIsThrownOut(const QByteArray &line)
    {
        QLocalSocket stranger;
        stranger.connectToServer(folder.filePath(u"velarc.socket"_s));
        stranger.write(line);
        return waitUntil([&] { return stranger.state() == QLocalSocket::UnconnectedState; })
            && stranger.readAll().isEmpty();
    }
};

TEST_F(LocalInstanceTest, firstHasTheWindowAndTheSecondHandsOver)
{
    ASSERT_TRUE(first.claim());
    LocalInstance second(requests);
    EXPECT_FALSE(second.claim());
    EXPECT_EQ(
        handOverMeanwhile({{u"velarc://share-handoff"_s}, {u"token"_s, u"id"_s}}), HandOver::Done);
    EXPECT_TRUE(waitUntil([this] { return asked.size() == 2; }));
    EXPECT_EQ(asked, (QStringList{u"token"_s, u"velarc://share-handoff"_s}));
}

TEST_F(LocalInstanceTest, whereNobodyListensThereIsNobody)
{
    EXPECT_EQ(handOverLocally({}), HandOver::NobodyThere);
}

TEST_F(LocalInstanceTest, windowThatLeavesWithoutAnAnswerCountsAsGone)
{
    QLocalServer leaving;
    QObject::connect(&leaving, &QLocalServer::newConnection, &leaving,
        [&] { leaving.nextPendingConnection()->abort(); });
    ASSERT_TRUE(leaving.listen(folder.filePath(u"velarc.socket"_s)));
    EXPECT_EQ(handOverMeanwhile({}), HandOver::NobodyThere);
}

// The one that just closes hangs up before it gives the lock back.
TEST_F(LocalInstanceTest, startAmidTheEndOfTheFirstHasTheWindowNext)
{
    std::promise<void> listens;
    const std::unique_ptr<QThread> leaving(QThread::create([&] {
        QLockFile lock(folder.filePath(u"velarc.lock"_s));
        EXPECT_TRUE(lock.tryLock());
        QLocalServer server;
        EXPECT_TRUE(server.listen(folder.filePath(u"velarc.socket"_s)));
        listens.set_value();
        EXPECT_TRUE(server.waitForNewConnection(20'000));
        delete server.nextPendingConnection();
    }));
    leaving->start();
    listens.get_future().wait();
    const ScopedVariable bus("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    SingleInstance next({});
    EXPECT_EQ(next.claimOrHandOver({}, 20s), Standing::HasTheWindow);
    EXPECT_TRUE(leaving->wait(20'000));
}

TEST_F(LocalInstanceTest, windowThatNeverListensIsGivenUp)
{
    QLockFile lock(folder.filePath(u"velarc.lock"_s));
    ASSERT_TRUE(lock.tryLock());
    const ScopedVariable bus("DBUS_SESSION_BUS_ADDRESS", std::nullopt);
    SingleInstance next({});
    EXPECT_EQ(next.claimOrHandOver({}, 30ms), Standing::NotAnswered);
}

TEST_F(LocalInstanceTest, endOfTheFirstMakesRoomForTheNext)
{
    {
        LocalInstance earlier(requests);
        ASSERT_TRUE(earlier.claim());
    }
    EXPECT_TRUE(first.claim());
}

TEST_F(LocalInstanceTest, socketIsTheUsersAlone)
{
    ASSERT_TRUE(first.claim());
    const auto permissions = QFileInfo(folder.filePath(u"velarc.socket"_s)).permissions();
    constexpr auto kOthers =
        QFile::ReadGroup | QFile::WriteGroup | QFile::ReadOther | QFile::WriteOther;
    EXPECT_EQ(permissions & kOthers, QFile::Permissions());
}

TEST_F(LocalInstanceTest, nonsenseOnTheSocketIsThrownOut)
{
    ASSERT_TRUE(first.claim());
    EXPECT_TRUE(aStrangerIsThrownOut("no json\n"));
    EXPECT_TRUE(aStrangerIsThrownOut("[]\n"));
    EXPECT_TRUE(aStrangerIsThrownOut("{\"addresses\":7}\n"));
    EXPECT_TRUE(aStrangerIsThrownOut(QByteArray(2'000'000, 'x')));
    EXPECT_TRUE(asked.isEmpty());
}

TEST_F(LocalInstanceTest, requestSurvivesTheSocketWhateverItHolds)
{
    const StartRequest request{{u"velarc://x\n\u0000\U0001F600"_s, QString()}, {u"\""_s, u"b"_s}};
    EXPECT_EQ(decodeStartRequest(encodeStartRequest(request)), request);
    EXPECT_EQ(encodeStartRequest(request).count('\n'), 1);
}

} // namespace
} // namespace velarc
