#include "engines/openssl_end.h"

#include <QLibrary>

#include <cstdint>

using namespace Qt::StringLiterals;

namespace velarc {

namespace {

// OPENSSL_INIT_NO_ATEXIT of <openssl/crypto.h>.
constexpr std::uint64_t kNoCleanupAtExit = 0x00080000;

using InitCrypto = int (*)(std::uint64_t options, const void *settings);

// Loaded by its name as Qt does, which then gets this same one: programs that ask nobody on the
// network are spared it.
bool initWithoutCleanup()
{
    QLibrary crypto(u"crypto"_s, 3);
    crypto.setLoadHints(QLibrary::PreventUnloadHint);
    const auto init = reinterpret_cast<InitCrypto>(crypto.resolve("OPENSSL_init_crypto"));
    return init != nullptr && init(kNoCleanupAtExit, nullptr) == 1;
}

} // namespace

void leaveOpenSslUncleaned()
{
    [[maybe_unused]] static const bool done = initWithoutCleanup();
}

} // namespace velarc
