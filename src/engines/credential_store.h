#pragma once

// Where API keys live: the interface to the desktop's secret store.

#include "actions/action.h"
#include "base/errors.h"
#include "base/secret.h"

#include <QCoroTask>

#include <chrono>
#include <optional>
#include <stop_token>

namespace velarc {

class CredentialStoreError final : public UserFacingError
{
public:
    // The store failed with a status number of its own.
    [[nodiscard]] static CredentialStoreError keychain(qint32 status);
    // The engine needs no key.
    [[nodiscard]] static CredentialStoreError unsupportedProvider();
    // A key that is blank, or no text.
    [[nodiscard]] static CredentialStoreError invalidSecret();

private:
    using UserFacingError::UserFacingError;
};

// "openai_api_key" and its like; none for an engine that needs no key.
[[nodiscard]] std::optional<QString> credentialAccount(AIProvider provider);

// Main thread only; nothing blocks but areKeysStored().
//
// Stop: a stopped token ends the wait with CancellationError, from the event loop.
class CredentialStore
{
public:
    virtual ~CredentialStore() = default;

    // The stored key, trimmed; none where there is none, and where the store fails in any way.
    // Reading a locked key lets the desktop ask the user.
    [[nodiscard]] virtual QCoro::Task<std::optional<Secret>> apiKey(
        AIProvider provider, std::stop_token stop) = 0;

    // Stores the key trimmed, in the place of an older one. Errors: CredentialStoreError.
    [[nodiscard]] virtual QCoro::Task<void> saveAPIKey(
        Secret key, AIProvider provider, std::stop_token stop) = 0;

    // Removes the key; one that is not there is no failure. Errors: CredentialStoreError.
    [[nodiscard]] virtual QCoro::Task<void> deleteAPIKey(
        AIProvider provider, std::stop_token stop) = 0;

    // For the start of the program: both block for `bound` at most and never let the desktop ask
    // the user.

    // Of the engines that need a key, those whose key is stored, locked or not. A store that has
    // not answered by the bound has none.
    [[nodiscard]] virtual QList<AIProvider> providersWithStoredKey(
        std::chrono::milliseconds bound) = 0;

    // saveAPIKey() as far as it goes without a question. Errors: CredentialStoreError.
    virtual void saveWithoutPrompting(
        const Secret &key, AIProvider provider, std::chrono::milliseconds bound) = 0;
};

// The engines that need a key, in the order in which they are listed.
[[nodiscard]] const QList<AIProvider> &cloudProviders();

} // namespace velarc
