#pragma once

// Mails and messages as addresses that other programs open. Any thread.

#include "system_actions/compose_parser.h"

#include <QByteArray>

namespace velarc {

// The longest address that is handed over: a program's arguments are bounded.
inline constexpr qsizetype kMostAddressBytes = 100'000;

// "mailto:a@x,b@y?subject=...&body=...". A line end is %0D%0A, and whatever could mean something in
// an address is encoded, "+" too. What is blank is left out.
[[nodiscard]] QByteArray mailAddress(const ComposeDraft &draft);

// "sms:+15551234,+15559876?body=...": as above, with "+" as it stands in the numbers.
[[nodiscard]] QByteArray messageAddress(const QStringList &recipients, const QString &body);

} // namespace velarc
