#pragma once

// The API keys in the desktop's secret store, by its Secret Service.

#include "base/worker.h"
#include "engines/credential_store.h"

#include <QByteArray>

#include <thread>
#include <vector>

namespace velarc {

// Main thread only; the work is done on threads of its own, one call after the other. There is no
// other place for a key than the desktop's store: where that is missing, nothing is stored.
//
// Bound:    a call that the desktop, or its user, has not answered after `bound` fails with status
//           424.
// Lifetime: the store may go before its calls have ended; they then end with CancellationError.
class KeychainCredentialStore final : public CredentialStore
{
public:
    // `service` names the program in every item.
    explicit KeychainCredentialStore(
        const QString &service, std::chrono::milliseconds bound = std::chrono::seconds(60));
    ~KeychainCredentialStore() override;
    KeychainCredentialStore(const KeychainCredentialStore &) = delete;
    KeychainCredentialStore &operator=(const KeychainCredentialStore &) = delete;

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

private:
    const QByteArray m_service;
    const std::chrono::milliseconds m_bound;
    std::stop_source m_ending;
    SerialWorker m_worker;
    std::vector<std::jthread> m_late; // calls that were given up at their bound

    template <typename Work> auto perform(Work work, std::stop_token stop);
    template <typename Work> auto performNow(Work work, std::chrono::milliseconds bound);
};

} // namespace velarc
