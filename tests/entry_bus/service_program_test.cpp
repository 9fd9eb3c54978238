#include "bus_caller.h"

#include "base/errors.h"
#include "base/uuid.h"
#include "entry/actions_service.h"
#include "entry/desktop_names.h"
#include "entry/service_program.h"
#include "support/app_world.h"
#include "support/outcome.h"

namespace velarc {
namespace {

class ServiceProgramTest : public AppWorld
{
protected:
    QDBusConnection bus = QDBusConnection::sessionBus();
    BusCaller caller;
    std::stop_source stop;
    int copiesFinished = 0;
    QList<std::optional<QUuid>> windowsOpened;
    AIAction action = testAction(u"Cloud"_s);
    std::shared_ptr<const Outcome<bool>> served;

    void SetUp() override
    {
        ASSERT_TRUE(qEnvironmentVariableIsSet("VELARC_SESSION")); // else it is the user's own bus
        action.provider = AIProvider::OpenAI;
        store->saveActions({action});
        keys->keys[AIProvider::OpenAI] = "sk";
        served = serve();
        ASSERT_TRUE(caller.knows(kServiceName));
    }

    void TearDown() override
    {
        openAI->answer.gate.open();
        stop.request_stop();
        EXPECT_TRUE(waitForOthers([this] { return served->isThere(); }));
        EXPECT_TRUE(scope->finish());
    }

    [[nodiscard]] std::shared_ptr<const Outcome<bool>> serve()
    {
        ServiceParts parts;
        parts.openStore = [this] { return store; };
        parts.makeViewModel = [this] { return std::make_unique<AppViewModel>(services()); };
        parts.finishCopying = [this](std::stop_token) { return finishCopying(); };
        parts.clock = clock;
        parts.scope = scope;
        parts.openWindow = [this](const std::optional<QUuid> &id, const ActivationContext &) {
            windowsOpened.append(id);
        };
        return watch(serveOnBus(bus, std::move(parts), kServiceIdleTime, stop.get_token()));
    }

    QCoro::Task<CopyOutcome> finishCopying()
    {
        ++copiesFinished;
        co_return CopyOutcome::NothingToCopy;
    }

    [[nodiscard]] static QDBusMessage actionsCall(const QString &method, const QVariantList &with)
    {
        QDBusMessage call = QDBusMessage::createMethodCall(
            kServiceName, kActionsPath, u"com.tolmar.velarc.Actions1"_s, method);
        call.setArguments(with);
        return call;
    }

    [[nodiscard]] QDBusPendingCall beginRun() const
    {
        return caller.begin(actionsCall(u"Run"_s, {action.name, u"x"_s}));
    }

    [[nodiscard]] bool areRunsBegun(qsizetype count) const
    {
        return waitForOthers([&] { return openAI->textRequests.size() == count; });
    }

