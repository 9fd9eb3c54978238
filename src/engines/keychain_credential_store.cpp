#include "engines/keychain_credential_store.h"

#include "base/call_end.h"
#include "base/errors.h"
#include "engines/keychain_items.h"

#include <future>
#include <type_traits>

namespace velarc {

namespace {

// What input and output say of a time-out.
constexpr qint32 kTimedOut = 424;

struct Done
{
};

QByteArray requiredAccount(AIProvider provider)
{
    const std::optional<QString> account = credentialAccount(provider);
    if (!account) {
        throw CredentialStoreError::unsupportedProvider();
    }
    return account->toUtf8();
}

// None for what is no text or blank.
std::optional<Secret> usableKey(const Secret &stored)
{
    if (!stored.bytes().isValidUtf8()) {
        return std::nullopt;
    }
    Secret key = stored.trimmed();
    return key.isEmpty() ? std::nullopt : std::optional(std::move(key));
}

Secret requiredKey(const Secret &given)
{
    std::optional<Secret> key = usableKey(given);
    if (!key) {
        throw CredentialStoreError::invalidSecret();
    }
    return std::move(*key);
}

// What a worker does with the items.

auto reading(QByteArray account)
{
    return [account = std::move(account)](KeychainItems &items) { return items.read(account); };
}

auto writing(QByteArray account, Secret key)
{
    return [account = std::move(account), key = std::move(key)](KeychainItems &items) {
        items.write(account, key);
        return Done();
    };
}

auto removing(QByteArray account)
{
    return [account = std::move(account)](KeychainItems &items) {
        items.remove(account);
        return Done();
    };
}

QList<AIProvider> providersIn(KeychainItems &items)
{
    QList<AIProvider> stored;
    for (const AIProvider provider : cloudProviders()) {
        if (items.contains(requiredAccount(provider))) {
            stored.append(provider);
        }
    }
    return stored;
}

} // namespace

template <typename Work> auto KeychainCredentialStore::perform(Work work, std::stop_token stop)
{
    auto end = std::make_unique<CallEnd>(stop, m_ending.get_token(), m_bound);
    auto running = m_worker.run(
        [service = m_service, work = std::move(work)](std::stop_token ended) {
            KeychainItems items(service, Prompting::Allowed, std::move(ended));
            return work(items);
        },
        end->token());
    return outcomeWithin(
        std::move(end), std::move(running), CredentialStoreError::keychain(kTimedOut));
}

template <typename Work>
auto KeychainCredentialStore::performNow(Work work, std::chrono::milliseconds bound)
{
    using Result = std::invoke_result_t<Work, KeychainItems &>;
    std::packaged_task<Result(std::stop_token)> task(
        [service = m_service, work = std::move(work)](std::stop_token ended) {
            KeychainItems items(service, Prompting::Refused, std::move(ended));
            return work(items);
        });
    std::future<Result> result = task.get_future();
    std::jthread thread(std::move(task));
    if (result.wait_for(bound) != std::future_status::ready) {
        thread.request_stop();
        m_late.push_back(std::move(thread));
        throw CredentialStoreError::keychain(kTimedOut);
    }
    return result.get();
}

KeychainCredentialStore::KeychainCredentialStore(
    const QString &service, std::chrono::milliseconds bound)
    : m_service(service.toUtf8()), m_bound(bound)
{
}

KeychainCredentialStore::~KeychainCredentialStore()
{
    m_ending.request_stop();
}

// In the operations nothing of the store is used behind the wait.

QCoro::Task<std::optional<Secret>> KeychainCredentialStore::apiKey(
    AIProvider provider, std::stop_token stop)
{
    const std::optional<QString> account = credentialAccount(provider);
    if (!account) {
        co_return std::nullopt;
    }
    auto running = perform(reading(account->toUtf8()), std::move(stop));
    try {
        const std::optional<Secret> stored = co_await running;
        co_return stored ? usableKey(*stored) : std::nullopt;
    } catch (const CancellationError &) {
        throw;
    } catch (const std::exception &) {
        co_return std::nullopt;
    }
}

QCoro::Task<void> KeychainCredentialStore::saveAPIKey(
    Secret key, AIProvider provider, std::stop_token stop)
{
    QByteArray account = requiredAccount(provider);
    auto running = perform(writing(std::move(account), requiredKey(key)), std::move(stop));
    co_await running;
}

QCoro::Task<void> KeychainCredentialStore::deleteAPIKey(AIProvider provider, std::stop_token stop)
{
    auto running = perform(removing(requiredAccount(provider)), std::move(stop));
    co_await running;
}

QList<AIProvider> KeychainCredentialStore::providersWithStoredKey(std::chrono::milliseconds bound)
{
    try {
        return performNow(&providersIn, bound);
    } catch (const std::exception &) {
        return {};
    }
}

void KeychainCredentialStore::saveWithoutPrompting(
    const Secret &key, AIProvider provider, std::chrono::milliseconds bound)
{
    QByteArray account = requiredAccount(provider);
    performNow(writing(std::move(account), requiredKey(key)), bound);
}

} // namespace velarc
