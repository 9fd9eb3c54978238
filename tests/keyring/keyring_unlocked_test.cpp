// The store over a keyring that is unlocked.

#include "keyring_fixture.h"

#include "base/errors.h"
#include "support/environment.h"

namespace velarc {

namespace {

const QString kOpenAI = u"openai_api_key"_s;

class KeyringUnlocked : public KeyringTest
{
protected:
    void SetUp() override
    {
        KeyringTest::SetUp();
        ASSERT_FALSE(HasFatalFailure());
        runTool(u"secret-tool"_s, {u"clear"_s, u"service"_s, kService});
    }
};

} // namespace

TEST_F(KeyringUnlocked, aKeyThatWasSavedIsRead)
{
    const QByteArray key = canaryKey();
    EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
    EXPECT_EQ(save(key), QString());
    EXPECT_EQ(read(AIProvider::OpenAI), key);
}

TEST_F(KeyringUnlocked, aSecondSaveTakesThePlaceOfTheFirst)
{
    const QByteArray key = canaryKey();
    EXPECT_EQ(save(canaryKey()), QString());
    EXPECT_EQ(save(key), QString());
    EXPECT_EQ(read(AIProvider::OpenAI), key);
    EXPECT_EQ(itemCount(kOpenAI), 1);
}

TEST_F(KeyringUnlocked, aSaveUpdatesAnItemWhereverItLies)
{
    const QByteArray key = canaryKey();
    putItem(kOpenAI, canaryKey(), {u"--collection=session"_s});
    EXPECT_EQ(save(key), QString());
    EXPECT_EQ(itemCount(kOpenAI), 1);
    EXPECT_EQ(itemSecret(kOpenAI), key);
}

TEST_F(KeyringUnlocked, aDeletedKeyIsGone)
{
    EXPECT_EQ(save(canaryKey()), QString());
    EXPECT_EQ(remove(), QString());
    EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
    EXPECT_EQ(itemCount(kOpenAI), 0);
}

TEST_F(KeyringUnlocked, everyItemOfTheAccountIsDeleted)
{
    putItem(kOpenAI, canaryKey(), {u"--collection=session"_s});
    putItem(kOpenAI, canaryKey());
    ASSERT_EQ(itemCount(kOpenAI), 2);
    EXPECT_EQ(remove(), QString());
    EXPECT_EQ(itemCount(kOpenAI), 0);
}

TEST_F(KeyringUnlocked, deletingAKeyThatIsNotThereSucceeds)
{
    EXPECT_EQ(remove(), QString());
}

TEST_F(KeyringUnlocked, surroundingBlanksAreNotStored)
{
    const QByteArray key = canaryKey();
    EXPECT_EQ(save(" \t" + key + "\r\n "), QString());
    EXPECT_EQ(itemSecret(kOpenAI), key);
    EXPECT_EQ(saveNow("\n" + key + " ", AIProvider::Gemini), QString());
    EXPECT_EQ(itemSecret(u"gemini_api_key"_s), key);
}

TEST_F(KeyringUnlocked, anItemThatAnotherProgramPutThereIsReadTrimmed)
{
    const QByteArray key = canaryKey();
    putItem(kOpenAI, " " + key + "\n");
    EXPECT_EQ(read(AIProvider::OpenAI), key);
}

TEST_F(KeyringUnlocked, aBlankItemReadsAsNone)
{
    putItem(kOpenAI, " \t\n");
    EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
}

TEST_F(KeyringUnlocked, anItemThatIsNoTextReadsAsNone)
{
    putItem(kOpenAI, "canary-\xFF\xFE");
    ASSERT_EQ(itemCount(kOpenAI), 1);
    EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
}

TEST_F(KeyringUnlocked, threeAccountsDoNotMix)
{
    const QByteArray first = canaryKey();
    const QByteArray second = canaryKey();
    const QByteArray third = canaryKey();
    EXPECT_EQ(save(first, AIProvider::OpenAI), QString());
    EXPECT_EQ(save(second, AIProvider::Gemini), QString());
    EXPECT_EQ(save(third, AIProvider::Anthropic), QString());
    EXPECT_EQ(read(AIProvider::OpenAI), first);
    EXPECT_EQ(read(AIProvider::Gemini), second);
    EXPECT_EQ(read(AIProvider::Anthropic), third);
    EXPECT_EQ(remove(AIProvider::Gemini), QString());
    EXPECT_EQ(read(AIProvider::OpenAI), first);
    EXPECT_EQ(read(AIProvider::Gemini), std::nullopt);
    EXPECT_EQ(read(AIProvider::Anthropic), third);
}

TEST_F(KeyringUnlocked, theServiceNameKeepsProgramsApart)
{
    EXPECT_EQ(save(canaryKey()), QString());
    KeychainCredentialStore other(u"com.tolmar.other"_s, kLongBound);
    EXPECT_EQ(outcomeOf(other.apiKey(AIProvider::OpenAI, {})).has_value(), false);
    EXPECT_TRUE(other.providersWithStoredKey(kLongBound).isEmpty());
    outcomeOf(other.deleteAPIKey(AIProvider::OpenAI, {}));
    EXPECT_EQ(itemCount(kOpenAI), 1);
}

TEST_F(KeyringUnlocked, aStoredKeyIsAnItemThatOtherProgramsFind)
{
    const QByteArray key = canaryKey();
    EXPECT_EQ(save(key, AIProvider::Anthropic), QString());
    const ToolRun found = runTool(u"secret-tool"_s,
        {u"search"_s, u"--all"_s, u"service"_s, kService, u"account"_s, u"anthropic_api_key"_s});
    EXPECT_TRUE(found.output.contains("label = Velarc API key\n"));
    EXPECT_TRUE(found.output.contains("schema = com.tolmar.velarc.ApiKey\n"));
    EXPECT_TRUE(found.output.contains("attribute.service = com.tolmar.velarc\n"));
    EXPECT_TRUE(found.output.contains("attribute.account = anthropic_api_key\n"));
    EXPECT_TRUE(found.output.contains("secret = " + key + '\n'));
}

TEST_F(KeyringUnlocked, anItemOfAnotherSchemaIsNotOurs)
{
    const ToolRun run = runTool(u"secret-tool"_s,
        {u"store"_s, u"--label=other"_s, u"service"_s, kService, u"account"_s, kOpenAI},
        canaryKey());
    ASSERT_EQ(run.status, 0);
    EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
    EXPECT_TRUE(store->providersWithStoredKey(kLongBound).isEmpty());
}

TEST_F(KeyringUnlocked, whatIsNoKeyIsRefusedAndTheOldKeyStays)
{
    const QByteArray key = canaryKey();
    EXPECT_EQ(save(key), QString());
    for (const QByteArray &bad : {QByteArray(), QByteArray(" \n\t"), QByteArray("key\xC3")}) {
        EXPECT_EQ(save(bad), u"Credential is invalid."_s);
        EXPECT_EQ(saveNow(bad), u"Credential is invalid."_s);
    }
    EXPECT_EQ(itemSecret(kOpenAI), key);
}

TEST_F(KeyringUnlocked, enginesThatNeedNoKeyAreRefused)
{
    const QString refusal = u"This provider does not require a stored credential."_s;
    for (const AIProvider provider :
        {AIProvider::UseDefault, AIProvider::AppleIntelligence, AIProvider::LocalFallback}) {
        EXPECT_EQ(read(provider), std::nullopt);
        EXPECT_EQ(save(canaryKey(), provider), refusal);
        EXPECT_EQ(saveNow(canaryKey(), provider), refusal);
        EXPECT_EQ(remove(provider), refusal);
    }
}

TEST_F(KeyringUnlocked, theStartSeesWhichKeysAreStored)
{
    EXPECT_TRUE(store->providersWithStoredKey(kLongBound).isEmpty());
    EXPECT_EQ(save(canaryKey(), AIProvider::Anthropic), QString());
    EXPECT_EQ(save(canaryKey(), AIProvider::OpenAI), QString());
    EXPECT_EQ(store->providersWithStoredKey(kLongBound),
        (QList{AIProvider::OpenAI, AIProvider::Anthropic}));
}

TEST_F(KeyringUnlocked, aSaveAtTheStartAddsAndUpdates)
{
    const QByteArray key = canaryKey();
    EXPECT_EQ(saveNow(canaryKey()), QString());
    EXPECT_EQ(saveNow(key), QString());
    EXPECT_EQ(itemSecret(kOpenAI), key);
    EXPECT_EQ(itemCount(kOpenAI), 1);
}

TEST_F(KeyringUnlocked, aCallThatWasStoppedBeforeItBeganDoesNothing)
{
    std::stop_source source;
    source.request_stop();
    const std::stop_token stop = source.get_token();
    EXPECT_THROW(outcomeOf(store->saveAPIKey(Secret(canaryKey()), AIProvider::OpenAI, stop)),
        CancellationError);
    EXPECT_THROW(outcomeOf(store->apiKey(AIProvider::OpenAI, stop)), CancellationError);
    EXPECT_EQ(itemCount(kOpenAI), 0);
}

TEST_F(KeyringUnlocked, callsRunInTheOrderTheyWereMade)
{
    const QByteArray key = canaryKey();
    const auto saving = watch(store->saveAPIKey(Secret(canaryKey()), AIProvider::OpenAI, {}));
    const auto updating = watch(store->saveAPIKey(Secret(key), AIProvider::OpenAI, {}));
    EXPECT_EQ(read(AIProvider::OpenAI), key);
    EXPECT_TRUE(saving->isThere());
    EXPECT_TRUE(updating->isThere());
}

TEST_F(KeyringUnlocked, nothingIsPrintedEvenWhereTheLibrariesAreTalkative)
{
    const ScopedVariable talkative("G_MESSAGES_DEBUG", "all");
    testing::internal::CaptureStderr();
    testing::internal::CaptureStdout();
    doEverything();
    EXPECT_EQ(testing::internal::GetCapturedStdout(), "");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace velarc
