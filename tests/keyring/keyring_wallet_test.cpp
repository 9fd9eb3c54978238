// The store on a desktop whose secrets are kept by a wallet daemon that the bus can start, though
// not under the name of the Secret Service.

#include "keyring_fixture.h"

#include "base/errors.h"

namespace velarc {

namespace {

class KeyringWallet : public KeyringTest
{
};

class KeyringWalletOfOldKind : public KeyringTest
{
};

class KeyringWalletThatIsStarting : public KeyringTest
{
};

bool hasOwner(const QString &name)
{
    return runTool(u"gdbus"_s,
        {u"call"_s, u"--session"_s, u"--dest"_s, u"org.freedesktop.DBus"_s, u"--object-path"_s,
            u"/org/freedesktop/DBus"_s, u"--method"_s, u"org.freedesktop.DBus.NameHasOwner"_s,
            name})
        .output.contains("true");
}

} // namespace

TEST_F(KeyringWallet, isStartedWhenTheFirstKeyIsAskedFor)
{
    ASSERT_FALSE(hasOwner(u"org.kde.kwalletd6"_s));
    EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
    EXPECT_TRUE(hasOwner(u"org.kde.kwalletd6"_s));
    EXPECT_TRUE(hasOwner(u"org.freedesktop.secrets"_s));
}

TEST_F(KeyringWallet, keepsKeysOnceItRuns)
{
    const QByteArray key = canaryKey();
    EXPECT_EQ(save(key), QString());
    EXPECT_EQ(read(AIProvider::OpenAI), key);
    EXPECT_EQ(store->providersWithStoredKey(kLongBound), QList{AIProvider::OpenAI});
}

TEST_F(KeyringWalletOfOldKind, doesNotSpeakForTheSecretServiceAndIsAskedOnce)
{
    ASSERT_FALSE(hasOwner(u"org.kde.kwalletd5"_s));
    EXPECT_EQ(save(canaryKey()), u"Keychain error (202)."_s);
    EXPECT_TRUE(hasOwner(u"org.kde.kwalletd5"_s));
    EXPECT_LT(durationOf([this] { EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt); }), 1s);
}

TEST_F(KeyringWalletThatIsStarting, isNotWaitedForAfterAStop)
{
    std::stop_source source;
    const auto reading = watch(store->apiKey(AIProvider::OpenAI, source.get_token()));
    const ToolRun run = runTool(
        u"gdbus"_s, {u"wait"_s, u"--session"_s, u"--timeout"_s, u"20"_s, u"org.kde.kwalletd5"_s});
    ASSERT_EQ(run.status, 0) << run.output.toStdString();
    source.request_stop();
    EXPECT_THROW(outcomeOf(reading), CancellationError);
    EXPECT_LT(durationOf([this] { store.reset(); }), 1s);
}

} // namespace velarc
