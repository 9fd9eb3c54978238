#pragma once

// A secret store over the desktop's own, in the session that tests/session/run_in_session.sh makes.

#include "engines/keychain_credential_store.h"
#include "support/outcome.h"
#include "support/printers.h"

#include <QByteArray>
#include <QStringList>

#include <gtest/gtest.h>

#include <chrono>

namespace velarc {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

inline const QString kService = QStringLiteral("com.tolmar.velarc");

// No call of a test comes near it unless something hangs.
inline constexpr std::chrono::milliseconds kLongBound = 20s;
inline constexpr std::chrono::milliseconds kShortBound = 150ms;

// A key that was never used before and means nothing to anybody.
[[nodiscard]] QByteArray canaryKey();

// What a program of the desktop writes on both its outputs; the test fails if it cannot be run.
struct ToolRun
{
    int status = -1;
    QByteArray output;
};
ToolRun runTool(const QString &program, const QStringList &arguments, const QByteArray &input = {});

// The item of an account as secret-tool addresses it.
[[nodiscard]] QStringList itemAttributes(const QString &account);
void putItem(const QString &account, const QByteArray &secret, const QStringList &options = {});
[[nodiscard]] QByteArray itemSecret(const QString &account);
[[nodiscard]] qsizetype itemCount(const QString &account);

// How long `work` takes.
template <typename Work> [[nodiscard]] std::chrono::steady_clock::duration durationOf(Work work)
{
    const auto start = std::chrono::steady_clock::now();
    work();
    return std::chrono::steady_clock::now() - start;
}

class KeyringTest : public testing::Test
{
protected:
    std::unique_ptr<KeychainCredentialStore> store =
        std::make_unique<KeychainCredentialStore>(kService, kLongBound);

    // Elsewhere the tests would write into the user's own keyring.
    void SetUp() override { ASSERT_TRUE(qEnvironmentVariableIsSet("VELARC_SESSION")); }

    void useBound(std::chrono::milliseconds bound)
    {
        store = std::make_unique<KeychainCredentialStore>(kService, bound);
    }

    std::optional<QByteArray> read(AIProvider provider)
    {
        const std::optional<Secret> key = outcomeOf(store->apiKey(provider, {}));
        return key ? std::optional(key->bytes().toByteArray()) : std::nullopt;
    }

    // These give the sentence of the failure, an empty one on success.
    QString save(const QByteArray &key, AIProvider provider = AIProvider::OpenAI)
    {
        return failureOf([&] { outcomeOf(store->saveAPIKey(Secret(key), provider, {})); });
    }
    QString saveNow(const QByteArray &key, AIProvider provider = AIProvider::OpenAI,
        std::chrono::milliseconds bound = kLongBound)
    {
        return failureOf([&] { store->saveWithoutPrompting(Secret(key), provider, bound); });
    }
    QString remove(AIProvider provider = AIProvider::OpenAI)
    {
        return failureOf([&] { outcomeOf(store->deleteAPIKey(provider, {})); });
    }

    // Every operation once.
    void doEverything()
    {
        (void)store->providersWithStoredKey(kLongBound);
        (void)saveNow(canaryKey());
        (void)save(canaryKey());
        (void)read(AIProvider::OpenAI);
        (void)remove();
    }

    template <typename Work> static QString failureOf(Work work)
    {
        try {
            work();
            return QString();
        } catch (const CredentialStoreError &error) {
            return error.message();
        }
    }
};

} // namespace velarc
