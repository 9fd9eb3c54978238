#pragma once

// The clipboard as a run reads it.
//
// Main thread only.
//
// Stop:     a stopped token ends the wait with CancellationError; the caller resumes from the
//           event loop, never inside request_stop().
// Errors:   none beside that: what cannot be read is absent, or a notice.
// Lifetime: the clipboard must outlive the task; arguments are copied into it.

#include "records/intake_records.h"

#include <QCoroTask>

#include <stop_token>

namespace velarc {

// Reads the clipboard afresh.
class ClipboardReading
{
public:
    virtual ~ClipboardReading() = default;

    [[nodiscard]] virtual QCoro::Task<ClipboardPayload> read(std::stop_token stop) = 0;

    // Its plain text alone; "" where there is none.
    [[nodiscard]] virtual QCoro::Task<QString> text(std::stop_token stop) = 0;

    [[nodiscard]] virtual QCoro::Task<AttachmentIntake> attachments(
        ClipboardPayload payload, std::stop_token stop) = 0;
};

} // namespace velarc