    // Lets the idle time pass, and the moment behind it.
    void passIdleTime()
    {
        clock->advance(kServiceIdleTime);
        turnEventLoop();
        clock->advance(1s);
        turnEventLoop();
    }
};

TEST_F(ServiceProgramTest, endsOnceNobodyHasAskedForHalfAMinute)
{
    clock->advance(29s);
    turnEventLoop();
    EXPECT_FALSE(served->isThere());
    passIdleTime();
    EXPECT_EQ(served->value, true);
    EXPECT_FALSE(caller.knows(kServiceName));
}

TEST_F(ServiceProgramTest, everyCallKeepsItForAnotherHalfAMinute)
{
    clock->advance(29s);
    static_cast<void>(caller.call(actionsCall(u"List"_s, {})));
    clock->advance(29s);
    turnEventLoop();
    EXPECT_FALSE(served->isThere());
    passIdleTime();
    EXPECT_TRUE(served->isThere());
}

TEST_F(ServiceProgramTest, runKeepsItHoweverLongItTakes)
{
    openAI->answer.gate.close();
    const QDBusPendingCall run = beginRun();
    ASSERT_TRUE(areRunsBegun(1));
    for (int minute = 0; minute < 10; ++minute) {
        passIdleTime();
    }
    EXPECT_FALSE(served->isThere());
    openAI->answer.gate.open();
    EXPECT_TRUE(waitForOthers([&] { return run.isFinished(); }));
    EXPECT_EQ(run.reply().arguments().value(0), u"from OpenAI"_s);
    passIdleTime();
    EXPECT_TRUE(served->isThere());
}

TEST_F(ServiceProgramTest, callAtTheVeryEndIsAnsweredAndBeginsTheWaitingAnew)
{
    clock->advance(kServiceIdleTime);
    turnEventLoop(); // the name has been given back by now
    EXPECT_FALSE(caller.knows(kServiceName));
    QDBusMessage late = QDBusMessage::createMethodCall(
        bus.baseService(), kActionsPath, u"com.tolmar.velarc.Actions1"_s, u"List"_s);
    EXPECT_EQ(caller.call(late).type(), QDBusMessage::ReplyMessage);
    clock->advance(1s);
    turnEventLoop();
    EXPECT_FALSE(served->isThere());
    EXPECT_TRUE(caller.knows(kServiceName));
}

TEST_F(ServiceProgramTest, runIsStoppedWhenItsCallerLeaves)
{
    openAI->answer.gate.close();
    const QDBusPendingCall run = beginRun();
    ASSERT_TRUE(areRunsBegun(1));
    EXPECT_GT(scope->running(), 0U);
    caller.leave();
    EXPECT_TRUE(waitForOthers([this] { return scope->running() == 0; }));
    EXPECT_FALSE(served->isThere());
}

TEST_F(ServiceProgramTest, moreRunsAtOnceThanAreAllowedAreRefused)
{
    openAI->answer.gate.close();
    QList<QDBusPendingCall> runs;
    for (int number = 0; number < ActionsService::kMostRuns; ++number) {
        runs.append(beginRun());
    }
    ASSERT_TRUE(areRunsBegun(ActionsService::kMostRuns));
    const QDBusMessage refusal = caller.call(actionsCall(u"Run"_s, {action.name, u"x"_s}));
    EXPECT_EQ(refusal.errorName(), u"com.tolmar.velarc.Actions1.Error.TooManyRuns"_s);
    openAI->answer.gate.open();
    EXPECT_TRUE(waitForOthers([&] {
        return std::all_of(
            runs.begin(), runs.end(), [](const auto &run) { return run.isFinished(); });
    }));
    EXPECT_EQ(caller.call(actionsCall(u"Run"_s, {action.name, u"x"_s})).type(),
        QDBusMessage::ReplyMessage);
}

TEST_F(ServiceProgramTest, failedRunIsAnErrorWithItsSentence)
{
    keys->keys.clear();
    const QDBusMessage failure = caller.call(actionsCall(u"Run"_s, {action.name, u"x"_s}));
    EXPECT_EQ(failure.errorName(), u"com.tolmar.velarc.Actions1.Error.Failed"_s);
    EXPECT_EQ(failure.errorMessage(), u"OpenAI is not connected yet."_s);
}

TEST_F(ServiceProgramTest, sharedTitleIsAnError)
{
    AIAction twin = action;
    twin.id = newUuid();
    store->saveActions({action, twin});
    EXPECT_EQ(caller.call(actionsCall(u"Run"_s, {action.name, u"x"_s})).errorName(),
        u"com.tolmar.velarc.Actions1.Error.AmbiguousTitle"_s);
}

TEST_F(ServiceProgramTest, textWithZerosGoesOverTheBusWhole)
{
    openAI->answer.result.payload = TextPayload{u"a\0b"_s};
    const QVariantList answer =
        caller.call(actionsCall(u"Run"_s, {action.name, u"x"_s})).arguments();
    EXPECT_EQ(answer.value(0), u"a\uFFFDb"_s);
    EXPECT_EQ(copiesFinished, 1);
}

TEST_F(ServiceProgramTest, secondServiceDoesNotServe)
{
    QDBusConnection other = QDBusConnection::connectToBus(QDBusConnection::SessionBus, u"2"_s);
    ServiceParts parts;
    parts.clock = clock;
    const auto second = watch(serveOnBus(other, parts, kServiceIdleTime, {}));
    EXPECT_EQ(second->value, false);
    QDBusConnection::disconnectFromBus(u"2"_s);
}

TEST_F(ServiceProgramTest, stopEndsIt)
{
    stop.request_stop();
    EXPECT_TRUE(waitForOthers([this] { return served->isThere(); }));
    EXPECT_THROW(std::rethrow_exception(served->failure), CancellationError);
    EXPECT_FALSE(caller.knows(kServiceName));
}

TEST_F(ServiceProgramTest, searchOpensNothingUntilAHitIsChosen)
{
    QDBusMessage search = QDBusMessage::createMethodCall(kServiceName, kSearchProviderPath,
        u"org.gnome.Shell.SearchProvider2"_s, u"GetInitialResultSet"_s);
    search << QStringList{u"cloud"_s};
    EXPECT_EQ(
        caller.call(search).arguments().value(0).toStringList(), QStringList{uuidText(action.id)});
    EXPECT_TRUE(windowsOpened.isEmpty());
    QDBusMessage run =
        QDBusMessage::createMethodCall(kServiceName, kRunnerPath, u"org.kde.krunner1"_s, u"Run"_s);
    run << uuidText(action.id) << QString();
    static_cast<void>(caller.call(run));
    EXPECT_EQ(windowsOpened, QList<std::optional<QUuid>>{action.id});
}

} // namespace
} // namespace velarc
