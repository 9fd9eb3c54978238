#pragma once

// What the user last did about each cloud engine's connection. Whether a key is really there, only
// the secret store can tell.
//
// Plain values; any thread.

#include "base/clock.h"
#include "base/json.h"

#include <optional>

namespace velarc {

struct ProviderConnectionInfo
{
    bool isConnected = false;
    std::optional<Instant> lastVerifiedAt; // when a connect last succeeded

    friend bool operator==(
        const ProviderConnectionInfo &, const ProviderConnectionInfo &) = default;
};

struct ProviderConnectionState
{
    ProviderConnectionInfo openAI;
    ProviderConnectionInfo gemini;
    ProviderConnectionInfo anthropic;

    friend bool operator==(
        const ProviderConnectionState &, const ProviderConnectionState &) = default;
};

// Each engine may be missing and then is not connected; one that is there must tell "isConnected".
//
// Errors: JsonError for a key of the wrong type, and for a missing "isConnected".
[[nodiscard]] ProviderConnectionState decodeProviderConnections(const Json &value);

// Writes the three engines, each with its date only where there is one.
[[nodiscard]] Json encodeProviderConnections(const ProviderConnectionState &state);

} // namespace velarc
