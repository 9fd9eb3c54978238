#pragma once

// How OpenSSL, which Qt's network library loads, ends with the process.

namespace velarc {

// From here on OpenSSL does not clean up when the process exits: the system takes its memory back.
//
// Qt's thread for transfers is detached. Its end can be waited for, but not the end of what runs
// behind that, and there OpenSSL frees what it keeps for the thread, while its cleanup frees the
// same for all threads, without a lock: a process that exits in this moment dies of a double free.
//
// Any thread, any number of times. Must come before the process first uses OpenSSL, which later
// calls could not make unsay its cleanup. Without OpenSSL 3 nothing is done.
void leaveOpenSslUncleaned();

} // namespace velarc
