#include "fakes/memory_credential_store.h"

#include <algorithm>

namespace velarc {

using Operation = CredentialCall::Operation;

namespace {

void requireAccount(AIProvider provider)
{
    if (!credentialAccount(provider)) {
        throw CredentialStoreError::unsupportedProvider();
    }
}

} // namespace

QCoro::Task<std::optional<Secret>> MemoryCredentialStore::apiKey(
    AIProvider provider, std::stop_token stop)
{
    calls.append({Operation::Read, provider});
    co_await gate.pass(std::move(stop));
    const std::optional<QByteArray> stored = storedKey(provider);
    if (failure || !stored) {
        co_return std::nullopt;
    }
    Secret key = Secret(*stored).trimmed();
    if (key.isEmpty()) {
        co_return std::nullopt;
    }
    co_return std::optional(std::move(key));
}

QCoro::Task<void> MemoryCredentialStore::saveAPIKey(
    Secret key, AIProvider provider, std::stop_token stop)
{
    calls.append({Operation::Save, provider, key.bytes().toByteArray()});
    co_await gate.pass(std::move(stop));
    store(key, provider);
}

QCoro::Task<void> MemoryCredentialStore::deleteAPIKey(AIProvider provider, std::stop_token stop)
{
    calls.append({Operation::Delete, provider});
    co_await gate.pass(std::move(stop));
    requireAccount(provider);
    failIfTold();
    keys.erase(provider);
}

QList<AIProvider> MemoryCredentialStore::providersWithStoredKey(std::chrono::milliseconds bound)
{
    calls.append({Operation::ListStored, AIProvider::UseDefault, {}, bound});
    QList<AIProvider> stored;
    for (const AIProvider provider : cloudProviders()) {
        if (!failure && keys.contains(provider)) {
            stored.append(provider);
        }
    }
    return stored;
}

void MemoryCredentialStore::saveWithoutPrompting(
    const Secret &key, AIProvider provider, std::chrono::milliseconds bound)
{
    calls.append({Operation::SaveWithoutPrompting, provider, key.bytes().toByteArray(), bound});
    store(key, provider);
}

std::optional<QByteArray> MemoryCredentialStore::storedKey(AIProvider provider) const
{
    const auto found = keys.find(provider);
    return found == keys.end() ? std::nullopt : std::optional(found->second);
}

qsizetype MemoryCredentialStore::count(CredentialCall::Operation operation) const
{
    return std::count_if(calls.begin(), calls.end(),
        [operation](const CredentialCall &call) { return call.operation == operation; });
}

void MemoryCredentialStore::failIfTold() const
{
    if (failure) {
        throw CredentialStoreError(*failure);
    }
}

void MemoryCredentialStore::store(const Secret &key, AIProvider provider)
{
    requireAccount(provider);
    const Secret trimmed = key.trimmed();
    if (trimmed.isEmpty()) {
        throw CredentialStoreError::invalidSecret();
    }
    failIfTold();
    keys[provider] = trimmed.bytes().toByteArray();
}

} // namespace velarc
