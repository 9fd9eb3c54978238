#pragma once

// The invoice that the Local Preview Engine reads out of a text.

#include <QString>
#include <QStringView>

namespace velarc {

// `input` as an invoice in JSON, a field a line: the first line of it as the vendor, and number,
// dates and total by the first match of a pattern each. What is not found is null.
//
// Any thread; cannot fail.
[[nodiscard]] QString localInvoice(QStringView input);

} // namespace velarc
