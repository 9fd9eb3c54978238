#pragma once

// Turns files and what stands on the clipboard into the attachments of a run.

#include "intake/document_services.h"
#include "intake/file_intake.h"
#include "records/intake_records.h"

#include <QCoroTask>
#include <QList>
#include <QUrl>

#include <memory>
#include <stop_token>

namespace velarc {

// Reads files whole, one after the other, on a worker; PDF text and drawings come from the
// services.
//
// Main thread only; nothing blocks it. It never fails as a whole: what cannot be taken becomes a
// notice, and the rest is taken in its order.
//
// Stop:     a stopped token ends the wait with CancellationError, from the event loop.
// Lifetime: a task that runs may outlive the reader.
class AttachmentReader final : public FileIntake
{
public:
    AttachmentReader(
        std::shared_ptr<PdfTextReading> pdfTexts, std::shared_ptr<SvgRasterizing> drawings);

    // The picture, the PDF and then the files of `payload`. Its text is not looked at.
    [[nodiscard]] QCoro::Task<AttachmentIntake> attachmentsFromPayload(
        ClipboardPayload payload, std::stop_token stop) const;

    // An attachment for each URL in its order, repeats included. The kind of a file is its
    // extension in lower case: png, pdf or svg; contents are not looked at.
    [[nodiscard]] QCoro::Task<AttachmentIntake> attachmentsFromFiles(
        QList<QUrl> urls, std::stop_token stop) const override;

    struct Services;

private:
    std::shared_ptr<const Services> m_services;
};

} // namespace velarc
