#include "engines/http_connections.h"

#include <QLibrary>
#include <QSslSocket>

#include <gtest/gtest.h>

#include <cstdint>
#include <cstdlib>

using namespace Qt::StringLiterals;
using namespace velarc;

namespace {

using InitCrypto = int (*)(std::uint64_t options, const void *settings);

InitCrypto initCrypto = nullptr;

// Refused once OpenSSL has cleaned up.
void exitWithWhetherOpenSslIsGone()
{
    constexpr int kNotFound = 2;
    std::_Exit(initCrypto == nullptr ? kNotFound : initCrypto(0, nullptr) == 1 ? 0 : 1);
}

// What is registered first runs last, behind OpenSSL's own cleanup.
[[noreturn]] void useTlsAndExit()
{
    std::atexit(&exitWithWhetherOpenSslIsGone);
    const HttpConnections connections;
    if (QSslSocket::supportsSsl()) {
        initCrypto =
            reinterpret_cast<InitCrypto>(QLibrary::resolve(u"crypto"_s, 3, "OPENSSL_init_crypto"));
    }
    std::exit(0);
}

} // namespace

TEST(OpenSslEndDeathTest, itIsStillThereForThreadsThatEndWhileTheProcessDoes)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe");
    EXPECT_EXIT(useTlsAndExit(), ::testing::ExitedWithCode(0), "");
}
