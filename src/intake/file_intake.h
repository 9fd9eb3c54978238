#pragma once

// Reading dropped files, as the canvas sees it.

#include "records/intake_records.h"

#include <QCoroTask>

#include <stop_token>

namespace velarc {

class FileIntake
{
public:
    virtual ~FileIntake() = default;

    // An attachment or a notice for each file, in order. Never fails as a whole.
    //
    // Stop: CancellationError, from the event loop.
    [[nodiscard]] virtual QCoro::Task<AttachmentIntake> attachmentsFromFiles(
        QList<QUrl> urls, std::stop_token stop) const = 0;
};

} // namespace velarc
