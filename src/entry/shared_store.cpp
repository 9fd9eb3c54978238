#include "entry/shared_store.h"

#include "actions/catalogue.h"
#include "store/sqlite_defaults_domain.h"

namespace velarc {

std::shared_ptr<const LocalStore> openSharedStore()
{
    // The domain names files that it moves aside by the time; it lives as long as this clock.
    static const SystemClock kClock;
    return std::make_shared<const LocalStore>(
        std::make_shared<SqliteDefaultsDomain>(defaultsFiles(), kClock), &builtInActions);
}

} // namespace velarc
