// The store over a service that takes every call and answers none.

#include "keyring_fixture.h"

#include "base/errors.h"
#include "fakes/silent_bus_name.h"

#include <cstdlib>

namespace velarc {

namespace {

const QString kTimedOut = u"Keychain error (424)."_s;

// Beside the bound: starting threads and reaching the bus on a machine with much to do.
constexpr auto kSlack = 3s;

constexpr const char *kServiceIsThere = "VELARC_TEST_SERVICE_IS_THERE";

class KeyringSilent : public KeyringTest
{
protected:
    std::optional<SilentBusName> service;

    void SetUp() override
    {
        KeyringTest::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        // The program that a test starts to see how it ends finds the name taken.
        if (!qEnvironmentVariableIsSet(kServiceIsThere)) {
            service.emplace("org.freedesktop.secrets");
            qputenv(kServiceIsThere, "1");
        }
    }
    void TearDown() override { qunsetenv(kServiceIsThere); }

    // `work` ends when the bound has passed, neither before nor long after it.
    template <typename Work> static void expectEndsAtTheBound(Work work)
    {
        const auto spent = durationOf(work);
        EXPECT_GE(spent, kShortBound);
        EXPECT_LT(spent, kShortBound + kSlack);
    }
};

// A service that answers every call with nothing at all.
class KeyringSpeechless : public KeyringTest
{
protected:
    void SetUp() override
    {
        KeyringTest::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        m_service.emplace("org.freedesktop.secrets", SilentBusName::Calls::Acknowledged);
    }

private:
    std::optional<SilentBusName> m_service;
};

void listStoredKeysAndExit()
{
    {
        KeychainCredentialStore store(kService);
        (void)store.providersWithStoredKey(kShortBound);
    }
    std::exit(0);
}

} // namespace

TEST_F(KeyringSilent, theStartGoesOnAtItsBound)
{
    expectEndsAtTheBound(
        [this] { EXPECT_TRUE(store->providersWithStoredKey(kShortBound).isEmpty()); });
    expectEndsAtTheBound(
        [this] { EXPECT_EQ(saveNow(canaryKey(), AIProvider::OpenAI, kShortBound), kTimedOut); });
    EXPECT_GE(service->calls(), 2);
}

TEST_F(KeyringSilent, aStopEndsACallAtOnce)
{
    std::stop_source source;
    const auto reading = watch(store->apiKey(AIProvider::OpenAI, source.get_token()));
    ASSERT_TRUE(service->waitForCalls(1));
    source.request_stop();
    EXPECT_FALSE(reading->isThere()) << "resumed inside request_stop()";
    EXPECT_LT(durationOf([&] { EXPECT_THROW(outcomeOf(reading), CancellationError); }), kSlack);
}

TEST_F(KeyringSilent, aStopFreesTheThreadForTheNextCall)
{
    for (int call = 1; call <= 3; ++call) {
        std::stop_source source;
        const auto reading = watch(store->apiKey(AIProvider::OpenAI, source.get_token()));
        ASSERT_TRUE(service->waitForCalls(call));
        source.request_stop();
        EXPECT_THROW(outcomeOf(reading), CancellationError);
    }
}

TEST_F(KeyringSilent, everyCallEndsAtItsBound)
{
    useBound(kShortBound);
    expectEndsAtTheBound([this] { EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt); });
    expectEndsAtTheBound([this] { EXPECT_EQ(save(canaryKey()), kTimedOut); });
    expectEndsAtTheBound([this] { EXPECT_EQ(remove(), kTimedOut); });
}

TEST_F(KeyringSilent, theBoundCountsFromTheCallAlsoInAQueue)
{
    useBound(kShortBound);
    expectEndsAtTheBound([this] {
        const auto first = watch(store->apiKey(AIProvider::OpenAI, {}));
        const auto second = watch(store->apiKey(AIProvider::Gemini, {}));
        const auto third = watch(store->apiKey(AIProvider::Anthropic, {}));
        EXPECT_FALSE(outcomeOf(third).has_value());
        EXPECT_FALSE(outcomeOf(second).has_value());
        EXPECT_FALSE(outcomeOf(first).has_value());
    });
}

TEST_F(KeyringSilent, theStoreGoesWhileACallIsOut)
{
    const auto reading = watch(store->apiKey(AIProvider::OpenAI, {}));
    ASSERT_TRUE(service->waitForCalls(1));
    EXPECT_LT(durationOf([this] { store.reset(); }), kSlack);
    EXPECT_THROW(outcomeOf(reading), CancellationError);
}

TEST_F(KeyringSilent, theProgramEndsWithoutAWordWhileTheServiceOwesAnAnswer)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    const auto spent =
        durationOf([] { EXPECT_EXIT(listStoredKeysAndExit(), testing::ExitedWithCode(0), "^$"); });
    EXPECT_LT(spent, 2 * kSlack);
    EXPECT_GE(service->calls(), 1);
}

TEST_F(KeyringSilent, nothingIsPrinted)
{
    useBound(kShortBound);
    testing::internal::CaptureStderr();
    (void)store->providersWithStoredKey(kShortBound);
    (void)saveNow(canaryKey(), AIProvider::OpenAI, kShortBound);
    (void)save(canaryKey());
    (void)read(AIProvider::OpenAI);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(KeyringSpeechless, failsAtOnceAndWithoutAWord)
{
    testing::internal::CaptureStderr();
    EXPECT_LT(durationOf([this] {
        EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
        EXPECT_NE(save(canaryKey()), QString());
        EXPECT_NE(saveNow(canaryKey()), QString());
        EXPECT_NE(remove(), QString());
        EXPECT_TRUE(store->providersWithStoredKey(kLongBound).isEmpty());
    }),
        kSlack);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace velarc
