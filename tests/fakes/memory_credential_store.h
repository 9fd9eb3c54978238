#pragma once

#include "engines/credential_store.h"
#include "fakes/gate.h"

#include <QByteArray>
#include <QList>

#include <map>

namespace velarc {

// One call of a MemoryCredentialStore, as it came.
struct CredentialCall
{
    enum class Operation
    {
        Read,
        Save,
        Delete,
        ListStored,
        SaveWithoutPrompting
    };

    Operation operation;
    AIProvider provider = AIProvider::UseDefault; // as it is where all are asked for
    QByteArray key = {}; // as given, of the two that save
    std::chrono::milliseconds bound = {}; // of the two that block

    friend bool operator==(const CredentialCall &, const CredentialCall &) = default;
};

// A secret store in memory that keeps the promises of CredentialStore, steered by a test.
//
// Answers at once unless its gate is closed; the gate holds the three operations that wait. A task
// that still waits when the store goes ends with CancellationError.
class MemoryCredentialStore final : public CredentialStore
{
public:
    std::map<AIProvider, QByteArray> keys;
    std::optional<CredentialStoreError> failure; // while set, everything fails as a store fails
    QList<CredentialCall> calls; // noted before any wait

    [[nodiscard]] QCoro::Task<std::optional<Secret>> apiKey(
        AIProvider provider, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<void> saveAPIKey(
        Secret key, AIProvider provider, std::stop_token stop) override;
    [[nodiscard]] QCoro::Task<void> deleteAPIKey(
        AIProvider provider, std::stop_token stop) override;
    [[nodiscard]] QList<AIProvider> providersWithStoredKey(
        std::chrono::milliseconds bound) override;
    void saveWithoutPrompting(
        const Secret &key, AIProvider provider, std::chrono::milliseconds bound) override;

    [[nodiscard]] std::optional<QByteArray> storedKey(AIProvider provider) const;
    // How many calls there were of one kind.
    [[nodiscard]] qsizetype count(CredentialCall::Operation operation) const;

private:
    void failIfTold() const;
    void store(const Secret &key, AIProvider provider);

public:
    Gate gate; // goes first: whoever waits at it ends before the rest does
};

} // namespace velarc
