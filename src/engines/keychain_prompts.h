#pragma once

// How the questions that the Secret Service wants to put to the user are treated.

#include <cstddef>

namespace velarc {

enum class Prompting
{
    Allowed, // the desktop may ask the user to unlock
    Refused, // what would need a question fails as locked
};

// The GType of a SecretService that treats questions so, for secret_service_open_sync().
//
// The library's own way of asking waits for the service even when its cancellable has fired; here
// the call ends at once. A question that the user dismisses, or whose asker goes away, fails as
// locked.
[[nodiscard]] std::size_t secretServiceType(Prompting prompting);

} // namespace velarc
