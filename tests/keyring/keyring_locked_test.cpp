// The store over a keyring that is locked, with one key in it.

#include "keyring_fixture.h"

#include "base/errors.h"
#include "fakes/silent_bus_name.h"

namespace velarc {

namespace {

const QString kIsLocked = u"Keychain error (102)."_s;

// Who asks the user on the keyring's behalf. There is nobody in these sessions, unless a test plays
// it with a user who never answers.
class IgnoredPrompter
{
public:
    [[nodiscard]] int calls() const { return m_name.calls(); }
    [[nodiscard]] bool isAsked() const { return m_name.waitForCalls(1); }

private:
    SilentBusName m_name{"org.gnome.keyring.SystemPrompter", SilentBusName::Calls::Acknowledged};
};

class KeyringLocked : public KeyringTest
{
public:
    static void SetUpTestSuite()
    {
        ASSERT_TRUE(qEnvironmentVariableIsSet("VELARC_SESSION"));
        putItem(u"openai_api_key"_s, canaryKey());
        const ToolRun run = runTool(u"gdbus"_s,
            {u"call"_s, u"--session"_s, u"--dest"_s, u"org.freedesktop.secrets"_s,
                u"--object-path"_s, u"/org/freedesktop/secrets"_s, u"--method"_s,
                u"org.freedesktop.Secret.Service.Lock"_s,
                u"['/org/freedesktop/secrets/collection/login']"_s});
        ASSERT_EQ(run.status, 0) << run.output.toStdString();
    }
};

} // namespace

TEST_F(KeyringLocked, aKeyThatStaysLockedReadsAsNone)
{
    EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
}

TEST_F(KeyringLocked, savingTellsThatItIsLocked)
{
    EXPECT_EQ(save(canaryKey(), AIProvider::OpenAI), kIsLocked);
    EXPECT_EQ(save(canaryKey(), AIProvider::Gemini), kIsLocked);
}

TEST_F(KeyringLocked, savingAtTheStartTellsThatItIsLocked)
{
    EXPECT_EQ(saveNow(canaryKey(), AIProvider::OpenAI), kIsLocked);
    EXPECT_EQ(saveNow(canaryKey(), AIProvider::Gemini), kIsLocked);
}

TEST_F(KeyringLocked, deletingDoesNotClaimSuccess)
{
    EXPECT_EQ(remove(AIProvider::OpenAI), kIsLocked);
    EXPECT_EQ(itemCount(u"openai_api_key"_s), 1);
}

TEST_F(KeyringLocked, deletingAKeyThatIsNotThereSucceeds)
{
    EXPECT_EQ(remove(AIProvider::Gemini), QString());
}

TEST_F(KeyringLocked, theStartCountsTheLockedKey)
{
    EXPECT_EQ(store->providersWithStoredKey(kLongBound), QList{AIProvider::OpenAI});
}

TEST_F(KeyringLocked, theStartNeverAsksTheUser)
{
    const IgnoredPrompter prompter;
    EXPECT_EQ(store->providersWithStoredKey(kLongBound), QList{AIProvider::OpenAI});
    EXPECT_EQ(saveNow(canaryKey(), AIProvider::OpenAI), kIsLocked);
    EXPECT_EQ(saveNow(canaryKey(), AIProvider::Gemini), kIsLocked);
    EXPECT_EQ(prompter.calls(), 0);
}

TEST_F(KeyringLocked, readingAsksTheUserAndAStopEndsTheQuestion)
{
    const IgnoredPrompter prompter;
    std::stop_source source;
    const auto reading = watch(store->apiKey(AIProvider::OpenAI, source.get_token()));
    ASSERT_TRUE(prompter.isAsked());
    source.request_stop();
    EXPECT_LT(durationOf([&] { EXPECT_THROW(outcomeOf(reading), CancellationError); }), 1s);
    EXPECT_LT(durationOf([this] { store.reset(); }), 1s) << "its thread still waits for the user";
}

TEST_F(KeyringLocked, aQuestionThatNobodyAnswersEndsAtTheBound)
{
    const IgnoredPrompter prompter;
    useBound(kShortBound);
    EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
    EXPECT_EQ(save(canaryKey()), u"Keychain error (424)."_s);
    EXPECT_EQ(remove(), u"Keychain error (424)."_s);
    EXPECT_GE(prompter.calls(), 1);
}

TEST_F(KeyringLocked, noFailureShowsTheKey)
{
    const QByteArray key = canaryKey();
    EXPECT_FALSE(save(key).contains(QString::fromUtf8(key)));
    EXPECT_FALSE(saveNow(key).contains(QString::fromUtf8(key)));
}

TEST_F(KeyringLocked, nothingIsPrinted)
{
    testing::internal::CaptureStderr();
    doEverything();
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

} // namespace velarc
