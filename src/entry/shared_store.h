#pragma once

#include "store/local_store.h"

namespace velarc {

// The store that every program of the user shares. Main thread only.
[[nodiscard]] std::shared_ptr<const LocalStore> openSharedStore();

} // namespace velarc
