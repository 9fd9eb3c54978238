// The store in memory that other tests rest on keeps what a secret store promises.

#include "base/errors.h"
#include "fakes/memory_credential_store.h"
#include "support/outcome.h"
#include "support/printers.h"

#include <gtest/gtest.h>

namespace velarc {

namespace {

using namespace std::chrono_literals;
using Operation = CredentialCall::Operation;

constexpr std::chrono::milliseconds kBound = 250ms;

class MemoryCredentialStoreTest : public testing::Test
{
protected:
    MemoryCredentialStore store;

    std::optional<QByteArray> read(AIProvider provider)
    {
        const std::optional<Secret> key = outcomeOf(store.apiKey(provider, {}));
        return key ? std::optional(key->bytes().toByteArray()) : std::nullopt;
    }

    void save(const char *key, AIProvider provider = AIProvider::OpenAI)
    {
        outcomeOf(store.saveAPIKey(Secret(key), provider, {}));
    }
};

} // namespace

TEST_F(MemoryCredentialStoreTest, keepsTheTrimmedKeyUntilItIsDeleted)
{
    save(" key\n");
    EXPECT_EQ(read(AIProvider::OpenAI), "key");
    EXPECT_EQ(read(AIProvider::Gemini), std::nullopt);
    EXPECT_EQ(store.providersWithStoredKey(kBound), QList{AIProvider::OpenAI});
    outcomeOf(store.deleteAPIKey(AIProvider::OpenAI, {}));
    outcomeOf(store.deleteAPIKey(AIProvider::OpenAI, {}));
    EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
}

TEST_F(MemoryCredentialStoreTest, refusesWhatASecretStoreRefuses)
{
    EXPECT_THROW(save(" \n"), CredentialStoreError);
    EXPECT_THROW(save("key", AIProvider::LocalFallback), CredentialStoreError);
    EXPECT_THROW(store.saveWithoutPrompting(Secret("key"), AIProvider::UseDefault, kBound),
        CredentialStoreError);
    EXPECT_TRUE(store.keys.empty());
}

TEST_F(MemoryCredentialStoreTest, failsAsItIsTold)
{
    store.keys[AIProvider::OpenAI] = "key";
    store.failure = CredentialStoreError::keychain(102);
    EXPECT_EQ(read(AIProvider::OpenAI), std::nullopt);
    EXPECT_TRUE(store.providersWithStoredKey(kBound).isEmpty());
    EXPECT_THROW(save("other"), CredentialStoreError);
    EXPECT_THROW(outcomeOf(store.deleteAPIKey(AIProvider::OpenAI, {})), CredentialStoreError);
    EXPECT_EQ(store.storedKey(AIProvider::OpenAI), "key");
}

TEST_F(MemoryCredentialStoreTest, notesEveryCallInOrder)
{
    save(" key ");
    store.saveWithoutPrompting(Secret("late"), AIProvider::Gemini, kBound);
    (void)store.providersWithStoredKey(kBound);
    EXPECT_EQ(store.calls,
        (QList<CredentialCall>{{Operation::Save, AIProvider::OpenAI, " key "},
            {Operation::SaveWithoutPrompting, AIProvider::Gemini, "late", kBound},
            {Operation::ListStored, AIProvider::UseDefault, {}, kBound}}));
    EXPECT_EQ(store.count(Operation::Save), 1);
    EXPECT_EQ(store.count(Operation::Read), 0);
}

TEST_F(MemoryCredentialStoreTest, aStopEndsACallThatWaitsAtTheGate)
{
    store.gate.close();
    std::stop_source source;
    const auto saving =
        watch(store.saveAPIKey(Secret("key"), AIProvider::OpenAI, source.get_token()));
    EXPECT_EQ(store.gate.waiting(), 1U);
    source.request_stop();
    EXPECT_THROW(outcomeOf(saving), CancellationError);
    EXPECT_TRUE(store.keys.empty());
}

} // namespace velarc
