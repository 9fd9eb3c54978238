// The store where nobody keeps secrets.

#include "keyring_fixture.h"

#include <QDir>

#include <gmock/gmock.h>

namespace velarc {

namespace {

// Far from any bound: a missing service is no late one.
constexpr auto kAtOnce = 5s;

class KeyringMissing : public KeyringTest
{
protected:
    void expectNothingAtOnce()
    {
        EXPECT_LT(durationOf([this] {
            EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
            EXPECT_TRUE(store->providersWithStoredKey(kLongBound).isEmpty());
        }),
            kAtOnce);
    }

    // Each operation that tells fails with a status that the pattern matches.
    void expectFailures(const char *pattern)
    {
        const QByteArray key = canaryKey();
        for (const QString &failure : {save(key), saveNow(key), remove()}) {
            EXPECT_THAT(failure.toStdString(), testing::MatchesRegex(pattern));
        }
        EXPECT_TRUE(QDir(qEnvironmentVariable("XDG_DATA_HOME")).isEmpty());
    }

    void expectNothingIsPrinted()
    {
        testing::internal::CaptureStderr();
        doEverything();
        EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
    }
};

class KeyringWithoutService : public KeyringMissing
{
};

class KeyringWithoutBus : public KeyringMissing
{
};

} // namespace

TEST_F(KeyringWithoutService, thereIsNoKeyAtOnce)
{
    expectNothingAtOnce();
}

TEST_F(KeyringWithoutService, nothingIsStoredAnywhereAndTheStatusNamesTheBus)
{
    expectFailures("Keychain error \\(202\\)\\.");
}

TEST_F(KeyringWithoutService, nothingIsPrinted)
{
    expectNothingIsPrinted();
}

TEST_F(KeyringWithoutBus, thereIsNoKeyAtOnce)
{
    expectNothingAtOnce();
}

TEST_F(KeyringWithoutBus, nothingIsStoredAnywhereAndTheStatusNamesInputAndOutput)
{
    expectFailures("Keychain error \\(4[0-9][0-9]\\)\\.");
}

TEST_F(KeyringWithoutBus, nothingIsPrinted)
{
    expectNothingIsPrinted();
}

} // namespace velarc
