#pragma once

// The keys in the desktop's secret store, by calls to its Secret Service that block.

#include "base/secret.h"
#include "engines/keychain_prompts.h"

#include <QByteArray>

#include <memory>
#include <optional>
#include <stop_token>

namespace velarc {

// The items of one service name, each under its account, over a connection for one piece of work.
//
// Made, used and destroyed on one worker thread, as a local variable; leaves nothing behind on it.
// Each call blocks until the desktop, or its user, has answered.
//
// Stop:   ends the call that runs, and any later one, with CancellationError.
// Errors: CredentialStoreError::keychain(status); the status is 100 and a code of the secret
//         library, 200 and one of D-Bus, 400 and one of input and output, or 999.
class KeychainItems
{
public:
    // Reaches the service, and has the bus start it. Where there is none but a wallet daemon that
    // can speak for it, that daemon is started.
    KeychainItems(QByteArray service, Prompting prompting, std::stop_token stop);
    ~KeychainItems();
    KeychainItems(const KeychainItems &) = delete;
    KeychainItems &operator=(const KeychainItems &) = delete;

    // The secret as it is stored; none where there is none or the user leaves it locked.
    [[nodiscard]] std::optional<Secret> read(const QByteArray &account);

    // Whether there is such an item, locked or not. Never unlocks.
    [[nodiscard]] bool contains(const QByteArray &account);

    // Gives every such item this secret; adds one where there is none.
    void write(const QByteArray &account, const Secret &secret);

    // Removes every such item; none is no failure, one that stays is.
    void remove(const QByteArray &account);

private:
    struct Members;
    std::unique_ptr<Members> m_members;
};

} // namespace velarc
